#include "tools/sumo/export/SumoExport.h"
#include "model/GeometryJson.h"
#include "model/LaneGeometry.h"
#include "model/NetContents.h"
#include "model/Words.h"
#include "store/NetIds.h"
#include "tests/support/StoreFixture.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>

using namespace moratools;

// Networks that never saw SUMO, made of the library's objects.

namespace {

using Attributes = QMap<QString, QString>;

class SumoExportOfObjects : public StoreFixture {
protected:
    void SetUp() override {
        openTemplate("EmptyNet_V6.0.0");
        ASSERT_TRUE(DBTools::initDictionary(gDB, 1, true));
        ASSERT_TRUE(DBTools::loadNet(gDB, 1, mNet));
    }

    Link &addLink(const QString &name, const QList<GeometryPoint> &line, int lanes) {
        auto link = std::make_unique<Link>();
        link->linkName = name;
        link->laneNumber = lanes;
        link->laneWidth = 3.5;
        link->linkType = Words::ArterialRoad;
        link->limitSpeed = link->desiredSpeed = 54;
        for (const GeometryPoint &point : line)
            link->mlVertex.append(new Vertex{0, point.x, point.y, point.z});
        link->mpStartNode = new Node;
        link->mpEndNode = new Node;
        link->createLanes();
        updateGeometry(*link);
        return mNet.add(std::move(link));
    }

    void connect(Link &from, Link &to, int fromLane, int toLane, SignalPhase *phase = nullptr) {
        auto connector = std::make_unique<Connector>(0, &from, &to);
        connector->limitSpeed = 80;
        auto *path = new LaneConnector(connector.get(), from.mlLane[fromLane], to.mlLane[toLane]);
        connector->mlLaneConnector.append(path);
        curve(*connector);
        if (phase) {
            auto lamp = std::make_unique<SignalLamp>();
            lamp->laneID = int(path->mpStartLane->laneID);
            lamp->toLaneID = int(path->mpEndLane->laneID);
            lamp->setPhase(phase);
            mNet.add(std::move(lamp));
        }
        mNet.add(std::move(connector));
    }

    /// Two roads that cross: from the west to the east, and from the south to the north, where one may turn left from
    /// the west, too.
    void makeCrossing() {
        mWest = &addLink(QStringLiteral("High Street"), {{-200, 0, 0}, {-15, 0, 0}}, 2);
        mEast = &addLink(QStringLiteral("High Street"), {{15, 0, 0}, {200, 0, 0}}, 2);
        mSouth = &addLink(QStringLiteral("南路"), {{0, -200, 0}, {0, -15, 0}}, 1);
        mNorth = &addLink(QString(), {{0, 15, 0}, {0, 200, 5}}, 1);
        auto group = std::make_unique<SignalGroup>();
        group->name = QStringLiteral("Market");
        group->timeLength = 60;
        group->endTime = 86400;
        for (const bool first : {true, false}) {
            auto *phase = new SignalPhase;
            phase->mlColor =
                first
                    ? QList<Online::ColorInterval>{{Words::Green, 27}, {Words::Yellow, 3}, {Words::Red, 30}}
                    : QList<Online::ColorInterval>{{Words::Red, 30}, {Words::Green, 27}, {Words::Yellow, 3}};
            group->mlPhase.append(phase);
        }
        SignalGroup &market = mNet.add(std::move(group));
        connect(*mWest, *mEast, 0, 0, market.mlPhase[0]);
        connect(*mWest, *mEast, 1, 1, market.mlPhase[0]);
        connect(*mWest, *mNorth, 1, 0, market.mlPhase[0]);
        connect(*mSouth, *mNorth, 0, 0, market.mlPhase[1]);
    }

    SumoExport exported(const ExportOptions &options = {}) {
        EXPECT_TRUE(DBTools::saveNet(gDB, 1, mNet, true));
        reopen();
        const StoreSession store = StoreSession::ofProcess(QStringLiteral("the store"));
        return exportNetwork(store, 0, outFolder(), options);
    }
    QString outFolder() const { return folder() + QStringLiteral("/out"); }

