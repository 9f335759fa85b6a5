#include "model/Net.h"
#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QJsonArray>

namespace {

class LinksTest : public StoreKindFixture {};

void expectEqualLanes(const Lane &written, const Lane &read) {
    EXPECT_EQ(written.laneID, read.laneID);
    EXPECT_EQ(written.linkID, read.linkID);
    EXPECT_EQ(written.serialNumber, read.serialNumber);
    EXPECT_EQ(written.width, read.width);
    EXPECT_EQ(written.expectTravelDirection, read.expectTravelDirection);
    EXPECT_EQ(written.actionType, read.actionType);
    EXPECT_EQ(written.centerLinePointsJson, read.centerLinePointsJson);
    EXPECT_EQ(written.leftBreakPointsJson, read.leftBreakPointsJson);
    EXPECT_EQ(written.rightBreakPointsJson, read.rightBreakPointsJson);
}

void expectEqualLinks(const Link &written, const Link &read) {
    EXPECT_EQ(written.linkID, read.linkID);
    EXPECT_EQ(written.roadId, read.roadId);
    EXPECT_EQ(written.linkName, read.linkName);
    EXPECT_EQ(written.laneNumber, read.laneNumber);
    EXPECT_EQ(written.laneWidth, read.laneWidth);
    EXPECT_EQ(written.laneColor, read.laneColor);
    EXPECT_EQ(written.linkType, read.linkType);
    EXPECT_EQ(written.length, read.length);
    EXPECT_EQ(written.curvature, read.curvature);
    EXPECT_EQ(written.nonLinearCoefficient, read.nonLinearCoefficient);
    EXPECT_EQ(written.linkSaturationFlow, read.linkSaturationFlow);
    EXPECT_EQ(written.linkTrafficFlow, read.linkTrafficFlow);
    EXPECT_EQ(written.desiredSpeed, read.desiredSpeed);
    EXPECT_EQ(written.limitSpeed, read.limitSpeed);
    EXPECT_EQ(written.minSpeed, read.minSpeed);
    EXPECT_EQ(written.addValue, read.addValue);
    EXPECT_EQ(written.centerLinePointsJson, read.centerLinePointsJson);
    EXPECT_EQ(written.otherAttrsJson, read.otherAttrsJson);
    EXPECT_EQ(written.mlLane.last()->leftBreakPointsJson, read.leftBreakPointsJson);
    EXPECT_EQ(written.mlLane.first()->rightBreakPointsJson, read.rightBreakPointsJson);
    ASSERT_EQ(written.mlVertex.size(), read.mlVertex.size());
    const QJsonArray center = written.centerLinePointsJson.value(QStringLiteral("data")).toArray();
    for (int i = 0; i < read.mlVertex.size(); ++i) {
        EXPECT_EQ(written.mlVertex.at(i)->vertexID, read.mlVertex.at(i)->vertexID);
        EXPECT_EQ(written.mlVertex.at(i)->x, read.mlVertex.at(i)->x);
        EXPECT_EQ(written.mlVertex.at(i)->y, read.mlVertex.at(i)->y);
        // The centre line has a point per vertex, so the heights are its.
        EXPECT_EQ(center.at(i).toObject().value(QStringLiteral("z")).toDouble(), read.mlVertex.at(i)->z);
    }
    ASSERT_EQ(written.mlLane.size(), read.mlLane.size());
    for (int i = 0; i < read.mlLane.size(); ++i)
        expectEqualLanes(*written.mlLane.at(i), *read.mlLane.at(i));
}

TEST_P(LinksTest, ComesBackAsWritten) {
    const auto link = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(failureCount(), 0);
    reopen();

    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    expectEqualLinks(*link, *read);
    ASSERT_TRUE(read->mpStartNode && read->mpEndNode);
    EXPECT_EQ(read->mpStartNode->nodeName, QStringLiteral("north"));
    EXPECT_EQ(read->mpStartNode->mpVertex, read->mlVertex.first());
    // A node without a name takes its id as name, on the object that was written too.
    EXPECT_EQ(read->mpEndNode->nodeName, QStringLiteral("72"));
    EXPECT_EQ(link->mpEndNode->nodeName, QStringLiteral("72"));
    EXPECT_EQ(read->mpEndNode->mpVertex, read->mlVertex.last());
    EXPECT_EQ(rows(QStringLiteral("select num from LinkVertex order by num")), QStringList({"1", "2", "3"}));
}

TEST_P(LinksTest, JsonThatWasNotChangedIsWrittenBackByteForByte) {
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(7).get(), true));
    execute(
        QStringLiteral("update Link set otherAttrsJson = '{\"a\":', centerLinePointsJson = '{ \"n\":1.0 }'"));
    execute(QStringLiteral("update Lane set centerLinePointsJson = 'no JSON', leftBreakPointsJson = ' {}'"));
    reopen();
    const QString texts = QStringLiteral(
        "select Link.otherAttrsJson, Link.centerLinePointsJson, Link.leftBreakPointsJson, "
        "Lane.centerLinePointsJson, Lane.rightBreakPointsJson from Link, Lane order by LaneID");
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->otherAttrsJson.isEmpty());
    EXPECT_EQ(read->centerLinePointsJson.value("n"), 1);
    execute(QStringLiteral("update Link set leftBreakPointsJson = ' {}'"));
    const QStringList before = rows(texts);
    for (const char *table : {"Lane", "LinkVertex", "Link", "Node", "Vertex"})
        execute(QStringLiteral("delete from %1").arg(table));
    EXPECT_TRUE(DBTools::insertLink(gDB, kNet, read.get(), true));
    EXPECT_EQ(rows(texts), before);
}

