#pragma once

#include "model/MoraStoreExport.h"

#include <QPointer>

class QSqlDatabase;
class QSqlDriver;

/// Keeps the failure of a statement from ending the transaction around it.
///
/// PostgreSQL takes no further statement in a transaction once one has failed; SQLite goes on by itself. With
/// a savepoint around each statement, both end with the same rows. Query and the probes set one around every
/// statement, reads included. Does nothing on SQLite and outside a transaction.
class Savepoint {
public:
    /// @param db must outlive the savepoint.
    explicit Savepoint(const QSqlDatabase &db);
    /// Undoes what was not ended.
    ~Savepoint() { end(false); }
    Savepoint(const Savepoint &) = delete;
    Savepoint &operator=(const Savepoint &) = delete;

    /// Whether a transaction is open on the PostgreSQL connection @p db, be it one that takes no further
    /// statement.
    static bool isInsideTransaction(const QSqlDatabase &db);

    /// Keeps what was written since when @p done is true, undoes it otherwise. @return @p done.
    bool end(bool done);

private:
    const QSqlDatabase &mDb;
    bool mSet = false;
};

/// While it lives, statements on a connection get no savepoints: for work that is taken back as a whole once one of
/// them has failed. On a server that is far away, two of three messages are about savepoints.
class MORASTORE_EXPORT WithoutSavepoints {
public:
    explicit WithoutSavepoints(const QSqlDatabase &db);
    ~WithoutSavepoints();
    WithoutSavepoints(const WithoutSavepoints &) = delete;
    WithoutSavepoints &operator=(const WithoutSavepoints &) = delete;

private:
    QPointer<QSqlDriver> mDriver; ///< null where another one lives already, and on SQLite
};
