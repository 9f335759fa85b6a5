#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "tests/support/Places.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/kinds/StoreInfo.h"
#include "tools/reports/Failure.h"
#include "tools/rows/NetworkDeletion.h"
#include "tools/rows/StoreReader.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/NetReader.h"

#include <QTemporaryDir>

using namespace moratools;

namespace {

/// Two stores of different generations beside the process's, which the fixture has open.
class TwoSessions : public StoreFixture {
protected:
    void SetUp() override {
        openTemplate("EmptyNet_V6.0.0");
        makeStore(mOne, QStringLiteral("EmptyNet_V3.0.0"));
        makeStore(mSeveral, QStringLiteral("EmptyNet_V6.0.0"));
    }

    NetworkObjects import(const StoreSession &store, const QString &name) const {
        return importNetwork(store, mNet, planCompanions(mNet, {}), name);
    }

    QTemporaryDir mFolder;
    QString mOne = mFolder.filePath(QStringLiteral("one.db"));
    QString mSeveral = mFolder.filePath(QStringLiteral("several.db"));
    SumoNet mNet = readSumoNet(sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml"));
};

TEST_F(TwoSessions, KeepToThemselves) {
    const long processNet = gNet.id();
    const StoreSession one(mOne, Access::Write);
    const StoreSession several(mSeveral, Access::Write);
    EXPECT_FALSE(one.hasSeveralNetworks());
    EXPECT_TRUE(several.hasSeveralNetworks());

    const NetworkObjects first = import(one, QStringLiteral("first"));
    const NetworkObjects second = import(several, QStringLiteral("second"));
    const NetworkObjects third = import(several, QStringLiteral("third"));
    EXPECT_EQ(one.net().netName(), QStringLiteral("first"));
    EXPECT_EQ(several.net().netName(), QStringLiteral("third"));

    const NetworkObjects fromOne = readNetwork(one, first.record.netId);
    const NetworkObjects fromSeveral = readNetwork(several, second.record.netId);
    EXPECT_EQ(compareNetworks(first, fromOne, false, one.words()).differences, 0);
    EXPECT_EQ(compareNetworks(second, fromSeveral, true, several.words()).differences, 0);
    EXPECT_EQ(one.net().getLinkById(first.links[0]->linkID), fromOne.links[0].get());
    EXPECT_EQ(several.net().getLinkById(second.links[0]->linkID), fromSeveral.links[0].get());

    removeNetwork(several, third.record.netId);
    EXPECT_EQ(takeStock(several, mSeveral).networks.size(), 1);
    EXPECT_EQ(takeStock(one, mOne).networks[0].rows.value(0).second,
              takeStock(several, mSeveral).networks[0].rows.value(0).second);

    // The process's store has seen nothing of it.
    EXPECT_EQ(gNet.id(), processNet);
    EXPECT_TRUE(gNet.lLink().isEmpty());
    EXPECT_EQ(rows(QStringLiteral("select count(*) from Link")), QStringList{QStringLiteral("0")});
    EXPECT_EQ(failureCount(), 0);
}

TEST_F(TwoSessions, FailuresAreThoseOfTheStoreThatHasThem) {
    const StoreSession one(mOne, Access::Write);
    {
        const StoreSession several(mSeveral, Access::Read);
        EXPECT_THROW(import(several, QStringLiteral("nowhere")), Failure);
        DBTools::insertNet(several.db(), 5, QStringLiteral("refused"), {}, {}, {}, QString(), false);
        EXPECT_GT(several.unexpectedFailures(), 0);
        EXPECT_FALSE(several.firstFailureText().isEmpty());
    }
    EXPECT_EQ(one.unexpectedFailures(), 0);
    EXPECT_EQ(failureCount(), 0);
    // The other one goes on when its neighbour is closed.
    EXPECT_EQ(import(one, QStringLiteral("first")).links.size(), 13U);
}

TEST_F(TwoSessions, TwoReadersReadTheStoreThatEachWasGiven) {
    import(StoreSession(mOne, Access::Write), QStringLiteral("first"));
    import(StoreSession(mSeveral, Access::Write), QStringLiteral("second"));
    const auto links = [](const StoreReader &reader) {
        return reader.count(*reader.table(QStringLiteral("Link")), reader.networksOf({}).first());
    };
    const StoreReader one(mOne);
    {
        const StoreReader several(mSeveral);
        EXPECT_EQ(one.networksOf({}).first().name, QStringLiteral("first"));
        EXPECT_EQ(several.networksOf({}).first().name, QStringLiteral("second"));
        EXPECT_FALSE(one.hasSeveralNetworks());
        EXPECT_TRUE(several.hasSeveralNetworks());
        EXPECT_EQ(links(one), 13);
        EXPECT_EQ(links(several), 13);
    }
    EXPECT_EQ(links(one), 13);
}

} // namespace
