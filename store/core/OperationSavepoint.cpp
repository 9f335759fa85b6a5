#include "store/core/OperationSavepoint.h"

#include "store/core/EngineHandle.h"

#include <QSqlQuery>

namespace {

/// Outside a transaction SQLite makes one of a savepoint, whose first reading would keep it from writing where another
/// program does so in between.
bool beginsOne(const Store &store) {
    return store.isSqlite() &&
           enginehandle::transactionState(store.db()) == enginehandle::TransactionState::None;
}

} // namespace

OperationSavepoint::OperationSavepoint(const Store &store) : mStore(store) {
    if (!store.isUsable())
        return;
    mBegins = beginsOne(store);
    QSqlQuery query(store.db());
    mSet = query.exec(mBegins ? QStringLiteral("begin immediate") : QStringLiteral("savepoint operation"));
    if (mSet || !mBegins)
        return;
    store.check(query);
    store.giveUp();
}

bool OperationSavepoint::end(bool written) {
    if (!mSet)
        return written && mStore.isUsable();
    mSet = false;
    const QString release =
        mBegins ? QStringLiteral("commit") : QStringLiteral("release savepoint operation");
    QSqlQuery query(mStore.db());
    if (written && query.exec(release))
        return true;
    // Where the savepoint is the transaction, its end may be refused like a commit.
    if (written)
        mStore.check(query);
    query.exec(mBegins ? QStringLiteral("rollback") : QStringLiteral("rollback to savepoint operation"));
    if (!mBegins)
        query.exec(release);
    return false;
}
