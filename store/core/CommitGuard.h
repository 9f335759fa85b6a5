#pragma once

#include "model/MoraStoreExport.h"

#include <QSqlDatabase>

class QSqlDriver;
struct sqlite3;

/// While it lives, an SQLite connection commits nothing until allow() is called, and knows whether the engine
/// has taken the transaction back. SQLite ends a transaction by itself when it cannot write (a full disk, an
/// input/output error), and every statement that follows would then be kept by itself.
class MORASTORE_EXPORT CommitGuard {
public:
    /// Begin the transaction before or after. `db` must stay open for as long as this object lives.
    explicit CommitGuard(const QSqlDatabase &db);
    ~CommitGuard();

    /// False where the engine cannot be reached past Qt's driver (enginehandle::sqlite()): nothing is
    /// guarded.
    bool isActive() const { return mEngine != nullptr; }
    /// Whether a transaction is open.
    bool isInTransaction() const;
    bool isRolledBack() const { return mIsRolledBack; }
    void allow() { mIsAllowed = true; }
    /// Whether the driver still has the engine's connection that is guarded. Where it has not, that is gone
    /// and must be forgotten.
    bool isOn(const QSqlDriver *driver) const;
    void forgetEngine() { mEngine = nullptr; }

private:
    Q_DISABLE_COPY(CommitGuard)

    sqlite3 *mEngine;
    bool mIsAllowed = false;
    bool mIsRolledBack = false;
};
