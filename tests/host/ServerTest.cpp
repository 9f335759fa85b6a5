#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

// Stores on a server: how they are made, what is said when the server does not play along, and that a
// password is said nowhere.

namespace {

class ServerStore : public OnServer {
protected:
    static QString connection(const QString &database, const QString &more = {}) {
        return QStringLiteral("dbname=%1 host=%2 port=%3 user=%4 %5")
            .arg(database, PostgresDatabase::host(), QString::number(PostgresDatabase::port()),
                 PostgresDatabase::user(), more);
    }

    /// Runs the program into a lock that @p held takes, and once it waits either does @p meanwhile and
    /// commits or, without that, ends the program's connection and rolls back.
    static Outcome runHeld(const Beside &beside, const QStringList &command, const char *held,
                           const char *meanwhile = nullptr) {
        const QString waiting = QStringLiteral("from pg_stat_activity where datname = current_database() "
                                               "and wait_event_type = 'Lock'");
        beside.value(QStringLiteral("begin"));
        beside.value(QLatin1String(held));
        QProcess process;
        process.start(morastoreProgram(), command);
        QElapsedTimer since;
        since.start();
        while (!process.waitForFinished(20) && since.elapsed() < 60000) {
            // A transaction sees the list as it was when it first asked.
            beside.value(QStringLiteral("select pg_stat_clear_snapshot()"));
            if (!meanwhile)
                beside.value(QStringLiteral("select pg_terminate_backend(pid) ") + waiting);
            else if (beside.value(QStringLiteral("select count(*) ") + waiting) != QLatin1String("0"))
                break;
        }
        if (meanwhile)
            beside.value(QLatin1String(meanwhile));
        beside.value(meanwhile ? QStringLiteral("commit") : QStringLiteral("rollback"));
        EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished());
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
};

} // namespace

TEST_F(ServerStore, EveryRefusalIsASentenceThatNamesTheServer) {
    const PostgresDatabase store;
    const PostgresDatabase empty(PostgresDatabase::Content::Nothing);
    const QString secret = QStringLiteral("s3cr3t x");
    const QString wrong = QStringLiteral("password='%1'").arg(secret);
    const struct {
        QString connection;
        const char *expected;
    } table[] = {
        {QStringLiteral("dbname=x host=%1").arg(mFolder.path()), "no server answers"},
        {QStringLiteral("postgresql://me:%1@127.0.0.1:1/x").arg(QStringLiteral("s3cr3t%20x")),
         "no server answers"},
        {connection(store.name(), wrong), "refuses the user or the password"},
        {connection(QStringLiteral("none")), "has no such database"},
        {connection(empty.name()), "is no store"},
        {QStringLiteral("host=a password=%1").arg(secret), "cannot be understood"},
    };
    for (const auto &entry : table) {
        for (const QStringList &command : {QStringList{QStringLiteral("info"), entry.connection},
                                           QStringList{QStringLiteral("import"), entry.connection, kExample},
                                           QStringList{QStringLiteral("digest"), entry.connection}}) {
            const Outcome outcome = run(command);
            expectSentence(outcome, QLatin1String(entry.expected));
            EXPECT_FALSE(outcome.err.contains(QLatin1String("s3cr3t"))) << outcome.err.toStdString();
        }
    }
    qunsetenv("PGPASSWORD");
    expectSentence(run({QStringLiteral("info"), connection(store.name())}),
                   QStringLiteral("asks for a password"));
    // The password in the string works, too, and the library's name for the store does not have it.
    QString own = PostgresDatabase::password();
    own.replace(QLatin1Char('\''), QLatin1String("\\'"));
    const Outcome info =
        run({QStringLiteral("info"), connection(store.name(), QStringLiteral("password='%1'").arg(own))});
    EXPECT_EQ(info.exitCode, 0) << info.err.toStdString();
    EXPECT_FALSE(info.out.contains(PostgresDatabase::password()));
    // So does one in a service file, with all the rest.
    write(QStringLiteral("services"),
          QStringLiteral("[mora]\nhost=%1\nport=%2\nuser=%3\ndbname=%4\npassword=%5\n")
              .arg(PostgresDatabase::host(), QString::number(PostgresDatabase::port()),
                   PostgresDatabase::user(), store.name(), PostgresDatabase::password())
              .toUtf8());
    qputenv("PGSERVICEFILE", file(QStringLiteral("services")).toUtf8());
    const Outcome served = run({QStringLiteral("info"), QStringLiteral("service=mora")});
    EXPECT_EQ(served.exitCode, 0) << served.err.toStdString();
    EXPECT_TRUE(served.out.startsWith(QLatin1String("store       service=mora\n")));
    expectSentence(run({QStringLiteral("protect"), connection(store.name())}),
                   QStringLiteral("only a store file can be protected"));
}

