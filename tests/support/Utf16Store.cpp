#include "tests/support/Utf16Store.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <gtest/gtest.h>

namespace {

void open(const char *name, const QString &path) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QLatin1String(name));
    db.setDatabaseName(path);
    ASSERT_TRUE(db.open()) << qPrintable(path);
}

QSqlQuery run(const char *name, const QString &sql, const QVariantList &values = {}) {
    QSqlQuery query(QSqlDatabase::database(QLatin1String(name)));
    EXPECT_TRUE(query.prepare(sql)) << qPrintable(sql);
    for (const QVariant &value : values)
        query.addBindValue(value);
    EXPECT_TRUE(query.exec()) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
    return query;
}

void copyRows(const QString &table) {
    QSqlQuery rows = run("utf8", QStringLiteral("select * from ") + table);
    while (rows.next()) {
        QVariantList values;
        QStringList places;
        for (int i = 0; i < rows.record().count(); ++i) {
            values.append(rows.value(i));
            places.append(QStringLiteral("?"));
        }
        run("utf16",
            QStringLiteral("insert into ") + table + QStringLiteral(" values(") +
                places.join(QLatin1Char(',')) + QLatin1Char(')'),
            values);
    }
}

} // namespace

void makeUtf16(const QString &path) {
    const QString made = path + QStringLiteral(".utf16");
    open("utf8", path);
    open("utf16", made);
    run("utf16", QStringLiteral("pragma encoding = 'UTF-16'"));
    run("utf16", QStringLiteral("begin"));
    QSqlQuery catalogue =
        run("utf8", QStringLiteral("select sql, type, name from sqlite_master where sql is not "
                                   "null and name not like 'sqlite%' order by type desc"));
    while (catalogue.next()) {
        run("utf16", catalogue.value(0).toString());
        if (catalogue.value(1).toString() == QLatin1String("table"))
            copyRows(catalogue.value(2).toString());
    }
    run("utf16", QStringLiteral("commit"));
    catalogue.clear();
    QSqlDatabase::removeDatabase(QStringLiteral("utf8"));
    QSqlDatabase::removeDatabase(QStringLiteral("utf16"));
    ASSERT_TRUE(QFile::remove(path) && QFile::rename(made, path));
}
