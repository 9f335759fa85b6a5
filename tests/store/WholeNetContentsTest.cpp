#include "model/NetContents.h"
#include "model/SpecialWords.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <functional>

namespace {

/// Two links, 5 and 6, and connector 8 between them.
std::unique_ptr<NetContents> roads() {
    auto net = std::make_unique<NetContents>();
    for (const long id : {5L, 6L})
        net->links.push_back(sampleLink(id));
    net->connectors.push_back(sampleConnector(8, net->links[0].get(), net->links[1].get()));
    return net;
}

DecisionPoint &addPoint(NetContents &net, Link *link) {
    net.traffic.decisionPoints.push_back(std::make_unique<DecisionPoint>());
    DecisionPoint &point = *net.traffic.decisionPoints.back();
    point.deciPointID = 4;
    point.mpLink = link;
    return point;
}

SignalLamp &addLamp(NetContents &net) {
    auto group = std::make_unique<SignalGroup>();
    group->signalGroupID = 2;
    group->mlPhase.append(new SignalPhase);
    group->mlPhase.first()->signalPhaseID = 3;
    net.traffic.signalLamps.push_back(std::make_unique<SignalLamp>());
    SignalLamp &lamp = *net.traffic.signalLamps.back();
    lamp.signalLampID = 9;
    lamp.laneID = 51;
    lamp.setPhase(group->mlPhase.first());
    net.traffic.signalGroups.push_back(std::move(group));
    return lamp;
}

template <class T>
T &add(Objects<T> &objects, long T::*id) {
    objects.push_back(std::make_unique<T>());
    (*objects.back()).*id = 9;
    return *objects.back();
}

/// Destroys link 6, and with it what it owns.
void takeOutLink(NetContents &net) {
    net.connectors.clear();
    net.links.pop_back();
}

struct Refusal {
    const char *error;
    std::function<void(NetContents &)> spoil;
};

const Refusal kPointers[] = {
    {"Connector 8 joins a lane that is not part of the network.",
     [](NetContents &net) { delete net.links[0]->mlLane.takeLast(); }},
    {"Connector 8 joins a lane that is not part of the network.",
     [](NetContents &net) { delete net.links[1]->mlLane.takeFirst(); }},
    {"Connector 8 joins a link that is not part of the network.",
     [](NetContents &net) { net.links.pop_back(); }},
    {"Connector 8 has no link at an end: set mpStartLink and mpEndLink before it is stored.",
     [](NetContents &net) { net.connectors[0]->mpEndLink = nullptr; }},
    {"Connector 8 has a lane connector without a lane at an end: set mpStartLane and mpEndLane before it is "
     "stored.",
     [](NetContents &net) { net.connectors[0]->mlLaneConnector.first()->mpStartLane = nullptr; }},
    {"Node 51 stands on a vertex that is not part of the network.",
     [](NetContents &net) { delete net.links[0]->mlVertex.takeFirst(); }},
    {"Decision point 4 stands on a link that is not part of the network.",
     [](NetContents &net) {
         addPoint(net, net.links[1].get());
         takeOutLink(net);
     }},
    {"Decision point 4 has no link: set mpLink before it is stored.",
     [](NetContents &net) { addPoint(net, nullptr); }},
    {"Route 7 follows a link that is not part of the network.",
     [](NetContents &net) {
         auto *route = new Routing;
         route->routingID = 7;
         route->mlLinkChain = {{net.links[0].get()}, {net.links[1].get()}};
         addPoint(net, net.links[0].get()).mlRouting.append(route);
         takeOutLink(net);
     }},
    {"Route 7 leads back to a decision point that is not part of the network.",
     [](NetContents &net) {
         auto *route = new Routing;
         route->routingID = 7;
         const auto gone = std::make_unique<DecisionPoint>();
         route->mpDecisionPoint = gone.get();
         addPoint(net, net.links[0].get()).mlRouting.append(route);
     }},
    {"Bus station 9 stands on a link that is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.busStations, &BusStation::busStationID).mpLink = net.links[1].get();
         takeOutLink(net);
     }},
    {"Bus line 9 follows a link that is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.busLines, &BusLine::busLineID).mlLink = {net.links[0].get(), net.links[1].get()};
         takeOutLink(net);
     }},
    {"Signal lamp 9 has no phase: set it with setPhase() before it is stored.",
     [](NetContents &net) {
         addLamp(net);
         net.traffic.signalGroups.clear();
     }},
    {"Signal lamp 9 shows a phase that is not part of the network.",
     [](NetContents &net) {
         static SignalPhase elsewhere;
         addLamp(net).setPhase(&elsewhere);
     }},
};

