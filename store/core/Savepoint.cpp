#include "store/core/Savepoint.h"

#include "store/core/EngineHandle.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

using enginehandle::TransactionState;

QString set() {
    return QStringLiteral("savepoint row");
}

/// Asks the server where the client library does not tell: it refuses a savepoint in a transaction that
/// failed (in_failed_sql_transaction). https://www.postgresql.org/docs/15/errcodes-appendix.html
bool serverIsInsideTransaction(const QSqlDatabase &db) {
    QSqlQuery query(db);
    if (!query.exec(set()))
        return query.lastError().nativeErrorCode() == QLatin1String("25P02");
    return query.exec(QStringLiteral("release savepoint row"));
}

/// A property of the driver, which all handles of a connection share.
constexpr const char *kWithout = "moraWithoutSavepoints";

bool isServer(const QSqlDatabase &db) {
    return db.isOpen() && db.driver()->dbmsType() == QSqlDriver::PostgreSQL;
}

bool mayNeedSavepoint(const QSqlDatabase &db) {
    if (!isServer(db) || db.driver()->property(kWithout).toBool())
        return false;
    const TransactionState state = enginehandle::transactionState(db);
    return state == TransactionState::Open || state == TransactionState::Unknown;
}

} // namespace

bool Savepoint::isInsideTransaction(const QSqlDatabase &db) {
    const TransactionState state = enginehandle::transactionState(db);
    return state == TransactionState::Unknown ? serverIsInsideTransaction(db)
                                              : state != TransactionState::None;
}

Savepoint::Savepoint(const QSqlDatabase &db) : mDb(db) {
    // Outside a transaction, where that was not known, the server refuses it: no failure of the operation.
    if (mayNeedSavepoint(db))
        mSet = QSqlQuery(db).exec(set());
}

bool Savepoint::end(bool done) {
    if (!mSet)
        return done;
    mSet = false;
    QSqlQuery query(mDb);
    if (!done)
        query.exec(QStringLiteral("rollback to savepoint row"));
    query.exec(QStringLiteral("release savepoint row"));
    return done;
}

WithoutSavepoints::WithoutSavepoints(const QSqlDatabase &db) {
    if (!isServer(db) || db.driver()->property(kWithout).toBool())
        return;
    mDriver = db.driver();
    mDriver->setProperty(kWithout, true);
}

WithoutSavepoints::~WithoutSavepoints() {
    if (mDriver)
        mDriver->setProperty(kWithout, {});
}
