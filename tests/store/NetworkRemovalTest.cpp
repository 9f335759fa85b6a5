#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

namespace {

class NetworkRemovalTest : public StoreKindFixture {
protected:
    void prepare() override {
        mFrom = sampleLink(7);
        mTo = sampleLink(8);
        QList<Link *> links = {mFrom.get(), mTo.get()};
        ASSERT_TRUE(DBTools::insertLinks(gDB, kNet, links, true));
        const auto connector = sampleConnector(5, mFrom.get(), mTo.get());
        ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, connector.get(), true));
    }

    /// Rows of the object tables that SetUp fills.
    int objects() {
        int sum = 0;
        for (const char *table :
             {"Vertex", "Node", "Link", "Lane", "LinkVertex", "Connector", "LaneConnector"})
            sum += count(QLatin1String(table));
        return sum;
    }

    std::unique_ptr<Link> mFrom, mTo;
};

TEST_P(NetworkRemovalTest, TakesTheObjectsAndLeavesTheNetwork) {
    const int before = objects();
    const int nets = count(QStringLiteral("Net"));
    if (hasSeveralNets()) {
        ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
        const auto other = sampleLink(7);
        ASSERT_TRUE(DBTools_V6::insertLink(gDB, 2, other.get(), true));
        const int both = objects();
        EXPECT_TRUE(DBTools::removeNetData(gDB, 2, true));
        EXPECT_EQ(objects(), before) << "what the other network has stays";
        EXPECT_EQ(both - before, 3 + 2 + 1 + 2 + 3);
        EXPECT_EQ(count(QStringLiteral("Net")), nets + 1);
    }
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(DBTools::removeNetData(gDB, hasSeveralNets() ? kNet : 99, false));
    EXPECT_EQ(objects(), 0);
    ASSERT_TRUE(gDB.rollback());
    EXPECT_EQ(objects(), before);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(NetworkRemovalTest, AFailedGroupEndsTheRemovalAndIsNotTakenBack) {
    const int links = count(QStringLiteral("Link"));
    refuse(QStringLiteral("delete"), QStringLiteral("LaneConnector"));
    execute(
        QStringLiteral("insert into %1")
            .arg(
                hasSeveralNets()
                    ? "VehicleTravelDetector(NetId, detectorId, name, startRoadId, startDist, startX, startY, teminalRoadId, teminalDist, teminalX, teminalY, startTime, endTime, dataInterval, shortestDistance) values(1,1,'',1,1,1,1,1,1,1,1,1,1,1,1)"
                    : "VehicleTravelDetector(detectorId, name, startRoadId, startDist, startX, startY, teminalRoadId, teminalDist, teminalX, teminalY, startTime, endTime, dataInterval, shortestDistance) values(1,'',1,1,1,1,1,1,1,1,1,1,1,1)"));
    const bool removed = DBTools::removeNetData(gDB, kNet, true);
    EXPECT_EQ(count(QStringLiteral("VehicleTravelDetector")), 0)
        << "deleted before the failure, and committed";
    if (hasSeveralNets()) {
        // The lane connectors are a group of their own here: the rest is skipped.
        EXPECT_FALSE(removed);
        ASSERT_EQ(failures().size(), 1);
        EXPECT_EQ(failures().first().sql, QStringLiteral("delete from LaneConnector where NetId = 1"));
        EXPECT_EQ(count(QStringLiteral("Link")), links);
    } else {
        // A group's verdict is that of its last statement: the refused one in its middle does not count.
        EXPECT_TRUE(removed);
        EXPECT_EQ(count(QStringLiteral("Link")), 0);
    }
    EXPECT_EQ(count(QStringLiteral("LaneConnector")), 2);
}

INSTANTIATE_TEST_SUITE_P(Stores, NetworkRemovalTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