const Refusal kIds[] = {
    {"Signal lamp 9 names no lane: draw the lane's id before.",
     [](NetContents &net) { addLamp(net).laneID = 0; }},
    {"Guide arrow 9 names no lane: enter its lane's id, or the arrow into the list of its lane.",
     [](NetContents &net) { add(net.guideArrows, &GuideArrow::guideArrowID); }},
    {"Lanes of route 7 name a route, connector or lane without an id: draw its id before.",
     [](NetContents &net) {
         net.connectors[0]->connID = 0;
         net.traffic.routeLanes = {{7, 0, {51, 61}}};
     }},
    {"Lanes of route 7 name a route, connector or lane without an id: draw its id before.",
     [](NetContents &net) {
         net.links[1]->mlLane.first()->laneID = 0;
         net.traffic.routeLanes = {{7, 8, {51, 0}}};
     }},
    {"Decision point 4 has flow ratios that name no route, and more than one route without an id: draw the "
     "routes' ids before.",
     [](NetContents &net) {
         DecisionPoint &point = addPoint(net, net.links[0].get());
         point.mlRouting.append(new Routing);
         point.mlRouting.append(new Routing);
         point.mlFlowByInterval.append(new RoutingFlowByInterval);
         point.mlFlowByInterval.first()->mlFlowRatio.append(new RoutingFLowRatio);
     }},
    {"Bus line 9 has a stop that names no station: draw the station's id before.",
     [](NetContents &net) {
         BusLine &line = add(net.traffic.busLines, &BusLine::busLineID);
         line.mlLink = {net.links[0].get()};
         line.mlStationLine.append(new BusStationLine);
     }},
    {"Vehicle detector 9 names no road: draw the road's id before.",
     [](NetContents &net) {
         net.links[0]->linkID = 0;
         add(net.traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId);
     }},
    {"Vehicle detector 9 names no signal group: draw the group's id before.",
     [](NetContents &net) {
         addLamp(net);
         net.traffic.signalGroups[0]->signalGroupID = 0;
         add(net.traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId).roadId = 5;
     }},
    {"Queue counter 9 names no road: draw the road's id before.",
     [](NetContents &net) {
         net.connectors[0]->connID = 0;
         add(net.traffic.queueCounters, &VehicleQueueCounter::queueCounterID);
     }},
    {"Travel-time detector 9 names no road: draw the road's id before.",
     [](NetContents &net) {
         net.links[1]->linkID = 0;
         add(net.traffic.travelDetectors, &VehicleTravelDetector::detectorId).startRoadId = 5;
     }},
    {"Driving-data collector 9 names no road: draw the road's id before.",
     [](NetContents &net) {
         net.links[1]->linkID = 0;
         add(net.traffic.collectors, &VehicleDrivInfoCollector::collecterID);
     }},
    {"Departure point 9 names no road: draw the road's id before.",
     [](NetContents &net) {
         net.links[0]->linkID = 0;
         add(net.traffic.departurePoints, &DeparturePoint::departurePointID);
     }},
};

/// A route along both links, with what lanes of routes need.
void addRoute(NetContents &net) {
    auto *route = new Routing;
    route->routingID = 7;
    route->mlLinkChain = {{net.links[0].get(), net.links[1].get()}};
    addPoint(net, net.links[0].get()).mlRouting.append(route);
}

VehicleType &addType(NetContents &net, long code) {
    VehicleType &type = add(net.traffic.vehicleTypes, &VehicleType::vehicleTypeCode);
    type.vehicleTypeCode = code;
    return type;
}

/// Vehicle type 1 and composition 9 of it.
VehicleComposition &addCatalogue(NetContents &net) {
    addType(net, 1);
    VehicleComposition &composition = add(net.traffic.compositions, &VehicleComposition::vehicleConsCode);
    composition.mlDetail = {{9, 1, 100}};
    return composition;
}

