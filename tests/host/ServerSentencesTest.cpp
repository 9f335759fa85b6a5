#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"
#include "tests/support/OwnServer.h"
#include "tests/support/Proxy.h"

#include <QDir>
#include <QSharedPointer>
#include <QStandardPaths>

#include <unistd.h>

// What is said when it is the server that a command fails for, and neither the store nor the network.

namespace {

class ServerSentences : public OnServer {
protected:
    static QStringList import(const QString &address, const char *name) {
        return {QStringLiteral("import"), address, kExample, QStringLiteral("--name"), QLatin1String(name)};
    }
    QStringList draw(const QString &address) const {
        return {QStringLiteral("draw"), address, file(QStringLiteral("picture.svg"))};
    }
    static QStringList remove(const QString &address) {
        return {QStringLiteral("remove"), address, QStringLiteral("net"), QStringLiteral("--yes")};
    }
    static QStringList copy(const QString &address) {
        return {QStringLiteral("copy"), address, address, QStringLiteral("--name"), QStringLiteral("two")};
    }
};

} // namespace

TEST_F(ServerSentences, ARightThatIsMissing) {
    const PostgresDatabase store;
    const QString address = store.connectionString();
    const Beside beside(store.name());
    ASSERT_EQ(run(import(address, "net")).exitCode, 0);
    const QString digest = run({QStringLiteral("digest"), address}).out;
    // An owner may take rights from himself.
    const struct {
        const char *right;
        QList<QStringList> commands;
    } table[] = {
        {"usage, update, select on sequence seq_lane_id", {import(address, "a")}},
        {"insert on Lane", {import(address, "a"), copy(address)}},
        {"delete on Lane", {remove(address)}},
        {"select on Lane",
         {{QStringLiteral("digest"), address},
          {QStringLiteral("check"), address},
          {QStringLiteral("info"), address},
          draw(address)}},
    };
    for (const auto &entry : table) {
        const QString right = QLatin1String(entry.right);
        const QString all =
            QString(right).replace(QLatin1String("usage, update, select"), QLatin1String("all"));
        beside.value(QStringLiteral("revoke %1 from current_user").arg(all));
        for (const QStringList &command : entry.commands) {
            SCOPED_TRACE((right + QLatin1Char(' ') + command.first()).toStdString());
            const Outcome outcome = run(command);
            expectSentence(outcome, QStringLiteral("the user has no right to do this ("));
            EXPECT_FALSE(outcome.err.contains(QLatin1String("damaged"))) << outcome.err.toStdString();
        }
        beside.value(QStringLiteral("grant %1 to current_user").arg(all));
    }
    EXPECT_EQ(run({QStringLiteral("digest"), address}).out, digest);
}

TEST_F(ServerSentences, ATimeThatIsOver) {
    const PostgresDatabase store;
    ASSERT_EQ(run(import(store.connectionString(), "net")).exitCode, 0);
    const QString digest = run({QStringLiteral("digest"), store.connectionString()}).out;
    const Beside beside(store.name());
    const auto expectRefused = [&](const char *option, const char *sentence) {
        const QString address =
            store.connectionString() + QStringLiteral(" options='-c %1=300'").arg(QLatin1String(option));
        for (const QStringList &command : {import(address, "other"), remove(address), copy(address),
                                           QStringList{QStringLiteral("digest"), address}, draw(address),
                                           QStringList{QStringLiteral("info"), address}}) {
            SCOPED_TRACE(command.first().toStdString());
            expectSentence(run(command), QLatin1String(sentence));
        }
    };
    beside.value(QStringLiteral("begin"));
    beside.value(QStringLiteral("lock table Lane"));
    expectRefused("statement_timeout", "the server broke a statement off (");
    expectRefused("lock_timeout", "another program holds what is needed (");
    beside.value(QStringLiteral("rollback"));
    EXPECT_EQ(run({QStringLiteral("digest"), store.connectionString()}).out, digest);
}

