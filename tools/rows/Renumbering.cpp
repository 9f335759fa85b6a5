#include "tools/rows/Renumbering.h"

#include "tools/reports/Failure.h"

#include <algorithm>
#include <limits>

namespace moratools {

namespace {

constexpr qint64 kLeast = std::numeric_limits<qint64>::min();

} // namespace

qint64 Renumbering::firstAfter(qint64 largest, qint64 count, const QString &table) {
    // Subtracted, since the sum may not be a number of 64 bits.
    if (count > 0 && largest > std::numeric_limits<qint32>::max() - count)
        throw Failure(QStringLiteral("the identifiers of table %1 are used up in the target; copy into a new "
                                     "store")
                          .arg(table));
    return count > 0 ? largest + 1 : 0;
}

void Renumbering::add(const QString &table, std::vector<qint64> own, const std::vector<qint64> &taken,
                      qint64 largest) {
    qint64 next = firstAfter(largest, qint64(taken.size()), table);
    std::vector<std::pair<qint64, qint64>> changes;
    changes.reserve(taken.size());
    for (const qint64 id : taken)
        changes.emplace_back(id, next++);
    add(table, std::move(own), std::move(changes));
}

void Renumbering::add(const QString &table, std::vector<qint64> own,
                      std::vector<std::pair<qint64, qint64>> changes) {
    mTables.insert(table, {std::move(own), std::move(changes)});
}

bool Renumbering::has(const QString &table, qint64 id) const {
    const auto ids = mTables.constFind(table);
    return ids != mTables.constEnd() && std::binary_search(ids->own.begin(), ids->own.end(), id);
}

qint64 Renumbering::of(const QString &table, qint64 id) const {
    const auto ids = mTables.constFind(table);
    if (ids == mTables.constEnd())
        return id;
    const auto place = std::lower_bound(ids->changes.begin(), ids->changes.end(), std::make_pair(id, kLeast));
    return place != ids->changes.end() && place->first == id ? place->second : id;
}

qint64 Renumbering::count() const {
    qint64 all = 0;
    for (const Ids &ids : mTables)
        all += qint64(ids.changes.size());
    return all;
}

} // namespace moratools
