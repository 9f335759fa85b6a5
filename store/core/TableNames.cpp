#include "store/core/TableNames.h"

#include "store/core/Engine.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

QString tablesOnServer() {
    return QStringLiteral("relkind in ('r', 'p') and not relispartition and relpersistence <> 't' and "
                          "pg_table_is_visible(pg_class.oid) and relnamespace <> 'pg_catalog'::regnamespace");
}

QStringList tableNames(const QSqlDatabase &db) {
    // Qt's list for a server leaves partitioned tables out, and spells those of most schemas with the schema.
    if (!engine::isPostgreSql(db))
        return db.tables();
    QStringList names;
    QSqlQuery tables(db);
    tables.setForwardOnly(true);
    tables.exec(QStringLiteral("select relname from pg_class where ") + tablesOnServer());
    while (tables.next())
        names.append(tables.value(0).toString());
    return names;
}
