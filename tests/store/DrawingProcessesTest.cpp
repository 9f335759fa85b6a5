#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>

// Several processes draw from one database at once. Each is this program once more, running the case that is
// disabled otherwise, and prints what it was given.

namespace {

constexpr const char *kDatabase = "MORA_TEST_DRAW_DATABASE";
constexpr const char *kSeed = "MORA_TEST_DRAW_SEED";
/// How many identifiers each process draws; 5000 unless the environment says so.
constexpr const char *kDraws = "MORA_TEST_DRAWS";

int draws() {
    return qEnvironmentVariableIsSet(kDraws) ? qEnvironmentVariableIntValue(kDraws) : 5000;
}

/// Saves a network with an identifier of its own somewhat ahead of the sequence, which the save has to pass
/// while others may have done so, and one that it is given; then takes it all back.
long saveAhead(long ahead) {
    NetContents contents;
    contents.links.push_back(sampleLink(7));
    contents.links.push_back(sampleLink(8));
    contents.links.front()->linkID = ahead;
    contents.links.back()->linkID = 0;
    EXPECT_TRUE(gDB.transaction());
    EXPECT_TRUE(DBTools::saveNet(gDB, 2 + qEnvironmentVariableIntValue(kSeed), contents, false))
        << qPrintable(DBTools_V6::mlCallDbResult.value(0).error);
    EXPECT_TRUE(gDB.rollback());
    return contents.links.back()->linkID;
}

TEST(DrawingProcess, DISABLED_PrintsWhatItWasGiven) {
    DBTools::mDbDriver = QStringLiteral("QPSQL");
    DBTools::mDbHost = PostgresDatabase::host();
    DBTools::mDbPort = PostgresDatabase::port();
    DBTools::mDbName = qEnvironmentVariable(kDatabase);
    DBTools::mDbUser = PostgresDatabase::user();
    DBTools::mDbPassword = PostgresDatabase::password();
    ASSERT_TRUE(DBTools::openDatabase(gDB, {}, true));
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue(kSeed)));
    QTextStream out(stdout);
    long id = 0;
    for (int drawn = 0; drawn < draws();) {
        const bool inTransaction = random.bounded(2) == 0;
        if (inTransaction) {
            ASSERT_TRUE(gDB.transaction());
        }
        for (int i = int(random.bounded(40)); i >= 0 && drawn < draws(); --i, ++drawn) {
            ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
            out << "drawn " << id << '\n';
        }
        if (inTransaction) {
            ASSERT_TRUE(random.bounded(2) == 0 ? gDB.commit() : gDB.rollback());
        }
        if (random.bounded(10) == 0)
            out << "drawn " << saveAhead(id + 1 + long(random.bounded(10))) << '\n';
    }
    gDB.close();
}

class DrawingProcessesTest : public StoreFixture {};

TEST_F(DrawingProcessesTest, FourOnOneServerNeverGetTheSameIdentifier) {
    openPostgres();
    if (IsSkipped() || HasFatalFailure())
        return;
    constexpr int processes = 4;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(kDatabase), rows(QStringLiteral("select current_database()")).value(0));
    std::vector<std::unique_ptr<QProcess>> started;
    for (int i = 0; i < processes; ++i) {
        auto process = std::make_unique<QProcess>();
        environment.insert(QLatin1String(kSeed), QString::number(i));
        process->setProcessEnvironment(environment);
        process->setStandardOutputFile(folder() + QStringLiteral("/%1").arg(i));
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QCoreApplication::applicationFilePath(),
                       {QStringLiteral("--gtest_also_run_disabled_tests"),
                        QStringLiteral("--gtest_filter=DrawingProcess.*")});
        started.push_back(std::move(process));
    }
    std::vector<long> ids;
    for (int i = 0; i < processes; ++i) {
        ASSERT_TRUE(started[std::size_t(i)]->waitForFinished(-1));
        EXPECT_EQ(started[std::size_t(i)]->exitCode(), 0);
        QFile output(folder() + QStringLiteral("/%1").arg(i));
        ASSERT_TRUE(output.open(QIODevice::ReadOnly));
        for (const QByteArray &line : output.readAll().split('\n')) {
            if (line.startsWith("drawn "))
                ids.push_back(line.mid(6).toLong());
        }
    }
    EXPECT_GT(ids.size(), std::size_t(processes) * std::size_t(draws()));
    std::sort(ids.begin(), ids.end());
    EXPECT_GT(ids.front(), 0);
    EXPECT_TRUE(std::adjacent_find(ids.begin(), ids.end()) == ids.end());
}

} // namespace
