#include "store/DBTools.h"
#include "store/bulk/CopyStream.h"
#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"
#include "tests/support/Proxy.h"
#include "tools/session/StoreSession.h"

#include "model/NetContents.h"

#include <QElapsedTimer>
#include <QThread>

using namespace moratools;

// Connections that stay open and go silent in the middle of work, and those that only look as if they did.

namespace {

class Stalls : public OnServer {
protected:
    void SetUp() override {
        OnServer::SetUp();
        if (IsSkipped())
            return;
        mDatabase = std::make_unique<PostgresDatabase>();
    }

    /// The store behind the proxy; silence of so many milliseconds counts.
    QString address(int limit = kLimit) const {
        return mProxy.connectionString(mDatabase->name(),
                                       QStringLiteral("tcp_user_timeout=%1 connect_timeout=2").arg(limit));
    }

    QStringList import(const char *name = "net") const {
        return {QStringLiteral("import"), address(), kExample, QStringLiteral("--name"), QLatin1String(name)};
    }

    /// The command ends with the sentence, and not at once.
    void expectEnd(const QStringList &command, const char *sentence) {
        const int before = mProxy.stalls();
        QElapsedTimer since;
        since.start();
        expectSentence(run(command), QLatin1String(sentence));
        EXPECT_GT(since.elapsed(), kLimit / 2);
        EXPECT_LT(since.elapsed(), kLimit * 4);
        EXPECT_GT(mProxy.stalls(), before) << "nothing has stalled";
        mProxy.stallAt({});
        mProxy.stallAfter(-1);
    }

    static constexpr int kLimit = 1800;
    static constexpr const char *kLost = "the connection to the server is lost";

    std::unique_ptr<PostgresDatabase> mDatabase;
    Proxy mProxy;
};

} // namespace

TEST_F(Stalls, WritingEndsSoonAndLeavesNeitherRowsNorLocks) {
    const Beside beside(mDatabase->name());
    const auto expectNothing = [&] {
        EXPECT_EQ(
            beside.value(QStringLiteral("select (select count(*) from Net) + (select count(*) from Link)")),
            QStringLiteral("0"));
        // A server that has much to do takes a moment to end a session.
        const auto locks = [&beside] {
            return beside.value(QStringLiteral("select count(*) from pg_locks join pg_class on relation = "
                                               "pg_class.oid where relname = 'net'"));
        };
        for (int i = 0; i < 100 && locks() != QStringLiteral("0"); ++i)
            QThread::msleep(100);
        EXPECT_EQ(locks(), QStringLiteral("0"));
    };
    for (const char *at : {"pg_postmaster_start_time", "DATESTYLE", "dbversion", "from LinkType where",
                           "lock table Net", "copy Lane("}) {
        mProxy.stallAt(at);
        expectEnd(import(), kLost);
        expectNothing();
    }
    mProxy.stallAt("commit");
    expectEnd(import(), "was lost at the very end");
    expectNothing();
    EXPECT_EQ(run(import()).exitCode, 0);

    // So it does where the whole server is silent, and nobody can be asked.
    const QString before = run({QStringLiteral("digest"), address()}).out;
    mProxy.stallAll(true);
    mProxy.stallAt("copy Lane(");
    expectEnd(import("other"), kLost);
    mProxy.stallAll(false);
    EXPECT_EQ(run({QStringLiteral("digest"), mDatabase->connectionString()}).out, before);
}

TEST_F(Stalls, ReadingEndsSoon) {
    ASSERT_EQ(run(import()).exitCode, 0);
    const QString picture = file(QStringLiteral("picture.svg"));
    mProxy.stallAt("from Lane ");
    expectEnd({QStringLiteral("draw"), address(), picture}, kLost);
    EXPECT_FALSE(QFile::exists(picture));
    mProxy.stallAfter(60000);
    expectEnd({QStringLiteral("digest"), address()}, kLost);
    const StoreSession store(address(), Access::Read);
    mProxy.stallAt("from Lane");
    NetContents net;
    EXPECT_FALSE(DBTools::loadNet(store.db(), 1, net));
    EXPECT_GT(store.unexpectedFailures(), 0);
    EXPECT_TRUE(net.links.empty());
}

TEST_F(Stalls, WhatOnlyTakesLongIsLeftToIt) {
    const Beside beside(mDatabase->name());
    // The server waits for a lock.
    beside.value(QStringLiteral("begin"));
    beside.value(QStringLiteral("lock table Connector in share mode"));
    QProcess process;
    process.start(morastoreProgram(), import());
    EXPECT_FALSE(process.waitForFinished(3 * kLimit)) << process.readAllStandardError().toStdString();
    beside.value(QStringLiteral("commit"));
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();

    const StoreSession store(address(), Access::Write);
    // The host thinks about a row: the rest has come, and the server is idle.
    QSqlQuery rows(store.db());
    rows.setForwardOnly(true);
    ASSERT_TRUE(rows.exec(QStringLiteral("select * from generate_series(1, 3)")) && rows.next());
    QThread::msleep(3 * kLimit);
    EXPECT_TRUE(rows.next() && rows.next()) << rows.lastError().text().toStdString();
    EXPECT_EQ(rows.value(0).toInt(), 3);
    rows.finish();
    // The host makes the next row: the server waits for it.
    CopyStream stream(store.db(), QStringLiteral("SignalGroup"),
                      {QStringLiteral("NetId"), QStringLiteral("signalGroupID")});
    QThread::msleep(3 * kLimit);
    EXPECT_TRUE(stream.finish()) << stream.error().toStdString();
    // A line is slow: what the server has sent long ago goes on coming.
    mProxy.limitTo(40000);
    QSqlQuery large(store.db());
    EXPECT_TRUE(large.exec(QStringLiteral("select repeat('x', 200000)")))
        << large.lastError().text().toStdString();
}
