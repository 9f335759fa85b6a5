#include "store/core/Rows.h"

#include <QSqlQuery>
#include <QStringList>

#include <algorithm>

namespace {

QString selection(const Store &store, const char *what, const char *table) {
    const QString all = QStringLiteral("select %1 from %2").arg(QLatin1String(what), QLatin1String(table));
    return store.hasSeveralNets() ? all + QStringLiteral(" where NetId = %1").arg(store.netId()) : all;
}

/// Older files lack tables that came later: they hold nothing of them.
bool lacksTable(const Store &store, const char *table) {
    if (store.hasSeveralNets() || !store.isSqlite())
        return false;
    const QString sql =
        QStringLiteral("select 1 from sqlite_master where type = 'table' and name = '%1' collate nocase");
    return !QSqlQuery(sql.arg(QLatin1String(table)), store.db()).next();
}

qint64 count(const Store &store, const char *table) {
    QSqlQuery rows(selection(store, "count(*)", table), store.db());
    store.check(rows);
    return rows.next() ? rows.value(0).toLongLong() : 0;
}

/// Each engine's own number of a row's place. Rows of the format are seldom changed and never moved.
QString orderBy(const Store &store, const char *columns, Rows::Ties ties) {
    QStringList order;
    if (*columns)
        order.append(QLatin1String(columns));
    if (ties == Rows::Ties::AsWritten)
        order.append(store.isPostgreSql() ? QStringLiteral("ctid") : QStringLiteral("rowid"));
    return QLatin1String(" order by ") + order.join(QLatin1String(", "));
}

} // namespace

Rows::Rows(const Store &store, const char *table, const char *order, Ties ties, ProgressMeter &meter)
    : mMeter(meter), mFailures(store.failures()), mFailuresBefore(mFailures.size()) {
    if (meter.isCancelled() || !store.isUsable() || lacksTable(store, table))
        return;
    meter.begin(table, meter.isWanted() ? count(store, table) : 0);
    const QString sql = selection(store, "*", table) + orderBy(store, order, ties);
    mSource = sqliteRows(store, sql);
    if (!mSource)
        mSource = queryRows(store, sql);
}

bool Rows::next() {
    mNext = 0;
    mJsonParses = true;
    if (mSource && mSource->next())
        return mMeter.step();
    mMeter.end();
    mFailed = mFailures.size() > mFailuresBefore;
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
