#include "model/NetContents.h"

#include "tests/support/Builders.h"

#include <gtest/gtest.h>

#include <functional>

// A network as a host edits it. Each number in it is used once, so that a reference that is followed wrongly shows.

namespace {

/// Puts an object with that id into its list, as if it had been loaded.
template <class T>
T &put(Objects<T> &list, long T::*id, long value) {
    list.push_back(std::make_unique<T>());
    (*list.back()).*id = value;
    return *list.back();
}

Routing *routeAlong(long id, const QList<Link *> &chain) {
    auto *route = new Routing;
    route->routingID = id;
    route->mlLinkChain = {chain};
    return route;
}

BusStationLine *stopAt(long id, long station) {
    auto *stop = new BusStationLine;
    stop->stationLineID = id;
    stop->busStationID = station;
    return stop;
}

/// Links 5, 6 and 7 in a row, connectors 8 and 9 between them, and one thing of each kind that refers to others.
class Town {
public:
    Town() {
        makeRoads();
        makeSignals();
        makeDemand();
        makeDevices();
        makeTransit();
        net.setStored();
    }

    Link &link(long id) { return *net.find<Link>(id); }
    Lane &lane(long id) { return *link(id / 10).mlLane.at(int(id % 10) - 1); }

    NetContents net;

private:
    void makeRoads() {
        for (const long id : {5L, 6L, 7L})
            net.links.push_back(sampleLink(id));
        net.connectors.push_back(sampleConnector(8, &link(5), &link(6)));
        net.connectors.push_back(sampleConnector(9, &link(6), &link(7)));
        put(net.guideArrows, &GuideArrow::guideArrowID, 1).laneID = 51;
        put(net.guideArrows, &GuideArrow::guideArrowID, 2).laneID = 61;
        for (const long code : {101L, 102L})
            put(traffic.vehicleTypes, &VehicleType::vehicleTypeCode, code);
        for (const long code : {103L, 104L})
            put(traffic.compositions, &VehicleComposition::vehicleConsCode, code);
        traffic.compositions[0]->mlDetail = {{103, 101, 60}, {103, 102, 40}};
        lane(72).mlLimitVehicle = {{102, QStringLiteral("bus")}};
        net.connectors[1]->mlLimitVehicle = {101, 102};
    }
    void makeSignals() {
        SignalGroup &group = put(traffic.signalGroups, &SignalGroup::signalGroupID, 2);
        for (const long id : {3L, 4L}) {
            group.mlPhase.append(new SignalPhase);
            group.mlPhase.last()->signalPhaseID = id;
        }
        SignalLamp &first = put(traffic.signalLamps, &SignalLamp::signalLampID, 10);
        first.laneID = 51;
        first.toLaneID = 62;
        first.name = QStringLiteral("north");
        first.setPhase(group.mlPhase.first());
        SignalLamp &second = put(traffic.signalLamps, &SignalLamp::signalLampID, 11);
        second.laneID = 61;
        second.toLaneID = 71;
        second.setPhase(group.mlPhase.last());
    }
    void makeDemand() {
        DeparturePoint &departure = put(traffic.departurePoints, &DeparturePoint::departurePointID, 12);
        departure.linkID = 5;
        departure.mlInterval.append(DepartureInterval());
        departure.mlInterval.first().vehiCons = *traffic.compositions[0];
        DecisionPoint &first = put(traffic.decisionPoints, &DecisionPoint::deciPointID, 13);
        first.mpLink = &link(5);
        first.mlRouting = {routeAlong(14, {&link(5), &link(6)}),
                           routeAlong(15, {&link(5), &link(6), &link(7)})};
        first.mlFlowByInterval.append(new RoutingFlowByInterval);
        for (const long id : {14L, 15L}) {
            first.mlFlowByInterval.first()->mlFlowRatio.append(new RoutingFLowRatio);
            first.mlFlowByInterval.first()->mlFlowRatio.last()->routingID = id;
        }
        traffic.routeLanes = {{14, 8, {51, 61}}, {15, 8, {52, 62}}, {15, 9, {62, 72}}};
    }
    void makeDevices() {
        VehicleDetector &detector = put(traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId, 18);
        detector.roadId = 6;
        detector.signalGroupID = 2;
        detector.mlVehiTypeCode = {101};
        VehicleQueueCounter &counter = put(traffic.queueCounters, &VehicleQueueCounter::queueCounterID, 19);
        counter.roadID = 8;
        counter.toLaneNumber = 1;
        VehicleTravelDetector &travel = put(traffic.travelDetectors, &VehicleTravelDetector::detectorId, 20);
        travel.startRoadId = 6;
        travel.teminalRoadId = 7;
        put(traffic.collectors, &VehicleDrivInfoCollector::collecterID, 21).roadID = 7;
        ReduceSpeedArea &area = put(traffic.speedAreas, &ReduceSpeedArea::reduceSpeedAreaID, 26);
        area.roadID = 9;
        area.mlSpeedVehiType.append(new ReduceSpeedVehiType{26, 102, 30, 5});
        put(traffic.accidentZones, &AccidentZone::accidentZoneId, 27).roadId = 5;
        RoadWorkZone &work = put(traffic.roadWorkZones, &RoadWorkZone::roadWorkZoneId, 28);
        work.roadID = 8;
        work.roadType = QStringLiteral("connector");
    }
    void makeTransit() {
        put(traffic.busStations, &BusStation::busStationID, 22).mpLink = &link(5);
        put(traffic.busStations, &BusStation::busStationID, 23).mpLink = &link(6);
        BusLine &line = put(traffic.busLines, &BusLine::busLineID, 24);
        line.mlLink = {&link(5), &link(6)};
        line.mlStationLine = {stopAt(29, 22), stopAt(30, 23)};
    }