BusStationLine &addStop(NetContents &net) {
    BusStation &station = add(net.traffic.busStations, &BusStation::busStationID);
    station.mpLink = net.links[0].get();
    BusLine &line = add(net.traffic.busLines, &BusLine::busLineID);
    line.mlLink = {net.links[0].get()};
    line.mlStationLine.append(new BusStationLine);
    line.mlStationLine.first()->stationLineID = 3;
    line.mlStationLine.first()->busStationID = 9;
    return *line.mlStationLine.first();
}

const Refusal kNumbers[] = {
    {"Signal lamp 9 stands on lane 53, which is not part of the network.",
     [](NetContents &net) { addLamp(net).laneID = 53; }},
    {"Guide arrow 9 is painted on lane 53, which is not part of the network.",
     [](NetContents &net) { add(net.guideArrows, &GuideArrow::guideArrowID).laneID = 53; }},
    {"Lanes of route 6 name route 6, which is not part of the network.",
     [](NetContents &net) {
         addRoute(net);
         net.traffic.routeLanes = {{7, 8, {51, 61}}, {6, 8, {51, 61}}};
     }},
    {"Lanes of route 7 name connector 9, which is not part of the network.",
     [](NetContents &net) {
         addRoute(net);
         net.traffic.routeLanes = {{7, 9, {51, 61}}};
     }},
    {"Lanes of route 7 name lane 53, which is not part of the network.",
     [](NetContents &net) {
         addRoute(net);
         net.traffic.routeLanes = {{7, 8, {53, 61}}};
     }},
    {"Lanes of route 7 name lane 63, which is not part of the network.",
     [](NetContents &net) {
         addRoute(net);
         net.traffic.routeLanes = {{7, 8, {51, 63}}};
     }},
    {"Departure point 9 stands on link 8, which is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.departurePoints, &DeparturePoint::departurePointID).linkID = 8;
     }},
    {"Departure point 9 releases vehicle composition 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net);
         DeparturePoint &point = add(net.traffic.departurePoints, &DeparturePoint::departurePointID);
         point.linkID = 5;
         point.mlInterval.append(DepartureInterval());
         point.mlInterval.append(DepartureInterval());
         point.mlInterval.last().vehiCons.vehicleConsCode = 2;
     }},
    {"Vehicle composition 9 has a share of vehicle type 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net).mlDetail.append({9, 2, 0});
     }},
    {"Lane 51 is closed to vehicle type 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net);
         net.links[0]->mlLane.first()->mlLimitVehicle = {{2, QString()}};
     }},
    {"Connector 8 is closed to vehicle type 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net);
         net.connectors[0]->mlLimitVehicle = {1, 2};
     }},
    {"Vehicle detector 9 is on road 7, which is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId).roadId = 7;
     }},
    {"Vehicle detector 9 serves signal group 3, which is not part of the network.",
     [](NetContents &net) {
         addLamp(net);
         VehicleDetector &detector = add(net.traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId);
         detector.roadId = 5;
         detector.signalGroupID = 3;
     }},
    {"Vehicle detector 9 registers vehicle type 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net);
         add(net.traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId).mlVehiTypeCode = {1, 2};
     }},
    {"Queue counter 9 is on road 7, which is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.queueCounters, &VehicleQueueCounter::queueCounterID).roadID = 7;
     }},
    {"Travel-time detector 9 is on road 7, which is not part of the network.",
     [](NetContents &net) {
         VehicleTravelDetector &detector =
             add(net.traffic.travelDetectors, &VehicleTravelDetector::detectorId);
         detector.startRoadId = 8;
         detector.teminalRoadId = 7;
     }},
    {"Driving-data collector 9 is on road 7, which is not part of the network.",
     [](NetContents &net) {
         add(net.traffic.collectors, &VehicleDrivInfoCollector::collecterID).roadID = 7;
     }},
    {"Bus line 9 has a stop at bus station 8, which is not part of the network.",
     [](NetContents &net) { addStop(net).busStationID = 8; }},
    {"Bus line 9 has a stop at a station that is not on its route.",
     [](NetContents &net) {
         addStop(net);
         net.traffic.busLines[0]->mlLink = {net.links[1].get()};
     }},
    {"Bus line 9 follows no link: enter its route into mlLink.",
     [](NetContents &net) {
         addStop(net);
         net.traffic.busLines[0]->mlLink.clear();
     }},
    {"Bus line 9 has a stop of bus line 8, which is not part of the network.",
     [](NetContents &net) { addStop(net).busLineID = 8; }},
    {"Accident zone 9 is on road 7, which is not part of the network.",
     [](NetContents &net) { add(net.traffic.accidentZones, &AccidentZone::accidentZoneId).roadId = 7; }},
    {"Road-work zone 9 is on road 7, which is not part of the network.",
     [](NetContents &net) { add(net.traffic.roadWorkZones, &RoadWorkZone::roadWorkZoneId).roadID = 7; }},
    {"Speed reduction area 9 is on road 7, which is not part of the network.",
     [](NetContents &net) { add(net.traffic.speedAreas, &ReduceSpeedArea::reduceSpeedAreaID).roadID = 7; }},
    {"Speed reduction area 9 slows vehicle type 2, which is not part of the network.",
     [](NetContents &net) {
         addCatalogue(net);
         ReduceSpeedArea &area = add(net.traffic.speedAreas, &ReduceSpeedArea::reduceSpeedAreaID);
         area.mlSpeedVehiType.append(new ReduceSpeedVehiType{9, 2, 30, 5});
     }},
};

