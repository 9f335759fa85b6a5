#include "store/core/OperationTransaction.h"

#include "store/core/Savepoint.h"

#include <QSqlError>

namespace {

/// PostgreSQL takes a second begin with a warning, and the commit that follows would end the caller's
/// transaction.
bool isInsideAnother(const Store &store) {
    return store.isPostgreSql() && Savepoint::isInsideTransaction(store.db());
}

} // namespace

OperationTransaction::OperationTransaction(const Store &store, bool wanted) : mStore(store) {
    if (!wanted || !store.isUsable())
        return;
    const bool isRefused = isInsideAnother(store);
    mOpen = !isRefused && store.db().transaction();
    store.setOwnTransaction(mOpen);
    if (!mOpen) {
        store.fail({}, isRefused ? QStringLiteral("cannot start a transaction within a transaction")
                                 : store.db().lastError().text());
        store.giveUp();
    }
}

OperationTransaction::~OperationTransaction() {
    rollBack();
}

void OperationTransaction::close() {
    if (mOpen)
        mStore.setOwnTransaction(false);
    mOpen = false;
}

bool OperationTransaction::commit(bool verdict) {
    // Who gave the store up may not have had a verdict to return.
    if (!mOpen)
        return verdict && mStore.isUsable();
    close();
    mStore.db().commit();
    if (mStore.checkConnection())
        return verdict && mStore.isUsable();
    mStore.db().rollback();
    return false;
}

bool OperationTransaction::commitOrRecord(bool verdict) {
    if (!mStore.isUsable())
        return false;
    if (mOpen)
        mStore.db().commit();
    const QSqlError error = mStore.db().lastError();
    if (!error.isValid()) {
        close();
        return verdict;
    }
    mStore.fail({}, error.text());
    return rollBack();
}

bool OperationTransaction::commitOrLeaveOpen(bool verdict) {
    if (!mOpen)
        return verdict && mStore.isUsable();
    close();
    if (mStore.db().commit())
        return verdict && mStore.isUsable();
    return mStore.fail({}, mStore.db().lastError().text());
}

bool OperationTransaction::discard(bool verdict) {
    if (!mOpen)
        return verdict && mStore.isUsable();
    rollBack();
    if (mStore.checkConnection())
        return verdict && mStore.isUsable();
    mStore.db().rollback();
    return false;
}

bool OperationTransaction::rollBack() {
    if (mOpen)
        mStore.db().rollback();
    close();
    return false;
}
