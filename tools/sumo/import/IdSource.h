#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QSet>
#include <QSqlDatabase>

namespace moratools {

/// Identifiers for the rows of a new network, drawn from the store's allocator for the current network gNet.
///
/// A store of several networks counts them per network, yet writes the geometry of a connector by its id
/// alone, and giving unused ids back sets the counters of all networks alike. So that importing a network
/// never touches the rows or the ids of another one, ids that any network uses are passed over.
class MORATOOLS_EXPORT IdSource {
public:
    explicit IdSource(QSqlDatabase &db) : mDb(db) {}

    /// The next identifier for `table`. Throws `Failure` when the store gives none.
    long next(const char *table);

private:
    /// Moves the counter of the current network past what any network uses.
    void pass(const char *table) const;

    QSqlDatabase &mDb;
    QSet<QByteArray> mPassed; ///< the tables whose counters were moved
};

} // namespace moratools