    TrafficObjects &traffic = net.traffic;
};

QString tersely(const QList<NetObject> &objects) {
    QStringList all;
    for (const NetObject &object : objects) {
        const char *fates[] = {"part", "goes", "loses"};
        all.append(object.table + QLatin1Char(' ') + QString::number(object.id) + QLatin1Char(' ') +
                   QLatin1String(fates[int(object.fate)]));
    }
    return all.join(QStringLiteral(", "));
}

struct Removal {
    const char *what;
    const char *reached;
    std::function<QList<NetObject>(Town &)> ask;
    std::function<bool(Town &, Cascade)> remove;
};

/// Of an object of a list.
template <class T>
Removal removalOf(const char *what, long id, const char *reached) {
    return {what, reached, [id](Town &town) { return town.net.whatRefersTo(*town.net.find<T>(id)); },
            [id](Town &town, Cascade cascade) { return town.net.remove(*town.net.find<T>(id), cascade); }};
}

SignalGroup &group(Town &town) {
    return *town.net.traffic.signalGroups[0];
}
DecisionPoint &point(Town &town) {
    return *town.net.traffic.decisionPoints[0];
}
BusLine &line(Town &town) {
    return *town.net.traffic.busLines[0];
}

const Removal kRemovals[] = {
    removalOf<Link>(
        "link", 7,
        "Lane 71 part, Lane 72 part, Connector 9 goes, LaneConnector 90 part, LaneConnector 91 part, "
        "SignalLamp 11 loses, Routing 15 goes, RoutingLaneConnector 15 part, RoutingLaneConnector 15 "
        "part, VehicleTravelDetector 20 goes, VehicleDrivInfoCollecter 21 goes, ReduceSpeedArea 26 goes"),
    removalOf<Link>(
        "first link", 5,
        "Lane 51 part, Lane 52 part, GuideArrow 1 goes, Connector 8 goes, LaneConnector 80 part, "
        "LaneConnector 81 part, SignalLamp 10 goes, DeparturePoint 12 goes, DecisionPoint 13 goes, "
        "Routing 14 part, Routing 15 part, RoutingLaneConnector 14 part, RoutingLaneConnector 15 part, "
        "RoutingLaneConnector 15 part, VehicleQueueCounter 19 goes, BusStation 22 goes, BusLine 24 goes, "
        "BusStationLine 29 part, BusStationLine 30 part, AccidentZone 27 goes, RoadWorkZone 28 goes"),
    removalOf<Connector>("connector", 8,
                         "LaneConnector 80 part, LaneConnector 81 part, RoutingLaneConnector 14 goes, "
                         "RoutingLaneConnector 15 goes, VehicleQueueCounter 19 goes, RoadWorkZone 28 goes"),
    removalOf<SignalGroup>("group", 2,
                           "SignalPhase 3 part, SignalPhase 4 part, SignalLamp 10 goes, SignalLamp 11 goes, "
                           "VehicleDetector 18 goes"),
    removalOf<DecisionPoint>(
        "decision point", 13,
        "Routing 14 part, Routing 15 part, RoutingLaneConnector 14 part, RoutingLaneConnector "
        "15 part, RoutingLaneConnector 15 part"),
    removalOf<BusStation>("station", 23, "BusStationLine 30 goes"),
    removalOf<BusLine>("line", 24, "BusStationLine 29 part, BusStationLine 30 part"),
    removalOf<VehicleType>("type", 101,
                           "VehicleConstitutent 103 loses, Connector 9 loses, VehicleDetector 18 loses"),
    removalOf<VehicleType>(
        "other type", 102,
        "VehicleConstitutent 103 loses, Lane 72 loses, Connector 9 loses, ReduceSpeedArea 26 "
        "loses"),
    removalOf<VehicleComposition>("composition", 103, "DeparturePoint 12 loses"),
    removalOf<VehicleComposition>("unused composition", 104, ""),
    removalOf<SignalLamp>("lamp", 10, ""),
    removalOf<GuideArrow>("arrow", 1, ""),
    removalOf<AccidentZone>("zone", 27, ""),
    {"lane",
     "GuideArrow 2 goes, LaneConnector 80 goes, LaneConnector 90 goes, SignalLamp 11 goes, "
     "RoutingLaneConnector 14 goes",
     [](Town &town) { return town.net.whatRefersTo(town.lane(61)); },
     [](Town &town, Cascade cascade) { return town.net.removeLane(town.link(6), town.lane(61), cascade); }},
    {"lane that is led to",
     "LaneConnector 81 goes, LaneConnector 91 goes, SignalLamp 10 loses, RoutingLaneConnector "
     "15 goes, RoutingLaneConnector 15 goes",
     [](Town &town) { return town.net.whatRefersTo(town.lane(62)); },
     [](Town &town, Cascade cascade) { return town.net.removeLane(town.link(6), town.lane(62), cascade); }},
    {"phase", "SignalLamp 10 goes",
     [](Town &town) { return town.net.whatRefersTo(*group(town).mlPhase.first()); },
     [](Town &town, Cascade cascade) {
         return town.net.removePhase(group(town), *group(town).mlPhase.first(), cascade);
     }},
    {"route", "RoutingLaneConnector 14 part",
     [](Town &town) { return town.net.whatRefersTo(*point(town).mlRouting.first()); },
     [](Town &town, Cascade cascade) {
         return town.net.removeRoute(point(town), *point(town).mlRouting.first(), cascade);
     }},
    {"stop", "", [](Town &town) { return town.net.whatRefersTo(*line(town).mlStationLine.first()); },
     [](Town &town, Cascade cascade) {
         return town.net.removeStop(line(town), *line(town).mlStationLine.first(), cascade);
     }},
};

/// The ids of everything that is in a network, parts included.
QString contentOf(NetContents &net) {
    QStringList all;
    const auto add = [&all](const char *what, long id) {
        all.append(QLatin1String(what) + QLatin1Char(' ') + QString::number(id));
    };
    forEachNetKind([&](auto kind) {
        for (const auto &object : kind.list(net))
            add(kind.table, kind.idOf(*object));
    });
    for (const auto &link : net.links) {
        for (const Lane *lane : qAsConst(link->mlLane))
            add("Lane", lane->laneID);
    }
    for (const auto &connector : net.connectors) {
        for (const LaneConnector *lanes : qAsConst(connector->mlLaneConnector))
            add("LaneConnector", lanes->laneConnId);
    }
    for (const auto &group : net.traffic.signalGroups) {
        for (const SignalPhase *phase : qAsConst(group->mlPhase))
            add("SignalPhase", phase->signalPhaseID);
    }
    for (const auto &point : net.traffic.decisionPoints) {
        for (const Routing *route : qAsConst(point->mlRouting))
            add("Routing", route->routingID);
    }
    for (const auto &line : net.traffic.busLines) {
        for (const BusStationLine *stop : qAsConst(line->mlStationLine))
            add("BusStationLine", stop->stationLineID);
    }
    for (const RouteLanes &pair : net.traffic.routeLanes)
        add("RoutingLaneConnector", pair.routingID);
    return all.join(QStringLiteral(", "));
}

QStringList entriesOf(const QString &list) {
    return list.isEmpty() ? QStringList() : list.split(QStringLiteral(", "));
}

TEST(NetContents, WhatRefersToAnObjectGoesWithItOrKeepsIt) {
    for (const Removal &removal : kRemovals) {
        Town town;
        const QString before = contentOf(town.net);
        EXPECT_EQ(tersely(removal.ask(town)).toStdString(), removal.reached) << removal.what;
        const QStringList reached = entriesOf(QLatin1String(removal.reached));
        const bool isFree = reached.filter(QStringLiteral("goes")).isEmpty() &&
                            reached.filter(QStringLiteral("loses")).isEmpty();
        if (!isFree) {
            EXPECT_FALSE(removal.remove(town, Cascade::Refuse)) << removal.what;
            EXPECT_EQ(contentOf(town.net), before) << removal.what;
            EXPECT_TRUE(town.net.changes.isEmpty()) << removal.what;
        }
        ASSERT_TRUE(removal.remove(town, isFree ? Cascade::Refuse : Cascade::Take)) << removal.what;
        QStringList left = entriesOf(before);
        for (const QString &entry : reached) {
            const bool stays = entry.endsWith(QStringLiteral("loses"));
            EXPECT_TRUE(stays || left.removeOne(entry.section(QLatin1Char(' '), 0, 1))) << qPrintable(entry);
        }
        const QStringList now = entriesOf(contentOf(town.net));
        ASSERT_EQ(now.size(), left.size() - 1) << removal.what << " itself";
        for (const QString &entry : now)
            EXPECT_TRUE(left.removeOne(entry)) << qPrintable(entry);
        EXPECT_FALSE(town.net.changes.isEmpty()) << removal.what;
    }
}

TEST(NetContents, WhatStaysLosesItsReferences) {
    Town town;
    NetContents &net = town.net;
    const auto lampOf = [&net](long id) { return net.find<SignalLamp>(id); };
    const QList<NetObject> users = net.whatRefersTo(town.lane(51));
    EXPECT_EQ(users.last().text.toStdString(), "lanes 51 and 61 of route 14 on connector 8: a lane goes");
    EXPECT_EQ(users.at(2).text.toStdString(), "signal lamp 10 \"north\": stands on a lane that goes");
    EXPECT_EQ(users.at(2).object, lampOf(10));

    town.lane(51).mlGuideArrow = {net.find<GuideArrow>(1)};
    town.lane(52).mlGuideArrow = {net.find<GuideArrow>(2)};
    ASSERT_TRUE(net.remove(*net.find<GuideArrow>(2), Cascade::Refuse));
    EXPECT_TRUE(town.lane(52).mlGuideArrow.isEmpty()) << "no lane may point to an arrow that is gone";
    ASSERT_TRUE(net.removeLane(town.link(6), town.lane(62), Cascade::Take));
    EXPECT_EQ(lampOf(10)->toLaneID, 0);
    ASSERT_TRUE(net.remove(*net.find<VehicleComposition>(103), Cascade::Take));
    EXPECT_EQ(net.traffic.departurePoints[0]->mlInterval.first().vehiCons.vehicleConsCode, 0);
    EXPECT_EQ(net.traffic.departurePoints[0]->mlInterval.first().vehiCons.mlDetail.size(), 0);
    ASSERT_TRUE(net.remove(*net.find<VehicleType>(102), Cascade::Take));
    EXPECT_EQ(net.find<Connector>(9)->mlLimitVehicle, QList<long>({101}));
    EXPECT_TRUE(town.lane(72).mlLimitVehicle.isEmpty());
    EXPECT_TRUE(net.traffic.speedAreas[0]->mlSpeedVehiType.isEmpty());
    ASSERT_TRUE(net.removeRoute(point(town), *point(town).mlRouting.first(), Cascade::Take));
    ASSERT_EQ(point(town).mlFlowByInterval.first()->mlFlowRatio.size(), 1);
    EXPECT_EQ(point(town).mlFlowByInterval.first()->mlFlowRatio.first()->routingID, 15);

    town.link(7).mpStartNode->mpVertex = town.link(5).mlVertex.last();
    ASSERT_TRUE(net.remove(town.link(5), Cascade::Take));
    EXPECT_EQ(town.link(7).mpStartNode->mpVertex, town.link(7).mlVertex.first());
}

/// Lanes in the middle go without a gap in the serial numbers.
TEST(NetContents, LanesBeyondOneThatGoesMoveUp) {
    Town town;
    Link &link = town.link(7);
    ASSERT_EQ(link.laneNumber, 2);
    Lane *upper = &town.lane(72);
    ASSERT_TRUE(town.net.removeLane(link, town.lane(71), Cascade::Take));
    EXPECT_EQ(link.mlLane, QList<Lane *>({upper}));
    EXPECT_EQ(upper->serialNumber, 1);
    EXPECT_EQ(link.laneNumber, 1);
    EXPECT_FALSE(town.net.removeLane(town.link(6), *upper, Cascade::Take)) << "another link's";
    EXPECT_EQ(upper->laneID, 72);
}

/// The number of a road is a link's or a connector's; where both have it, the object tells.
TEST(NetContents, ARoadOfANumberThatLinksAndConnectorsShareIsTheOneThatIsMeant) {
    Town town;
    town.net.connectors.push_back(sampleConnector(7, &town.link(5), &town.link(6)));
    VehicleDrivInfoCollector &collector = *town.net.traffic.collectors[0];
    collector.toLaneNumber = 1; // on a connector
    ReduceSpeedArea &area = *town.net.traffic.speedAreas[0];
    area.roadID = 7; // on a link
    AccidentZone &zone = *town.net.traffic.accidentZones[0];
    zone.roadId = 7;
    zone.roadType = QStringLiteral("connector");
    const QString ofLink = tersely(town.net.whatRefersTo(town.link(7)));
    EXPECT_TRUE(ofLink.contains(QStringLiteral("ReduceSpeedArea 26")));
    EXPECT_FALSE(ofLink.contains(QStringLiteral("VehicleDrivInfoCollecter")));
    EXPECT_FALSE(ofLink.contains(QStringLiteral("AccidentZone")));
    EXPECT_EQ(
        tersely(town.net.whatRefersTo(*town.net.find<Connector>(7))).toStdString(),
        "LaneConnector 70 part, LaneConnector 71 part, VehicleDrivInfoCollecter 21 goes, AccidentZone 27 "
        "goes");
}

TEST(NetContents, ObjectsAreFoundByIdAndByName) {
    NetContents net;
    const auto addNamed = [&net](long id, const char *name) -> Link & {
        auto link = std::make_unique<Link>();
        link->linkID = id;
        link->linkName = QLatin1String(name);
        return net.add(std::move(link));
    };
    addNamed(30, "High Street");
    Link &unnamed = addNamed(0, "High Street");
    addNamed(10, "Low Street");
    addNamed(20, "High Street");
    addNamed(-5, "Low Street");
    QList<long> ids;
    for (const auto &link : net.links)
        ids.append(link->linkID);
    EXPECT_EQ(ids, QList<long>({-5, 10, 20, 30, 0}));
    for (const long id : {-5L, 10L, 20L, 30L}) {
        ASSERT_NE(net.find<Link>(id), nullptr) << id;
        EXPECT_EQ(net.find<Link>(id)->linkID, id);
    }
    EXPECT_EQ(net.find<Link>(0), nullptr) << "an object without an id is not found by it";
    EXPECT_EQ(net.find<Link>(15), nullptr);
    EXPECT_EQ(net.findByName<Link>(QStringLiteral("High Street"))->linkID, 20);
    EXPECT_EQ(net.findByName<Link>(QStringLiteral("low street")), nullptr);
    unnamed.linkName = QStringLiteral("Lane");
    EXPECT_EQ(std::as_const(net).findByName<Link>(QStringLiteral("Lane")), &unnamed);
    // A host that fills the list by itself need not sort it, and may leave a hole.
    std::swap(net.links.front(), net.links[3]);
    net.links[1].reset();
    EXPECT_EQ(net.find<Link>(30), net.links.front().get());
    EXPECT_EQ(net.find<Link>(-5), net.links[3].get());
    EXPECT_EQ(net.find<Link>(10), nullptr);
    EXPECT_TRUE(net.remove(*net.find<Link>(20), Cascade::Refuse));
}

TEST(NetContents, ChangesAreWhatWasNamedAndIsStillThere) {
    Town town;
    NetContents &net = town.net;
    EXPECT_TRUE(net.changes.isEmpty());
    Link &high = town.link(7);
    net.edit(high).limitSpeed = 30;
    net.edit(town.link(5));
    net.edit(high);
    EXPECT_EQ(net.changes.changed<Link>(), QList<Link *>({&high, &town.link(5)}));
    EXPECT_TRUE(net.changes.changed<Connector>().isEmpty());

    // What goes leaves the changes, by whatever way, and is not looked at.
    auto fresh = std::make_unique<Link>();
    fresh->linkID = 99;
    Link &added = net.add(std::move(fresh));
    EXPECT_EQ(net.changes.changed<Link>().last(), &added);
    ASSERT_TRUE(net.remove(added, Cascade::Refuse));
    net.edit(*net.traffic.collectors[0]);
    net.traffic.collectors.clear();
    EXPECT_TRUE(net.changes.changed<VehicleDrivInfoCollector>().isEmpty());
    auto movedOut = std::move(net.links.front());
    net.links.erase(net.links.begin());
    EXPECT_EQ(net.changes.changed<Link>(), QList<Link *>({&high}));
    EXPECT_TRUE(net.changes.removed().isEmpty()) << "what the store never had leaves no mark";
    net.links.insert(net.links.begin(), std::move(movedOut));

    // A removal names what it took and marks what it changed.
    net.changes.clear();
    EXPECT_TRUE(net.changes.isEmpty());
    ASSERT_TRUE(net.removePhase(group(town), *group(town).mlPhase.first(), Cascade::Take));
    ASSERT_TRUE(net.remove(*net.find<BusStation>(23), Cascade::Take));
    EXPECT_EQ(net.changes.changed<SignalGroup>(), QList<SignalGroup *>({&group(town)}));
    EXPECT_EQ(net.changes.changed<BusLine>(), QList<BusLine *>({&line(town)}));
    EXPECT_EQ(net.changes.removed(),
              QList<RemovedObject>({{QStringLiteral("SignalLamp"), 10}, {QStringLiteral("BusStation"), 23}}));

    net.setStored();
    net.changes.markAll();
    EXPECT_EQ(net.changes.changed<Link>().size(), 3);
    EXPECT_FALSE(net.changes.isEmpty());
    net.setStored();
    EXPECT_TRUE(net.changes.isEmpty());
    EXPECT_EQ(net.stored.routeLanes.size(), 3);
}

TEST(NetContents, AnObjectIsHandedOverWhenNothingRefersToIt) {
    Town town;
    NetContents &net = town.net;
    EXPECT_EQ(net.take(town.link(7)), nullptr);
    ASSERT_TRUE(net.remove(*net.find<Connector>(9), Cascade::Take));
    EXPECT_EQ(net.take(town.link(7)), nullptr) << "a lamp leads to one of its lanes";
    net.changes.clear();
    Connector &connector = *net.find<Connector>(8);
    EXPECT_EQ(net.take(connector), nullptr);
    net.traffic.routeLanes.clear();
    net.traffic.queueCounters.clear();
    net.traffic.roadWorkZones.clear();
    const std::unique_ptr<Connector> taken = net.take(connector);
    ASSERT_EQ(taken.get(), &connector);
    EXPECT_EQ(taken->mlLaneConnector.size(), 2);
    EXPECT_TRUE(net.connectors.empty());
    EXPECT_EQ(net.changes.removed(), QList<RemovedObject>({{QStringLiteral("Connector"), 8}}));
    EXPECT_EQ(net.take(*taken), nullptr) << "it is not here any more";
    EXPECT_FALSE(net.remove(*taken, Cascade::Take));

    // It comes back, or another one under its id does: the store has the row already.
    Connector &back = net.add(taken->clone());
    EXPECT_TRUE(net.changes.removed().isEmpty());
    EXPECT_EQ(net.changes.changed<Connector>(), QList<Connector *>({&back}));
    ASSERT_TRUE(net.remove(back, Cascade::Refuse));
    EXPECT_EQ(net.changes.removed(), QList<RemovedObject>({{QStringLiteral("Connector"), 8}}));
}

TEST(NetContents, ChangesMoveWithTheNetwork) {
    Town town;
    town.net.edit(town.link(6));
    ASSERT_TRUE(town.net.remove(*town.net.find<AccidentZone>(27), Cascade::Refuse));
    NetContents moved = std::move(town.net);
    ASSERT_EQ(moved.changes.changed<Link>().size(), 1);
    EXPECT_EQ(moved.changes.changed<Link>().first()->linkID, 6);
    EXPECT_EQ(moved.changes.removed().size(), 1);
    NetContents other;
    other = std::move(moved);
    EXPECT_EQ(other.changes.changed<Link>(), QList<Link *>({other.find<Link>(6)}));
    ASSERT_TRUE(other.remove(*other.find<Link>(6), Cascade::Take));
    EXPECT_EQ(other.find<Link>(6), nullptr);
}

} // namespace
