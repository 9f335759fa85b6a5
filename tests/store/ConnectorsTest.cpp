#include "model/Net.h"
#include "store/DBTools.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

namespace {

/// Two links in the store; the case writes connectors between them.
class ConnectorsTest : public StoreKindFixture {
protected:
    void prepare() override {
        mFrom = sampleLink(7);
        mTo = sampleLink(8);
        QList<Link *> links = {mFrom.get(), mTo.get()};
        ASSERT_TRUE(DBTools::insertLinks(gDB, kNet, links, true));
    }

    /// Opens the store again and reads the links.
    void reopenWithLinks() {
        reopen();
        mReadFrom.reset(DBTools::selectLinkByID(gDB, kNet, 7));
        mReadTo.reset(DBTools::selectLinkByID(gDB, kNet, 8));
    }

    std::unique_ptr<Link> mFrom, mTo, mReadFrom, mReadTo;
};

TEST_P(ConnectorsTest, ComesBackAsWritten) {
    const auto written = sampleConnector(5, mFrom.get(), mTo.get());
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, written.get(), true));
    EXPECT_EQ(failureCount(), 0);
    reopen();
    EXPECT_EQ(DBTools::selectConnectorByID(gDB, kNet, 5), nullptr) << "its links have not been read";
    reopenWithLinks();

    const std::unique_ptr<Connector> read(DBTools::selectConnectorByID(gDB, kNet, 5));
    ASSERT_TRUE(read);
    EXPECT_EQ(gNet.getConnectorById(5), read.get());
    EXPECT_EQ(read->mpStartLink, mReadFrom.get());
    EXPECT_EQ(read->mpEndLink, mReadTo.get());
    EXPECT_EQ(read->roadId, written->roadId);
    EXPECT_EQ(read->connName, written->connName);
    EXPECT_EQ(read->length, written->length);
    EXPECT_EQ(read->curvature, written->curvature);
    EXPECT_EQ(read->nonLinearCoefficient, written->nonLinearCoefficient);
    EXPECT_EQ(read->color, written->color);
    EXPECT_EQ(read->desiredSpeed, written->desiredSpeed);
    EXPECT_EQ(read->limitSpeed, written->limitSpeed);
    EXPECT_EQ(read->leftBreakPointsJson, written->leftBreakPointsJson);
    EXPECT_EQ(read->rightBreakPointsJson, written->rightBreakPointsJson);
    EXPECT_EQ(read->otherAttrsJson, written->otherAttrsJson);
    ASSERT_EQ(read->mlLaneConnector.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const LaneConnector &before = *written->mlLaneConnector.at(i);
        const LaneConnector &after = *read->mlLaneConnector.at(i);
        EXPECT_EQ(after.mpConnector, read.get());
        EXPECT_EQ(after.mpStartLane, mReadFrom->mlLane.at(i));
        EXPECT_EQ(after.mpEndLane, mReadTo->mlLane.at(i));
        EXPECT_EQ(after.weight, before.weight);
        // Generation 6 keeps no geometry of lane connectors.
        EXPECT_EQ(after.centerLinePointsJson, hasSeveralNets() ? QJsonObject() : before.centerLinePointsJson);
        EXPECT_EQ(after.leftBreakPointsJson, hasSeveralNets() ? QJsonObject() : before.leftBreakPointsJson);
    }
    const std::unique_ptr<Connector> again(DBTools::selectConnectorByID(gDB, kNet, 5));
    EXPECT_NE(again->mlLaneConnector.first()->laneConnId, read->mlLaneConnector.first()->laneConnId);
}

TEST_P(ConnectorsTest, TheListGoesOnAfterAFailure) {
    const auto first = sampleConnector(5, mFrom.get(), mTo.get());
    const auto second = sampleConnector(6, mTo.get(), mFrom.get());
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, first.get(), true));
    first->mlLaneConnector.deleteAll();
    QList<Connector *> list = {first.get(), second.get()};
    EXPECT_FALSE(DBTools::insertConnectors(gDB, kNet, list, true));
    EXPECT_EQ(failures().size(), 1);
    QList<long> ids = {1};
    EXPECT_TRUE(DBTools::selectConnectorIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({1, 5, 6}));
}

