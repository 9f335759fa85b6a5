#include "tools/rows/StoreTables.h"

#include "store/core/Engine.h"
#include "store/core/TableNames.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

namespace {

// Stores of the first generation spell the serial numbers of lanes and signal colours with an extra n.
QString keyOf(const QString &name) {
    return name.toLower().replace(QLatin1String("nnumber"), QLatin1String("number"));
}

/// SQLite keeps any value anywhere. Two kinds of columns are told by their type: geometry and pictures, which
/// programs read as bytes, and days.
ColumnKind sqliteKind(const QString &type) {
    const QString word = type.toLower();
    if (word.startsWith(QLatin1String("binary")) || word == QLatin1String("byte varying") ||
        word == QLatin1String("image"))
        return ColumnKind::Bytes;
    return word.startsWith(QLatin1String("date")) ? ColumnKind::Date : ColumnKind::Any;
}

ColumnKind serverKind(const QString &type) {
    static const QHash<QString, ColumnKind> kinds{
        {QStringLiteral("smallint"), ColumnKind::Integer},
        {QStringLiteral("integer"), ColumnKind::Integer},
        {QStringLiteral("bigint"), ColumnKind::Integer},
        {QStringLiteral("real"), ColumnKind::Real},
        {QStringLiteral("double precision"), ColumnKind::Real},
        {QStringLiteral("numeric"), ColumnKind::Real},
        {QStringLiteral("bytea"), ColumnKind::Bytes},
        {QStringLiteral("date"), ColumnKind::Date},
        {QStringLiteral("timestamp without time zone"), ColumnKind::Date},
    };
    return kinds.value(type, ColumnKind::Text);
}

constexpr const char *kSqliteColumns =
    "select m.name, c.name, c.type from sqlite_master m, pragma_table_info(m.name) c "
    // A virtual table of a plug-in's would run its module.
    "where m.type = 'table' and m.sql like 'create table%' and m.name not like 'sqlite\\_%' escape '\\' order by m.name, c.cid";

/// Tables that the user may not look into are none, but for the owner's.
QString serverColumns() {
    return QStringLiteral(
               "select relname, attname, format_type(atttypid, null) from pg_class join pg_attribute on "
               "attrelid = pg_class.oid where %1 and attnum > 0 and not attisdropped and "
               "(pg_has_role(relowner, 'usage') or has_any_column_privilege(pg_class.oid, 'select')) "
               "order by relname, attnum")
        .arg(tablesOnServer());
}

} // namespace

const StoreColumn *StoreTable::column(const QString &named) const {
    const QString key = named.toLower();
    for (const StoreColumn &column : columns) {
        if (column.key == key)
            return &column;
    }
    return nullptr;
}

QHash<QString, StoreTable> storeTables(const QSqlDatabase &db) {
    const bool isSqlite = engine::isSqlite(db);
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(isSqlite ? QLatin1String(kSqliteColumns) : serverColumns())) {
        requireServer(query);
        throw Failure(QStringLiteral("the tables of the store cannot be read (%1)")
                          .arg(query.lastError().databaseText().simplified()));
    }
    QHash<QString, StoreTable> tables;
    while (query.next()) {
        const QString name = query.value(0).toString();
        const QString column = query.value(1).toString();
        const QString type = query.value(2).toString();
        StoreTable &table = tables[name.toLower()];
        table.name = name;
        table.columns.append({column, keyOf(column), isSqlite ? sqliteKind(type) : serverKind(type)});
    }
    return tables;
}

QString quotedName(const QString &name) {
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

} // namespace moratools
