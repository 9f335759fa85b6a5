#pragma once

#include "model/MoraStoreExport.h"

#include <atomic>

struct pg_conn;

/// Waiting for a server without being stuck in libpq.
namespace silentwait {

/// While this is true, waits go on; null for waits that nobody breaks off.
using Wanted = const std::atomic<bool> *;

/// How far a connection has come.
enum class Reached {
    Nothing,    ///< or to a server that said why it refuses
    Encryption, ///< a server that was asked for TLS, and there it ended
    Connection
};

/// Goes on with a connection that PQconnectStartParams() has begun, for so many milliseconds at most (-1: for
/// ever).
MORASTORE_EXPORT Reached connect(pg_conn *connection, int milliseconds, Wanted wanted = nullptr);
/// Sends a statement and waits for its answer, which PQgetResult() gives then without waiting; false when
/// there was none in time.
bool ask(pg_conn *connection, const char *sql, int milliseconds, Wanted wanted);

} // namespace silentwait
