#include "store/server/Pooler.h"

#include "store/core/EngineHandle.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include "store/server/ConnectionWords.h"
#include "store/server/SilentWait.h"

#include <libpq-fe.h>

#include <memory>

namespace pooler {

namespace {

constexpr int kPatience = 2000; // milliseconds
constexpr int kRounds = 3;

/// The session that a statement runs in; 0 where that is not answered soon.
int session(PGconn *connection) {
    int pid = 0;
    const bool isAnswered = silentwait::ask(connection, "select pg_backend_pid()", kPatience, nullptr);
    while (PGresult *result = isAnswered ? PQgetResult(connection) : nullptr) {
        if (PQntuples(result) == 1)
            pid = QByteArray(PQgetvalue(result, 0, 0)).toInt();
        PQclear(result);
    }
    return pid;
}

/// Whether the connection, which is in session @p own so far, shares it.
bool isShared(PGconn *connection, int own) {
    const ConnectionWords words = connectionwords::beside(connection);
    const connectionwords::Arrays arrays(words);
    const std::unique_ptr<PGconn, decltype(&PQfinish)> second(
        PQconnectStartParams(arrays.keywords.data(), arrays.values.data(), 0), PQfinish);
    if (silentwait::connect(second.get(), kPatience) != silentwait::Reached::Connection)
        return false;
    for (int round = 0; round < kRounds; ++round) {
        // No answer: all sessions are taken, this one among them.
        const int other = session(second.get());
        if (other == 0)
            return false;
        // Twice, since a pool may hand two sessions out in turn.
        if (other == own || session(connection) != own || session(connection) != own)
            return true;
    }
    return false;
}

} // namespace

QString objection(pg_conn *connection) {
    const int own = session(connection);
    if (own == 0 || own == PQbackendPID(connection) || !isShared(connection, own))
        return {};
    return QStringLiteral(
        "a pool stands before the server that gives each transaction another session, and the "
        "statements of its clients would mix; set it to pool_mode = session, or connect to the "
        "server itself");
}

QString objection(const QSqlDatabase &db) {
    pg_conn *connection = enginehandle::postgresql(db);
    return connection ? objection(connection) : QString();
}

} // namespace pooler

#else

QString pooler::objection(const QSqlDatabase &) {
    return {};
}

QString pooler::objection(pg_conn *) {
    return {};
}

#endif
