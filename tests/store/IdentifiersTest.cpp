#include "model/LaneConnector.h"
#include "model/Net.h"
#include "tests/support/Builders.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/StoreFixture.h"

namespace {

long draw(const char *table) {
    long id = -1;
    EXPECT_TRUE(DBTools::getIDByTableName(gDB, QLatin1String(table), id));
    return id;
}

class IdentifiersTest : public StoreFixture {
protected:
    QStringList counter(const char *table) {
        return rows(
            QStringLiteral("select ID from IDGenerater where TableName = '%1'").arg(QLatin1String(table)));
    }
};

TEST_F(IdentifiersTest, GenerationSixDrawsBlocksOfAHundred) {
    openTemplate("EmptyNet_V6.0.0");
    EXPECT_EQ(draw("Link"), 1);
    EXPECT_EQ(counter("Link"), QStringList({"100"}));
    // The rest of the block comes from memory: the table may be gone meanwhile.
    execute(QStringLiteral("alter table IDGenerater rename to Hidden"));
    for (long expected = 2; expected <= 100; ++expected) {
        long id = 0;
        ASSERT_TRUE(DBTools_V6::getIDByTableName(gDB, kNet, QStringLiteral("Link"), id));
        ASSERT_EQ(id, expected);
    }
    long id = 5;
    EXPECT_FALSE(DBTools_V6::getIDByTableName(gDB, kNet, QStringLiteral("Link"), id));
    EXPECT_EQ(id, 0);
    EXPECT_EQ(failureCount(), 1);
    execute(QStringLiteral("alter table Hidden rename to IDGenerater"));
    EXPECT_EQ(draw("Link"), 101);
    EXPECT_EQ(counter("Link"), QStringList({"200"}));

    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
    ASSERT_TRUE(DBTools_V6::getIDByTableName(gDB, 2, QStringLiteral("Link"), id));
    EXPECT_EQ(id, 1) << "each network counts for itself";
}

TEST_F(IdentifiersTest, GenerationSixRespectsRowsAndReservations) {
    openTemplate("EmptyNet_V6.0.0");
    EXPECT_EQ(draw("Link"), 1);
    const auto link = sampleLink(250);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    for (int i = 2; i <= 100; ++i)
        draw("Link");
    EXPECT_EQ(draw("Link"), 251) << "above the largest id in use";
    EXPECT_EQ(counter("Link"), QStringList({"350"}));
    // A counter that went back (a rolled back transaction) does not hand out again what this process has
    // reserved.
    execute(QStringLiteral("update IDGenerater set ID = 100"));
    for (int i = 252; i <= 350; ++i)
        draw("Link");
    EXPECT_EQ(draw("Link"), 351);
}

TEST_F(IdentifiersTest, UnusedIdentifiersAreGivenBack) {
    openTemplate("EmptyNet_V6.0.0");
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
    long other = 0;
    ASSERT_TRUE(DBTools_V6::getIDByTableName(gDB, 2, QStringLiteral("Link"), other));
    EXPECT_EQ(draw("Link"), 1);
    EXPECT_EQ(draw("Link"), 2);
    ASSERT_TRUE(DBTools::updateIds(gDB, true));
    EXPECT_EQ(counter("Link"), QStringList({"2", "2"})) << "the rows of all networks are set";
    reopen();
    EXPECT_EQ(draw("Link"), 3);
}

TEST_F(IdentifiersTest, ACommitThatFailsLeavesTheTransactionToTheHost) {
    openTemplate("EmptyNet_V6.0.0");
    EXPECT_EQ(draw("Link"), 1);
    {
        const OtherProcess other(OtherProcess::Holds::Reading);
        EXPECT_FALSE(DBTools::updateIds(gDB, true));
        EXPECT_EQ(failureCount(), 1);
    }
    EXPECT_TRUE(gDB.commit()) << "it is still open";
    EXPECT_EQ(counter("Link"), QStringList({"1"}));
}

TEST_F(IdentifiersTest, OlderStoresCountOneByOne) {
    openTemplate("EmptyNet_V3.0.0");
    execute(QStringLiteral("delete from IDGenerater where TableName = 'Link'"));
    EXPECT_EQ(draw("Link"), 1);
    EXPECT_EQ(draw("Link"), 2);
    EXPECT_EQ(counter("Link"), QStringList({"2"}));
    const auto link = sampleLink(40);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(draw("Link"), 41);
    EXPECT_EQ(counter("Link"), QStringList({"41"}));

    const long before = LaneConnector::generId;
    EXPECT_EQ(draw("LaneConnector"), before + 1);
    EXPECT_EQ(counter("LaneConnector"), QStringList());
    long general = 0;
    EXPECT_TRUE(DBTools::getID(gDB, general));
    EXPECT_EQ(counter("General"), QStringList({QString::number(general)}));
    EXPECT_EQ(failureCount(), 0);

    execute(QStringLiteral("drop table IDGenerater"));
    long id = 7;
    EXPECT_FALSE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
    EXPECT_EQ(id, 7);
    EXPECT_EQ(failureCount(), 1);
}

TEST_F(IdentifiersTest, KnowsTheLargestInUse) {
    openTemplate("EmptyNet_V6.0.0");
    const auto link = sampleLink(40);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("Link")), 40);
    EXPECT_EQ(DBTools::getMaxID(gDB, 2, QStringLiteral("Link")), 0);
    EXPECT_EQ(DBTools::getIDName(QStringLiteral("DepartureInterval")), QStringLiteral("departureIntervalD"));
    EXPECT_EQ(DBTools::getIDName(QStringLiteral("Unknown")), QString());
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("Unknown")), 0);
}

TEST_F(IdentifiersTest, LanesMadeForALinkDrawTheirs) {
    openTemplate("EmptyNet_V6.0.0");
    Link link;
    link.createLanes({3.5, 3.25});
    ASSERT_EQ(link.mlLane.size(), 2);
    EXPECT_EQ(link.mlLane.last()->laneID, 2);
    gDB.close();
    link.createLanes({3.0});
    EXPECT_EQ(link.mlLane.size(), 2) << "a closed store hands out nothing";
    EXPECT_EQ(failureCount(), 1);
}

} // namespace
