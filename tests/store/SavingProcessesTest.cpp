#include "model/NetContents.h"
#include "store/StoredNet.h"
#include "store/Transaction.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSqlQuery>

// Several processes save into one file at once. Each is this program once more, running the case that is disabled
// otherwise.

namespace {

constexpr const char *kFile = "MORA_TEST_SAVE_FILE";
constexpr const char *kNumber = "MORA_TEST_SAVE_NUMBER";
constexpr int kProcesses = 4;
constexpr int kSaves = 5;

/// In each of the ways that write several rows together.
bool save(int way, long netId) {
    NetContents contents;
    contents.record.netId = netId;
    contents.record.name = QString::number(netId);
    for (long id = 1; id <= 20; ++id)
        contents.links.push_back(sampleLink(id));
    if (way == 0)
        return DBTools::saveNet(gDB, netId, contents, true);
    if (way == 1)
        return DBTools::saveNet(gDB, netId, contents, false);
    Transaction transaction(gDB);
    const bool isSaved = !DBTools::selectNets(gDB).isEmpty() && DBTools::saveNet(gDB, netId, contents, false);
    return transaction.commit() && isSaved;
}

TEST(SavingProcess, DISABLED_SavesNetworks) {
    ASSERT_TRUE(DBTools::openDatabase(gDB, qEnvironmentVariable(kFile), true));
    // A lock that is waited for is had in the end, on however slow a machine.
    QSqlQuery(gDB).exec(QStringLiteral("pragma busy_timeout = 100000"));
    for (int i = 0; i < kSaves; ++i) {
        EXPECT_TRUE(save(i % 3, 100 * (1 + qEnvironmentVariableIntValue(kNumber)) + i))
            << qPrintable(DBTools::mlCallDbResult.value(0).error + DBTools_V6::mlCallDbResult.value(0).error);
    }
    gDB.close();
}

class SavingProcessesTest : public StoreFixture {};

TEST_F(SavingProcessesTest, FourOnOneFileSaveAllTheyHave) {
    openTemplate("EmptyNet_V6.0.0");
    const QString file = path();
    gDB.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(kFile), file);
    std::vector<std::unique_ptr<QProcess>> started;
    for (int i = 0; i < kProcesses; ++i) {
        auto process = std::make_unique<QProcess>();
        environment.insert(QLatin1String(kNumber), QString::number(i));
        process->setProcessEnvironment(environment);
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QCoreApplication::applicationFilePath(),
                       {QStringLiteral("--gtest_also_run_disabled_tests"),
                        QStringLiteral("--gtest_filter=SavingProcess.*")});
        started.push_back(std::move(process));
    }
    for (const auto &process : started) {
        ASSERT_TRUE(process->waitForFinished(-1));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardOutput().toStdString();
    }
    ASSERT_TRUE(DBTools::openDatabase(gDB, file, true));
    EXPECT_EQ(rows(QStringLiteral("select count(distinct NetId), count(*) from Link where NetId >= 100")),
              QStringList(QStringLiteral("20|400")));
}

} // namespace
