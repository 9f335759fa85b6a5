#include "model/Net.h"
#include "tests/support/Golden.h"
#include "tests/support/OldStores.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/StoreText.h"
#include "tools/session/StoreUpgrade.h"

using namespace moratools;

namespace {

/// A store as an older release left it, and the list of what it has when it has come forward.
struct OldStore {
    const char *name;
    const char *templateName; ///< none for a store of the first generation
    const char *golden;

    friend std::ostream &operator<<(std::ostream &out, const OldStore &store) { return out << store.name; }
};

class UpgradeTest : public StoreFixture, public testing::WithParamInterface<OldStore> {};

TEST_P(UpgradeTest, ComesForwardToTheListedCatalogue) {
    gNet = Net();
    if (GetParam().templateName)
        copyTemplate(GetParam().templateName, path());
    else
        makeFirstGenerationStore(path());
    EXPECT_FALSE(upgradeStore(path(), false).wasCurrent);
    const QStringList catalogue = catalogueOf(path());
    const QString golden = QLatin1String(GetParam().golden);
    if (writesGolden(golden, catalogue))
        GTEST_SKIP() << "written: " << qPrintable(golden);
    EXPECT_EQ(catalogue.join(QLatin1Char('\n')).toStdString(),
              readGolden(golden).join(QLatin1Char('\n')).toStdString());

    EXPECT_TRUE(upgradeStore(path(), false).wasCurrent);
    const QStringList content = contentOf(path());
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(failureCount(), 0);
    if (StatementTrace::canTrace(gDB)) {
        const StatementTrace trace(gDB);
        DBTools::updateDatabase(gDB);
        EXPECT_EQ(trace.statements().size(), 6);
        for (const QString &statement : trace.statements())
            EXPECT_TRUE(statement.startsWith(QLatin1String("select * from sqlite_master ")))
                << qPrintable(statement);
    }
    EXPECT_TRUE(contentOf(path()) == content);
}

class NoUpgradeTest : public StoreFixture {};

TEST_F(NoUpgradeTest, AStoreOfSeveralNetworksIsNotOfTheFirstGeneration) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("delete from IDGenerater"));
    const QStringList before = contentOf(path());
    DBTools::updateDatabase1x(gDB);
    EXPECT_EQ(failureCount(), 0);
    EXPECT_TRUE(contentOf(path()) == before);
    EXPECT_EQ(DBTools::dbVer(), 6);
}

TEST_F(NoUpgradeTest, ADatabaseOfAServerIsLeftAsItIs) {
    openPostgres();
    if (IsSkipped())
        return;
    const QString tables = QStringLiteral("select tablename from pg_tables where schemaname = 'public'");
    const QStringList before = rows(tables);
    ASSERT_TRUE(gDB.transaction());
    execute(QStringLiteral("update Net set sourceType = 'before'"));
    DBTools::updateDatabase(gDB);
    DBTools::updateDatabase1x(gDB);
    EXPECT_EQ(failureCount(), 0);
    EXPECT_TRUE(gDB.commit());
    EXPECT_EQ(rows(QStringLiteral("select sourceType from Net")), QStringList({"before"}));
    EXPECT_EQ(rows(tables), before);
}

INSTANTIATE_TEST_SUITE_P(
    Stores, UpgradeTest,
    testing::Values(OldStore{"FirstGeneration", nullptr, "catalogue_first_generation.txt"},
                    OldStore{"V2_00_00", "EmptyNet_V2.00.00", "catalogue_V2.00.00.txt"},
                    OldStore{"V2_01_00", "EmptyNet_V2.01.00", "catalogue_V2.1.1.txt"},
                    OldStore{"V2_1_1", "EmptyNet_V2.1.1", "catalogue_V2.1.1.txt"},
                    OldStore{"V3_0_0", "EmptyNet_V3.0.0", "catalogue_V3.0.0.txt"},
                    OldStore{"V6_0_0", "EmptyNet_V6.0.0", "catalogue_V6.0.0.txt"}),
    [](const testing::TestParamInfo<OldStore> &store) { return std::string(store.param.name); });

} // namespace