TEST_P(LinksTest, GNetAnswersTheSecondReadUntilTheLinkIsGone) {
    const auto written = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, written.get(), true));
    std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    EXPECT_EQ(DBTools::selectLinkByID(gDB, kNet, 7), read.get());
    EXPECT_EQ(gNet.getLaneById(72), read->mlLane.last());
    read.reset();
    EXPECT_EQ(gNet.getLinkById(7), nullptr);
    EXPECT_EQ(gNet.getLaneById(72), nullptr);
    read.reset(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    EXPECT_EQ(DBTools::selectLinkByID(gDB, kNet, 8), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(LinksTest, FillsWhatIsLeftOut) {
    const auto link = sampleLink(5);
    link->roadId = 0;
    link->linkName = QString();
    link->mlLane.first()->expectTravelDirection.clear();
    // The order of the list does not decide which lane is the first.
    std::swap(link->mlLane[0], link->mlLane[1]);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(link->roadId, 5);
    reopen();

    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 5));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->roadId, 5);
    EXPECT_EQ(read->linkName, QString());
    EXPECT_EQ(read->mlLane.first()->serialNumber, 1);
    EXPECT_EQ(read->mlLane.first()->expectTravelDirection, QStringLiteral("FreeRunning"));
    EXPECT_EQ(read->leftBreakPointsJson, link->mlLane.first()->leftBreakPointsJson);
    EXPECT_EQ(read->rightBreakPointsJson, link->mlLane.last()->rightBreakPointsJson);
}

TEST_P(LinksTest, AFailedRowDoesNotStopTheOthers) {
    const auto first = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, first.get(), true));
    // The second link takes a vertex id and the link id of the first: two refused rows, the rest is written,
    // but for the geometry of a link that failed.
    const auto second = sampleLink(8);
    second->linkID = 7;
    second->mlVertex.first()->vertexID = 71;
    second->mlVertex.last()->vertexID = 90;
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, second.get(), true));
    ASSERT_GE(failures().size(), 2);
    EXPECT_TRUE(failures().first().sql.startsWith(QStringLiteral("insert into Vertex(")));
    EXPECT_TRUE(failures().at(1).sql.startsWith(QStringLiteral("insert into Link(")));
    EXPECT_EQ(count(QStringLiteral("Vertex")), 5);
    EXPECT_EQ(count(QStringLiteral("Lane")), 4);
    EXPECT_EQ(count(QStringLiteral("Link")), 1);
    clearFailures();

    QList<Link *> list = {second.get(), first.get()};
    EXPECT_FALSE(DBTools::insertLinks(gDB, kNet, list, false));
    const int afterFirstOfList = failures().size();
    // The list ends with the link that fails: the one after it is not tried.
    EXPECT_EQ(rows(QStringLiteral("select linkName from Link")), QStringList({first->linkName}));
    EXPECT_LT(afterFirstOfList, 12);
}

