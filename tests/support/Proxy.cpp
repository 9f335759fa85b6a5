#include "tests/support/Proxy.h"

#include <QHostAddress>
#include <QLocalSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>

Proxy::Proxy(QString host, int port) : mHost(std::move(host)), mServerPort(port) {
    mClock.start();
    start();
    while (mPort == 0)
        QThread::msleep(1);
    EXPECT_GT(mPort, 0) << "no port of 127.0.0.1 is free";
}

Proxy::~Proxy() {
    quit();
    wait();
}

QString Proxy::connectionString(const QString &database, const QString &more) const {
    return QStringLiteral("dbname=%1 host=127.0.0.1 port=%2 user=%3 %4")
        .arg(database, QString::number(port()), PostgresDatabase::user(), more);
}

void Proxy::stall(const Words &words) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mWords = words;
}

void Proxy::run() {
    QTcpServer server;
    const bool listens = server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [this, &server] {
        while (QTcpSocket *client = server.nextPendingConnection()) {
            client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            accept(client);
        }
    });
    mPort = listens ? server.serverPort() : -1;
    if (listens)
        exec();
}

QIODevice *Proxy::connectToServer() {
    if (mHost.startsWith(QLatin1Char('/'))) {
        auto *local = new QLocalSocket;
        local->connectToServer(QStringLiteral("%1/.s.PGSQL.%2").arg(mHost, QString::number(mServerPort)));
        return local;
    }
    auto *tcp = new QTcpSocket;
    tcp->connectToHost(mHost, quint16(mServerPort));
    tcp->waitForConnected();
    return tcp;
}

void Proxy::accept(QIODevice *client) {
    QIODevice *server = connectToServer();
    server->setParent(client); // which is the listening socket's
    const auto pair = std::make_shared<Pair>(Pair{client, server});
    const auto forwardBoth = [this, pair] {
        forward(pair, pair->client, pair->server);
        forward(pair, pair->server, pair->client);
    };
    for (QIODevice *end : {client, server}) {
        QObject::connect(end, &QIODevice::readyRead, client, forwardBoth);
        QObject::connect(end, &QIODevice::aboutToClose, client, forwardBoth);
    }
    // Each end hears when the other one has gone, unless the connection is silent.
    const auto endWith = [this, pair](QIODevice *other) {
        if (!pair->isStalled && !mIsSilent)
            QTimer::singleShot(mDelay.load(), other, [other] { other->close(); });
    };
    QObject::connect(static_cast<QTcpSocket *>(client), &QTcpSocket::disconnected, client,
                     [endWith, server] { endWith(server); });
    if (auto *local = qobject_cast<QLocalSocket *>(server))
        QObject::connect(local, &QLocalSocket::disconnected, client, [endWith, client] { endWith(client); });
    else
        QObject::connect(static_cast<QTcpSocket *>(server), &QTcpSocket::disconnected, client,
                         [endWith, client] { endWith(client); });
    forwardBoth();
}

bool Proxy::isToStall(Pair &pair, const QByteArray &bytes, bool isFromClient, bool &arrives) {
    if (mIsSilent || pair.isStalled || mAreAllStalled)
        return true;
    if (!isFromClient)
        return mStallAfter >= 0 && pair.received > mStallAfter;
    const std::lock_guard<std::mutex> lock(mMutex);
    arrives = !mWords.first.isEmpty();
    const bool isIt =
        !mWords.last.isEmpty() && (!arrives || pair.hasSentFirst) && bytes.contains(mWords.last);
    pair.hasSentFirst = pair.hasSentFirst || (arrives && bytes.contains(mWords.first));
    return isIt;
}

void Proxy::forward(const std::shared_ptr<Pair> &pair, QIODevice *from, QIODevice *to) {
    if (pair->isStalled || !from->isOpen() || from->bytesAvailable() == 0)
        return;
    const bool isFromClient = from == pair->client;
    // What stays unread stays with the sender once the buffers between are full, as it does with a network.
    if (mIsSilent)
        return;
    const QByteArray bytes = from->readAll();
    if (!isFromClient)
        pair->received += bytes.size();
    if (mCutAfter >= 0 && pair->received > mCutAfter) {
        pair->server->close();
        pair->client->close();
        return;
    }
    bool arrives = false;
    if (isToStall(*pair, bytes, isFromClient, arrives)) {
        if (arrives)
            send(*pair, to, bytes);
        pair->isStalled = true;
        ++mStalls;
        mAreAllStalled = mStallsAll.load();
        return;
    }
    send(*pair, to, bytes);
}

void Proxy::send(Pair &pair, QIODevice *to, const QByteArray &bytes) {
    if (mDelay == 0 && mRate == 0) {
        if (to->isOpen())
            to->write(bytes);
        return;
    }
    constexpr int piece = 4096;
    for (int at = 0; at < bytes.size(); at += piece) {
        const QByteArray part = bytes.mid(at, piece);
        pair.due = std::max(pair.due, mClock.elapsed()) + (mRate > 0 ? part.size() * 1000 / mRate : 0);
        // Timers that end at one time do so in the order in which they were begun.
        const int wait = int(pair.due - mClock.elapsed()) + mDelay;
        QTimer::singleShot(wait, Qt::PreciseTimer, to, [to, part] {
            if (to->isOpen())
                to->write(part);
        });
    }
}
