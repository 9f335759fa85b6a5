#include "tools/session/SqliteConnection.h"

#include "store/core/ConnectionName.h"
#include "store/guard/ConnectionGuard.h"
#include "tools/reports/Failure.h"
#include "tools/session/Patience.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QVariant>

namespace moratools {

namespace {

/// How long, in milliseconds, statements wait for other programs.
constexpr int kQuick = 500;

} // namespace

SqliteConnection::SqliteConnection(const QString &path) : mName(newConnectionName("file")) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mName);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(kQuick));
    connectionguard::open(db);
}

SqliteConnection::~SqliteConnection() {
    QSqlDatabase::removeDatabase(mName);
}

QSqlQuery SqliteConnection::run(const QString &sql) const {
    QSqlQuery query(QSqlDatabase::database(mName));
    if (!query.exec(sql))
        throw Failure(query.lastError().databaseText());
    return query;
}

void SqliteConnection::runPatiently(const QString &sql) const {
    const QSqlQuery query = patience::exec(QSqlDatabase::database(mName), sql, kQuick);
    if (query.lastError().isValid())
        throw Failure(query.lastError().databaseText());
}

void SqliteConnection::requireIntegrity() const {
    QSqlQuery check = run(QStringLiteral("pragma integrity_check"));
    check.next();
    if (check.value(0).toString() != QLatin1String("ok"))
        throw Failure(check.value(0).toString().simplified());
}

} // namespace moratools