class WholeContentsTest : public StoreKindFixture {
protected:
    void prepare() override { DBTools::initDictionary(gDB, kNet, true); }

    void expectRefusal(const Refusal &refusal) {
        const auto net = roads();
        refusal.spoil(*net);
        clearFailures();
        int steps = 0;
        EXPECT_FALSE(DBTools::saveNet(gDB, kNet, *net, true, [&steps](const NetStep &) {
            return ++steps > 0;
        })) << refusal.error;
        EXPECT_EQ(steps, 0) << refusal.error;
        ASSERT_EQ(failures().size(), 1) << refusal.error;
        EXPECT_EQ(failures().first().error, QLatin1String(refusal.error));
        EXPECT_EQ(count(QStringLiteral("Vertex")), 0) << refusal.error;
    }

    QStringList details() {
        return rows(
            QStringLiteral("select vehicleConsCode, vehicleTypeCode, proportion from VehicleConsDetail "
                           "order by 1, 2"));
    }
};

TEST_P(WholeContentsTest, WhatIsNotPartOfTheNetworkIsRefusedAndNotLookedInto) {
    for (const Refusal &refusal : kPointers)
        expectRefusal(refusal);
}

TEST_P(WholeContentsTest, WhatNamesAnObjectWithoutAnIdIsRefused) {
    for (const Refusal &refusal : kIds)
        expectRefusal(refusal);
}

/// A fresh network may not lose, or leave to nobody, what it says.
TEST_P(WholeContentsTest, WhatNamesAnObjectThatIsNotThereIsRefused) {
    for (const Refusal &refusal : kNumbers)
        expectRefusal(refusal);
}

/// What a store has that names nothing is loaded and saved as it is; nothing may be added to it.
TEST_P(WholeContentsTest, ANumberThatNamedNothingWhenItWasLoadedStays) {
    if (isPostgres())
        letReferencesDangle();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *roads(), true));
    addRow("DeparturePoint", "departurePointID, linkID, name", "9, 77, 'p'");
    addRow("ConnectorLimitVehicle", "connID, vehicleTypeCode", "8, 78");
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    openNewStore();
    if (isPostgres())
        letReferencesDangle();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, net, true)) << qPrintable(failures().value(0).error);
    EXPECT_EQ(rows(QStringLiteral("select linkID from DeparturePoint")), QStringList(QStringLiteral("77")));
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeCode from ConnectorLimitVehicle")),
              QStringList(QStringLiteral("78")));

    openNewStore();
    net.connectors[0]->mlLimitVehicle.append(79);
    clearFailures();
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, net, true));
    EXPECT_EQ(failures().value(0).error.toStdString(),
              "Connector 8 is closed to vehicle type 79, which is not part of the network.");
}

TEST_P(WholeContentsTest, LoadsAndSavesEndWithoutChanges) {
    const auto net = roads();
    net->edit(*net->links[0]).roadId = 0;
    const auto isMarked = [&net] { return !net->changes.isEmpty(); };
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, *net, true, [](const NetStep &) { return false; }));
    EXPECT_TRUE(isMarked()) << "a save that is not kept keeps the changes";
    net->record.name = QStringLiteral("renamed");
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
    EXPECT_FALSE(isMarked());
    EXPECT_EQ(net->stored.record.name, QStringLiteral("renamed"));

    net->edit(*net->links[0]);
    net->linkTypes.clear();
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, *net));
    EXPECT_FALSE(isMarked());
    EXPECT_EQ(net->stored.record.netId, kNet);
    EXPECT_EQ(net->stored.linkTypes.size(), net->linkTypes.size());
    EXPECT_FALSE(net->linkTypes.isEmpty());
}

