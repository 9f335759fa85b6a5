#include "store/server/SessionInquiry.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include <QElapsedTimer>

#include <libpq-fe.h>

#include <algorithm>

namespace {

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

QByteArray text(const Result &result, int column) {
    return PQgetisnull(result.get(), 0, column) ? QByteArray()
                                                : QByteArray(PQgetvalue(result.get(), 0, column));
}

/// Leads to where the connection does, past names that may lead elsewhere the next time.
ConnectionWords wordsBeside(PGconn *connection) {
    ConnectionWords words = connectionwords::of(connection);
    const auto isOfPlace = [](const ConnectionWord &word) {
        return word.keyword == "host" || word.keyword == "hostaddr" || word.keyword == "port" ||
               word.keyword == "target_session_attrs" || word.keyword == "options";
    };
    words.erase(std::remove_if(words.begin(), words.end(), isOfPlace), words.end());
    const QByteArray host = PQhost(connection);
    words.append(ConnectionWord{"host", host});
    words.append(ConnectionWord{"port", PQport(connection)});
    if (!host.startsWith('/'))
        words.append(ConnectionWord{"hostaddr", PQhostaddr(connection)});
    return words;
}

} // namespace

void SessionInquiry::Close::operator()(pg_conn *connection) const {
    PQfinish(connection);
}

SessionInquiry::SessionInquiry(pg_conn *connection) : mWords(wordsBeside(connection)) {}

QByteArray SessionInquiry::identify(pg_conn *connection) {
    const Result answer(PQexec(connection, "select pid, backend_start, pg_postmaster_start_time() from "
                                           "pg_stat_get_activity(pg_backend_pid())"),
                        PQclear);
    if (PQresultStatus(answer.get()) != PGRES_TUPLES_OK || PQntuples(answer.get()) != 1)
        return {};
    return "pid = " + text(answer, 0) + " and backend_start = '" + text(answer, 1) +
           "' and pg_postmaster_start_time() = '" + text(answer, 2) + "'";
}

bool SessionInquiry::connect(int milliseconds, silentwait::Wanted wanted) {
    const connectionwords::Arrays arrays(mWords);
    mSecond.reset(PQconnectStartParams(arrays.keywords.data(), arrays.values.data(), 0));
    return silentwait::connect(mSecond.get(), milliseconds, wanted) == silentwait::Reached::Connection;
}

SessionInquiry::Answer SessionInquiry::ask(const QByteArray &session, int milliseconds,
                                           silentwait::Wanted wanted) {
    QElapsedTimer since;
    since.start();
    if (!connect(milliseconds, wanted)) {
        // A refusal (no connection left, say) comes from a server, too; silence does not.
        const bool isRefused = PQstatus(mSecond.get()) == CONNECTION_BAD &&
                               QByteArray(PQerrorMessage(mSecond.get())).contains("FATAL");
        mSecond.reset();
        return isRefused ? Answer::Works : Answer::None;
    }
    const QByteArray sql = "select state, wait_event_type from pg_stat_activity where " +
                           (session.isEmpty() ? QByteArray("false") : session);
    const int left = std::max(milliseconds - int(since.elapsed()), 1);
    if (!silentwait::ask(mSecond.get(), sql.constData(), left, wanted)) {
        mSecond.reset();
        return Answer::None;
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
