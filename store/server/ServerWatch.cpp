#include "store/server/ServerWatch.h"

#include "store/core/EngineHandle.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include "store/server/ConnectionWords.h"
#include "store/server/SessionInquiry.h"
#include "store/server/SocketState.h"

#include <libpq-events.h>
#include <libpq-fe.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace serverwatch {

namespace {

// In parts of the limit: twice three looks and a question make ten ninths of it.
constexpr int kLooksInLimit = 9;
constexpr int kLooksBeforeQuestion = 3;
constexpr int kLooksOfQuestion = 2;
constexpr int kQuestions = 2;

/// The number of the result that came last, while it is one row of several and somebody is at it; else 0.
using RowAtHand = std::shared_ptr<std::atomic<quint64>>;

/// Ends that with the result, which has it and may outlive its connection.
class RowInUse {
public:
    RowInUse(RowAtHand row, quint64 number) : mRow(std::move(row)), mNumber(number) {}
    ~RowInUse() { mRow->compare_exchange_strong(mNumber, 0); }

private:
    Q_DISABLE_COPY(RowInUse)

    RowAtHand mRow;
    quint64 mNumber;
};

int onEvent(PGEventId event, void *info, void *);

class Watch {
public:
    /// @param limit in milliseconds.
    Watch(PGconn *connection, int limit)
        : mConnection(connection), mLook(std::max(limit / kLooksInLimit, 1)), mInquiry(connection) {}

    ~Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void start() {
        mThread = std::thread([this] { run(); });
    }
    /// Learns from the connection whom to ask about.
    void identify(PGconn *connection);
    void count(PGresult *result);
    void setMakesRows(bool makes) { mMakesRows = makes; }

private:
    /// What is seen of the connection at one moment.
    struct Sight {
        bool isWaiting = false;
        quint64 results = 0;
        std::optional<quint64> bytes;

        /// Whether one wait goes on since then in which nothing has happened.
        bool isStillAs(const Sight &then) const {
            return isWaiting && then.isWaiting && results == then.results && bytes == then.bytes;
        }
    };

    void run();
    Sight look() const;
    bool isLost(const Sight &now, std::unique_lock<std::mutex> &lock);
    int patience() const { return int(mLook.count()) * kLooksOfQuestion; }

    PGconn *const mConnection;
    const std::chrono::milliseconds mLook;
    SessionInquiry mInquiry;
    std::mutex mMutex; ///< held while the thread looks at the connection, which therefore lives
    std::condition_variable mWake;
    QByteArray mSession;        ///< whom to ask about; under the mutex
    bool mIsIdentified = false; ///< the first statement is over; under the mutex
    std::atomic<bool> mIsWanted{true};
    std::atomic<bool> mMakesRows{false};
    std::atomic<quint64> mResults{0}; ///< that have come
    const RowAtHand mRowAtHand = std::make_shared<std::atomic<quint64>>(0);
    std::thread mThread; ///< no QThread: see SilentWait.cpp
};

void Watch::identify(PGconn *connection) {
    const QByteArray session = mInquiry.identify(connection);
    const std::lock_guard<std::mutex> lock(mMutex);
    mSession = session;
    mIsIdentified = true;
}

Watch::~Watch() {
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mIsWanted = false;
    }
    mWake.notify_all();
    if (mThread.joinable())
        mThread.join();
}

void Watch::count(PGresult *result) {
    const quint64 number = ++mResults;
    const bool isRow = PQresultStatus(result) == PGRES_SINGLE_TUPLE;
    *mRowAtHand = isRow ? number : 0;
    if (isRow)
        PQresultSetInstanceData(result, onEvent, new RowInUse(mRowAtHand, number)); // onEvent() deletes it
}

Watch::Sight Watch::look() const {
    Sight sight;
    // The state is a word that another thread writes: what it was a moment ago is as good.
    if (!mIsWanted || PQtransactionStatus(mConnection) != PQTRANS_ACTIVE || mMakesRows || *mRowAtHand > 0)
        return sight;
    const int socket = PQsocket(mConnection);
    sight.isWaiting = socket >= 0 && !socketstate::hasUnread(socket);
    sight.results = mResults;
    sight.bytes = socketstate::bytesMoved(socket);
    return sight;
}

