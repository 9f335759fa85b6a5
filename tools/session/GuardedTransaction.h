#pragma once

#include "store/core/CommitGuard.h"
#include "store/core/Savepoint.h"
#include "tools/MoraToolsExport.h"

#include <QSqlDatabase>
#include <QStringList>

#include <memory>
#include <optional>

class QSqlError;

namespace moratools {

class StoreSession;

/// A transaction around many operations of the library: all or nothing, also when the disk fills up.
///
/// SQLite ends a transaction by itself when it cannot write (a full disk, an input/output error), and
/// statements that follow would be kept one by one; the library's inserts do go on after a failed row. So the
/// connection is kept from committing (CommitGuard). What does not fit into a cache of 64 MiB is written to
/// the store early, beside a journal that takes it back; from then on other programs cannot read.
///
/// Where Qt's driver carries an engine of its own, a second connection reads the store for as long as the
/// transaction lasts: nothing can be committed beside a reader. (In a store with a write-ahead log it could;
/// stores made from the library's templates have none.) All changes stay in memory until the end, then.
///
/// A PostgreSQL server keeps nothing of a transaction whose connection is lost. The library goes on after a
/// row that the server refuses, though, and a transaction that is dead ends with a commit that reports
/// success: so there the commit is refused once a statement has failed unexpectedly or the transaction is
/// dead.
class MORATOOLS_EXPORT GuardedTransaction {
public:
    /// Takes the store's write lock at once, or as soon as another program lets go of it (Patience.h). `store` must
    /// outlive this object. Throws `Failure` when another program holds it.
    explicit GuardedTransaction(const StoreSession &store);
    /// Rolls back what was not committed.
    ~GuardedTransaction();

    /// Throws `Failure` when the engine cannot keep what was written; nothing is kept then.
    void commit();

private:
    Q_DISABLE_COPY(GuardedTransaction)

    /// The connection that reads the store.
    class Reader {
    public:
        explicit Reader(const QString &path);
        ~Reader() { close(); }
        void close();

    private:
        Q_DISABLE_COPY(Reader)

        QString mName;
    };

    void beginSqlite();
    void beginServer();
    void commitFile();
    void commitOnServer();
    /// The error of the first statement that fails; the transaction is rolled back then.
    QSqlError tryOnServer(const QStringList &statements);
    void run(const char *sql);
    void runPatiently(const char *sql, int quick);
    [[noreturn]] void refuse(const QSqlError &error);

    const StoreSession &mStore;
    QSqlDatabase &mDb;
    std::unique_ptr<CommitGuard> mGuard; ///< SQLite only
    std::unique_ptr<Reader> mReader;     ///< SQLite only, and only where the guard cannot be had
    std::optional<WithoutSavepoints> mWithoutSavepoints; ///< servers only: what fails ends all
    int mFailuresBefore;
    bool mOpen = false;
};

} // namespace moratools
