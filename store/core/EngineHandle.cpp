#include "store/core/EngineHandle.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

#include <atomic>
#include <cstring>

#ifdef MORASTORE_WITH_SQLITE
#include <sqlite3.h>
#endif

#ifdef MORASTORE_WITH_POSTGRESQL
#include <libpq-fe.h>
#endif

namespace enginehandle {

namespace {

/// The pointer in a driver's handle, whose type goes by a name: https://doc.qt.io/qt-5/qsqldriver.html#handle
template <class T>
T *pointerIn(const QVariant &handle, const char *typeName) {
    if (!handle.isValid() || std::strcmp(handle.typeName(), typeName) != 0)
        return nullptr;
    return *static_cast<T *const *>(handle.constData());
}

template <class T>
T *handleOf(const QSqlDriver *driver, const char *typeName) {
    return driver->isOpen() ? pointerIn<T>(driver->handle(), typeName) : nullptr;
}

#ifdef MORASTORE_WITH_SQLITE
/// All connections of a process to SQLite have one driver, and that one engine.
std::atomic<bool> isEngineOurs{false};
#endif

} // namespace

sqlite3 *sqlite(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_SQLITE
    auto *handle = handleOf<sqlite3>(db.driver(), "sqlite3*");
    if (!handle)
        return nullptr;
    QSqlQuery source(QStringLiteral("select sqlite_source_id()"), db);
    const bool isOurs = source.next() && source.value(0).toString() == QLatin1String(sqlite3_sourceid());
    isEngineOurs = isEngineOurs || isOurs;
    return isOurs ? handle : nullptr;
#else
    Q_UNUSED(db)
    return nullptr;
#endif
}

bool isOf(const QSqlDriver *driver, const sqlite3 *connection) {
#ifdef MORASTORE_WITH_SQLITE
    return connection && handleOf<sqlite3>(driver, "sqlite3*") == connection;
#else
    Q_UNUSED(driver)
    Q_UNUSED(connection)
    return false;
#endif
}

int extendedErrorCode(const QSqlDriver *driver) {
#ifdef MORASTORE_WITH_SQLITE
    auto *connection = isEngineOurs ? handleOf<sqlite3>(driver, "sqlite3*") : nullptr;
    return connection ? sqlite3_extended_errcode(connection) : 0;
#else
    Q_UNUSED(driver)
    return 0;
#endif
}

pg_conn *postgresql(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_POSTGRESQL
    return db.isOpen() ? postgresql(*db.driver()) : nullptr;
#else
    Q_UNUSED(db)
    return nullptr;
#endif
}

pg_conn *postgresql(const QSqlDriver &driver) {
#ifdef MORASTORE_WITH_POSTGRESQL
    return pointerIn<pg_conn>(driver.handle(), "PGconn*");
#else
    Q_UNUSED(driver)
    return nullptr;
#endif
}

TransactionState transactionState(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_SQLITE
    if (sqlite3 *connection = sqlite(db))
        return sqlite3_get_autocommit(connection) != 0 ? TransactionState::None : TransactionState::Open;
#endif
#ifdef MORASTORE_WITH_POSTGRESQL
    if (const PGconn *connection = postgresql(db)) {
        switch (PQtransactionStatus(connection)) {
        case PQTRANS_IDLE:
            return TransactionState::None;
        case PQTRANS_INTRANS:
            return TransactionState::Open;
        case PQTRANS_INERROR:
            return TransactionState::Failed;
        default:
            break;
        }
    }
#else
    Q_UNUSED(db)
#endif
    return TransactionState::Unknown;
}

} // namespace enginehandle
