#include "tools/rows/NetworkRows.h"

#include "store/core/Engine.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

NetworkRows::NetworkRows(const QSqlDatabase &db, const QString &store,
                         const QHash<QString, StoreTable> &tables, bool hasSeveralNetworks, long netId)
    : mDb(db), mStore(store), mTables(tables), mHasSeveralNetworks(hasSeveralNetworks), mNetId(netId) {}

NetworkRows NetworkRows::restrictedTo(const QString &condition) const {
    NetworkRows rows = *this;
    rows.mRestriction = condition;
    return rows;
}

const StoreTable *NetworkRows::table(const QString &named) const {
    const auto found = mTables.constFind(named.toLower());
    return found == mTables.constEnd() ? nullptr : &*found;
}

QString NetworkRows::condition(const StoreTable &table) const {
    if (!mRestriction.isEmpty())
        return QStringLiteral(" where ") + mRestriction;
    // In a store of one network every row is its own, whatever number stands in it.
    if (!mHasSeveralNetworks)
        return {};
    const StoreColumn *column = table.column(QStringLiteral("netid"));
    return column ? QStringLiteral(" where %1 = %2").arg(quotedName(column->name), QString::number(mNetId))
                  : QStringLiteral(" where 1 = 0");
}

RowCursor NetworkRows::read(const StoreTable &table, const catalogue::Table &entry, RowOrder order) const {
    QStringList columns;
    for (const StoreColumn &column : table.columns)
        columns.append(quotedName(column.name));
    QStringList by;
    if (order == RowOrder::Written && engine::isSqlite(mDb)) {
        by.append(QStringLiteral("rowid"));
    } else {
        for (const char *name : entry.key) {
            if (const StoreColumn *column = table.column(QLatin1String(name)))
                by.append(quotedName(column->name));
        }
    }
    QString sql = QStringLiteral("select %1 from %2%3")
                      .arg(columns.join(QLatin1Char(',')), quotedName(table.name), condition(table));
    if (!by.isEmpty())
        sql += QStringLiteral(" order by ") + by.join(QLatin1Char(','));
    return {mDb, mStore, table, sql, mRestriction.isEmpty() ? RowCursor::Pull::Single : RowCursor::Pull::All};
}

Language NetworkRows::language() const {
    const StoreTable *types = table(QStringLiteral("linktype"));
    const StoreColumn *name = types ? types->column(QStringLiteral("typename")) : nullptr;
    if (!name)
        return Language::Unknown;
    // What the library asks of a whole store when it opens it.
    QSqlQuery rows(mDb);
    if (!rows.exec(QStringLiteral("select count(*), count(case when %1 = '高速路' then 1 end) from %2%3")
                       .arg(quotedName(name->name), quotedName(types->name), condition(*types))) ||
        !rows.next()) {
        requireServer(rows, mStore);
        throw Failure(QStringLiteral("%1: the store cannot be read (%2); check it, or the server")
                          .arg(mStore, rows.lastError().databaseText().simplified()));
    }
    if (rows.value(0).toLongLong() == 0)
        return Language::Unknown;
    return rows.value(1).toLongLong() > 0 ? Language::Chinese : Language::English;
}

} // namespace moratools
