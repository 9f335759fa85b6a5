#include "store/core/OperationSavepoint.h"

#include <QSqlQuery>

OperationSavepoint::OperationSavepoint(const Store &store) : mStore(store) {
    QSqlQuery query(store.db());
    mSet = store.isUsable() && query.exec(QStringLiteral("savepoint operation"));
}

bool OperationSavepoint::end(bool written) {
    if (!mSet)
        return written;
    mSet = false;
    const QString release = QStringLiteral("release savepoint operation");
    QSqlQuery query(mStore.db());
    if (written && query.exec(release))
        return true;
    // Where the savepoint is the transaction, its end may be refused like a commit.
    if (written)
        mStore.check(query);
    query.exec(QStringLiteral("rollback to savepoint operation"));
    query.exec(release);
    return false;
}
