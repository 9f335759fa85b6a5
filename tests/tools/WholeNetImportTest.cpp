#include "host/commands/CompanionFiles.h"
#include "tests/support/Places.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/kinds/Kinds.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/CompanionReader.h"
#include "tools/sumo/reader/NetReader.h"

using namespace moratools;

namespace {

/// The example network, which has objects of every kind.
class WholeExample : public StoreKindFixture {
protected:
    void prepare() override {
        const QString folder = sourceFolder() + QStringLiteral("/examples/crossing/");
        const SumoNet net = readSumoNet(folder + QStringLiteral("crossing.net.xml"));
        SumoCompanions companions;
        for (const char *file : {"crossing.add.xml", "crossing.rou.xml", "turns.xml"})
            readSumoCompanion(folder + QLatin1String(file), companions);
        if (!hasSeveralNets())
            execute(QStringLiteral("delete from Net"));
        const CompanionPlan plan = planCompanions(net, std::move(companions));
        mNet = importNetwork(net, plan, QStringLiteral("crossing")).record.netId;
        reopen();
        DBTools::selectNetById(gDB, mNet);
        clearFailures();
    }

    static std::string differences(const NetworkObjects &a, const NetworkObjects &b) {
        return compareNetworks(a, b, true).first.join(QLatin1Char('\n')).toStdString();
    }

    long mNet = 0;
};

TEST_P(WholeExample, LoadsWhatSingleReadsGive) {
    DBTools::selectVehicleType(gDB, mNet, ghVehicleType);
    NetworkObjects single;
    single.record = gNet.record();
    single.links = readAll<Link>(mNet);
    single.connectors = readAll<Connector>(mNet);
    readTraffic(mNet, single.traffic);
    NetContents whole;
    ASSERT_TRUE(DBTools::loadNet(gDB, mNet, whole));
    EXPECT_EQ(differences(single, whole), "");
    EXPECT_TRUE(whole.skipped.isEmpty());
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(ghVehicleType.size(), int(whole.traffic.vehicleTypes.size()));
    EXPECT_EQ(whole.settings.carFollowing.size(), 2);
    EXPECT_EQ(whole.settings.laneChanging.size(), 3);
}

TEST_P(WholeExample, ComesBackFromAnotherStore) {
    NetContents loaded;
    ASSERT_TRUE(DBTools::loadNet(gDB, mNet, loaded));
    ASSERT_FALSE(loaded.traffic.vehicleDetectors.empty() && loaded.traffic.busLines.empty());
    loaded.settings.simulation.emplace().randSeed = 77;
    loaded.settings.scene.emplace().sceneWidth = 1234.5;
    openNewStore();
    // A store of one network keeps the record that it has.
    if (!hasSeveralNets())
        execute(QStringLiteral("delete from Net"));
    DBTools::initDictionary(gDB, mNet, true);
    ASSERT_TRUE(DBTools::saveNet(gDB, mNet, loaded, true));
    EXPECT_EQ(failureCount(), 0);
    NetContents again;
    ASSERT_TRUE(DBTools::loadNet(gDB, mNet, again));
    // A slice begins where the one before it ends, and the load had nothing to keep a gap before the first
    // one.
    EXPECT_EQ(differences(loaded, again), "decision point 3 \"west_in\" flowIntervals 1 flowRatios 1 "
                                          "startDateTime was written as 901 and read as 1");
    EXPECT_TRUE(again.skipped.isEmpty());
    EXPECT_EQ(again.settings.simulation->randSeed, 77);
    EXPECT_EQ(again.settings.scene->sceneWidth, 1234.5);
    EXPECT_EQ(again.settings.laneChanging.size(), 3);
}

INSTANTIATE_TEST_SUITE_P(Stores, WholeExample, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
