#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QFile>

namespace {

using Report = std::vector<std::string>;

Report reportOf(const NetContents &contents) {
    Report report;
    for (const SkippedRows &rows : contents.skipped) {
        QStringList ids;
        for (const long id : rows.ids)
            ids.append(QString::number(id));
        report.push_back(QStringLiteral("%1 %2 %3")
                             .arg(rows.table, ids.join(QLatin1Char(',')), rows.reason)
                             .toStdString());
    }
    return report;
}

class WholeNetTest : public StoreKindFixture {
protected:
    void prepare() override {
        DBTools::initDictionary(gDB, kNet, true);
        mLinks = {12, 3, 7};
        std::vector<std::unique_ptr<Link>> links;
        for (const long id : mLinks) {
            links.push_back(sampleLink(id));
            ASSERT_TRUE(DBTools::insertLink(gDB, kNet, links.back().get(), true));
        }
        for (const long id : {5L, 4L}) {
            const auto connector = sampleConnector(id, links[0].get(), links[std::size_t(id - 3)].get());
            ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, connector.get(), true));
        }
        GuideArrow arrow{1, 71, 3.5, 20.25, 4};
        ASSERT_TRUE(DBTools::insertGuideArrow(gDB, kNet, &arrow, true));
        reopen();
    }

    QList<long> mLinks;
};

TEST_P(WholeNetTest, SingleReadsAnswerFromWhatALoadEntered) {
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(reportOf(contents), Report());
    EXPECT_EQ(glLinkType.size(), 10);
    EXPECT_EQ(DBTools::selectLinkByID(gDB, kNet, 7), contents.links.at(1).get());
    EXPECT_EQ(gNet.getLaneById(72), contents.links.at(1)->mlLane.last());
    const std::unique_ptr<Connector> again(DBTools::selectConnectorByID(gDB, kNet, 4));
    EXPECT_EQ(again->mpStartLink, contents.links.at(2).get());
}

/// Stores whose engine does not keep the damage out.
class DamagedNetTest : public WholeNetTest {};

TEST_P(DamagedNetTest, WhatADamagedNetworkLacksIsReported) {
    execute(QStringLiteral("delete from Node where nodeID = 31"));
    execute(QStringLiteral("delete from Vertex where vertexID = 72"));
    execute(QStringLiteral("delete from Lane where laneID = 122"));
    execute(QStringLiteral("delete from Link where linkID = 3"));
    execute(QStringLiteral("update Lane set width = 'wide', linkID = 99 where laneID = 71"));
    addRow("LinkVertex", "linkID, vertexID, num", "7, 71, 9");
    execute(QStringLiteral(
        "update Link set centerLinePointsJson = '{\"data\":[', length = 'far' where linkID = 7"));
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(reportOf(contents),
              Report({"Link 7 holds JSON that does not parse and reads as empty",
                      "Link 7 holds no finite number where one belongs and reads as 0 or infinite",
                      "LinkVertex 3,3,3 belongs to no link", "LinkVertex 7 names a vertex that is missing",
                      "Vertex 31,32,33 belongs to no link", "Node 32 belongs to no link",
                      "Lane 31,32,71 belongs to no link", "GuideArrow 1 belongs to no lane",
                      "Connector 4 names a link that is missing", "LaneConnector 4,4 belongs to no connector",
                      "LaneConnector 5,5 names a lane that is missing"}));
}

