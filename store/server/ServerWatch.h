#pragma once

#include "model/MoraStoreExport.h"

class QSqlDatabase;
struct pg_conn;

/// Keeps a connection to a PostgreSQL server from waiting for ever when nothing is heard on it any more: behind a
/// firewall, a tunnel or a proxy that goes on answering for a server which does not, neither TCP's own
/// keep-alives nor the server's time-outs reach through.
///
/// A thread for each connection looks at it now and then. When a statement has been waiting for a third of the
/// limit, and in all this time nothing came and nothing went, it asks the server on a second connection what
/// the first one's session does. A server that works on the statement, or waits for a lock, is left to it, for
/// however long. When twice in a row there is no answer, or the session is gone, idle, or itself waiting for
/// this client, the connection is shut: the statement fails as on a connection that is lost, and the session, where
/// it can be reached, is ended, so that it keeps no locks.
///
/// The limit is tcp_user_timeout of the connection string (milliseconds; store/server/ConnectionWords.h has the
/// default), which the whole takes but for a tenth more. 0 leaves all waiting to TCP and the server.
namespace serverwatch {

/// @{ Watches a connection from here on until it is closed, and keeps libpq from writing to stderr what the server
/// says beside its answers: a statement that fails says it, too. Does nothing for other engines, and when the library
/// was built without libpq's headers.
MORASTORE_EXPORT void watch(const QSqlDatabase &db);
MORASTORE_EXPORT void watch(pg_conn *connection);
/// @}

/// Says of a connection that streams rows (COPY) whether the next ones are being made, so that nobody waits for
/// the server.
void makesRows(pg_conn *connection, bool makes);

} // namespace serverwatch
