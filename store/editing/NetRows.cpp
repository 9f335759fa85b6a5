#include "store/editing/NetRows.h"

#include "store/core/TableNames.h"

namespace {

/// Identifiers of one statement: far below the length that engines take.
constexpr std::size_t kIdsOfAStatement = 1000;

QString listed(const QStringList &parts) {
    return parts.join(QLatin1String(", "));
}

} // namespace

NetRows::NetRows(const Store &store) : mStore(store) {
    if (!store.isUsable())
        return;
    const QStringList tables = tableNames(store.db());
    for (const QString &table : tables)
        mTables.insert(table.toLower());
    // A store has tables: none means that it could not be asked.
    mIsGood =
        !mTables.isEmpty() || store.fail({}, QStringLiteral("The tables of the store cannot be listed."));
}

bool NetRows::has(const catalogue::Table &table) const {
    return mTables.contains(QString::fromLatin1(table.name).toLower());
}

QString NetRows::ofNet() const {
    return mStore.hasSeveralNets() ? QStringLiteral("NetId = %1 and ").arg(mStore.netId()) : QString();
}

bool NetRows::run(const QString &sql) const {
    return Query(mStore, sql).exec();
}

bool NetRows::forEachPart(const char *column, const Ids &ids,
                          const std::function<bool(const QString &)> &run) const {
    for (std::size_t from = 0; from < ids.size(); from += kIdsOfAStatement) {
        QStringList part;
        for (std::size_t i = from; i < std::min(ids.size(), from + kIdsOfAStatement); ++i)
            part.append(QString::number(ids[i]));
        if (!run(ofNet() + QLatin1String(column) + QLatin1String(" in (") + listed(part) + QLatin1Char(')')))
            return false;
    }
    return true;
}

bool NetRows::forEach(const catalogue::Table &table, const std::vector<QByteArray> &columns,
                      const char *column, const Ids &ids, const Visit &visit) const {
    if (!has(table))
        return true;
    QStringList names;
    for (const QByteArray &name : columns)
        names.append(QString::fromLatin1(name));
    const QString select = QLatin1String("select ") + listed(names) + QLatin1String(" from ") +
                           QLatin1String(table.name) + QLatin1String(" where ");
    const QString order = mStore.isSqlite() ? QStringLiteral(" order by rowid") : QString();
    const auto run = [&](const QString &condition) {
        Query rows(mStore, select + condition + order);
        if (!rows.exec())
            return false;
        while (rows.next())
            visit(rows);
        return rows.isComplete();
    };
    return column ? forEachPart(column, ids, run) : run(ofNet() + QLatin1String("1 = 1"));
}

bool NetRows::remove(const catalogue::Table &table, const char *column, const Ids &ids) const {
    return !has(table) || forEachPart(column, ids, [&](const QString &condition) {
        return run(QLatin1String("delete from ") + QLatin1String(table.name) + QLatin1String(" where ") +
                   condition);
    });
}

bool NetRows::clear(const catalogue::Table &table, const char *column, const Ids &ids) const {
    return !has(table) || forEachPart(column, ids, [&](const QString &condition) {
        return run(QLatin1String("update ") + QLatin1String(table.name) + QLatin1String(" set ") +
                   QLatin1String(column) + QLatin1String(" = 0 where ") + condition);
    });
}
