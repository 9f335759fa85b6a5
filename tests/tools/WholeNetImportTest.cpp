#include "host/commands/CompanionFiles.h"
#include "tests/differential/SingleOperations.h"
#include "tests/support/Places.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
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
        EXPECT_TRUE(plan.leftOut.isEmpty()) << plan.leftOut.lines().join(QLatin1Char('\n')).toStdString();
        mWritten = importNetwork(net, plan, QStringLiteral("crossing"));
        mNet = mWritten.record.netId;
        reopen();
        DBTools::selectNetById(gDB, mNet);
        clearFailures();
    }

    static std::string differences(const NetworkObjects &a, const NetworkObjects &b) {
        return compareNetworks(a, b, true).first.join(QLatin1Char('\n')).toStdString();
    }

    NetworkObjects mWritten;
    long mNet = 0;
};

TEST_P(WholeExample, ComesBackAsImported) {
    gNet.loadRecord(NetRecord());
    EXPECT_EQ(differences(mWritten, readNetwork(mNet)), "");
}

TEST_P(WholeExample, LoadsWhatSingleReadsGive) {
    DBTools::selectVehicleType(gDB, mNet, ghVehicleType);
    const auto single = differential::readSingly(mNet);
    single->record = gNet.record();
    NetContents whole;
    ASSERT_TRUE(DBTools::loadNet(gDB, mNet, whole));
    EXPECT_EQ(differences(*single, whole), "");
    EXPECT_TRUE(whole.skipped.isEmpty());
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(ghVehicleType.size(), int(whole.traffic.vehicleTypes.size()));
}

INSTANTIATE_TEST_SUITE_P(Stores, WholeExample, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