/// Rows of other writers name no road where none is meant; what loads saves.
TEST_P(WholeContentsTest, AReferenceThatNoNewObjectCanBeMeantByStays) {
    if (isPostgres())
        letReferencesDangle();
    const auto net = roads();
    add(net->traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId);
    add(net->traffic.departurePoints, &DeparturePoint::departurePointID);
    if (hasSeveralNets())
        add(net->traffic.queueCounters, &VehicleQueueCounter::queueCounterID);
    EXPECT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(WholeContentsTest, AnArrowInTheListOfANewLaneStandsOnThatLane) {
    const auto net = roads();
    Lane *lane = net->links[1]->mlLane.last();
    lane->laneID = 0;
    GuideArrow &arrow = add(net->guideArrows, &GuideArrow::guideArrowID);
    auto gone = std::make_unique<GuideArrow>();
    lane->mlGuideArrow = {gone.get(), &arrow};
    gone.reset();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
    EXPECT_GT(lane->laneID, 0);
    EXPECT_EQ(rows(QStringLiteral("select laneID from GuideArrow")),
              QStringList(QString::number(lane->laneID)));
}

TEST_P(WholeContentsTest, BreakPointsOfAnOuterLaneThatWasEditedAreSaved) {
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *roads(), true));
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    net.links[0]->mlLane.last()->leftBreakPointsJson = {{QStringLiteral("left"), 1}};
    net.links[0]->mlLane.first()->rightBreakPointsJson = QJsonObject();
    openNewStore();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, net, true));
    const QString asText = isPostgres() ? QStringLiteral("%1") : QStringLiteral("cast(%1 as text)");
    EXPECT_EQ(rows(QStringLiteral("select %1, %2 from Link where linkID = 5")
                       .arg(asText.arg(QStringLiteral("leftBreakPointsJson")),
                            asText.arg(QStringLiteral("rightBreakPointsJson")))),
              QStringList(QStringLiteral("{\"left\":1}|{}")));
}

TEST_P(WholeContentsTest, OnlyACatalogueThatTheContentsHaveIsReplaced) {
    const QStringList standard = {QStringLiteral("1|1|90"), QStringLiteral("1|2|10")};
    ASSERT_EQ(details(), standard);
    auto net = roads();
    for (const long code : {1L, 3L}) {
        VehicleType &type = add(net->traffic.vehicleTypes, &VehicleType::vehicleTypeCode);
        type.vehicleTypeCode = code;
        type.vehicleTypeName = QStringLiteral("type");
    }
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, *net, true));
    ASSERT_EQ(failures().size(), 1);
    EXPECT_EQ(
        failures().first().error.section(QLatin1Char(')'), -1),
        QStringLiteral(" consists of type 2, which is not among the types to save: save compositions with "
                       "them."));
    EXPECT_EQ(count(QStringLiteral("VehicleType")), 12);
    EXPECT_EQ(details(), standard);
    clearFailures();

    net->traffic.vehicleTypes.back()->vehicleTypeCode = 2;
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeCode, vehicleTypeName from VehicleType order by 1")),
              QStringList({QStringLiteral("1|type"), QStringLiteral("2|type")}));
    EXPECT_EQ(details(), standard);
    EXPECT_EQ(count(QStringLiteral("VehicleConstitutent")), 1);

    openNewStore();
    DBTools::initDictionary(gDB, kNet, true);
    net = roads();
    VehicleComposition &composition = add(net->traffic.compositions, &VehicleComposition::vehicleConsCode);
    composition.mlDetail = {{9, 7, 100}};
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *net, true));
    EXPECT_EQ(count(QStringLiteral("VehicleType")), 12);
    EXPECT_EQ(details(), QStringList(QStringLiteral("9|7|100")));
    EXPECT_EQ(rows(QStringLiteral("select vehicleConsCode from VehicleConstitutent")),
              QStringList(QStringLiteral("9")));
    EXPECT_EQ(failureCount(), 0);
}

