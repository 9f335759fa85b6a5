#include "model/Net.h"
#include "tests/support/StoreFixture.h"

namespace {

class SceneConfigurationsTest : public StoreKindFixture {
protected:
    void prepare() override {
        execute(QStringLiteral("delete from Configuration"));
        Configuration &scene = gNet.config();
        scene.sceneWidth = 1000.0 / 3;
        scene.sceneHeight = 2000.0 / 3;
        scene.scale = 0.1 + 0.2;
        scene.backgroundMap = QByteArray("\x89PNG\0'\xff", 7);
        scene.showBackgroundMap = false;
        scene.saveDate = QDateTime({2024, 2, 29}, {13, 14, 15, 678});
        ASSERT_TRUE(DBTools::saveConfiguration(gDB, kNet, true));
    }
};

TEST_P(SceneConfigurationsTest, ComesBackAsWritten) {
    const Configuration written = gNet.config();
    ASSERT_TRUE(DBTools::saveConfiguration(gDB, kNet, false));
    EXPECT_EQ(count(QStringLiteral("Configuration")), 1);
    reopen();
    ASSERT_TRUE(gNet.readConfiguration(gDB));
    const Configuration &read = gNet.config();
    EXPECT_EQ(read.sceneWidth, written.sceneWidth);
    EXPECT_EQ(read.sceneHeight, written.sceneHeight);
    EXPECT_EQ(read.scale, written.scale);
    EXPECT_EQ(read.backgroundMap, written.backgroundMap);
    EXPECT_FALSE(read.showBackgroundMap);
    EXPECT_TRUE(read.showGrid);
    EXPECT_EQ(read.saveDate, hasSeveralNets() ? QDateTime(QDate(2024, 2, 29), QTime()) : written.saveDate);
}

TEST_P(SceneConfigurationsTest, AFailureLeavesTheOldRowInATransactionOfItsOwn) {
    refuse(QStringLiteral("insert"), QStringLiteral("Configuration"));
    const QStringList before = rows(QStringLiteral("select * from Configuration"));
    gNet.config().scale = 7;
    EXPECT_FALSE(DBTools::saveConfiguration(gDB, kNet, true));
    EXPECT_EQ(rows(QStringLiteral("select * from Configuration")), before);
    EXPECT_EQ(failures().size(), 1);
    EXPECT_FALSE(DBTools::saveConfiguration(gDB, kNet, false));
    EXPECT_TRUE(gNet.readConfiguration(gDB));
    EXPECT_EQ(gNet.config().scale, 7) << "without a row the record stays as it was";
}

TEST_P(SceneConfigurationsTest, SwitchesAreWrittenToEveryRow) {
    letReferencesDangle();
    gNet.config() = Configuration();
    ASSERT_TRUE(DBTools::saveConfiguration(gDB, 2, true));
    EXPECT_EQ(count(QStringLiteral("Configuration")), hasSeveralNets() ? 2 : 1);
    const QString switches = QStringLiteral("select distinct showGrid, showBackgroundMap from Configuration");
    gNet.config().showGrid = false;
    EXPECT_TRUE(DBTools::updateConfigIfShowGrid(gDB, true));
    EXPECT_TRUE(DBTools::updateConfigIfShowBackgroundMap(gDB, false));
    EXPECT_EQ(rows(switches), QStringList("F|T")) << "gNet's switches, whatever the argument";
    EXPECT_EQ(rows(QStringLiteral("select * from Configuration where saveDate is null")).size(), 1)
        << "a date that was never set";

    execute(QStringLiteral("drop table Configuration"));
    EXPECT_FALSE(DBTools::updateConfigIfShowGrid(gDB, true));
    EXPECT_EQ(failures().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, SceneConfigurationsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
