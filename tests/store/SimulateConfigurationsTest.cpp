#include "model/SimulateConfiguration.h"
#include "tests/support/StoreFixture.h"

namespace {

/// The generations have little in common here, so each has a case of its own.
class SimulateConfigurationsTest : public StoreFixture {
protected:
    void SetUp() override {
        mSettings.simuTimeInterval = 7200;
        mSettings.recordTrace = true;
        mSettings.vehiCollectDataInterval = 60;
        mSettings.vehiQueueDataInterval = 70;
        mSettings.vehiTravelDataInterval = 80;
        mSettings.mAcceMultiples = 4.9;
        mSettings.simuAccuracy = 10;
        mSettings.randSeed = 42;
    }

    QStringList storedRows() {
        return rows(QStringLiteral(
            "select simuTimeInterval, recordTrace, vehiCollectDataInterval, vehiQueueDataInterval, "
            "vehiTravelDataInterval, acceMultiples, simuAccuracy, randSeed from SimulateConfiguration"));
    }

    static constexpr auto kStandard = "3600|F|0|0|0|1|20|0";
    static constexpr auto kSettings = "7200|T|60|70|80|4|10|42";
    SimulateConfiguration mSettings;
};

TEST_F(SimulateConfigurationsTest, OneNetTheFirstSaveWritesTheStandardRow) {
    openTemplate("EmptyNet_V3.0.0");
    for (const char *before : {"delete from SimulateConfiguration",
                               "insert into SimulateConfiguration select * from SimulateConfiguration"}) {
        for (const bool inTransaction : {true, false}) {
            execute(QLatin1String(before));
            ASSERT_TRUE(DBTools::saveSimuConfiguration(gDB, kNet, mSettings, inTransaction));
            EXPECT_EQ(storedRows(), QStringList(kStandard)) << before;
            ASSERT_TRUE(DBTools::saveSimuConfiguration(gDB, kNet, mSettings, inTransaction));
            EXPECT_EQ(storedRows(), QStringList(kSettings)) << before;
        }
    }
    reopen();
    SimulateConfiguration read;
    ASSERT_TRUE(DBTools::selectSimuConfiguration(gDB, kNet, read));
    EXPECT_EQ(read.mAcceMultiples, 4);
    execute(QStringLiteral("delete from SimulateConfiguration"));
    ASSERT_TRUE(DBTools::saveSimuConfiguration(gDB, kNet, mSettings, true));
    ASSERT_TRUE(DBTools::saveSimuConfiguration(gDB, kNet, read, true));
    EXPECT_EQ(storedRows(), QStringList(kSettings)) << "what was read is all that was stored";
}

TEST_F(SimulateConfigurationsTest, SeveralNetsTheUpdateIsRefused) {
    openTemplate("EmptyNet_V6.0.0");
    const auto saveFails = [this](bool inTransaction) {
        clearFailures();
        EXPECT_FALSE(DBTools::saveSimuConfiguration(gDB, kNet, mSettings, inTransaction));
        EXPECT_EQ(failureCount(), 1);
        EXPECT_TRUE(DBTools_V6::mlCallDbResult.value(0).sql.startsWith(
            QStringLiteral("update SimulateConfiguration simuTimeInterval = ")));
    };
    saveFails(true);
    EXPECT_EQ(storedRows(), QStringList()) << "the roll back takes the standard row back";
    ASSERT_TRUE(gDB.transaction());
    saveFails(false);
    ASSERT_TRUE(gDB.commit());
    EXPECT_EQ(storedRows(), QStringList(kStandard)) << "the caller's transaction keeps it";
    execute(QStringLiteral("update SimulateConfiguration set randSeed = 5, acceMultiples = 3"));
    saveFails(false);
    saveFails(true);
    EXPECT_EQ(storedRows(), QStringList("3600|F|0|0|0|3|20|5"));

    ASSERT_TRUE(DBTools::selectSimuConfiguration(gDB, 2, mSettings));
    EXPECT_EQ(mSettings.simuTimeInterval, 7200) << "a network without a row leaves the record as it was";
    ASSERT_TRUE(DBTools::selectSimuConfiguration(gDB, kNet, mSettings));
    EXPECT_EQ(mSettings.simuTimeInterval, 3600);
}

} // namespace
