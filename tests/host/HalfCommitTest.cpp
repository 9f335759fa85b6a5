#include "tests/host/Morastore.h"
#include "tests/support/OwnServer.h"
#include "tests/support/Proxy.h"

#include <QElapsedTimer>
#include <QThread>

// A store on two servers, the first of which is killed when the second has committed and the first has not.

namespace {

const QString kDatabase = QStringLiteral("region");
constexpr int kPartitions = 3;

class HalfCommit : public Morastore {
protected:
    void SetUp() override {
        if (!OwnServer::isPossible())
            GTEST_SKIP() << "no PostgreSQL server";
        mOne = std::make_unique<OwnServer>();
        mTwo = std::make_unique<OwnServer>();
        mWay = std::make_unique<Proxy>(mTwo->folder(), mTwo->port());
        mStore = mOne->connectionString(kDatabase);
        const QString count = QString::number(kPartitions);
        succeed({"new", "--postgres", mStore, "--partitions", count});
        succeed({"new", "--postgres", mTwo->connectionString(kDatabase), "--leaves", count});
        for (const QString &sql :
             {QStringLiteral("create extension postgres_fdw"),
              QStringLiteral("create server two foreign data wrapper postgres_fdw options (host '127.0.0.1', "
                             "port '%1', dbname '%2')")
                  .arg(QString::number(mWay->port()), kDatabase),
              QStringLiteral("create user mapping for postgres server two options (user 'postgres')")})
            here(sql);
        for (int partition = 0; partition < kPartitions; ++partition)
            succeed({"place", mStore, "two", "--partition", QString::number(partition)});
        for (const char *name : {"base", "other"})
            succeed({"import", mStore, kExample, "--name", name});
    }

    QString here(const QString &sql) const { return mOne->value(kDatabase, sql); }
    /// The rows of a table on the second server that a network has there.
    int rowsThere(const char *table, int net) const {
        int rows = 0;
        for (int partition = 0; partition < kPartitions; ++partition)
            rows += mTwo->value(kDatabase, QStringLiteral("select count(*) from part_%1.%2 where NetId = %3")
                                               .arg(QString::number(partition), QLatin1String(table),
                                                    QString::number(net)))
                        .toInt();
        return rows;
    }
    QString digest(const QString &net) const { return succeed({"digest", mStore, "--net", net}).left(64); }

    /// Runs a command that writes with a word of SQL, and kills the first server as soon as the second has committed that.
    Outcome runHalf(const QStringList &command, const char *writing) {
        const int stalls = mWay->stalls();
        mWay->stallBehind("COMMIT TRANSACTION", writing);
        QProcess process;
        process.start(morastoreProgram(), command);
        QElapsedTimer time;
        time.start();
        const auto isOver = [&time] { return time.hasExpired(60000); };
        while (mWay->stalls() == stalls && !isOver())
            QThread::msleep(5);
        const QString atWork =
            QStringLiteral("select count(*) from pg_stat_activity where backend_type = 'client backend' "
                           "and state <> 'idle' and pid <> pg_backend_pid()");
        while (mTwo->value(kDatabase, atWork) != QLatin1String("0") && !isOver())
            QThread::msleep(5);
        EXPECT_FALSE(isOver());
        mOne->kill();
        EXPECT_TRUE(process.waitForFinished(60000));
        mWay->stallAt({});
        mOne->start();
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    std::unique_ptr<OwnServer> mOne;
    std::unique_ptr<OwnServer> mTwo;
    std::unique_ptr<Proxy> mWay;
    QString mStore;
};

const QString kVeryEnd = QStringLiteral("lost at the very end");

TEST_F(HalfCommit, OfAnImportIsNoNetwork) {
    const QString before = succeed({"digest", mStore});
    expectSentence(runHalf({"import", mStore, kExample, "--name", "it"}, "INSERT INTO"), kVeryEnd);
    EXPECT_EQ(rowsThere("Link", 3), 13);
    EXPECT_EQ(here(QStringLiteral("select string_agg(name, ' ' order by NetId) from Net")),
              QStringLiteral("base other"));
    EXPECT_EQ(succeed({"digest", mStore}), before);
    EXPECT_TRUE(run({"check", mStore}).out.contains(QStringLiteral("network 3")));
    // Its number is passed over, and so is every identifier that its rows have.
    succeed({"import", mStore, kExample, "--name", "it"});
    EXPECT_EQ(here(QStringLiteral("select NetId from Net where name = 'it'")), QStringLiteral("4"));
    EXPECT_EQ(
        here(QStringLiteral("select count(*) from Link a join Link b using (linkID) where a.NetId = 3 and "
                            "b.NetId = 4")),
        QStringLiteral("0"));
    const QString with = succeed({"digest", mStore});
    EXPECT_TRUE(
        succeed({"place", mStore, "--tidy"}).contains(QStringLiteral("rows that belonged to no network")));
    EXPECT_EQ(rowsThere("Link", 3), 0);
    EXPECT_EQ(succeed({"digest", mStore}), with);
}

TEST_F(HalfCommit, OfARemovalIsDoneByRemovingAgain) {
    const QString other = digest(QStringLiteral("other"));
    expectSentence(runHalf({"remove", mStore, "base", "--yes"}, "DELETE FROM"), kVeryEnd);
    EXPECT_EQ(rowsThere("Link", 1), 0);
    EXPECT_EQ(here(QStringLiteral("select count(*) from Net where name = 'base'")), QStringLiteral("1"));
    EXPECT_EQ(digest(QStringLiteral("other")), other);
    succeed({"remove", mStore, "base", "--yes"});
    EXPECT_EQ(here(QStringLiteral("select name from Net")), QStringLiteral("other"));
    EXPECT_EQ(digest(QStringLiteral("other")), other);
}

TEST_F(HalfCommit, OfAPatchIsTheChangedNetwork) {
    const QString old = newStore(QStringLiteral("old.mora"));
    const QString edited = file(QStringLiteral("edited.mora"));
    succeed({"copy", mStore, old, "--net", "base"});
    ASSERT_TRUE(QFile::copy(old, edited));
    alter(edited, {QStringLiteral("update Lane set width = width + 0.25"),
                   QStringLiteral("update Link set linkName = linkName || 'x'")});
    EXPECT_EQ(run({"diff", old, edited, "-o", file("edits.patch")}).exitCode, 0);
    expectSentence(runHalf({"apply", mStore, file("edits.patch"), "--net", "base"}, "UPDATE"), kVeryEnd);
    EXPECT_EQ(digest(QStringLiteral("base")), succeed({"digest", edited}).left(64));
}

} // namespace
