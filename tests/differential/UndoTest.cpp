#include "store/StoredNet.h"
#include "store/Transaction.h"
#include "tests/differential/Editor.h"
#include "tests/differential/StoredRows.h"
#include "tests/differential/Texts.h"
#include "tests/support/Setting.h"
#include "tests/support/StoreFixture.h"
#include "tools/differences/UndoList.h"
#include "tools/rows/Digest.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreSession.h"

using namespace differential;
using namespace moratools;

namespace {

/// Random edits of all kinds, each batch a step that can be taken back. MORASTORE_SEEDS says how many sequences,
/// MORASTORE_FIRST_SEED which one is the first, MORASTORE_EDITS how long they are.
class UndoTest : public StoreKindFixture {
protected:
    void prepare() override {
        if (!isPostgres())
            execute(QStringLiteral("pragma synchronous = off"));
    }

    static std::string failure() {
        const QList<CallDbResult> all = DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
        return all.isEmpty() ? std::string() : (all.last().error + all.last().sql).toStdString();
    }
    /// As another connection sees the store.
    QString digest() const {
        const StoreReader reader(
            isPostgres()
                ? StoreAddress(QStringLiteral("dbname='%1' host='%2' port=%3 user='%4' password='%5'")
                                   .arg(gDB.databaseName(), gDB.hostName(), QString::number(gDB.port()),
                                        gDB.userName(), gDB.password()))
                : StoreAddress(path()));
        return digestOf(reader, reader.networks().first());
    }
    /// All rows, and in a file what a load makes of them: lists in the order in which they were written.
    QStringList content() const {
        QStringList content = linesOf(storedRows(kNet, hasSeveralNets()));
        NetContents net;
        EXPECT_TRUE(DBTools::loadNet(gDB, kNet, net)) << failure();
        return isPostgres() ? content : content + textsOf(net);
    }

    void load(RandomNet &random) {
        mEditor.reset();
        mNet = std::make_unique<NetContents>();
        ASSERT_TRUE(DBTools::loadNet(gDB, kNet, *mNet)) << failure();
        mEditor = std::make_unique<Editor>(*mNet, random, !isPostgres());
    }

    /// Some edits, saved as they are, as a part of more that is kept, or taken back.
    void editAndSave(RandomNet &random) {
        StoredNet stored(gDB, kNet);
        for (int edits = 1 + random.below(4); edits > 0; --edits, ++mEdits)
            mEditor->edit();
        const int way = random.below(10);
        if (way < 5) {
            EXPECT_TRUE(stored.saveChanges(*mNet)) << failure();
            return;
        }
        Transaction whole(gDB);
        EXPECT_TRUE(stored.saveChanges(*mNet)) << failure();
        mEditor->edit();
        {
            Transaction part(gDB);
            EXPECT_TRUE(stored.saveChanges(*mNet)) << failure();
            if (way < 7) {
                EXPECT_TRUE(part.commit()) << failure();
            }
        }
        if (way < 9) {
            EXPECT_TRUE(whole.commit()) << failure();
        }
        whole.rollBack();
        // What memory takes for saved was not.
        if (way >= 7)
            load(random);
    }

    std::unique_ptr<NetContents> mNet;
    std::unique_ptr<Editor> mEditor;
    int mEdits = 0;
    const StoreSession mSession = StoreSession::ofProcess(QStringLiteral("store"));
};

TEST_P(UndoTest, AllEditsAreTakenBackAndDoneAgain) {
    const int first = setting("MORASTORE_FIRST_SEED", 1);
    for (int seed = first; seed < first + setting("MORASTORE_SEEDS", 1) && !HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message()
                     << "to repeat: MORASTORE_FIRST_SEED=" << seed << " MORASTORE_SEEDS=1");
        if (seed > first) {
            openNewStore();
            prepare();
        }
        NetPlan plan;
        plan.seed = quint32(seed);
        plan.severalNets = hasSeveralNets();
        RandomNet random(plan);
        const auto made = random.make();
        UndoList list(mSession, kNet);
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *made, true)) << failure();
        load(random);

        // What the store had after so many steps.
        QVector<QPair<int, QString>> digests{{0, digest()}};
        const QStringList before = content();
        int steps = 0;
        for (mEdits = 0; mEdits < setting("MORASTORE_EDITS", isPostgres() ? 300 : 1000) && !HasFailure();) {
            list.begin();
            editAndSave(random);
            if (!list.end(QString::number(steps + 1)))
                continue;
            if (++steps % 20 == 0)
                digests.append({steps, digest()});
        }
        digests.append({steps, digest()});
        const QStringList after = content();
        EXPECT_NE(digests.first().second, digests.last().second);
        EXPECT_EQ(failureCount(), 0) << failure();

        int at = steps;
        for (int i = digests.size() - 1; i >= 0 && !HasFailure(); --i) {
            for (; at > digests[i].first; --at)
                list.undo();
            EXPECT_EQ(digest(), digests[i].second) << "after " << at << " steps of " << steps;
        }
        {
            SCOPED_TRACE("taken back");
            expectSame(before, content());
        }
        EXPECT_FALSE(list.canUndo());
        for (int i = 0; i < digests.size() && !HasFailure(); ++i) {
            for (; at < digests[i].first; ++at)
                list.redo();
            EXPECT_EQ(digest(), digests[i].second) << "after " << at << " steps of " << steps;
        }
        expectSame(after, content());
        EXPECT_FALSE(list.canRedo());
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, UndoTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
