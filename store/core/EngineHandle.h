#pragma once

#include "model/MoraStoreExport.h"

class QSqlDatabase;
class QSqlDriver;
struct pg_conn;
struct sqlite3;

/// The way past Qt's driver to the engine itself, for passes over whole tables: the driver makes a QVariant
/// of every value, which costs more than the engine's own work. Whoever asks must do without where the answer
/// is null.
namespace enginehandle {

/// The SQLite connection that the driver holds; null for other drivers, when the library was built without
/// SQLite's headers, and when the driver carries an engine of its own (as on platforms where Qt bundles it):
/// two copies of the engine must not share a connection.
MORASTORE_EXPORT sqlite3 *sqlite(const QSqlDatabase &db);

/// Whether the driver holds this connection of SQLite's still.
bool isOf(const QSqlDriver *driver, const sqlite3 *connection);

/// The extended code of what failed last on the connection; 0 for other drivers, and while it is not known that
/// the driver's engine is ours.
int extendedErrorCode(const QSqlDriver *driver);

/// The libpq connection (PGconn) that the driver holds; null for other drivers and when the library was built
/// without libpq's headers. libpq is a shared library everywhere: the driver's is ours.
pg_conn *postgresql(const QSqlDatabase &db);

/// The same of a driver, also while it opens the connection.
pg_conn *postgresql(const QSqlDriver &driver);

/// What becomes of the next statement on a connection.
enum class TransactionState {
    None,   ///< it is a transaction of its own
    Open,   ///< it is part of a transaction
    Failed, ///< a transaction is open and takes no further statement
    Unknown ///< without the engine's own handle, on a lost connection, and while another statement runs
};

/// Known to the engine's library; nothing is sent to a server.
TransactionState transactionState(const QSqlDatabase &db);

} // namespace enginehandle
