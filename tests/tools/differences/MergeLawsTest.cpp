#include "tests/tools/differences/EditedNetworks.h"
#include "tools/differences/NetworkMerge.h"
#include "tools/reports/Failure.h"

#include <QJsonDocument>

namespace {

class MergeLaws : public EditedNetworks {
protected:
    /// The digest of what becomes of both, where every conflict is decided for one side.
    QString merged(const QString &base, const QString &ours, const QString &theirs, Answer::Take take,
                   TwoEdits *found = nullptr) {
        const NetworkVersion our{StoreAddress(ours), {}};
        const TwoEdits edits = compareVersions({StoreAddress(base), {}}, our, {StoreAddress(theirs), {}});
        MergedChanges result = mergeChanges(edits.ours, edits.theirs);
        Answers answers;
        for (const Conflict &conflict : result.conflicts)
            answers.insert(QJsonDocument(conflict.text).toJson(QJsonDocument::Compact), {take, {}});
        if (result.isOpen())
            result = mergeChanges(edits.ours, edits.theirs, answers);
        EXPECT_FALSE(result.isOpen());
        const QString path = folder() + QStringLiteral("/merged");
        QFile::remove(path);
        try {
            writeMerged(path, our, edits, result.changes);
        } catch (const Failure &failure) {
            ADD_FAILURE() << failure.what();
            return {};
        }
        expectSound(path);
        if (found)
            *found = edits;
        return digest(path);
    }

    /// Nothing in it refers to what is not there: a load takes every row.
    static void expectSound(const QString &path) {
        const StoreSession store(path, Access::Read);
        NetContents net;
        ASSERT_TRUE(DBTools::loadNet(store.db(), kNet, net)) << qPrintable(store.firstFailureText());
        for (const SkippedRows &rows : net.skipped)
            ADD_FAILURE() << qPrintable(rows.table) << " " << qPrintable(rows.reason) << " "
                          << rows.ids.value(0);
    }
};

} // namespace

TEST_P(MergeLaws, WhatBothDidIsDoneAndNothingRefersToNothing) {
    forEachNetwork(4, [this](RandomNet &random) {
        const QString base = twin(QStringLiteral("base"));
        const QString one = twin(QStringLiteral("one"));
        const QString other = twin(QStringLiteral("other"));
        edit(one, random);
        edit(other, random);
        if (HasFailure())
            return;
        EXPECT_EQ(merged(base, base, one, Answer::Take::Ours), digest(one));
        EXPECT_EQ(merged(base, one, base, Answer::Take::Ours), digest(one));
        EXPECT_EQ(merged(base, one, one, Answer::Take::Ours), digest(one));
        TwoEdits edits;
        const QString there = merged(base, one, other, Answer::Take::Ours, &edits);
        const QString back = merged(base, other, one, Answer::Take::Theirs);
        // New numbers go to those of the second.
        EXPECT_TRUE(edits.renumbered > 0 || there == back);
    });
}

INSTANTIATE_TEST_SUITE_P(Stores, MergeLaws, testing::Values(kStoreKinds[0], kStoreKinds[1]), storeKindName);
