#include "store/core/Transaction.h"

#include <QSqlError>

namespace {

void record(const Store &store, const QSqlError &error) {
    CallDbResult failure;
    failure.error = error.text();
    store.failures().append(failure);
}

} // namespace

Transaction::Transaction(const Store &store, bool wanted) : mStore(store) {
    if (!wanted || !store.isUsable())
        return;
    mOpen = store.db().transaction();
    if (!mOpen) {
        record(store, store.db().lastError());
        store.giveUp();
    }
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
    record(mStore, error);
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
