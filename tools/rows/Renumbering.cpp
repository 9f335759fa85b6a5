#include "tools/rows/Renumbering.h"

#include "tools/reports/Failure.h"

#include <algorithm>
#include <limits>

namespace moratools {

qint64 Renumbering::firstAfter(qint64 largest, qint64 count, const QString &table) {
    // Subtracted, since the sum may not be a number of 64 bits.
    if (count > 0 && largest > std::numeric_limits<qint32>::max() - count)
        throw Failure(QStringLiteral("the identifiers of table %1 are used up in the target; copy into a new "
                                     "store")
                          .arg(table));
    return count > 0 ? largest + 1 : 0;
}

void Renumbering::add(const QString &table, std::vector<qint64> own, std::vector<qint64> taken,
                      qint64 largest) {
    const qint64 first = firstAfter(largest, qint64(taken.size()), table);
    mTables.insert(table, {std::move(own), std::move(taken), first});
}

bool Renumbering::has(const QString &table, qint64 id) const {
    const auto ids = mTables.constFind(table);
    return ids != mTables.constEnd() && std::binary_search(ids->own.begin(), ids->own.end(), id);
}

qint64 Renumbering::of(const QString &table, qint64 id) const {
    const auto ids = mTables.constFind(table);
    if (ids == mTables.constEnd())
        return id;
    const auto place = std::lower_bound(ids->taken.begin(), ids->taken.end(), id);
    const bool isTaken = place != ids->taken.end() && *place == id;
    return isTaken ? ids->first + (place - ids->taken.begin()) : id;
}

qint64 Renumbering::count() const {
    qint64 all = 0;
    for (const Ids &ids : mTables)
        all += qint64(ids.taken.size());
    return all;
}

} // namespace moratools
