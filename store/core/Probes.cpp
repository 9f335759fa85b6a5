#include "store/core/Probes.h"

#include "store/core/Sql.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace probes {

namespace {

QSqlQuery run(const QSqlDatabase &db, const QString &sql) {
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (db.isOpen())
        query.exec(sql);
    return query;
}

QSqlQuery tableInfo(const QSqlDatabase &db, const QString &table) {
    return run(db, QStringLiteral("PRAGMA table_info('%1')").arg(quoted(table)));
}

} // namespace

long dbVersion(const QSqlDatabase &db) {
    QSqlQuery version = run(db, QStringLiteral("select * from DbVersion"));
    return version.next() ? static_cast<long>(version.value(QStringLiteral("versionId")).toInt()) : 0;
}

bool hasTable(const QSqlDatabase &db, const QString &table) {
    return returnsRow(db, QStringLiteral("select * from sqlite_master where type = 'table' and name = '%1'")
                              .arg(quoted(table)));
}

bool tableHasField(const QSqlDatabase &db, const QString &table, const QString &field) {
    if (db.driverName() == QLatin1String("QSQLITE"))
        return !columnsContaining(db, table, field).isEmpty();
    if (db.driverName() == QLatin1String("QPSQL")) {
        const QString sql = QStringLiteral(
            "select count(*) from information_schema.columns WHERE table_schema = 'table_schema' and table_name = '%0' and column_name = '%1'");
        QSqlQuery count = run(db, sql.arg(quoted(table), quoted(field)));
        return count.next() && count.value(0).toInt() > 0;
    }
    return false;
}

bool returnsRow(const QSqlDatabase &db, const QString &sql) {
    return run(db, sql).next();
}

QStringList columnsContaining(const QSqlDatabase &db, const QString &table, const QString &part) {
    QStringList names;
    QSqlQuery columns = tableInfo(db, table);
    while (columns.next()) {
        const QString name = columns.value(QStringLiteral("name")).toString();
        if (name.contains(part))
            names.append(name);
    }
    return names;
}

bool hasMisspeltColumn(const QSqlDatabase &db) {
    const QStringList tables = tableNames(db);
    return std::any_of(tables.cbegin(), tables.cend(), [&db](const QString &table) {
        return !columnsContaining(db, table, QStringLiteral("Nnumber")).isEmpty();
    });
}

QStringList tableNames(const QSqlDatabase &db) {
    QStringList names;
    QSqlQuery tables =
        run(db, QStringLiteral("select * from sqlite_master where type = 'table' order by name"));
    while (tables.next())
        names.append(tables.value(QStringLiteral("name")).toString());
    return names;
}

QHash<QString, QString> keyColumns(const QSqlDatabase &db, const QStringList &tables) {
    QHash<QString, QString> keys;
    for (const QString &table : tables) {
        QSqlQuery columns = tableInfo(db, table);
        while (columns.next()) {
            const QString name = columns.value(QStringLiteral("name")).toString();
            const bool isNetColumn = name.compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0;
            if (columns.value(QStringLiteral("pk")).toInt() < 1 ||
                (isNetColumn && table != QLatin1String("Net")))
                continue;
            keys.insert(table, name);
            break;
        }
    }
    return keys;
}

} // namespace probes
