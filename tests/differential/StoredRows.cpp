#include "tests/differential/StoredRows.h"

#include "store/DBTools.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <gtest/gtest.h>

namespace differential {

namespace {

bool isSqlite() {
    return gDB.driverName() == QLatin1String("QSQLITE");
}

QList<QStringList> ask(const QString &sql) {
    QSqlQuery query(gDB);
    query.setForwardOnly(true);
    EXPECT_TRUE(query.exec(sql)) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
    QList<QStringList> rows;
    while (query.next()) {
        QStringList row;
        for (int i = 0; i < query.record().count(); ++i)
            row.append(query.value(i).toString());
        rows.append(row);
    }
    return rows;
}

/// The tables of the store with their columns.
QMap<QString, QStringList> catalogue() {
    const QString columns =
        isSqlite() ? QStringLiteral("select m.name, c.name from sqlite_master m, pragma_table_info(m.name) c "
                                    "where m.type = 'table' and m.name not like 'sqlite%'")
                   : QStringLiteral("select table_name, column_name from information_schema.columns where "
                                    "table_schema = 'public'");
    QMap<QString, QStringList> tables;
    const QList<QStringList> rows = ask(columns);
    for (const QStringList &row : rows)
        tables[row.at(0)].append(row.at(1));
    return tables;
}

} // namespace

QMap<QString, TableRows> storedRows(long netId, bool severalNets) {
    // An engine that is not touched between two calls has the same catalogue.
    static QMap<QString, QMap<QString, QStringList>> catalogues;
    QMap<QString, QStringList> &tables = catalogues[gDB.databaseName()];
    if (tables.isEmpty())
        tables = catalogue();
    QMap<QString, TableRows> stored;
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        QStringList names;
        QStringList literals;
        for (const QString &column : table.value()) {
            if (column.compare(QLatin1String("netid"), Qt::CaseInsensitive) == 0)
                continue;
            names.append(column.toLower());
            literals.append((isSqlite() ? QStringLiteral("quote(\"%1\")")
                                        : QStringLiteral("coalesce(quote_literal(\"%1\"::text), 'NULL')"))
                                .arg(column));
        }
        const bool hasNet = names.size() < table.value().size();
        if ((severalNets && !hasNet) ||
            table.key().compare(QLatin1String("idgenerater"), Qt::CaseInsensitive) == 0)
            continue;
        QString sql = QStringLiteral("select ") + literals.join(QLatin1String(", ")) +
                      QStringLiteral(" from \"") + table.key() + QLatin1Char('"');
        if (severalNets)
            sql += QStringLiteral(" where netid = ") + QString::number(netId);
        TableRows rows;
        const QList<QStringList> read = ask(sql);
        for (const QStringList &values : read) {
            QMap<QString, QString> row;
            for (int i = 0; i < names.size(); ++i)
                row.insert(names.at(i), values.at(i));
            rows.append(row);
        }
        stored.insert(table.key().toLower(), rows);
    }
    return stored;
}

QStringList linesOf(const QMap<QString, TableRows> &tables) {
    QStringList lines;
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        QStringList rows;
        for (const QMap<QString, QString> &row : table.value()) {
            QString line = table.key();
            for (auto column = row.cbegin(); column != row.cend(); ++column)
                line += QLatin1Char(' ') + column.key() + QLatin1Char('=') + column.value();
            rows.append(line);
        }
        rows.sort();
        lines += rows;
    }
    return lines;
}

void noteFilled(const QMap<QString, TableRows> &rows, QMap<QString, bool> &isFilled) {
    for (auto table = rows.cbegin(); table != rows.cend(); ++table) {
        if (table->isEmpty())
            isFilled[table.key()] = isFilled.value(table.key());
        for (const QMap<QString, QString> &row : *table) {
            isFilled[table.key()] = true;
            for (auto column = row.cbegin(); column != row.cend(); ++column) {
                bool &filled = isFilled[table.key() + QLatin1Char('.') + column.key()];
                filled = filled || *column != QLatin1String("NULL");
            }
        }
    }
}

} // namespace differential
