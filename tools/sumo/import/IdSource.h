#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QSet>

namespace moratools {

class StoreSession;

/// Identifiers for the rows of a new network, drawn from the store's allocator for its current network.
///
/// A store of several networks counts them per network, yet writes the geometry of a connector by its id
/// alone, and giving unused ids back sets the counters of all networks alike. So that importing a network
/// never touches the rows or the ids of another one, ids that any network uses are passed over.
class MORATOOLS_EXPORT IdSource {
public:
    /// `store` must outlive this object.
    explicit IdSource(const StoreSession &store) : mStore(store) {}

    const StoreSession &store() const { return mStore; }
    /// The next identifier for `table`. Throws `Failure` when the store gives none.
    long next(const char *table);

private:
    /// Moves the counter of the current network past what any network uses.
    void pass(const char *table) const;

    const StoreSession &mStore;
    QSet<QByteArray> mPassed; ///< the tables whose counters were moved
};

} // namespace moratools
