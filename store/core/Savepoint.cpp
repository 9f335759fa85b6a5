#include "store/core/Savepoint.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

// The driver does not tell whether the caller has begun a transaction. The server does: it refuses a
// savepoint outside one (SQLSTATE no_active_sql_transaction) and in one that failed
// (in_failed_sql_transaction). https://www.postgresql.org/docs/15/errcodes-appendix.html
constexpr const char *kOutside = "25P01";
constexpr const char *kFailed = "25P02";

QString set() {
    return QStringLiteral("savepoint row");
}

} // namespace

bool Savepoint::isInsideTransaction(const Store &store) {
    QSqlQuery query(store.db());
    if (!query.exec(set()))
        return query.lastError().nativeErrorCode() == QLatin1String(kFailed);
    return query.exec(QStringLiteral("release savepoint row"));
}

Savepoint::Savepoint(const Store &store, bool wanted) : mStore(store) {
    if (!wanted || !store.isPostgreSql() || store.isKnownOutsideTransaction() || !store.isUsable())
        return;
    // That the server refuses it is no failure of the operation.
    QSqlQuery query(store.db());
    mSet = query.exec(set());
    if (!mSet && query.lastError().nativeErrorCode() == QLatin1String(kOutside))
        store.setOutsideTransaction(true);
}

bool Savepoint::end(bool written) {
    if (!mSet)
        return written;
    mSet = false;
    QSqlQuery query(mStore.db());
    if (!written)
        query.exec(QStringLiteral("rollback to savepoint row"));
    query.exec(QStringLiteral("release savepoint row"));
    return written;
}
