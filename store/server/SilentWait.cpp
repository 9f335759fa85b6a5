#include "store/server/SilentWait.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>

#include <libpq-fe.h>

#include <algorithm>
#include <thread>

namespace silentwait {

namespace {

/// How soon a wait that is no longer wanted ends.
constexpr qint64 kSlice = 100;

/// Whether the socket was ready before its time was over.
bool await(int socket, QSocketNotifier::Type event, const QDeadlineTimer &deadline, Wanted wanted) {
    bool isReady = false;
    while (!isReady && !deadline.hasExpired() && (!wanted || *wanted)) {
        // Where Qt did not start the thread, the loop makes what a notifier needs.
        QEventLoop loop;
        QSocketNotifier ready(socket, event);
        QObject::connect(&ready, &QSocketNotifier::activated, &loop, [&] {
            isReady = true;
            loop.quit();
        });
        QTimer slice;
        slice.setSingleShot(true);
        QObject::connect(&slice, &QTimer::timeout, &loop, &QEventLoop::quit);
        const qint64 left = deadline.remainingTime(); // -1 for ever
        slice.start(int(left < 0 ? kSlice : std::min(left, kSlice)));
        loop.exec();
        ready.setEnabled(false);
    }
    return isReady;
}

/// In a thread of its own: a loop that waits for a socket would hand out the events of the caller's thread in the
/// middle of an opening, clicks on a window and timers. QThread::wait() returns while the thread still tidies up; what
/// OpenSSL keeps for it would be freed there and by the process, which may be ending.
template <class Work>
auto apart(const Work &work) {
    decltype(work()) result{};
    std::thread([&] { result = work(); }).join();
    return result;
}

Reached connectHere(pg_conn *connection, int milliseconds, Wanted wanted) {
    if (PQstatus(connection) == CONNECTION_BAD)
        return Reached::Nothing;
    // What the server says beside its answers would go to stderr; a failure says it, too.
    PQsetNoticeReceiver(
        connection, [](void *, const PGresult *) {}, nullptr);
    const QDeadlineTimer deadline(milliseconds);
    PostgresPollingStatusType state = PGRES_POLLING_WRITING;
    ConnStatusType phase = PQstatus(connection);
    while (state == PGRES_POLLING_READING || state == PGRES_POLLING_WRITING) {
        const auto event = state == PGRES_POLLING_READING ? QSocketNotifier::Read : QSocketNotifier::Write;
        if (!await(PQsocket(connection), event, deadline, wanted))
            return Reached::Nothing;
        phase = PQstatus(connection);
        state = PQconnectPoll(connection);
    }
    if (state == PGRES_POLLING_OK)
        return Reached::Connection;
    return phase == CONNECTION_SSL_STARTUP ? Reached::Encryption : Reached::Nothing;
}

bool askHere(pg_conn *connection, const char *sql, int milliseconds, Wanted wanted) {
    const QDeadlineTimer deadline(milliseconds);
    if (!PQsendQuery(connection, sql))
        return false;
    while (PQisBusy(connection)) {
        if (!await(PQsocket(connection), QSocketNotifier::Read, deadline, wanted) ||
            !PQconsumeInput(connection))
            return false;
    }
    return true;
}

} // namespace

Reached connect(pg_conn *connection, int milliseconds, Wanted wanted) {
    return apart([=] { return connectHere(connection, milliseconds, wanted); });
}

bool ask(pg_conn *connection, const char *sql, int milliseconds, Wanted wanted) {
    return apart([=] { return askHere(connection, sql, milliseconds, wanted); });
}

} // namespace silentwait

#endif