/// Asks the server, and lets go of the connection meanwhile.
bool Watch::isLost(const Sight &now, std::unique_lock<std::mutex> &lock) {
    const QByteArray session = mSession;
    lock.unlock();
    const SessionInquiry::Answer answer = mInquiry.ask(session, patience(), &mIsWanted);
    lock.lock();
    // The first statement takes no time.
    if (!mIsIdentified)
        return true;
    switch (answer) {
    case SessionInquiry::Answer::None:
    case SessionInquiry::Answer::Idle:
        return true;
    case SessionInquiry::Answer::WaitsForClient:
        // Over a slow line large results take long; only a count of bytes tells that they stand still.
        return now.bytes.has_value();
    default:
        return false;
    }
}

void Watch::run() {
    std::unique_lock<std::mutex> lock(mMutex);
    Sight before;
    int quiet = 0;
    int lost = 0;
    while (mIsWanted) {
        mWake.wait_for(lock, mLook);
        const Sight now = look();
        const bool isQuiet = now.isStillAs(before);
        before = now;
        quiet = isQuiet ? quiet + 1 : 0;
        lost = isQuiet ? lost : 0;
        if (quiet < kLooksBeforeQuestion)
            continue;
        quiet = 0;
        lost = isLost(now, lock) ? lost + 1 : 0;
        if (lost < kQuestions || !look().isStillAs(now))
            continue;
        lost = 0;
        const QByteArray session = mSession;
        lock.unlock();
        // First, for with the connection the process may end.
        mInquiry.end(session, patience(), &mIsWanted);
        lock.lock();
        if (look().isStillAs(now))
            socketstate::shut(PQsocket(mConnection));
    }
}

int onEvent(PGEventId event, void *info, void *) {
    const auto watchOf = [](const PGconn *connection) {
        return static_cast<Watch *>(PQinstanceData(connection, onEvent));
    };
    if (event == PGEVT_RESULTCREATE) {
        const auto *created = static_cast<PGEventResultCreate *>(info);
        if (Watch *watch = watchOf(created->conn))
            watch->count(created->result);
    } else if (event == PGEVT_RESULTDESTROY) {
        PGresult *result = static_cast<PGEventResultDestroy *>(info)->result;
        delete static_cast<RowInUse *>(PQresultInstanceData(result, onEvent));
    } else if (event == PGEVT_CONNDESTROY) {
        const PGconn *connection = static_cast<PGEventConnDestroy *>(info)->conn;
        delete watchOf(connection);
    }
    return 1;
}

} // namespace

void watch(pg_conn *connection) {
    PQsetNoticeReceiver(
        connection, [](void *, const PGresult *) {}, nullptr);
    const ConnectionWords words = connectionwords::of(connection);
    const int limit = connectionwords::value(words, "tcp_user_timeout").toInt();
    if (limit <= 0 || PQstatus(connection) != CONNECTION_OK ||
        !PQregisterEventProc(connection, onEvent, "ServerWatch", nullptr))
        return;
    auto watch = std::make_unique<Watch>(connection, limit);
    watch->start();
    watch->identify(connection);
    PQsetInstanceData(connection, onEvent, watch.release()); // the connection's
}

void watch(const QSqlDatabase &db) {
    if (pg_conn *connection = enginehandle::postgresql(db))
        watch(connection);
}

void makesRows(pg_conn *connection, bool makes) {
    if (auto *watch = static_cast<Watch *>(PQinstanceData(connection, onEvent)))
        watch->setMakesRows(makes);
}

} // namespace serverwatch

#else

void serverwatch::watch(const QSqlDatabase &) {}
void serverwatch::watch(pg_conn *) {}
void serverwatch::makesRows(pg_conn *, bool) {}

#endif
