#include "store/server/OpeningWatch.h"

#include "store/core/EngineHandle.h"

#include <QSqlDatabase>

#ifdef MORASTORE_WITH_POSTGRESQL

#include "store/core/Engine.h"
#include "store/server/ConnectionWords.h"
#include "store/server/SocketState.h"

#include <QElapsedTimer>
#include <QSqlDriver>
#include <QThread>

#include <libpq-fe.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

class OpeningWatch::Thread : public QThread {
public:
    Thread(const QSqlDriver *driver, int limit) : mDriver(driver), mLimit(limit) {}
    ~Thread() override {
        {
            const std::lock_guard<std::mutex> lock(mMutex);
            mIsOver = true;
        }
        mWake.notify_all();
        wait();
    }

protected:
    void run() override {
        QElapsedTimer connected;
        std::unique_lock<std::mutex> lock(mMutex);
        const std::chrono::milliseconds look(std::max(mLimit / 10, 1));
        while (!mWake.wait_for(lock, look, [this] { return mIsOver; })) {
            // The driver has a connection as soon as libpq has connected; a look too early finds none yet.
            const PGconn *connection = enginehandle::postgresql(*mDriver);
            if (connection && !connected.isValid())
                connected.start();
            if (connection && connected.hasExpired(mLimit))
                socketstate::shut(PQsocket(connection));
        }
    }

private:
    const QSqlDriver *mDriver;
    int mLimit; ///< milliseconds
    std::mutex mMutex;
    std::condition_variable mWake;
    bool mIsOver = false; ///< under the mutex
};

OpeningWatch::OpeningWatch(const QSqlDatabase &db) {
    if (!engine::isPostgreSql(db))
        return;
    const ConnectionWords words = connectionwords::resolved(connectionwords::parsed(db.connectOptions()));
    const int limit = connectionwords::value(words, "tcp_user_timeout").toInt();
    if (limit <= 0)
        return;
    mThread = std::make_unique<Thread>(db.driver(), limit);
    mThread->start();
}

#else

class OpeningWatch::Thread {};

OpeningWatch::OpeningWatch(const QSqlDatabase &) {}

#endif

OpeningWatch::~OpeningWatch() = default;
