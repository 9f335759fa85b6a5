#include "store/server/SessionInquiry.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include <QElapsedTimer>
#include <QRegularExpression>

#include <libpq-fe.h>

#include <algorithm>

namespace {

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

QByteArray text(const Result &result, int column) {
    return PQgetisnull(result.get(), 0, column) ? QByteArray()
                                                : QByteArray(PQgetvalue(result.get(), 0, column));
}

/// Whether a server said why it refuses the connection, whatever its language.
bool isRefused(PGconn *connection) {
    static const QRegularExpression state(QStringLiteral(":\\s+[0-9A-Z]{5}\\s*\\z"));
    return PQstatus(connection) == CONNECTION_BAD &&
           QString::fromUtf8(PQerrorMessage(connection)).contains(state);
}

} // namespace

void SessionInquiry::Close::operator()(pg_conn *connection) const {
    PQfinish(connection);
}

SessionInquiry::SessionInquiry(pg_conn *connection) : mWords(connectionwords::beside(connection)) {}

QByteArray SessionInquiry::identify(pg_conn *connection) {
    const Result answer(PQexec(connection, "select pid, backend_start, pg_postmaster_start_time() from "
                                           "pg_stat_get_activity(pg_backend_pid())"),
                        PQclear);
    if (PQresultStatus(answer.get()) != PGRES_TUPLES_OK || PQntuples(answer.get()) != 1)
        return {};
    mIsPooled = text(answer, 0).toInt() != PQbackendPID(connection);
    return "pid = " + text(answer, 0) + " and backend_start = '" + text(answer, 1) +
           "' and pg_postmaster_start_time() = '" + text(answer, 2) + "'";
}

bool SessionInquiry::connect(int milliseconds, silentwait::Wanted wanted) {
    const connectionwords::Arrays arrays(mWords);
    mSecond.reset(PQconnectStartParams(arrays.keywords.data(), arrays.values.data(), 0));
    PQsetErrorVerbosity(mSecond.get(), PQERRORS_SQLSTATE);
    return silentwait::connect(mSecond.get(), milliseconds, wanted) == silentwait::Reached::Connection;
}

SessionInquiry::Answer SessionInquiry::ask(const QByteArray &session, int milliseconds,
                                           silentwait::Wanted wanted) {
    QElapsedTimer since;
    since.start();
    if (!connect(milliseconds, wanted)) {
        // A refusal (no connection left, say) comes from a server, too; silence does not.
        const bool hasAnswered = isRefused(mSecond.get());
        mSecond.reset();
        return hasAnswered ? Answer::Works : Answer::None;
    }
    const QByteArray sql = "select state, wait_event_type from pg_stat_activity where " +
                           (session.isEmpty() ? QByteArray("false") : session);
    const int left = std::max(milliseconds - int(since.elapsed()), 1);
    if (!silentwait::ask(mSecond.get(), sql.constData(), left, wanted)) {
        mSecond.reset();
        // A pool that has let the connection in may have no session for it yet.
        return mIsPooled ? Answer::Works : Answer::None;
    }
    const Result answer(PQgetResult(mSecond.get()), PQclear);
    if (PQresultStatus(answer.get()) != PGRES_TUPLES_OK || session.isEmpty())
        return Answer::Works;
    if (PQntuples(answer.get()) == 0 || text(answer, 0).startsWith("idle"))
        return Answer::Idle;
    return text(answer, 0) == "active" && text(answer, 1) == "Client" ? Answer::WaitsForClient
                                                                      : Answer::Works;
}

void SessionInquiry::end(const QByteArray &session, int milliseconds, silentwait::Wanted wanted) {
    if (!mSecond || session.isEmpty())
        return;
    while (PGresult *rest = PQgetResult(mSecond.get()))
        PQclear(rest);
    const QByteArray sql = "select pg_terminate_backend(pid, 1000) from pg_stat_activity where " + session;
    silentwait::ask(mSecond.get(), sql.constData(), milliseconds, wanted);
    mSecond.reset();
}

#endif