TEST_P(DamagedNetTest, WhatLoadsIsReportedWhereItIsLeftOutAndSavesAgain) {
    addRow("VehicleDetector",
           "vehicleDetectorId, signalGroupID, name, phaseNumber, roadId, roadType, laneNumber, length, "
           "distToTerminal, type, maxGreen",
           "5, 1, 'd', 1, 7, 'L', 1, 2.5, 3.5, 't', 9");
    addRow("DetectorVehiType", "vehicleDetectorId, vehicleTypeCode", "5, 901");
    addRow("DetectorVehiType", "vehicleDetectorId, vehicleTypeCode", "5, 902");
    execute(QStringLiteral("delete from Node where nodeID = 122"));
    // Links 3 and 7 share a node and a vertex.
    execute(QStringLiteral("update Link set StartNodeID = 31 where linkID = 7"));
    execute(QStringLiteral("update LinkVertex set vertexID = 31 where linkID = 7 and num = 1"));
    addRow(
        "BusLine",
        "busLineID, name, dischargeFreq, dischargeStartTime, dischargeEndTime, startX, startY, endX, endY, "
        "desirSpeed, speedSD, passCountAtStartTime",
        "1, 'b', 1, 2, 3, 4, 5, 6, 7, 8, 9, 10");
    addRow("BusLineRoad", "busLineID, serialNumber, roadID", "1, 1, 7");
    addRow("BusStation", "busStationID, linkID, name, laneNumber, x, y, length, type",
           "2, 12, 's', 1, 2, 3, 4, 't'");
    const QString stop = QStringLiteral(
        "stationLineID, busStationID, busLineID, parkingTime, getOnTimePerson, getOutTimePerson, leavingPercent");
    addRow("BusStationLine", stop, "11, 2, 1, 1, 2, 3, 4");
    addRow("BusStationLine", stop, "12, 8, 1, 1, 2, 3, 4");
    addRow("BusStationLine", stop, "13, 2, 9, 1, 2, 3, 4");
    addRow("DecisionPoint", "deciPointID, linkID, deciPointName, X, Y, Z", "1, 7, 'p', 1, 2, 3");
    // An arrow and a lamp on a lane of no link.
    addRow("Lane", "laneID, linkID, serialNumber, width, actionType, expectTravelDirection",
           "991, 99, 1, 3.5, 'a', 'e'");
    addRow("GuideArrow", "guideArrowID, laneID, length, distToTerminal, arrowType", "9, 991, 1, 2, 3");
    addRow("SignalGroup", "signalGroupID, name, timeLength, startTime, endTime", "1, 'g', 1, 2, 3");
    addRow("SignalPhase", "signalPhaseID, signalGroupID, serialNumber, name", "1, 1, 1, 'p'");
    addRow("SignalLamp", "signalLampID, signalPhaseID, laneID, toLaneID, name, x, y, z",
           "9, 1, 991, 0, 'l', 1, 2, 3");
    addRow("Routing", "routingID, deciPointID, routingName, proportion", "1, 1, 'r', 1");
    addRow("RoutingLaneConnector", "routingID, connID, laneID1, laneID2", "1, 99, 31, 71");
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(
        reportOf(contents),
        Report({"Vertex 71 belongs to no link", "Link 12 names a node that is missing",
                "Node 71 belongs to no link", "Lane 991 belongs to no link",
                "GuideArrow 9 belongs to no lane", "SignalLamp 9 stands on a lane that is missing",
                "RoutingLaneConnector 1 names a connector that is missing",
                "DetectorVehiType 5,5 names a vehicle type that is missing and reads as the default one",
                "BusStationLine 11 stands off the route of its line",
                "BusStationLine 12 names a station that is missing",
                "BusStationLine 13 belongs to no bus line"}));
    EXPECT_EQ(contents.traffic.vehicleDetectors.front()->mlVehiTypeCode, QList<long>({1, 1}));

    openNewStore();
    DBTools::initDictionary(gDB, kNet, true);
    clearFailures();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeCode from DetectorVehiType")),
              QStringList(QStringLiteral("1")));
    EXPECT_EQ(count(QStringLiteral("Node")), 5);
    EXPECT_EQ(count(QStringLiteral("Vertex")), 8);
}

TEST_P(DamagedNetTest, RowsThatCannotBeReadAreNotTakenForTheEnd) {
    execute(
        QStringLiteral("with recursive n(i) as (select 1000 union all select i + 1 from n where i < 3000) "
                       "insert into GuideArrow(%1guideArrowID, laneID, distToTerminal, length, arrowType) "
                       "select %2i, 71, 3.5, 20.25, 4 from n")
            .arg(hasSeveralNets() ? QStringLiteral("NetId, ") : QString(),
                 hasSeveralNets() ? QStringLiteral("1, ") : QString()));
    const int pageSize = rows(QStringLiteral("pragma page_size")).first().toInt();
    const QStringList pages =
        rows(QStringLiteral("select max(pageno) from dbstat where pagetype = 'leaf' and name in "
                            "(select name from sqlite_master where tbl_name = 'GuideArrow') group by name"));
    gDB.close();
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    for (const QString &page : pages) {
        ASSERT_TRUE(file.seek(qint64(page.toInt() - 1) * pageSize));
        file.write(QByteArray(pageSize, '\0'));
    }
    file.close();
    reopen();
    QList<long> ids;
    EXPECT_FALSE(DBTools::selectGuideArrowIDs(gDB, kNet, ids));
    EXPECT_GT(ids.size(), 0);
    EXPECT_EQ(failureCount(), 1);
    clearFailures();
    NetContents contents;
    EXPECT_FALSE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_TRUE(contents.links.empty());
    EXPECT_EQ(failureCount(), 1);
}

