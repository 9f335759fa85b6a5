#include "store/ids/LargestIds.h"

#include "store/catalogue/Catalogue.h"
#include "store/core/Engine.h"

#include <QSqlQuery>

namespace identifiers {

namespace {

bool hasIndexByIdentifier(const QSqlDatabase &db, const QString &table, const QString &column) {
    QSqlQuery index(QStringLiteral("select 1 from pragma_index_list('%1') l, pragma_index_info(l.name) i "
                                   "where i.seqno = 0 and lower(i.name) = lower('%2')")
                        .arg(table, column),
                    db);
    return index.next();
}

} // namespace

QString largestOfAllNets(const QSqlDatabase &db, const catalogue::Table &table, bool hasSeveralNets) {
    const QString name = QLatin1String(table.name);
    const QString column = QLatin1String(table.id);
    const bool byNetwork = hasSeveralNets && engine::isSqlite(db) && !hasIndexByIdentifier(db, name, column);
    return (byNetwork
                ? QStringLiteral("select max((select max(%1) from %2 where %2.NetId = Net.NetId)) from Net")
                : QStringLiteral("select max(%1) from %2"))
        .arg(column, name);
}

} // namespace identifiers
