#include "store/Transaction.h"

#include "store/FailureScope.h"
#include "store/OpenStore.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QSqlQuery>

#include <stdexcept>

namespace {

class TransactionTest : public StoreKindFixture {
protected:
    static bool insert(long id, bool ownTransaction = false) {
        return DBTools::insertLink(gDB, kNet, sampleLink(id).get(), ownTransaction);
    }
    QStringList links() { return rows(QStringLiteral("select linkID from Link order by linkID")); }
};

TEST_P(TransactionTest, KeepsAllOrNothing) {
    {
        Transaction change(gDB);
        ASSERT_TRUE(change.isOpen());
        EXPECT_TRUE(insert(1));
        EXPECT_TRUE(insert(2));
        EXPECT_TRUE(change.commit());
        EXPECT_FALSE(change.isOpen());
    }
    EXPECT_EQ(links(), (QStringList{"1", "2"}));
    {
        const Transaction dropped(gDB);
        EXPECT_TRUE(insert(3));
    }
    try {
        const Transaction unwound(gDB);
        EXPECT_TRUE(insert(4));
        throw std::runtime_error("out of here");
    } catch (const std::runtime_error &) {
    }
    Transaction ended(gDB);
    EXPECT_TRUE(insert(5));
    ended.rollBack();
    EXPECT_EQ(failureCount(), 0);
    EXPECT_FALSE(ended.commit());
    EXPECT_EQ(failureCount(), 1);
    reopen();
    EXPECT_EQ(links(), (QStringList{"1", "2"}));
    EXPECT_EQ(count("Lane"), 4);
}

TEST_P(TransactionTest, PartsAreTakenBackByThemselvesToAnyDepth) {
    Transaction whole(gDB);
    EXPECT_TRUE(insert(1));
    {
        Transaction part(gDB);
        EXPECT_TRUE(insert(2));
        {
            Transaction failing(gDB);
            EXPECT_TRUE(insert(3));
            EXPECT_FALSE(insert(3));
            EXPECT_FALSE(failing.commit());
        }
        {
            Transaction good(gDB);
            EXPECT_TRUE(insert(4));
            EXPECT_TRUE(good.commit());
        }
        EXPECT_EQ(links(), (QStringList{"1", "2", "4"}));
        EXPECT_TRUE(part.commit());
    }
    {
        const Transaction dropped(gDB);
        EXPECT_TRUE(insert(5));
        EXPECT_FALSE(insert(5));
    }
    EXPECT_TRUE(whole.commit());
    reopen();
    EXPECT_EQ(links(), (QStringList{"1", "2", "4"}));
}

TEST_P(TransactionTest, IsNotCommittedAfterAFailureInEitherClass) {
    for (const bool failsInOther : {false, true}) {
        SCOPED_TRACE(failsInOther);
        const FailureScope since(gDB);
        Transaction change(gDB);
        EXPECT_TRUE(insert(1));
        EXPECT_FALSE(failsInOther ? DBTools::checkConstraint(gDB, QStringLiteral("select * from Nowhere"))
                                  : insert(1));
        const QString first = since.first().error.trimmed();
        EXPECT_FALSE(change.commit());
        EXPECT_FALSE(change.isOpen());
        EXPECT_EQ(since.last().operation, QStringLiteral("Transaction"));
        EXPECT_TRUE(since.last().error.contains(first)) << qPrintable(since.last().error);
        EXPECT_EQ(links(), QStringList());
        // The connection takes what follows.
        EXPECT_TRUE(insert(9, true));
        execute(QStringLiteral("delete from Lane"));
        execute(QStringLiteral("delete from LinkVertex"));
        execute(QStringLiteral("delete from Link"));
        execute(QStringLiteral("delete from Node"));
        execute(QStringLiteral("delete from Vertex"));
    }
}

TEST_P(TransactionTest, AnOwnTransactionInsideIsRefusedAndNothingElse) {
    {
        Transaction change(gDB);
        EXPECT_TRUE(insert(1));
        EXPECT_FALSE(insert(2, true));
        ASSERT_EQ(failures().size(), 1);
        EXPECT_EQ(failures().first().operation, QStringLiteral("insertLink"));
        EXPECT_EQ(failures().first().error,
                  QStringLiteral("cannot start a transaction within a transaction") +
                      (isPostgres() ? QString() : QStringLiteral(" Unable to begin transaction")));
        EXPECT_TRUE(insert(3));
        EXPECT_FALSE(change.commit());
    }
    EXPECT_EQ(links(), QStringList());
    // The same inside a transaction that the host has begun by itself, which it can still commit.
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(insert(4));
    EXPECT_FALSE(insert(5, true));
    EXPECT_TRUE(gDB.commit());
    EXPECT_TRUE(insert(6, true));
    EXPECT_EQ(links(), (QStringList{"4", "6"}));
}

TEST_P(TransactionTest, IsAPartOfOneThatTheHostHasBegun) {
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(insert(1));
    {
        Transaction part(gDB);
        EXPECT_TRUE(insert(2));
        part.rollBack();
    }
    {
        Transaction part(gDB);
        EXPECT_TRUE(insert(3));
        EXPECT_TRUE(part.commit());
    }
    EXPECT_EQ(links(), (QStringList{"1", "3"}));
    EXPECT_TRUE(gDB.rollback());
    EXPECT_EQ(links(), QStringList());
    // The host may commit while a part is still open, which is kept then.
    ASSERT_TRUE(gDB.transaction());
    Transaction part(gDB);
    EXPECT_TRUE(insert(4));
    EXPECT_TRUE(gDB.commit());
    EXPECT_FALSE(part.commit());
    EXPECT_EQ(links(), QStringList("4"));
}

TEST_P(TransactionTest, PartsThatAreOpenGoWithTheWhole) {
    auto whole = std::make_unique<Transaction>(gDB);
    EXPECT_TRUE(insert(1));
    Transaction part(gDB);
    EXPECT_TRUE(insert(2));
    EXPECT_TRUE(whole->commit());
    EXPECT_FALSE(part.isOpen());
    EXPECT_FALSE(part.commit());
    part.rollBack();
    EXPECT_EQ(links(), QStringList("1"));

    whole = std::make_unique<Transaction>(gDB);
    EXPECT_TRUE(insert(3));
    Transaction later(gDB);
    EXPECT_TRUE(insert(4));
    whole.reset();
    EXPECT_FALSE(later.isOpen());
    Transaction next(gDB);
    EXPECT_TRUE(insert(5));
    later.rollBack();
    EXPECT_TRUE(next.commit());
    EXPECT_EQ(links(), (QStringList{"1", "5"}));
}

TEST_P(TransactionTest, AStoreThatIsReplacedHasTakenItBack) {
    Transaction change(gDB);
    EXPECT_TRUE(insert(1));
    Transaction part(gDB);
    EXPECT_TRUE(insert(2));
    reopen();
    EXPECT_FALSE(change.isOpen());
    Transaction next(gDB);
    EXPECT_TRUE(insert(3));
    change.rollBack();
    clearFailures();
    EXPECT_FALSE(part.commit());
    EXPECT_EQ(failureCount(), 1);
    clearFailures();
    EXPECT_TRUE(next.commit());
    EXPECT_EQ(links(), QStringList("3"));
}

TEST_P(TransactionTest, AConnectionThatIsClosedHasTakenItBack) {
    Transaction change(gDB);
    EXPECT_TRUE(insert(1));
    gDB.close();
    const FailureScope since(gDB);
    EXPECT_FALSE(change.commit());
    EXPECT_EQ(since.first().kind, FailureKind::Lost) << qPrintable(since.text());
    EXPECT_FALSE(change.isOpen());
    ASSERT_TRUE(gDB.open());
    Transaction next(gDB);
    EXPECT_TRUE(insert(2));
    EXPECT_TRUE(next.commit());
    EXPECT_EQ(links(), QStringList("2"));
}

TEST_P(TransactionTest, WhatTheEngineHasTakenBackIsNotKeptRowByRow) {
    Transaction change(gDB);
    EXPECT_TRUE(insert(1));
    // As SQLite does by itself when the disk is full, and a server for a statement of the host's that fails.
    QSqlQuery(gDB).exec(isPostgres() ? QStringLiteral("select nonsense") : QStringLiteral("rollback"));
    EXPECT_FALSE(insert(2));
    EXPECT_FALSE(change.commit());
    EXPECT_EQ(links(), QStringList());
    EXPECT_TRUE(insert(3, true));
    EXPECT_EQ(links(), QStringList("3"));
}

TEST_P(TransactionTest, WorksWithoutAStore) {
    QSqlDatabase none;
    Transaction change(none);
    EXPECT_FALSE(change.isOpen());
    EXPECT_FALSE(change.commit());
}

INSTANTIATE_TEST_SUITE_P(Stores, TransactionTest, testing::ValuesIn(kStoreKinds), storeKindName);

class FileTransactionTest : public StoreFixture {};

TEST_F(FileTransactionTest, ACommitThatAnotherProgramKeepsFromTheFileIsTakenBackAndTheStoreStaysUsable) {
    openTemplate("EmptyNet_V6.0.0");
    QSqlQuery(gDB).exec(QStringLiteral("pragma busy_timeout = 50"));
    OpenStore reader(path(), OpenStore::Access::Read);
    ASSERT_TRUE(reader.isOpen());
    {
        QSqlQuery held(reader.db());
        ASSERT_TRUE(held.exec(QStringLiteral("begin")));
        ASSERT_TRUE(held.exec(QStringLiteral("select * from Net")) && held.next());
        Transaction change(gDB);
        EXPECT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(1).get(), false));
        const FailureScope since(gDB);
        EXPECT_FALSE(change.commit());
        EXPECT_EQ(since.first().kind, FailureKind::Busy) << qPrintable(since.text());
        EXPECT_EQ(count("Link"), 0);
        held.finish();
        held.exec(QStringLiteral("commit"));
    }
    Transaction again(gDB);
    EXPECT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(1).get(), false));
    EXPECT_TRUE(again.commit());
    EXPECT_EQ(count("Link"), 1);
}

} // namespace