TEST_F(ServerStore, NoConnectionLeft) {
    const PostgresDatabase store;
    const Beside beside(qEnvironmentVariable("MORA_TEST_PG_NAME"));
    beside.value(QStringLiteral("alter database %1 connection limit 0").arg(store.name()));
    expectSentence(run({QStringLiteral("info"), connection(store.name())}),
                   QStringLiteral("has no connection left"));
}

TEST_F(ServerStore, AConnectionThatIsLostLeavesNothing) {
    const PostgresDatabase store;
    const Beside beside(store.name());
    const QStringList import{QStringLiteral("import"), connection(store.name()), kExample,
                             QStringLiteral("--wait"), QStringLiteral("0")};
    const char *const lost = "the connection to the server is lost";
    const struct {
        const char *held;
        const char *expected;
    } table[] = {
        {"lock table Connector in share mode", lost},
        {"alter sequence seq_lane_id increment by 1", lost},
        {"lock table Net in share mode", "another program is writing"},
    };
    for (const auto &entry : table) {
        expectSentence(runHeld(beside, import, entry.held), QLatin1String(entry.expected));
        EXPECT_EQ(beside.value(QStringLiteral("select (select count(*) from Net) + (select count(*) from "
                                              "Link) + (select count(*) from LinkType)")),
                  QStringLiteral("0"));
    }
    EXPECT_EQ(run(import).exitCode, 0);

    const QString picture = file(QStringLiteral("lost.svg"));
    const QString link = beside.value(QStringLiteral("select min(linkID) from Link"));
    const std::pair<QStringList, const char *> readers[] = {
        {{QStringLiteral("draw"), connection(store.name()), picture}, "lock table Lane"},
        {{QStringLiteral("info"), connection(store.name())}, "lock table Lane"},
        {{QStringLiteral("show"), connection(store.name()), QStringLiteral("links")}, "lock table Link"},
        {{QStringLiteral("show"), connection(store.name()), QStringLiteral("links"), link},
         "lock table Lane"},
    };
    for (const auto &[command, held] : readers)
        expectSentence(runHeld(beside, command, held), QLatin1String(lost));
    EXPECT_FALSE(QFile::exists(picture));
}

TEST_F(ServerStore, ANetworkIsReadAsItWasAtOneMoment) {
    const PostgresDatabase store;
    ASSERT_EQ(run({QStringLiteral("import"), connection(store.name()), kExample}).exitCode, 0);
    const auto draw = [&](const char *name) {
        return QStringList{QStringLiteral("draw"), connection(store.name()), file(QLatin1String(name))};
    };
    ASSERT_EQ(run(draw("before.svg")).exitCode, 0);
    const Beside beside(store.name());
    // The reader has read the links when it waits for their lanes.
    const Outcome outcome =
        runHeld(beside, draw("meanwhile.svg"), "lock table Lane", "update Lane set width = 2 * width");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    ASSERT_EQ(run(draw("after.svg")).exitCode, 0);
    const auto picture = [&](const char *name) {
        QFile svg(file(QLatin1String(name)));
        EXPECT_TRUE(svg.open(QIODevice::ReadOnly));
        return svg.readAll();
    };
    EXPECT_EQ(picture("meanwhile.svg"), picture("before.svg"));
    EXPECT_NE(picture("after.svg"), picture("before.svg"));
}