TEST_P(LinksTest, ListsIdsAfterWhatTheListHolds) {
    const auto a = sampleLink(12);
    const auto b = sampleLink(3);
    QList<Link *> list = {a.get(), b.get()};
    ASSERT_TRUE(DBTools::insertLinks(gDB, kNet, list, true));
    QList<long> ids = {99};
    EXPECT_TRUE(DBTools::selectLinkIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({99, 3, 12}));
    EXPECT_TRUE(DBTools::checkLinkVertex(gDB, 12, 121));
    EXPECT_FALSE(DBTools::checkLinkVertex(gDB, 12, 31));
    EXPECT_TRUE(DBTools::checkNodeVertex(gDB, 121, 121));
}

TEST_P(LinksTest, TheCallersTransactionStaysTheCallers) {
    const auto link = sampleLink(7);
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), false));
    ASSERT_TRUE(gDB.rollback());
    EXPECT_EQ(count(QStringLiteral("Link")), 0);

    // Asking for a transaction inside one is refused without touching the caller's.
    ASSERT_TRUE(gDB.transaction());
    execute(QStringLiteral("update DbVersion set appVersion = 'mine'"));
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(failures().size(), 1);
    EXPECT_EQ(count(QStringLiteral("Vertex")), 0);
    ASSERT_TRUE(gDB.rollback());
    EXPECT_NE(rows(QStringLiteral("select appVersion from DbVersion")), QStringList({"mine"}));
    // The driver keeps the error: nothing runs until the store is opened again.
    EXPECT_EQ(DBTools::selectLinkByID(gDB, kNet, 7), nullptr);
    reopen();
    EXPECT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
}

INSTANTIATE_TEST_SUITE_P(Stores, LinksTest, testing::ValuesIn(kStoreKinds), storeKindName);

TEST_P(LinksTest, AFullDiskEndsTheOperationWithNothingWritten) {
    if (isPostgres())
        GTEST_SKIP() << "a server ends no transaction by itself";
    const auto link = sampleLink(7);
    // SQLite ends the transaction by itself here; rows that followed would be kept one by one.
    execute(
        QStringLiteral("pragma max_page_count = %1").arg(rows(QStringLiteral("pragma page_count")).first()));
    link->otherAttrsJson = {{QStringLiteral("large"), QString(1 << 20, QLatin1Char('x'))}};
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    ASSERT_GE(failures().size(), 1);
    EXPECT_TRUE(failures().first().sql.startsWith(QStringLiteral("update Link set otherAttrsJson")));
    for (const char *table : {"Vertex", "Node", "Link", "Lane", "LinkVertex"})
        EXPECT_EQ(count(QLatin1String(table)), 0) << table;
}

class OneNetLinksTest : public StoreFixture {};

TEST_F(OneNetLinksTest, KeepsRestrictionsAndLaneAttributes) {
    openTemplate("EmptyNet_V3.0.0");
    const auto link = sampleLink(7);
    link->mlLane.last()->mlLimitVehicle = {{2, QStringLiteral("any")}};
    link->mlLane.last()->otherAttrsJson = {{QStringLiteral("k"), 1}};
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    reopen();
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mlLane.last()->otherAttrsJson, link->mlLane.last()->otherAttrsJson);
    ASSERT_EQ(read->mlLane.last()->mlLimitVehicle.size(), 1);
    EXPECT_EQ(read->mlLane.last()->mlLimitVehicle.first(), qMakePair(2L, QStringLiteral("Coach")));
}

