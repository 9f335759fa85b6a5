#include "tests/resources/TemplateStore.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>
#include <gtest/gtest.h>

TemplateStore::TemplateStore(const QString &templateName)
    : mConnection(QStringLiteral("template %1").arg(reinterpret_cast<quintptr>(this))) {
    if (!QFile::copy(QStringLiteral(":/Resources/EmptyNet/") + templateName, path()))
        ADD_FAILURE() << "no template " << qPrintable(templateName);
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mConnection);
    db.setDatabaseName(path());
    EXPECT_TRUE(db.open());
}

TemplateStore::~TemplateStore() {
    QSqlDatabase::removeDatabase(mConnection);
}

QStringList TemplateStore::rows(const QString &sql) const {
    QSqlQuery query(QSqlDatabase::database(mConnection));
    if (!query.exec(sql)) {
        ADD_FAILURE() << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
        return {};
    }
    QStringList result;
    while (query.next()) {
        QStringList values;
        for (int i = 0; i < query.record().count(); ++i)
            values.append(query.value(i).toString());
        result.append(values.join(QLatin1Char('|')));
    }
    return result;
}

QStringList TemplateStore::tables() const {
    return rows(QStringLiteral("select name from sqlite_master where type = 'table' order by name"));
}

QStringList TemplateStore::columns(const QString &table) const {
    return rows(QStringLiteral(
                    "select name, type, [notnull], dflt_value, pk from pragma_table_info('%1') order by cid")
                    .arg(table));
}
