#include "store/core/Failures.h"

#include "store/core/Engine.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

/// A statement on a closed connection, which a lost one soon is, does not run and yet leaves no error behind.
const QString kNotOpen = QStringLiteral("The store is not open");

long lastInsertId(const QSqlQuery &query) {
    // The PostgreSQL driver would ask the server for the last value of any sequence, which says nothing of
    // this statement and, where none was drawn yet, ends the caller's transaction.
    if (query.driver() && query.driver()->dbmsType() == QSqlDriver::PostgreSQL)
        return 0;
    const QVariant id = query.lastInsertId();
    return id.isValid() ? static_cast<long>(id.toLongLong()) : 0;
}

} // namespace

bool recordFailure(FailureList &failures, const QString &sql, const QString &error, long id) {
    failures.append({sql, id, error});
    return false;
}

bool checkStatement(const QSqlQuery &query, FailureList &failures) {
    const QSqlError error = query.lastError();
    const bool isOpen = !query.driver() || query.driver()->isOpen();
    if (!error.isValid() && isOpen)
        return true;
    return recordFailure(failures, query.lastQuery(), error.isValid() ? error.text() : kNotOpen,
                         lastInsertId(query));
}

bool checkConnection(const QSqlDatabase &db, FailureList &failures) {
    const QSqlError error = db.lastError();
    if (error.isValid() || !db.isOpen())
        return recordFailure(failures, {}, error.isValid() ? error.text() : kNotOpen);
    if (!engine::isSqlite(db))
        return true;
    QSqlQuery count(db);
    count.setForwardOnly(true);
    count.exec(QStringLiteral("select count(*) from IDGenerater"));
    return checkStatement(count, failures);
}
