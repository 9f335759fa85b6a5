#include "store/core/Transaction.h"

#include "store/core/Savepoint.h"

#include <QSqlError>

namespace {

/// PostgreSQL takes a second begin with a warning, and the commit that follows would end the caller's
/// transaction.
bool isInsideAnother(const Store &store) {
    return store.isPostgreSql() && Savepoint::isInsideTransaction(store);
}

} // namespace

Transaction::Transaction(const Store &store, bool wanted) : mStore(store) {
    if (!wanted || !store.isUsable())
        return;
    const bool isRefused = isInsideAnother(store);
    mOpen = !isRefused && store.db().transaction();
    if (!mOpen) {
        store.fail({}, isRefused ? QStringLiteral("cannot start a transaction within a transaction")
                                 : store.db().lastError().text());
        store.giveUp();
    }
    store.setOutsideTransaction(false);
}

Transaction::~Transaction() {
    if (mOpen)
        mStore.db().rollback();
}

bool Transaction::commit(bool verdict) {
    if (!mOpen)
        return verdict && mStore.isUsable();
    mOpen = false;
    mStore.db().commit();
    if (mStore.checkConnection())
        return verdict;
    mStore.db().rollback();
    return false;
}

bool Transaction::commitOrRecord(bool verdict) {
    if (!mStore.isUsable())
        return false;
    if (mOpen)
        mStore.db().commit();
    const QSqlError error = mStore.db().lastError();
    if (!error.isValid()) {
        mOpen = false;
        return verdict;
    }
    mStore.fail({}, error.text());
    return rollBack();
}

bool Transaction::discard(bool verdict) {
    if (!mOpen)
        return verdict && mStore.isUsable();
    rollBack();
    if (mStore.checkConnection())
        return verdict;
    mStore.db().rollback();
    return false;
}

bool Transaction::rollBack() {
    if (mOpen)
        mStore.db().rollback();
    mOpen = false;
    return false;
}
