#pragma once

#include "tests/support/PostgresDatabase.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>

class QIODevice;

/// What stands between a client and the test server: a port of 127.0.0.1 that forwards, and can be slow, silent or
/// gone. It works in a thread of its own; its settings count at once, also for connections that are there.
class Proxy : public QThread {
public:
    /// Forwards to the test server.
    Proxy() : Proxy(PostgresDatabase::host(), PostgresDatabase::port()) {}
    /// @param host a name, or the folder of a Unix socket.
    Proxy(QString host, int port);
    /// Ends all connections.
    ~Proxy() override;

    int port() const { return mPort; }
    /// What morastore takes for a database behind it; the password is not in it.
    QString connectionString(const QString &database, const QString &more = {}) const;

    /// What is forwarded arrives so much later, in either direction.
    void delay(int milliseconds) { mDelay = milliseconds; }
    /// So many bytes a second get through in each direction; 0: all.
    void limitTo(int bytesPerSecond) { mRate = bytesPerSecond; }
    /// Whether connections are accepted and then told nothing.
    void beSilent(bool isSilent) { mIsSilent = isSilent; }
    /// A connection whose client sends @p text is silent from there on, in both directions; the text does
    /// not arrive.
    void stallAt(const QByteArray &text) { stall({text, {}}); }
    /// The same for one whose client has sent @p first before; what makes it silent arrives.
    void stallBehind(const QByteArray &text, const QByteArray &first) { stall({text, first}); }
    /// A connection is silent once the server has sent so many bytes on it; -1: never.
    void stallAfter(qint64 bytes) { mStallAfter = bytes; }
    /// A connection is cut once the server has sent so many bytes on it; -1: never.
    void cutAfter(qint64 bytes) { mCutAfter = bytes; }
    /// Whether the next connection that stalls takes all along, those to come too.
    void stallAll(bool all) {
        mStallsAll = all;
        mAreAllStalled = false;
    }
    /// How many connections have stalled.
    int stalls() const { return mStalls; }

protected:
    void run() override;

private:
    /// A connection and what is known of it. The sockets are the client's and the server's.
    struct Pair {
        QIODevice *client;
        QIODevice *server;
        qint64 received = 0;
        qint64 due = 0; ///< when what was forwarded last arrives, in milliseconds
        bool isStalled = false;
        bool hasSentFirst = false; ///< the first of the words
    };
    /// What makes a connection silent, and what must have come before.
    struct Words {
        QByteArray last;
        QByteArray first;
    };

    void accept(QIODevice *client);
    QIODevice *connectToServer();
    void forward(const std::shared_ptr<Pair> &pair, QIODevice *from, QIODevice *to);
    void send(Pair &pair, QIODevice *to, const QByteArray &bytes);
    void stall(const Words &words);
    /// @param arrives is set when @p bytes are to arrive all the same.
    bool isToStall(Pair &pair, const QByteArray &bytes, bool isFromClient, bool &arrives);

    QString mHost;
    int mServerPort;
    std::atomic<int> mPort{0};
    std::atomic<int> mDelay{0};
    std::atomic<int> mRate{0};
    std::atomic<int> mStalls{0};
    std::atomic<qint64> mStallAfter{-1};
    std::atomic<qint64> mCutAfter{-1};
    std::atomic<bool> mIsSilent{false};
    std::atomic<bool> mStallsAll{false};
    std::atomic<bool> mAreAllStalled{false};
    std::mutex mMutex;
    Words mWords; ///< under the mutex
    QElapsedTimer mClock;
};
