#include "store/core/EngineHandle.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

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
T *handleOf(const QSqlDatabase &db, const char *typeName) {
    const QVariant handle = db.isOpen() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || std::strcmp(handle.typeName(), typeName) != 0)
        return nullptr;
    return *static_cast<T *const *>(handle.constData());
}

} // namespace

sqlite3 *sqlite(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_SQLITE
    auto *handle = handleOf<sqlite3>(db, "sqlite3*");
    if (!handle)
        return nullptr;
    QSqlQuery source(QStringLiteral("select sqlite_source_id()"), db);
    return source.next() && source.value(0).toString() == QLatin1String(sqlite3_sourceid()) ? handle
                                                                                            : nullptr;
#else
    Q_UNUSED(db)
    return nullptr;
#endif
}

pg_conn *postgresql(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_POSTGRESQL
    return handleOf<pg_conn>(db, "PGconn*");
#else
    Q_UNUSED(db)
    return nullptr;
#endif
}

TransactionState transactionState(const QSqlDatabase &db) {
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
