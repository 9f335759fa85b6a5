#include "store/core/OperationTransaction.h"

#include "store/core/Savepoint.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

/// PostgreSQL takes a second begin with a warning, and the commit that follows would end the caller's
/// transaction.
bool isInsideAnother(const Store &store) {
    return store.isPostgreSql() && Savepoint::isInsideTransaction(store.db());
}

/// SQLite refuses a second begin. As a statement, the refusal stays with the statement; Qt's driver would keep
/// it as its own error until the connection is opened again, and every later operation would be refused.
bool begin(const Store &store, OperationTransaction::Lock lock) {
    if (isInsideAnother(store))
        return store.fail({}, QStringLiteral("cannot start a transaction within a transaction"), 0,
                          FailureKind::Other);
    if (!store.isSqlite())
        return store.db().transaction() || store.fail({}, store.db().lastError());
    QSqlQuery query(store.db());
    const bool isAtOnce = lock == OperationTransaction::Lock::AtOnce;
    if (query.exec(isAtOnce ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN")))
        return true;
    // In the driver's words for it.
    const QSqlError error = query.lastError();
    return store.fail({}, QSqlError(QStringLiteral("Unable to begin transaction"), error.databaseText(),
                                    QSqlError::TransactionError, error.nativeErrorCode()));
}

} // namespace

OperationTransaction::OperationTransaction(const Store &store, bool wanted, Lock lock) : mStore(store) {
    if (!wanted || !store.isUsable())
        return;
    mOpen = begin(store, lock);
    store.setOwnTransaction(mOpen);
    if (!mOpen)
        store.giveUp();
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
    mStore.fail({}, error);
    return rollBack();
}

bool OperationTransaction::commitOrLeaveOpen(bool verdict) {
    if (!mOpen)
        return verdict && mStore.isUsable();
    close();
    if (mStore.db().commit())
        return verdict && mStore.isUsable();
    return mStore.fail({}, mStore.db().lastError());
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