TEST_F(ServerSentences, ADiskThatIsFull) {
    if (!OwnServer::isPossible() || geteuid() != 0)
        GTEST_SKIP() << "a small disk takes a server of one's own, and root to mount it";
    const OwnServer server;
    const QString disk = server.folder() + QStringLiteral("/disk");
    ASSERT_TRUE(QDir().mkdir(disk));
    const auto shell = [](const QString &command) {
        return QProcess::execute(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    };
    if (shell(QStringLiteral("mount -t tmpfs -o size=14m tmpfs '%1'").arg(disk)) != 0)
        GTEST_SKIP() << "nothing can be mounted here";
    const QSharedPointer<int> unmount(nullptr,
                                      [&](int *) { shell(QStringLiteral("umount -l '%1'").arg(disk)); });
    server.own(disk);
    server.value(QStringLiteral("postgres"),
                 QStringLiteral("create tablespace small location '%1'").arg(disk));
    server.value(QStringLiteral("postgres"), QStringLiteral("create database city tablespace small"));
    const QString address = server.connectionString(QStringLiteral("city"));
    ASSERT_EQ(run({QStringLiteral("new"), QStringLiteral("--postgres"), address}).exitCode, 0);
    ASSERT_EQ(run(import(address, "net")).exitCode, 0);
    const QString digest = run({QStringLiteral("digest"), address}).out;
    shell(QStringLiteral("cat /dev/zero > '%1/ballast' 2>/dev/null").arg(disk));
    // What room is left in pages that are there already is used up first.
    Outcome outcome;
    for (const bool isCopy : {false, true}) {
        for (int i = 0; i < 60 && outcome.exitCode != 1; ++i)
            outcome = run(isCopy ? QStringList{QStringLiteral("copy"), address, address,
                                               QStringLiteral("--net"), QStringLiteral("net"),
                                               QStringLiteral("--name"), QStringLiteral("c%1").arg(i)}
                                 : import(address, qPrintable(QStringLiteral("i%1").arg(i))));
        expectSentence(outcome, QStringLiteral("the disk of the server is full ("));
        outcome = {};
    }
    EXPECT_EQ(run({QStringLiteral("digest"), address, QStringLiteral("--net"), QStringLiteral("net")}).out,
              digest);
}

TEST_F(ServerSentences, EncryptionThatIsMissingOrWrong) {
    if (!OwnServer::isPossible() || QStandardPaths::findExecutable(QStringLiteral("openssl")).isEmpty())
        GTEST_SKIP() << "no server and certificate of one's own";
    const int port = OwnServer::freePort();
    OwnServer server({QStringLiteral("listen_addresses='127.0.0.1'")}, port);
    const auto certificate = [&](const char *name) {
        const QString base = server.dataFolder() + QLatin1Char('/') + QLatin1String(name);
        server.run(QStringLiteral("openssl"),
                   {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                    QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-subj"),
                    QStringLiteral("/CN=city"), QStringLiteral("-addext"),
                    QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"),
                    base + QStringLiteral(".key"), QStringLiteral("-out"), base + QStringLiteral(".crt")});
        return write(QLatin1String(name), read(base + QStringLiteral(".crt")));
    };
    const QString right = certificate("server");
    const QString wrong = certificate("other");
    server.value(QStringLiteral("postgres"), QStringLiteral("alter system set ssl = on"));
    {
        QFile rules(server.dataFolder() + QStringLiteral("/pg_hba.conf"));
        ASSERT_TRUE(rules.open(QIODevice::WriteOnly));
        rules.write("local all all trust\nhostssl all all 127.0.0.1/32 trust\n");
    }
    server.stop("fast");
    server.start();
    const auto address = [&](const QString &more) {
        return QStringLiteral("dbname=city host=127.0.0.1 port=%1 user=postgres %2")
            .arg(QString::number(port), more);
    };
    const QString verified = QStringLiteral("sslmode=verify-full sslrootcert='%1'");
    EXPECT_EQ(
        run({QStringLiteral("new"), QStringLiteral("--postgres"), address(verified.arg(right))}).exitCode, 0);
    EXPECT_EQ(run({QStringLiteral("info"), address(verified.arg(right))}).exitCode, 0);
    const QString unencrypted = QStringLiteral("no encrypted connection to the server comes about (");
    expectSentence(run({QStringLiteral("info"), address(verified.arg(wrong))}), unencrypted);
    expectSentence(run({QStringLiteral("info"), address(QStringLiteral("sslmode=disable"))}),
                   QStringLiteral("the server does not let this user in from here in this way ("));
    const PostgresDatabase plain;
    const Proxy proxy;
    expectSentence(run({QStringLiteral("info"),
                        proxy.connectionString(plain.name(), QStringLiteral("sslmode=require"))}),
                   unencrypted);
}
