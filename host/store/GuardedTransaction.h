#pragma once

#include <QSqlDatabase>
#include <QStringList>

/// A transaction around many operations of the library: all or nothing, also when the disk fills up.
///
/// SQLite ends a transaction by itself when it cannot write (a full disk, an input/output error), and
/// statements that follow would be kept one by one. The library's inserts do go on after a failed row. So, as
/// long as the transaction lasts, triggers of this connection refuse every write that is not part of it.
class GuardedTransaction {
public:
    /// Takes the write lock at once. Throws `Failure` when another program holds the store.
    explicit GuardedTransaction(QSqlDatabase &db);
    /// Rolls back what was not committed.
    ~GuardedTransaction();

    /// Throws `Failure` when the engine cannot keep what was written; nothing is kept then.
    void commit();

private:
    Q_DISABLE_COPY(GuardedTransaction)

    void run(const QString &sql);
    void raiseGuard();
    void dropGuard();

    QSqlDatabase &mDb;
    QStringList mTriggers;
    bool mOpen = false;
};