TEST_F(OneNetLinksTest, VersionOneMisspellsTheSerialNumber) {
    openTemplate("EmptyNet_V3.0.0");
    execute(QStringLiteral("alter table Lane rename column SerialNumber to SerialNnumber"));
    execute(QStringLiteral("update DbVersion set versionId = 1"));
    reopen();
    EXPECT_TRUE(DBTools::hasErrorFieldName(gDB));
    const auto link = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    expectEqualLinks(*link, *read);
}

TEST_F(OneNetLinksTest, AStoreWithoutGeometryColumnsKeepsTheRest) {
    openTemplate("EmptyNet_V2.00.00");
    for (const char *table : {"Link", "Lane"})
        execute(QStringLiteral("alter table %1 rename column centerLinePointsJson to formerly").arg(table));
    const auto link = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->centerLinePointsJson.isEmpty());
    EXPECT_TRUE(read->mlLane.first()->leftBreakPointsJson.isEmpty());
    EXPECT_EQ(read->mlVertex.first()->z, 2.5);
    EXPECT_EQ(read->mlLane.last()->width, link->mlLane.last()->width);
}

class SeveralNetsLinksTest : public StoreFixture {
protected:
    void SetUp() override { openTemplate("EmptyNet_V6.0.0"); }
};

TEST_F(SeveralNetsLinksTest, LaneAttributesAreRefusedRecordedAndCounted) {
    const auto link = sampleLink(7);
    for (Lane *lane : qAsConst(link->mlLane)) {
        lane->otherAttrsJson = {{QStringLiteral("k"), 1}};
        lane->mlLimitVehicle = {{2, QString()}};
    }
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    // Once something has failed no further attributes are tried.
    ASSERT_EQ(DBTools_V6::mlCallDbResult.size(), 1);
    EXPECT_EQ(
        DBTools_V6::mlCallDbResult.first().sql,
        QStringLiteral(
            "update Lane set otherAttrsJson=:otherAttrsJson where NetId = 0% and linkID=1 and laneID=7"));
    EXPECT_TRUE(DBTools::mlCallDbResult.isEmpty());
    EXPECT_EQ(count(QStringLiteral("Lane")), 2);
    EXPECT_EQ(count(QStringLiteral("LaneLimitVehicle")), 0);
}

TEST_F(SeveralNetsLinksTest, NetworksDoNotMix) {
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("other"), {}, {}, {}, {}, false, true));
    const auto mine = sampleLink(7);
    const auto other = sampleLink(7);
    other->linkName = QStringLiteral("other");
    ASSERT_TRUE(DBTools_V6::insertLink(gDB, kNet, mine.get(), true));
    ASSERT_TRUE(DBTools_V6::insertLink(gDB, 2, other.get(), true));

    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    // gNet holds network 1: a read of network 2 neither answers from its tables nor enters into them.
    const std::unique_ptr<Link> foreign(DBTools::selectLinkByID(gDB, 2, 7));
    ASSERT_TRUE(read && foreign);
    EXPECT_EQ(foreign->linkName, QStringLiteral("other"));
    EXPECT_EQ(gNet.getLinkById(7), read.get());
    ASSERT_NE(DBTools::selectNetById(gDB, 2), nullptr);
    EXPECT_EQ(gNet.getLinkById(7), nullptr);
}

TEST(BreakPoints, AreSixDigitsWithoutHeights) {
    const QJsonArray data = {
        QJsonObject{{QStringLiteral("x"), 1.5}, {QStringLiteral("y"), 2}, {QStringLiteral("z"), 0}},
        QJsonObject{{QStringLiteral("x"), 3}, {QStringLiteral("y"), 4.25}},
        QJsonObject{{QStringLiteral("x"), 1234567.25}, {QStringLiteral("y"), -1.0 / 3}}};
    EXPECT_EQ(DBTools::breakPoints({{QStringLiteral("data"), data}}),
              QStringLiteral("1.5,2;3,4.25;1.23457e+06,-0.333333"));
    EXPECT_EQ(DBTools::breakPoints({}), QString());
}

} // namespace