TEST_P(ConnectorsTest, LaneConnectorsOfUnknownLanesAreLeftOut) {
    const auto written = sampleConnector(5, mFrom.get(), mTo.get());
    written->roadId = 0;
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, written.get(), true));
    EXPECT_EQ(written->roadId, 5);
    letReferencesDangle();
    execute(QStringLiteral("delete from Lane where laneID = 82"));
    reopenWithLinks();
    const std::unique_ptr<Connector> read(DBTools::selectConnectorByID(gDB, kNet, 5));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->mlLaneConnector.size(), 1);
    EXPECT_EQ(read->mlLaneConnector.first()->mpEndLane->laneID, 81);
}

TEST_P(ConnectorsTest, GuideArrowsFollowTheirLanes) {
    letReferencesDangle();
    GuideArrow arrow;
    arrow.guideArrowID = 4;
    arrow.laneID = 71;
    arrow.length = 4.5;
    arrow.distToTerminal = 12.25;
    arrow.arrowType = 3;
    GuideArrow lost = arrow;
    lost.guideArrowID = 2;
    lost.laneID = 999;
    ASSERT_TRUE(DBTools::insertGuideArrow(gDB, kNet, &arrow, true));
    ASSERT_TRUE(DBTools::insertGuideArrow(gDB, kNet, &lost, true));
    EXPECT_FALSE(DBTools::insertGuideArrow(gDB, kNet, &arrow, true));
    EXPECT_EQ(failures().size(), 1);
    reopen();
    QList<long> ids;
    EXPECT_TRUE(DBTools::selectGuideArrowIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({4})) << "an arrow whose lane is gone is not listed";
    const std::unique_ptr<GuideArrow> read(DBTools::selectGuideArrowByID(gDB, kNet, 4));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->laneID, 71);
    EXPECT_EQ(read->length, 4.5);
    EXPECT_EQ(read->distToTerminal, 12.25);
    EXPECT_EQ(read->arrowType, 3);
    const std::unique_ptr<GuideArrow> readLost(DBTools::selectGuideArrowByID(gDB, kNet, 2));
    EXPECT_TRUE(readLost) << "but it can be read";
    EXPECT_EQ(DBTools::selectGuideArrowByID(gDB, kNet, 5), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Stores, ConnectorsTest, testing::ValuesIn(kStoreKinds), storeKindName);

class OneNetConnectorsTest : public StoreFixture {};

TEST_F(OneNetConnectorsTest, AnUpgradedStoreKeepsTheCentreLineAlone) {
    openTemplate("EmptyNet_V2.00.00");
    const auto from = sampleLink(7);
    const auto to = sampleLink(8);
    QList<Link *> links = {from.get(), to.get()};
    ASSERT_TRUE(DBTools::insertLinks(gDB, kNet, links, true));
    const auto written = sampleConnector(5, from.get(), to.get());
    written->mlLimitVehicle = {2, 3};
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, written.get(), true));
    EXPECT_EQ(rows(QStringLiteral("select * from ConnectorLimitVehicle order by VehicleTypeCode")).size(), 2);
    gNet.enter(from.get());
    gNet.enter(to.get());
    for (const auto &link : {from.get(), to.get()}) {
        for (Lane *lane : qAsConst(link->mlLane))
            gNet.enter(lane);
    }
    const std::unique_ptr<Connector> read(DBTools::selectConnectorByID(gDB, kNet, 5));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mlLaneConnector.first()->centerLinePointsJson,
              written->mlLaneConnector.first()->centerLinePointsJson);
    EXPECT_TRUE(read->mlLaneConnector.first()->leftBreakPointsJson.isEmpty());
    EXPECT_TRUE(read->mlLimitVehicle.isEmpty()) << "restrictions are not read back";
}

} // namespace
