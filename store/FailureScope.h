#pragma once

#include "model/CallDbResult.h"
#include "model/MoraStoreExport.h"

#include <QList>
#include <QString>

class QSqlDatabase;
struct StoreState;

/// The failed calls on a store from a place in the program on, of DBTools and DBTools_V6 alike, in the order
/// in which they were recorded.
///
///     const FailureScope since(gDB);
///     if (!DBTools::insertLink(gDB, netId, link, true))
///         show(since.last().error); // kind, code, operation, table and objectId tell more
///
/// It looks at the lists of both classes: what a host empties is gone from here, too, and opening a store
/// empties them. On a read that gives null, no failure means that the store does not have the object; one
/// means that it could not be asked.
class MORASTORE_EXPORT FailureScope {
public:
    /// From here on. The scope of an OpenStore does not outlive that; any other is one of the process's store,
    /// whatever becomes of the connection.
    explicit FailureScope(const QSqlDatabase &db);
    /// All since the store was opened, or since the lists were emptied.
    static FailureScope sinceOpening(const QSqlDatabase &db);

    QList<CallDbResult> failures() const;
    bool isEmpty() const { return failures().isEmpty(); }
    /// @{ One whose kind is FailureKind::None and whose texts are empty when there is no failure.
    CallDbResult first() const;
    CallDbResult last() const;
    /// @}
    /// The sentence for a user: the errors, each once, a line each.
    QString text() const;

private:
    FailureScope(const StoreState &state, quint64 after);

    const StoreState *mState;
    quint64 mAfter;
};
