#pragma once

#include "tests/support/PostgresDatabase.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <gtest/gtest.h>

/// A connection beside the program's.
class Beside {
public:
    explicit Beside(const QString &database, const QString &user = PostgresDatabase::user()) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("beside"));
        db.setHostName(PostgresDatabase::host());
        db.setPort(PostgresDatabase::port());
        db.setDatabaseName(database);
        db.setUserName(user);
        db.setPassword(PostgresDatabase::password());
        EXPECT_TRUE(db.open()) << db.lastError().text().toStdString();
    }
    ~Beside() { QSqlDatabase::removeDatabase(QStringLiteral("beside")); }
    QString value(const QString &sql) const {
        QSqlQuery query(QSqlDatabase::database(QStringLiteral("beside")));
        EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << query.lastError().text().toStdString();
        return query.next() ? query.value(0).toString() : QString();
    }

private:
    Q_DISABLE_COPY(Beside)
};