TEST_F(ServerStore, IsMadeAsAWholeOrNotAtAll) {
    const auto make = [](const QString &database, const QStringList &options = {}) {
        return run(QStringList{QStringLiteral("new"), QStringLiteral("--postgres"), connection(database)} +
                   options);
    };
    const QString name = QStringLiteral("mora \"new\" %1").arg(QCoreApplication::applicationPid());
    const QString spelled = QStringLiteral("'%1'").arg(name);
    const Beside beside(qEnvironmentVariable("MORA_TEST_PG_NAME"));
    const auto exists = [&] {
        return beside.value(
                   QStringLiteral("select count(*) from pg_database where datname = '%1'").arg(name)) ==
               QLatin1String("1");
    };
    // Without the program that fills it, the database that was made for it goes again.
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", mFolder.path().toUtf8());
    expectSentence(make(spelled), QStringLiteral("pg_restore is missing"));
    write(QStringLiteral("pg_restore"), "#!/bin/sh\necho no disk; exit 1\n");
    ASSERT_TRUE(
        QFile::setPermissions(file(QStringLiteral("pg_restore")), QFile::ReadOwner | QFile::ExeOwner));
    expectSentence(make(spelled), QStringLiteral("the store cannot be made (no disk)"));
    qputenv("PATH", path);
    EXPECT_FALSE(exists());
    expectSentence(make(spelled, {QStringLiteral("--template"), QStringLiteral("None")}),
                   QStringLiteral("no template \"None\""));

    const Outcome made = make(spelled);
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    EXPECT_EQ(made.out + made.err, QString());
    expectSentence(make(spelled), QStringLiteral("holds tables already"));
    EXPECT_EQ(run({QStringLiteral("import"), connection(spelled), kExample}).exitCode, 0);
    beside.value(QStringLiteral("drop database \"%1\"")
                     .arg(QString(name).replace(QLatin1Char('"'), QLatin1String("\"\""))));

    const PostgresDatabase empty(PostgresDatabase::Content::Nothing);
    EXPECT_EQ(make(empty.name(), {QStringLiteral("--template"), QStringLiteral("pgsql_db6_init")}).exitCode,
              0);
    EXPECT_TRUE(
        run({QStringLiteral("info"), connection(empty.name())}).out.contains(QLatin1String("networks    1")));
    expectSentence(run({QStringLiteral("new"), QStringLiteral("--postgres"), file(QStringLiteral("a.db"))}),
                   QStringLiteral("this is no connection string"));
    expectSentence(run({QStringLiteral("new"), connection(empty.name())}),
                   QStringLiteral("say \"new --postgres\""));
}

TEST_F(ServerStore, ANetworkGoesAsAWholeAndANewerStoreIsRefused) {
    const PostgresDatabase store;
    const QString address = store.connectionString();
    for (const char *name : {"one", "two"})
        ASSERT_EQ(
            run({QStringLiteral("import"), address, kExample, QStringLiteral("--name"), QLatin1String(name)})
                .exitCode,
            0);
    const QStringList digest{QStringLiteral("digest"), address, QStringLiteral("--net"), QStringLiteral("1")};
    const Outcome before = run(digest);
    const QStringList remove{QStringLiteral("remove"), address, QStringLiteral("two"),
                             QStringLiteral("--yes")};
    EXPECT_EQ(run(remove).exitCode, 0);
    EXPECT_EQ(before.exitCode, 0) << before.err.toStdString();
    EXPECT_EQ(run(digest).out, before.out);
    const Beside beside(store.name());
    EXPECT_EQ(
        beside.value(QStringLiteral("select (select count(*) from Net) * 1000 + (select count(*) from Link "
                                    "where NetId = 2) + (select count(*) from Logger where NetId = 2) + "
                                    "(select count(*) from Configuration where NetId = 2)")),
        QStringLiteral("1000"));
    beside.value(QStringLiteral("update DbVersion set versionId = 7 returning versionId"));
    expectSentence(run(remove), QStringLiteral("of version 7, and this release knows none above 6"));
    expectSentence(run({QStringLiteral("upgrade"), address}),
                   QStringLiteral("only store files are upgraded"));
}
