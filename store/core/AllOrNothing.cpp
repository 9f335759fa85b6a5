#include "store/core/AllOrNothing.h"

#include "store/core/Savepoint.h"

AllOrNothing::AllOrNothing(const Store &store) {
    // On SQLite a savepoint outside a transaction is one.
    if (store.isPostgreSql() && !Savepoint::isInsideTransaction(store.db()))
        mTransaction.emplace(store, true);
    else
        mSavepoint.emplace(store);
}

bool AllOrNothing::end(bool written) {
    return mTransaction ? mTransaction->commitIfGood(written) : mSavepoint->end(written);
}
