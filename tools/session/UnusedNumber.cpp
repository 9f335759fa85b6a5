#include "tools/session/UnusedNumber.h"

#include "store/core/Engine.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace moratools {

namespace {

QVariant valueOf(const StoreSession &store, const QString &sql) {
    QSqlQuery query(store.db());
    if (!query.exec(sql) || !query.next())
        store.refuseReading(QStringLiteral("which numbers are free"), query.lastError().databaseText());
    return query.value(0);
}

} // namespace

long unusedNumber(const StoreSession &store, long number) {
    if (!engine::isPostgreSql(store.db()))
        return number;
    // Nothing where all rows are here.
    const QString isUsed =
        valueOf(store,
                QStringLiteral(
                    "select string_agg(format('exists (select 1 from %s where NetId = {n})', oid::regclass), "
                    "' or ') from pg_class where relkind = 'p' and pg_table_is_visible(oid) and exists "
                    "(select 1 from pg_inherits join pg_foreign_table on ftrelid = inhrelid)"))
            .toString();
    const auto isTaken = [&](long each) {
        const QString condition = QString(isUsed).replace(QLatin1String("{n}"), QString::number(each));
        return valueOf(store, QLatin1String("select ") + condition).toBool();
    };
    while (!isUsed.isEmpty() && isTaken(number))
        ++number;
    return number;
}

} // namespace moratools
