#include "store/core/Savepoint.h"

#include <QSqlQuery>

Savepoint::Savepoint(const Store &store) : mStore(store) {
    // The server refuses a savepoint outside a transaction, which is how the difference shows: the driver
    // does not tell whether the caller has begun one. That refusal is no failure of the operation.
    mSet = store.isPostgreSql() && store.isUsable() && QSqlQuery(store.db()).exec("savepoint row");
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
