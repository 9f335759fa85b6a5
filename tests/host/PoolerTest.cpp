#include "store/OpenStore.h"
#include "tests/host/Morastore.h"
#include "tests/support/OwnServer.h"

#include <QThread>
#include <QTimer>

// A pool of connections between the program and the server.

namespace {

const QString kPooler = QStringLiteral("/usr/sbin/pgbouncer");

class Pooled : public Morastore {
protected:
    void SetUp() override {
        if (!OwnServer::isPossible() || !QFile::exists(kPooler))
            GTEST_SKIP() << "no PostgreSQL server, or no pgbouncer";
        mServer = std::make_unique<OwnServer>();
        ASSERT_EQ(run({QStringLiteral("new"), QStringLiteral("--postgres"), direct()}).exitCode, 0);
        ASSERT_EQ(run({QStringLiteral("import"), direct(), kExample}).exitCode, 0);
    }
    void TearDown() override {
        if (mServer)
            stop();
    }

    QString direct() const { return mServer->connectionString(QStringLiteral("city")); }
    QString pooled() const {
        return QStringLiteral("dbname=city host=%1 port=6432 user=postgres").arg(mServer->folder());
    }

    /// A pool that hands sessions out in that mode; @p settings are more lines of its file.
    void start(const char *mode, const char *settings = "") {
        stop();
        const QString file = mServer->folder() + QStringLiteral("/pool.ini");
        QFile ini(file);
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(QStringLiteral(
                      "[databases]\n* = host=%1 port=5432 user=postgres\n[pgbouncer]\nlisten_port = 6432\n"
                      "unix_socket_dir = %1\nauth_type = any\npidfile = %1/pool.pid\nlogfile = %1/pool.log\n"
                      "pool_mode = %2\n%3\n")
                      .arg(mServer->folder(), QLatin1String(mode), QLatin1String(settings))
                      .toUtf8());
        ini.close();
        mServer->own(file);
        mServer->run(kPooler, {QStringLiteral("-q"), QStringLiteral("-d"), file});
        for (int i = 0; i < 100 && !QFile::exists(mServer->folder() + QStringLiteral("/.s.PGSQL.6432")); ++i)
            QThread::msleep(50);
    }
    void stop() const {
        QFile pid(mServer->folder() + QStringLiteral("/pool.pid"));
        if (!pid.open(QIODevice::ReadOnly))
            return;
        mServer->run(QStringLiteral("kill"), {QString::fromUtf8(pid.readAll()).trimmed()});
        for (int i = 0; i < 100 && pid.exists(); ++i)
            QThread::msleep(50);
    }

    std::unique_ptr<OwnServer> mServer;
};

} // namespace

TEST_F(Pooled, SessionsThatAreHandedRoundAreRefused) {
    const QString sentence =
        QStringLiteral("a pool stands before the server that gives each transaction another session");
    const QString digest = run({QStringLiteral("digest"), direct()}).out;
    for (const char *settings : {"", "server_round_robin = 1"}) {
        SCOPED_TRACE(settings);
        start("transaction", settings);
        for (const QStringList &command : {QStringList{QStringLiteral("digest"), pooled()},
                                           QStringList{QStringLiteral("import"), pooled(), kExample}})
            expectSentence(run(command), sentence);
        StoreSettings host;
        host.driver = QStringLiteral("QPSQL");
        host.host = mServer->folder();
        host.port = 6432;
        host.name = QStringLiteral("city");
        host.user = QStringLiteral("postgres");
        // A host that opens a store in the middle of something of its own is not interrupted.
        QTimer event;
        bool isHandedOut = false;
        QObject::connect(&event, &QTimer::timeout, [&isHandedOut] { isHandedOut = true; });
        event.start(0);
        const OpenStore store(host, OpenStore::Access::Read);
        EXPECT_FALSE(isHandedOut);
        EXPECT_FALSE(store.isOpen());
        ASSERT_FALSE(store.failures().isEmpty());
        EXPECT_TRUE(store.failures().first().error.contains(sentence))
            << store.failures().first().error.toStdString();
    }
    EXPECT_EQ(run({QStringLiteral("digest"), direct()}).out, digest);
}

TEST_F(Pooled, ASessionForEachClientWorks) {
    start("session");
    const QString digest = run({QStringLiteral("digest"), direct()}).out;
    EXPECT_EQ(run({QStringLiteral("digest"), pooled()}).out, digest);
    const Outcome import =
        run({QStringLiteral("import"), pooled(), kExample, QStringLiteral("--name"), QStringLiteral("two")});
    EXPECT_EQ(import.exitCode, 0) << import.err.toStdString();
    const Outcome remove =
        run({QStringLiteral("remove"), pooled(), QStringLiteral("two"), QStringLiteral("--yes")});
    EXPECT_EQ(remove.exitCode, 0) << remove.err.toStdString();
    EXPECT_EQ(run({QStringLiteral("digest"), direct()}).out, digest);
}
