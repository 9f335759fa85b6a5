#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QList>
#include <QMap>

namespace moratools {

class StoreSession;

/// Identifiers for the rows of a new network, the store's current one, which is built in memory before any of it
/// is written. They are counted here and drawn from the store's allocator all at once, a table at a time:
///
///     do {
///         build(ids);
///     } while (!ids.draw());
///
/// A store of several networks counts them per network, yet writes the geometry of a connector by its id alone. So
/// that networks never touch each other's rows, ids that any network uses are passed over.
class MORATOOLS_EXPORT IdSource {
public:
    /// `store` must outlive this object.
    explicit IdSource(const StoreSession &store) : mStore(store) {}

    const StoreSession &store() const { return mStore; }
    /// The next identifier for `table`, whose name is a literal. Throws `Failure` when there is none.
    long next(const char *table);
    /// Draws what next() gave out. False when others have drawn from a server meanwhile, and some of it is theirs:
    /// what was built is to be built anew, the same way, and gets what was drawn. Throws `Failure` when the store
    /// gives none.
    bool draw();

private:
    struct OfTable {
        qint64 floor = 0; ///< no network uses a higher one, and none was given out
        int count = 0;    ///< how many next() gave out
        QList<long> drawn;

        long at(int place) const { return place < drawn.size() ? drawn.at(place) : long(floor + 1 + place); }
    };

    qint64 floorOf(const char *table) const;
    bool draw(const QByteArray &table, OfTable &ids) const;
    /// In a file, what is drawn for other networks comes after what was drawn for this one. The counters of networks that are
    /// behind are moved further than that, so that not each import writes all of them.
    void passInOtherNetworks() const;

    const StoreSession &mStore;
    QMap<QByteArray, OfTable> mTables;
};

} // namespace moratools
