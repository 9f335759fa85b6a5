#include "tools/differences/UndoList.h"

#include "model/GuideArrow.h"
#include "store/StoredNet.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

using namespace moratools;

namespace {

/// Link 1, whose limit the steps change.
class UndoListTest : public StoreKindFixture {
protected:
    void prepare() override { ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(1).get(), true)); }

    static bool limit(UndoList &steps, const char *name, double value) {
        steps.begin();
        StoredNet net(gDB, kNet);
        const auto link = net.read<Link>(1);
        link->limitSpeed = value;
        EXPECT_TRUE(net.update(*link));
        return steps.end(QString::fromUtf8(name));
    }
    int limit() {
        return rows(QStringLiteral("select cast(limitSpeed as integer) from Link")).value(0).toInt();
    }
    static std::string whyNot(const std::function<void()> &step) {
        try {
            step();
        } catch (const Failure &failure) {
            return failure.what();
        }
        return {};
    }

    const StoreSession mSession = StoreSession::ofProcess(QStringLiteral("store"));
};

TEST_P(UndoListTest, GoesBackAndForth) {
    UndoList steps(mSession, kNet);
    EXPECT_FALSE(steps.canUndo() || steps.canRedo());
    EXPECT_EQ(whyNot([&] { steps.undo(); }), "there is no step to be taken back");
    EXPECT_TRUE(limit(steps, "forty", 40));
    EXPECT_TRUE(limit(steps, "fünfzig", 50));
    EXPECT_FALSE(limit(steps, "nothing", 50));
    EXPECT_EQ(steps.undoName(), QStringLiteral("fünfzig"));

    const std::vector<RowChange> changes = steps.undo();
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_STREQ(changes[0].table->name, "Link");
    EXPECT_EQ(changes[0].key.value(QStringLiteral("linkID")), QVariant(qint64(1)));
    EXPECT_EQ(changes[0].after.value(QStringLiteral("limitSpeed")).toDouble(), 40);
    EXPECT_EQ(limit(), 40);
    EXPECT_EQ(steps.redoName(), QStringLiteral("fünfzig"));
    steps.redo();
    EXPECT_EQ(limit(), 50);
    EXPECT_EQ(whyNot([&] { steps.redo(); }), "there is no step to be done again");
    steps.undo();
    // A new step takes the place of what was taken back.
    EXPECT_TRUE(limit(steps, "sixty", 60));
    EXPECT_FALSE(steps.canRedo());
    EXPECT_EQ(steps.undoName(), QStringLiteral("sixty"));
    steps.undo();
    EXPECT_EQ(limit(), 40);

    steps.begin();
    EXPECT_EQ(whyNot([&] { steps.undo(); }),
              "no step is taken back while one is being recorded; end that first");
    steps.cancel();
    steps.undo();
    EXPECT_EQ(limit(), 60);
    EXPECT_FALSE(steps.canUndo());
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(UndoListTest, WhatElseHasChangedIsLeftAlone) {
    UndoList steps(mSession, kNet);
    EXPECT_TRUE(limit(steps, "forty", 40));
    steps.begin();
    StoredNet net(gDB, kNet);
    const auto link = net.read<Link>(1);
    link->mlLane.first()->width = 2.5;
    link->limitSpeed = 45;
    EXPECT_TRUE(net.update(*link));
    EXPECT_TRUE(steps.end(QStringLiteral("narrow")));
    execute(QStringLiteral("update Link set limitSpeed = 70"));
    const std::string why = whyNot([&] { steps.undo(); });
    EXPECT_NE(why.find("(table Link: limitSpeed is 70 and not 45)"), std::string::npos) << why;
    EXPECT_EQ(limit(), 70);
    EXPECT_EQ(rows(QStringLiteral("select count(*) from Lane where width = 2.5")),
              QStringList{QStringLiteral("1")});
    EXPECT_EQ(steps.undoName(), QStringLiteral("narrow"));
    execute(QStringLiteral("update Link set limitSpeed = 45"));
    steps.undo();
    steps.undo();
    EXPECT_EQ(limit(), 60);
}

TEST_P(UndoListTest, NumbersAreNotDrawnAgain) {
    UndoList steps(mSession, kNet);
    steps.begin();
    StoredNet net(gDB, kNet);
    GuideArrow arrow;
    arrow.laneID = 11;
    EXPECT_TRUE(net.insert(arrow));
    EXPECT_TRUE(steps.end(QStringLiteral("arrow")));
    const long drawn = arrow.guideArrowID;
    EXPECT_GT(drawn, 0);
    steps.undo();
    EXPECT_EQ(count("GuideArrow"), 0);
    arrow.guideArrowID = 0;
    EXPECT_TRUE(net.insert(arrow));
    EXPECT_GT(arrow.guideArrowID, drawn);
    // It stands beside the one that is done again.
    steps.redo();
    EXPECT_EQ(count("GuideArrow"), 2);
    reopen();
    EXPECT_GT(StoredNet(gDB, kNet).nextId(Table::GuideArrow).value_or(0), arrow.guideArrowID);
}

INSTANTIATE_TEST_SUITE_P(Kinds, UndoListTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