    /// The elements of that name in the one file of the exported ones that ends so.
    QList<Attributes> elements(const QString &ending, const QString &name) const {
        const bool isPlain = ending != QLatin1String(".rou.xml") && ending != QLatin1String(".add.xml");
        const QDir dir(outFolder() + (isPlain ? QStringLiteral("/plain") : QString()));
        const QStringList files = dir.entryList({QLatin1Char('*') + ending});
        EXPECT_EQ(files.size(), 1) << ending.toStdString();
        QFile file(dir.filePath(files.value(0)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QList<Attributes> found;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != name)
                continue;
            found.append(Attributes());
            for (const QXmlStreamAttribute &each : xml.attributes())
                found.last().insert(each.name().toString(), each.value().toString());
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        return found;
    }

    static QStringList values(const QList<Attributes> &elements, const char *attribute) {
        QStringList list;
        for (const Attributes &each : elements)
            list.append(each.value(QLatin1String(attribute)));
        return list;
    }

    NetContents mNet;
    Link *mWest = nullptr;
    Link *mEast = nullptr;
    Link *mSouth = nullptr;
    Link *mNorth = nullptr;
};

TEST_F(SumoExportOfObjects, LinksMeetWhereConnectorsJoinThem) {
    makeCrossing();
    ExportOptions options;
    options.plainOnly = true;
    const SumoExport done = exported(options);
    EXPECT_TRUE(done.isWhole) << done.leftOut.join(QLatin1Char('\n')).toStdString();

    const QList<Attributes> edges = elements(QStringLiteral(".edg.xml"), QStringLiteral("edge"));
    ASSERT_EQ(edges.size(), 4);
    // Names that are not unique, hold blanks, are missing or would be misread become ids all the same.
    EXPECT_EQ(values(edges, "id"),
              QStringList({QStringLiteral("High_Street_1"), QStringLiteral("High_Street_2"),
                           QStringLiteral("link3"), QStringLiteral("link4")}));
    EXPECT_EQ(edges[0].value(QStringLiteral("name")), QStringLiteral("High Street"));
    EXPECT_EQ(values(edges, "numLanes"), QStringList({"2", "2", "1", "1"}));
    EXPECT_EQ(values(edges, "speed"), QStringList({"15", "15", "15", "15"}));
    EXPECT_EQ(edges[0].value(QStringLiteral("shape")), QStringLiteral("-200,0 -15,0"));
    EXPECT_EQ(edges[3].value(QStringLiteral("shape")), QStringLiteral("0,15 0,200,5"));
    EXPECT_EQ(edges[0].value(QStringLiteral("type")), QStringLiteral("highway.primary"));

    // One junction in the middle, four at the ends.
    const QList<Attributes> nodes = elements(QStringLiteral(".nod.xml"), QStringLiteral("node"));
    ASSERT_EQ(nodes.size(), 5);
    const QString middle = edges[0].value(QStringLiteral("to"));
    EXPECT_EQ(edges[1].value(QStringLiteral("from")), middle);
    EXPECT_EQ(edges[2].value(QStringLiteral("to")), middle);
    EXPECT_EQ(edges[3].value(QStringLiteral("from")), middle);
    for (const Attributes &node : nodes) {
        if (node.value(QStringLiteral("id")) != middle)
            continue;
        EXPECT_EQ(node.value(QStringLiteral("x")), QStringLiteral("0"));
        EXPECT_EQ(node.value(QStringLiteral("type")), QStringLiteral("traffic_light"));
        EXPECT_EQ(node.value(QStringLiteral("tl")), QStringLiteral("Market"));
    }
    const QList<Attributes> lanes = elements(QStringLiteral(".edg.xml"), QStringLiteral("lane"));
    EXPECT_EQ(values(lanes, "width"), QStringList({"3.5", "3.5", "3.5", "3.5", "3.5", "3.5"}));
    EXPECT_EQ(lanes[0].value(QStringLiteral("disallow")),
              QStringLiteral("pedestrian bicycle tram rail_urban rail rail_electric rail_fast ship"));

    QFile file(outFolder() + QStringLiteral("/names.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject named =
        QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("edges")).toObject();
    EXPECT_EQ(named.value(QStringLiteral("High_Street_2")),
              QJsonObject(
                  {{QStringLiteral("number"), 2}, {QStringLiteral("name"), QStringLiteral("High Street")}}));
    EXPECT_EQ(named.value(QStringLiteral("link3")),
              QJsonObject({{QStringLiteral("number"), 3}, {QStringLiteral("name"), QStringLiteral("南路")}}));
}

TEST_F(SumoExportOfObjects, SignalsAreLettersInTheOrderOfPhases) {
    makeCrossing();
    ExportOptions options;
    options.plainOnly = true;
    exported(options);
    const QList<Attributes> phases = elements(QStringLiteral(".tll.xml"), QStringLiteral("phase"));
    EXPECT_EQ(values(phases, "duration"), QStringList({"27", "3", "27", "3"}));
    EXPECT_EQ(values(phases, "state"), QStringList({"Gr", "yr", "rG", "ry"}));
    const QList<Attributes> controlled = elements(QStringLiteral(".tll.xml"), QStringLiteral("connection"));
    EXPECT_EQ(values(controlled, "linkIndex"), QStringList({"0", "0", "0", "1"}));
    EXPECT_EQ(values(controlled, "fromLane"), QStringList({"0", "1", "1", "0"}));
}

TEST_F(SumoExportOfObjects, WhoCrossesOthersThatHaveGreenGivesWay) {
    makeCrossing();
    // One from the east, who goes straight on while those from the west may turn across.
    Link &fromEast = addLink(QStringLiteral("back"), {{200, 10, 0}, {15, 10, 0}}, 1);
    Link &toWest = addLink(QStringLiteral("on"), {{-15, 10, 0}, {-200, 10, 0}}, 1);
    SignalGroup &market = *mNet.traffic.signalGroups.front();
    for (int i = 0; i < 2; ++i) {
        auto *phase = new SignalPhase;
        phase->mlColor = market.mlPhase[0]->mlColor;
        market.mlPhase.append(phase);
    }
    connect(fromEast, toWest, 0, 0, market.mlPhase[2]);
    mNet.traffic.signalLamps[2]->setPhase(market.mlPhase[3]); // the left turn
    ExportOptions options;
    options.plainOnly = true;
    exported(options);
    EXPECT_EQ(values(elements(QStringLiteral(".tll.xml"), QStringLiteral("phase")), "state"),
              QStringList({"GrGg", "yryy", "rGrr", "ryrr"}));
}

TEST_F(SumoExportOfObjects, TrafficGoesWhereItMayAndSumoRunsIt) {
    makeCrossing();
    const NetIds ids(gDB, 1);
    ASSERT_TRUE(ids.drawEach(mNet.links));
    auto mix = std::make_unique<VehicleComposition>();
    mix->name = QStringLiteral("two kinds");
    ASSERT_TRUE(ids.draw(*mix));
    mix->mlDetail = {{mix->vehicleConsCode, 1, 75},
                     {mix->vehicleConsCode, 4, 25}}; // cars and lorries of the catalogue
    auto point = std::make_unique<DeparturePoint>();
    point->name = QStringLiteral("west");
    point->linkID = mWest->linkID;
    point->mlInterval = {{0, 600, 40, *mix}, {0, 1200, 0, *mix}, {0, 1800, 20, *mix}};
    mNet.add(std::move(point));
    mNet.add(std::move(mix));
    auto station = std::make_unique<BusStation>(mEast, 1);
    station->name = QStringLiteral("Market");
    station->x = 100;
    station->y = -2;
    station->length = 30;
    ASSERT_TRUE(ids.draw(*station));
    auto line = std::make_unique<BusLine>();
    line->name = QStringLiteral("7");
    line->dischargeStartTime = 60;
    line->dischargeEndTime = 660;
    line->dischargeFreq = 300;
    line->mlLink = {mWest, mEast};
    line->mlStationLine.append(new BusStationLine);
    line->mlStationLine.last()->busStationID = station->busStationID;
    line->mlStationLine.last()->parkingTime = 12;
    mNet.add(std::move(station));
    mNet.add(std::move(line));
    auto area = std::make_unique<ReduceSpeedArea>();
    area->name = QStringLiteral("slow");
    area->roadID = mNorth->linkID;
    area->laneNumber = 1;
    area->areaLength = 185;
    area->mlSpeedInterval.append(new ReduceSpeedInterval{0, 0, 1, 900});
    area->mlSpeedVehiType.append(new ReduceSpeedVehiType{0, 1, 36, 0});
    mNet.add(std::move(area));
    const bool hasSumo = !QStandardPaths::findExecutable(QStringLiteral("netconvert")).isEmpty();
    const SumoExport done = exported();

    // Half of those who come from the west turn left: no one says where they go.
    const QList<Attributes> flows = elements(QStringLiteral(".rou.xml"), QStringLiteral("flow"));
    ASSERT_EQ(flows.size(), 5);
    QMap<QString, QStringList> numbers;
    for (const Attributes &flow : flows) {
        const double begin = flow.value(QStringLiteral("begin")).toDouble();
        const bool isLine = flow.contains(QStringLiteral("line"));
        EXPECT_TRUE(isLine ? begin == 60 : begin < 600 || (begin >= 1200 && begin < 1800)) << begin;
        EXPECT_EQ(flow.value(QStringLiteral("type")),
                  isLine ? QStringLiteral("Bus") : QStringLiteral("two_kinds"));
        numbers[flow.value(QStringLiteral("route"))].append(flow.value(QStringLiteral("number")));
    }
    EXPECT_EQ(numbers.value(QStringLiteral("High_Street_1_to_High_Street_2")), QStringList({"20", "10"}));
    EXPECT_EQ(numbers.value(QStringLiteral("High_Street_1_to_link4")), QStringList({"20", "10"}));
    EXPECT_EQ(
        values(elements(QStringLiteral(".rou.xml"), QStringLiteral("route")), "edges"),
        QStringList({QStringLiteral("High_Street_1 High_Street_2"), QStringLiteral("High_Street_1 link4"),
                     QStringLiteral("High_Street_1 High_Street_2")}));
    const QList<Attributes> mixes = elements(QStringLiteral(".rou.xml"), QStringLiteral("vTypeDistribution"));
    ASSERT_EQ(mixes.size(), 1);
    EXPECT_EQ(mixes[0].value(QStringLiteral("vTypes")), QStringLiteral("Car Truck"));
    EXPECT_EQ(mixes[0].value(QStringLiteral("probabilities")), QStringLiteral("0.75 0.25"));
    const QList<Attributes> stops = elements(QStringLiteral(".add.xml"), QStringLiteral("busStop"));
    ASSERT_EQ(stops.size(), 1);
    EXPECT_EQ(stops[0].value(QStringLiteral("lane")), QStringLiteral("High_Street_2_0"));
    EXPECT_EQ(stops[0].value(QStringLiteral("startPos")),
              QStringLiteral("70.00")); // 85 m from the start, less 15
    EXPECT_EQ(stops[0].value(QStringLiteral("endPos")), QStringLiteral("100.00"));
    EXPECT_EQ(values(elements(QStringLiteral(".add.xml"), QStringLiteral("step")), "speed"),
              QStringList({"10", "-1"}));
    // Figures of types that vary, which SUMO's do not.
    EXPECT_EQ(done.leftOutCount, QStringLiteral("3 figures of vehicle types"));
    if (!hasSumo)
        return;
    ASSERT_TRUE(done.networkFile.startsWith(outFolder())) << done.note.toStdString();
    QProcess sumo;
    sumo.start(
        QStringLiteral("sumo"),
        {QStringLiteral("-c"),
         outFolder() + QLatin1Char('/') + QDir(outFolder()).entryList({QStringLiteral("*.sumocfg")}).value(0),
         QStringLiteral("--end"), QStringLiteral("3000"), QStringLiteral("-X"), QStringLiteral("never"),
         QStringLiteral("--no-step-log"), QStringLiteral("--duration-log.statistics")});
    ASSERT_TRUE(sumo.waitForFinished(60000));
    EXPECT_EQ(QString::fromUtf8(sumo.readAllStandardError()), QString());
    const QString out = QString::fromUtf8(sumo.readAllStandardOutput());
    EXPECT_TRUE(out.contains(QLatin1String("Inserted: 63"))) << out.toStdString(); // 60 and three buses
}

TEST_F(SumoExportOfObjects, LengthsAreThoseOfTheStore) {
    if (QStandardPaths::findExecutable(QStringLiteral("netconvert")).isEmpty())
        GTEST_SKIP() << "no SUMO";
    makeCrossing();
    mEast->length = 190.5;
    const SumoExport done = exported();
    ASSERT_FALSE(done.networkFile.isEmpty()) << done.note.toStdString();
    QFile file(done.networkFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QMap<QString, double> lengths;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("lane"))
            lengths.insert(xml.attributes().value(QLatin1String("id")).toString(),
                           xml.attributes().value(QLatin1String("length")).toDouble());
    }
    EXPECT_EQ(lengths.value(QStringLiteral("High_Street_1_1")), 185);
    EXPECT_EQ(lengths.value(QStringLiteral("High_Street_2_0")), 190.5);
    EXPECT_EQ(lengths.value(QStringLiteral("link3_0")), 185);
}

TEST_F(SumoExportOfObjects, WhatSumoHasNoWordForIsNamed) {
    makeCrossing();
    const auto addCollector = [this](const QString &name, long road, int toLane) {
        auto collector = std::make_unique<VehicleDrivInfoCollector>();
        collector->name = name;
        collector->roadID = road;
        collector->laneNumber = 1;
        collector->toLaneNumber = toLane;
        mNet.add(std::move(collector));
    };
    const NetIds ids(gDB, 1);
    ASSERT_TRUE(ids.drawEach(mNet.links) && ids.drawEach(mNet.connectors));
    addCollector(QStringLiteral("inside"), mNet.connectors.front()->connID, 1);
    addCollector(QStringLiteral("beside"), mWest->linkID, -1);
    auto detector = std::make_unique<VehicleDetector>();
    detector->name = QStringLiteral("beside"); // loops of SUMO share their ids
    ASSERT_TRUE(ids.drawEach(mNet.traffic.signalGroups));
    detector->signalGroupID = mNet.traffic.signalGroups.front()->signalGroupID;
    detector->phaseNumber = 1;
    detector->roadId = mWest->linkID;
    detector->laneNumber = 2;
    detector->distToTerminal = 20;
    mNet.add(std::move(detector));
    mNet.add(std::make_unique<SignalGroup>()).name = QStringLiteral("unused");
    mWest->mlLane[0]->mlLimitVehicle.append({4, QString()});
    const SumoExport done = exported();
    EXPECT_FALSE(done.isWhole);
    EXPECT_EQ(done.leftOutCount,
              QStringLiteral("1 signal groups, 1 restrictions of vehicle types, 1 driving-data "
                             "collectors, 1 calls of signals by vehicle detectors"));
    EXPECT_EQ(done.leftOut.filter(QStringLiteral("(inside: SUMO has no places within junctions)")).size(), 1);
    const QList<Attributes> loops = elements(QStringLiteral(".add.xml"), QStringLiteral("inductionLoop"));
    EXPECT_EQ(values(loops, "id"), QStringList({QStringLiteral("beside"), QStringLiteral("beside_1")}));
    EXPECT_EQ(values(loops, "pos"), QStringList({"0.00", "165.00"}));
}

} // namespace
