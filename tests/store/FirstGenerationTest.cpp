#include "tests/support/Builders.h"
#include "tests/support/OldStores.h"
#include "tests/support/StoreFixture.h"

namespace {

class FirstGenerationTest : public StoreFixture {
protected:
    void SetUp() override {
        makeFirstGenerationStore(path());
        const auto link = sampleLink(30);
        reopen();
        ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
        clearFailures();
    }
};

TEST_F(FirstGenerationTest, ComesForward) {
    ASSERT_EQ(DBTools::dbVer(), 1);
    ASSERT_TRUE(DBTools::hasErrorFieldName(gDB));
    DBTools::updateDatabase1x(gDB);
    for (const CallDbResult &failure : qAsConst(DBTools::mlCallDbResult))
        ADD_FAILURE() << qPrintable(failure.sql + QStringLiteral(": ") + failure.error);

    EXPECT_FALSE(DBTools::hasErrorFieldName(gDB));
    EXPECT_EQ(DBTools::dbVer(), 2);
    EXPECT_EQ(rows(QStringLiteral(
                  "select ID from IDGenerater where TableName in ('Link', 'Routing', 'BusLine') order by 1")),
              QStringList({"0", "9", "30"}))
        << "a counter starts with its table's first id";
    EXPECT_EQ(rows(QStringLiteral("select * from RoutingFLowRatio")), QStringList({"1|9|1|3600|40.5"}));
    EXPECT_EQ(rows(QStringLiteral("select * from SimulateConfiguration")),
              QStringList({"3600|F|0|0|0|1|20|0"}));
    EXPECT_EQ(rows(QStringLiteral("select modelParamID, maxAcce from DriveFollowedModelParam")),
              QStringList({"1|5", "2|3"}));
    for (const char *table : {"GuideArrow", "Logger", "VehicleDetector", "DetectorVehiType"})
        EXPECT_TRUE(DBTools::hasTable(gDB, QLatin1String(table))) << table;
    EXPECT_TRUE(DBTools::tableHasField(gDB, QStringLiteral("Logger"), QStringLiteral("pluginName")));

    // What it held is there, and the statements of the present fit its columns.
    const std::unique_ptr<Link> link(DBTools::selectLinkByID(gDB, kNet, 30));
    ASSERT_TRUE(link);
    EXPECT_EQ(link->mlLane.last()->serialNumber, 2);
    long id = 0;
    EXPECT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
    EXPECT_EQ(id, 31);

    const QStringList catalogue = rows(QStringLiteral("select sql from sqlite_master order by name"));
    const QStringList counters = rows(QStringLiteral("select * from IDGenerater order by TableName"));
    DBTools::updateDatabase1x(gDB);
    EXPECT_EQ(rows(QStringLiteral("select sql from sqlite_master order by name")), catalogue);
    EXPECT_EQ(rows(QStringLiteral("select * from IDGenerater order by TableName")), counters);
    EXPECT_EQ(count(QStringLiteral("RoutingFLowRatio")), 1);
    EXPECT_EQ(failureCount(), 0);
}

} // namespace
