#include "store/core/Savepoint.h"

#include <QSqlError>
#include <QSqlQuery>

Savepoint::Savepoint(const Store &store, bool wanted) : mStore(store) {
    if (!wanted || !store.isPostgreSql() || store.isKnownOutsideTransaction() || !store.isUsable())
        return;
    // The driver does not tell whether the caller has begun a transaction. The server does, by refusing a
    // savepoint outside one (SQLSTATE no_active_sql_transaction); that is no failure of the operation.
    QSqlQuery query(store.db());
    mSet = query.exec(QStringLiteral("savepoint row"));
    if (!mSet && query.lastError().nativeErrorCode() == QLatin1String("25P01"))
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
