#include "store/core/Failures.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

long lastInsertId(const QSqlQuery &query) {
    // The PostgreSQL driver would ask the server for the last value of any sequence, which says nothing of
    // this statement and, where none was drawn yet, ends the caller's transaction.
    if (query.driver() && query.driver()->dbmsType() == QSqlDriver::PostgreSQL)
        return 0;
    const QVariant id = query.lastInsertId();
    return id.isValid() ? static_cast<long>(id.toLongLong()) : 0;
}

} // namespace

bool checkStatement(const QSqlQuery &query, FailureList &failures) {
    const QSqlError error = query.lastError();
    if (!error.isValid())
        return true;
    CallDbResult failure;
    failure.sql = query.lastQuery();
    failure.id = lastInsertId(query);
    failure.error = error.text();
    failures.append(failure);
    return false;
}

bool checkConnection(const QSqlDatabase &db, FailureList &failures) {
    const QSqlError error = db.lastError();
    // A statement on a closed connection does not run and yet leaves no error behind.
    if (error.isValid() || !db.isOpen()) {
        CallDbResult failure;
        failure.error = error.isValid() ? error.text() : QStringLiteral("The store is not open");
        failures.append(failure);
        return false;
    }
    if (db.driverName() != QLatin1String("QSQLITE"))
        return true;
    QSqlQuery count(db);
    count.setForwardOnly(true);
    count.exec(QStringLiteral("select count(*) from IDGenerater"));
    return checkStatement(count, failures);
}