TEST_P(WholeNetTest, ACancelledLoadLeavesNothing) {
    NetContents contents;
    QStringList tables;
    EXPECT_FALSE(DBTools::loadNet(gDB, kNet, contents, [&tables](const NetStep &step) {
        tables.append(QLatin1String(step.table));
        return tables.last() != QLatin1String("Lane");
    }));
    EXPECT_EQ(tables.last(), QStringLiteral("Lane"));
    EXPECT_TRUE(contents.links.empty());
    EXPECT_TRUE(gNet.lLink().isEmpty());
    EXPECT_EQ(failureCount(), 0);
    EXPECT_TRUE(DBTools::loadNet(gDB, kNet, contents));
}

TEST_P(WholeNetTest, MixesWithSingleOperations) {
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    openNewStore();
    DBTools::initDictionary(gDB, kNet, true);
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    // A network that is there is not mixed with another.
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, contents, true));
    EXPECT_EQ(failureCount(), 1);
    clearFailures();
    // What is drawn next is free of what the save wrote, and refers to it.
    std::unique_ptr<Link> link = sampleLink(20);
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), link->linkID));
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    const auto connector = sampleConnector(6, contents.links.back().get(), link.get());
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Connector"), connector->connID));
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, connector.get(), true));
    EXPECT_EQ(failureCount(), 0);
    contents = NetContents();
    reopen();
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(contents.links.size(), 4U);
    EXPECT_EQ(contents.connectors.size(), 3U);
    EXPECT_EQ(contents.connectors.back()->mpEndLink, gNet.getLinkById(link->linkID));

    // A whole load makes all objects anew, and they take over gNet's tables from those that single reads
    // gave.
    reopen();
    std::unique_ptr<Link> held(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_NE(held, nullptr);
    NetContents again;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, again));
    held.reset();
    contents = NetContents();
    EXPECT_EQ(gNet.getLinkById(7), again.links.at(1).get());
}

TEST_P(WholeNetTest, ASaveGivesMissingIdsAndTakesThemBackWhenItFails) {
    openNewStore();
    NetContents contents;
    contents.links.push_back(sampleLink(5));
    contents.links.push_back(sampleLink(6));
    contents.connectors.push_back(sampleConnector(8, contents.links[0].get(), contents.links[1].get()));
    Link &link = *contents.links[1];
    link.linkID = 0;
    link.mlLane.first()->laneID = 0;
    link.mpEndNode->nodeID = 0;
    link.mlVertex.last()->vertexID = 0;
    contents.connectors.front()->connID = 0;
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, contents, true, [](const NetStep &step) {
        return qstrcmp(step.table, "LaneConnector") != 0;
    }));
    for (const char *table : {"Vertex", "Node", "Link", "Lane", "LinkVertex", "Connector", "LaneConnector"})
        EXPECT_EQ(count(QLatin1String(table)), 0) << table;
    EXPECT_EQ(link.linkID, 0);
    EXPECT_EQ(failureCount(), 0);

    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    EXPECT_GT(link.linkID, 5);
    EXPECT_GT(link.mlLane.first()->laneID, 62);
    EXPECT_EQ(link.mlLane.first()->linkID, link.linkID);
    EXPECT_GT(contents.connectors.front()->connID, 0);
    // Identifiers drawn later are others.
    long id = 0;
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
    EXPECT_GT(id, link.linkID);
    const long saved = link.linkID;
    contents = NetContents();
    QList<long> ids;
    EXPECT_TRUE(DBTools::selectLinkIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({5, saved}));
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents));
    EXPECT_EQ(contents.connectors.front()->mpEndLink, contents.links[1].get());
}

INSTANTIATE_TEST_SUITE_P(Stores, DamagedNetTest, testing::ValuesIn(kFileKinds), storeKindName);
INSTANTIATE_TEST_SUITE_P(Stores, WholeNetTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
