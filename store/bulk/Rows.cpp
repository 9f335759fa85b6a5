#include "store/bulk/Rows.h"

#include "store/core/Probes.h"

#include <algorithm>

namespace {

QString selection(const Store &store, const char *what, const char *table) {
    const QString all = QStringLiteral("select %1 from %2").arg(QLatin1String(what), QLatin1String(table));
    return store.hasSeveralNets() ? all + QStringLiteral(" where NetId = %1").arg(store.netId()) : all;
}

/// Older files lack tables that came later: they hold nothing of them.
probes::Answer hasTable(const Store &store, const char *table) {
    if (store.hasSeveralNets() || !store.isSqlite())
        return true;
    const QString sql =
        QStringLiteral("select 1 from sqlite_master where type = 'table' and name = '%1' collate nocase");
    return probes::returnsRow(store.db(), sql.arg(QLatin1String(table)), store.failures());
}

qint64 count(const Store &store, const char *table) {
    return probes::number(store.db(), selection(store, "count(*)", table), store.failures()).value_or(0);
}

QString inOrder(const Store &store, const char *table, const QString &order) {
    return selection(store, "*", table) + QLatin1String(" order by ") + order;
}

/// The rows owner by owner, each owner's by the statement of a single read. What order a server gives them
/// depends on its plan (after an update a row's place in the index is not that in the table), and so there is
/// none to ask for. The offsets keep the planner from making one selection of the two.
QString ownerByOwner(const Store &store, const char *table, const char *owner) {
    return QStringLiteral("select own.* from (select distinct %1 as id from %2 where NetId = %3 order by 1 "
                          "offset 0) owner cross join lateral (select * from %2 where NetId = %3 and %1 = "
                          "owner.id offset 0) own")
        .arg(QLatin1String(owner), QLatin1String(table), QString::number(store.netId()));
}

QString statement(const Store &store, const char *table, const char *columns, Rows::Ties ties) {
    const QString order = QLatin1String(columns);
    if (order.isEmpty())
        return selection(store, "*", table);
    if (ties == Rows::Ties::None)
        return inOrder(store, table, order);
    if (store.isSqlite())
        return inOrder(store, table, order + QLatin1String(", rowid"));
    return order.contains(QLatin1Char(',')) ? inOrder(store, table, order + QLatin1String(", ctid"))
                                            : ownerByOwner(store, table, columns);
}

} // namespace

Rows::Rows(const Store &store, const char *table, const char *order, Ties ties, ProgressMeter &meter)
    : mStore(store), mMeter(meter), mFailuresBefore(store.failures().size()) {
    if (meter.isCancelled() || !store.isUsable() || !hasTable(store, table).value_or(false))
        return;
    meter.begin(table, meter.isWanted() ? count(store, table) : 0);
    const QString sql = statement(store, table, order, ties);
    mSource = sqliteRows(store, sql);
    if (!mSource)
        mSource = queryRows(store, sql);
}

bool Rows::next() {
    mNext = 0;
    mJsonParses = true;
    mNumbersParse = true;
    if (mSource && mSource->next())
        return mMeter.step();
    mMeter.end();
    mFailed = mStore.failures().size() > mFailuresBefore;
    return false;
}

int Rows::columnIndex(const char *column) {
    if (mNext < mColumns.size() && mColumns[mNext].first == column)
        return mColumns[mNext++].second;
    const auto known = std::find_if(mColumns.cbegin(), mColumns.cend(),
                                    [column](const auto &entry) { return entry.first == column; });
    if (known != mColumns.cend()) {
        mNext = std::size_t(known - mColumns.cbegin()) + 1;
        return known->second;
    }
    mColumns.emplace_back(column, mSource->indexOf(column));
    mNext = mColumns.size();
    return mColumns.back().second;
}