/// A store whose words are English, under a host whose language is Chinese.
class StoredWordsTest : public WholeContentsTest {
protected:
    static void speak(bool hostIsChinese) {
        gSpecialWords.setDbIsEnglish(true);
        gSpecialWords.setLangIsNotZh(!hostIsChinese);
        gSpecialWords.initVars();
    }
    void writeWords() {
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *roads(), true));
        execute(QStringLiteral("update Link set linkType = '高速路' where linkID = 5"));
        execute(QStringLiteral("update LinkType set typeName = 'Freeway' where linkTypeID = 1"));
        execute(QStringLiteral("update LinkType set typeName = '匝道' where linkTypeID = 2"));
        execute(QStringLiteral("update VehicleType set vehicleTypeName = 'Plane' where vehicleTypeCode = 1"));
        addRow("SignalGroup", "signalGroupID, name, timeLength, startTime, endTime", "1, 'g', 1, 2, 3");
        addRow("SignalPhase", "signalPhaseID, signalGroupID, serialNumber, name", "1, 1, 1, 'p'");
        int number = 0;
        for (const char *color : {"Yellow", "Red", "红", "Green"})
            addRow("SignalColor", "signalPhaseID, serialNumber, color, timeLength",
                   QStringLiteral("1, %1, '%2', 5").arg(QString::number(++number), QString::fromUtf8(color)));
    }
    QStringList words() {
        return rows(QStringLiteral("select linkType from Link where linkID = 5")) +
               rows(
                   QStringLiteral("select typeName from LinkType where linkTypeID < 3 order by linkTypeID")) +
               rows(QStringLiteral("select vehicleTypeName from VehicleType where vehicleTypeCode = 1")) +
               rows(QStringLiteral("select color from SignalColor order by serialNumber"));
    }
};

TEST_P(StoredWordsTest, AWholeSaveWritesBackWhatWasLoaded) {
    writeWords();
    const QStringList written = {QStringLiteral("高速路"), QStringLiteral("Freeway"), QStringLiteral("匝道"),
                                 QStringLiteral("Plane"),  QStringLiteral("Yellow"),  QStringLiteral("Red"),
                                 QStringLiteral("红"),     QStringLiteral("Green")};
    ASSERT_EQ(words(), written);
    for (const bool hostIsChinese : {true, false}) {
        speak(hostIsChinese);
        NetContents net;
        ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
        SignalPhase &phase = *net.traffic.signalGroups[0]->mlPhase.first();
        EXPECT_EQ(phase.signalColorInStr(), hostIsChinese ? QStringLiteral("黄5,红5,红5,绿5")
                                                          : QStringLiteral("Yellow5,Red5,红5,Green5"));
        openNewStore();
        DBTools::initDictionary(gDB, kNet, true);
        speak(hostIsChinese);
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, net, true));
        EXPECT_EQ(words(), written) << hostIsChinese;
    }
}

TEST_P(StoredWordsTest, WordsThatWereChangedAreWrittenInTheLanguageOfTheStore) {
    writeWords();
    speak(true);
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    SignalPhase &phase = *net.traffic.signalGroups[0]->mlPhase.first();
    phase.setColorList({{QStringLiteral("绿"), 1}, {QStringLiteral("灰"), 2}});
    net.traffic.vehicleTypes[0]->vehicleTypeName = QStringLiteral("小客车");
    net.links[0]->linkType = QStringLiteral("匝道");
    openNewStore();
    DBTools::initDictionary(gDB, kNet, true);
    speak(true);
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, net, true));
    // The type of a link is read as it stands, and written so.
    EXPECT_EQ(words(), QStringList({QStringLiteral("匝道"), QStringLiteral("Freeway"), QStringLiteral("匝道"),
                                    QStringLiteral("Car"), QStringLiteral("Green"), QStringLiteral("Grey")}));
    // Single inserts know the displayed word alone.
    net.traffic.signalGroups[0]->signalGroupID = 2;
    phase.signalPhaseID = 2;
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, net.traffic.signalGroups[0].get(), true));
    EXPECT_EQ(
        rows(QStringLiteral("select color from SignalColor where signalPhaseID = 2 order by serialNumber")),
        QStringList({QStringLiteral("绿"), QStringLiteral("灰")}));
}

INSTANTIATE_TEST_SUITE_P(Stores, WholeContentsTest, testing::ValuesIn(kStoreKinds), storeKindName);
INSTANTIATE_TEST_SUITE_P(Stores, StoredWordsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
