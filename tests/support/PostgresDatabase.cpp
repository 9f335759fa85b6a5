#include "tests/support/PostgresDatabase.h"

#include "store/DBTools.h"
#include "tests/support/Places.h"
#include "tools/session/NewDatabase.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {

QString setting(const char *name) {
    return qEnvironmentVariable(name);
}

/// A connection that is there for a few statements.
class Session {
public:
    explicit Session(const QString &database) : mName(QStringLiteral("session in ") + database) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), mName);
        db.setHostName(PostgresDatabase::host());
        db.setPort(PostgresDatabase::port());
        db.setDatabaseName(database);
        db.setUserName(PostgresDatabase::user());
        db.setPassword(PostgresDatabase::password());
        EXPECT_TRUE(db.open()) << qPrintable(db.lastError().text());
    }
    ~Session() { QSqlDatabase::removeDatabase(mName); }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    QSqlQuery run(const QString &sql) const {
        QSqlQuery query(QSqlDatabase::database(mName));
        EXPECT_TRUE(query.exec(sql)) << qPrintable(query.lastError().text());
        return query;
    }

private:
    QString mName;
};

QString maintenanceDatabase() {
    return setting("MORA_TEST_PG_NAME");
}

QByteArray schemaText() {
    QFile file(postgresqlText());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    return file.readAll();
}

void fill(const QString &database, PostgresDatabase::Content content) {
    if (content == PostgresDatabase::Content::Schema) {
        Session(database).run(QString::fromUtf8(schemaText()));
        return;
    }
    QString password = PostgresDatabase::password();
    password.replace(QLatin1Char('\''), QLatin1String("\\'"));
    moratools::makePartitionedStore(QStringLiteral("dbname=%1 host=%2 port=%3 user=%4 password='%5'")
                                        .arg(database, PostgresDatabase::host(),
                                             QString::number(PostgresDatabase::port()),
                                             PostgresDatabase::user(), password),
                                    3);
}

/// The database that all others are copied from, which takes a fifth of the time of running the SQL text.
/// Made by whichever process comes first; the text is a part of its name.
QString preparedDatabase(const Session &session, PostgresDatabase::Content content) {
    const bool isPlain = content == PostgresDatabase::Content::Schema;
    QString name =
        (isPlain ? QStringLiteral("mora_schema_") : QStringLiteral("mora_parts_")) +
        QString::fromLatin1(QCryptographicHash::hash(schemaText(), QCryptographicHash::Md5).toHex());
    session.run(QStringLiteral("select pg_advisory_lock(1)"));
    if (!session.run(QStringLiteral("select 1 from pg_database where datname = '%1'").arg(name)).next()) {
        const QString making = name + QStringLiteral("_new");
        session.run(QStringLiteral("drop database if exists %1").arg(making));
        session.run(QStringLiteral("create database %1").arg(making));
        fill(making, content);
        session.run(QStringLiteral("alter database %1 rename to %2").arg(making, name));
    }
    session.run(QStringLiteral("select pg_advisory_unlock(1)"));
    return name;
}

} // namespace

bool PostgresDatabase::hasServer() {
    return !host().isEmpty();
}

QString PostgresDatabase::host() {
    return setting("MORA_TEST_PG_HOST");
}

int PostgresDatabase::port() {
    return setting("MORA_TEST_PG_PORT").toInt();
}

QString PostgresDatabase::user() {
    return setting("MORA_TEST_PG_USER");
}

QString PostgresDatabase::password() {
    return setting("MORA_TEST_PG_PASSWORD");
}

PostgresDatabase::PostgresDatabase(Content content) {
    static int made = 0;
    mName = QStringLiteral("mora_case_%1_%2")
                .arg(QString::number(QCoreApplication::applicationPid()), QString::number(++made));
    const Session session(maintenanceDatabase());
    if (content == Content::Schema && !setting("MORA_TEST_PARTITIONS").isEmpty())
        content = Content::Partitions;
    const QString source =
        content == Content::Nothing ? QStringLiteral("template1") : preparedDatabase(session, content);
    session.run(QStringLiteral("create database %1 template %2").arg(mName, source));
}

PostgresDatabase::~PostgresDatabase() {
    DBTools::mDbDriver = QStringLiteral("QSQLITE");
    DBTools::mDbPassword.clear();
    Session(maintenanceDatabase()).run(QStringLiteral("drop database %1 with (force)").arg(mName));
}

QString PostgresDatabase::connectionString() const {
    return QStringLiteral("dbname=%1 host=%2 port=%3 user=%4")
        .arg(mName, host(), QString::number(port()), user());
}

void PostgresDatabase::use() const {
    DBTools::mDbDriver = QStringLiteral("QPSQL");
    DBTools::mDbHost = host();
    DBTools::mDbPort = port();
    DBTools::mDbName = mName;
    DBTools::mDbUser = user();
    DBTools::mDbPassword = password();
}
