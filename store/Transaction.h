#pragma once

#include "model/MoraStoreExport.h"

#include <QPointer>

class QSqlDatabase;
class QSqlDriver;

/// A transaction on a store, kept as a whole or not at all: rolled back unless commit() succeeds.
///
///     Transaction change(db);
///     DBTools::insertLink(db, netId, link, false);
///     DBTools::insertConnector(db, netId, connector, false);
///     if (!change.commit())
///         // nothing of both is in the store; why: FailureScope
///
/// One that is begun while another is open (also one that the host has begun on the connection by itself) is
/// a part of that, as a savepoint, to any depth: rolling it back takes back what was written since it began,
/// and the outer one goes on. What failed inside a part that was rolled back does not keep the outer one from
/// being committed.
///
/// Operations are called with their flag false inside it. One whose flag is true is refused, with a record,
/// and that keeps the transaction from being committed.
///
/// Rolling back concerns rows: objects in memory, gNet's tables and the registries stay as they are, and
/// identifiers that were drawn are not drawn again.
///
/// It is used and destroyed in the thread of the store, before the store is closed; a store that was closed
/// or replaced has rolled it back.
class MORASTORE_EXPORT Transaction {
public:
    /// Begins. Where that is not possible (the store is not open, or takes nothing more until it is opened
    /// again), that is recorded and isOpen() is false.
    explicit Transaction(QSqlDatabase &db);
    /// Rolls back what was not committed, also while an exception passes.
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// Whether it was begun and has not ended.
    bool isOpen() const;

    /// Keeps what was written since it began; the outermost one writes it to the store for good. Parts of it
    /// that are still open are rolled back first.
    /// @return false when nothing was kept: a call on the store has failed since it began (in either class's
    ///         list), the engine refuses (another program is in the way), or it is not open. There is a record
    ///         then, the transaction is rolled back, and the connection stays usable. A host that empties the
    ///         lists on the way has dealt with what was in them.
    bool commit();
    /// Takes back what was written since it began, with all parts of it; does nothing once it has ended.
    void rollBack();

private:
    QPointer<QSqlDriver> mDriver; ///< null once the connection is gone
    quint64 mNumber = 0;          ///< 0 when it was not begun
};
