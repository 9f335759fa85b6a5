#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

class QSqlDatabase;
struct pg_conn;

/// Pools of connections that stand before a server (pgbouncer) and hand its sessions round.
namespace pooler {

/// @{ Why a connection, which is in no transaction, cannot be used; empty where it can. A pool that gives each
/// transaction, or each statement, whichever session is free mixes the prepared statements and settings of all its
/// clients: one would run another's. Where the session is not the one that the client was connected to, a second
/// connection tells such a pool from one that gives each client a session of its own: the two must always be
/// in different ones.
MORASTORE_EXPORT QString objection(const QSqlDatabase &db);
MORASTORE_EXPORT QString objection(pg_conn *connection);
/// @}

} // namespace pooler
