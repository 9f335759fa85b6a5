#include "model/Net.h"
#include "tests/host/Morastore.h"
#include "tests/support/OldStores.h"
#include "tests/support/StoreText.h"
#include "tools/session/StoreUpgrade.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

#include <iostream>

using namespace moratools;

// A process that is killed, at any moment, leaves a store that is whole. The moments are all events of a run,
// an event being a statement that begins or a call that changes a file, and moments by the clock.

namespace {

/// One command on a store, killed again and again, each time on a new copy of the store.
class Killed : public Morastore {
protected:
    using Check = std::function<void(const QString &store)>;

    void SetUp() override {
#ifndef Q_OS_UNIX
        GTEST_SKIP() << "no SIGKILL";
#endif
        mClock.start();
    }

    void TearDown() override {
        std::cout << "kills: " << mKills << " in " << mClock.elapsed() / 1000 << " s" << std::endl;
        RecordProperty("kills", mKills);
    }

    /// Kills `command` at its first event, at the one `step` further on, and so on until it ends by itself.
    void killAtEvents(const QStringList &command, const QString &pristine, int step, const Check &check) {
        for (int event = 1; !HasFailure(); event += step) {
            QProcess process;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("MORASTORE_KILL_AT"), QString::number(event));
            process.setProcessEnvironment(environment);
            const QTemporaryDir folder;
            const QString store = startOn(process, killedMorastoreProgram(), command, pristine, folder);
            ASSERT_TRUE(process.waitForFinished());
            SCOPED_TRACE(event);
            if (process.exitStatus() == QProcess::NormalExit) {
                EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
                EXPECT_GT(event, 5) << "events are not seen";
                return;
            }
            ++mKills;
            check(store);
        }
    }

    /// Kills `command` at random moments of the time that it takes.
    void killByTheClock(const QStringList &command, const QString &pristine, int times, const Check &check) {
        QRandomGenerator random(20261121);
        double longest = 0;
        for (int i = 0; i < times && !HasFailure(); ++i) {
            QProcess process;
            const QTemporaryDir folder;
            QElapsedTimer clock;
            clock.start();
            const QString store = startOn(process, morastoreProgram(), command, pristine, folder);
            // The first run is not killed: it tells how long the command takes.
            if (i > 0 && !process.waitForFinished(int(random.bounded(longest))))
                process.kill();
            ASSERT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished());
            longest = i == 0 ? double(clock.elapsed()) : longest;
            mKills += process.exitStatus() == QProcess::CrashExit;
            check(store);
        }
    }

private:
    static QString startOn(QProcess &process, const QString &program, const QStringList &command,
                           const QString &pristine, const QTemporaryDir &folder) {
        QString store = folder.filePath(QStringLiteral("store"));
        EXPECT_TRUE(QFile::copy(pristine, store));
        process.start(program, QStringList{command.first(), store} + command.mid(1));
        return store;
    }

    int mKills = 0;
    QElapsedTimer mClock;
};

/// Passes a store that holds exactly what one of two does.
std::function<void(const QString &)> isOneOf(const QStringList &before, const QStringList &after) {
    return [before, after](const QString &store) {
        EXPECT_EQ(integrityOf(store), QStringLiteral("ok"));
        const QStringList content = contentOf(store);
        EXPECT_TRUE(content == before || content == after) << "neither before nor after";
    };
}

} // namespace

class KilledUpgrade : public Killed, public testing::WithParamInterface<const char *> {};

TEST_P(KilledUpgrade, IsCompletedByTheNext) {
    const QString pristine = file(QStringLiteral("pristine"));
    if (*GetParam())
        copyTemplate(GetParam(), pristine);
    else
        makeFirstGenerationStore(pristine);
    const QString upgraded = file(QStringLiteral("upgraded"));
    ASSERT_TRUE(QFile::copy(pristine, upgraded));
    upgradeStore(upgraded, false);
    const QStringList expected = contentOf(upgraded);
    const Check isCompleted = [&expected](const QString &store) {
        EXPECT_EQ(integrityOf(store), QStringLiteral("ok"));
        upgradeStore(store, false);
        EXPECT_TRUE(contentOf(store) == expected);
    };
    // The first generation has hundreds of events, most of them like their neighbours.
    killAtEvents({QStringLiteral("upgrade"), QStringLiteral("--no-backup")}, pristine, *GetParam() ? 1 : 3,
                 isCompleted);
    killByTheClock({QStringLiteral("upgrade")}, pristine, 10, isCompleted);
}

INSTANTIATE_TEST_SUITE_P(Stores, KilledUpgrade,
                         testing::Values("", "EmptyNet_V2.00.00", "EmptyNet_V2.01.00", "EmptyNet_V2.1.1",
                                         "EmptyNet_V3.0.0", "EmptyNet_V6.0.0"),
                         [](const testing::TestParamInfo<const char *> &store) {
                             const QString name = QLatin1String(store.param);
                             return (name.isEmpty()
                                         ? QStringLiteral("FirstGeneration")
                                         : QString(name).replace(QLatin1Char('.'), QLatin1Char('_')))
                                 .toStdString();
                         });

TEST_F(Killed, AnImportAndARemovalHappenOrDoNot) {
    const QString before = newStore(QStringLiteral("before"));
    ASSERT_EQ(run({QStringLiteral("import"), before, kExample}).exitCode, 0);
    const QString after = file(QStringLiteral("after"));
    ASSERT_TRUE(QFile::copy(before, after));
    const QStringList import{QStringLiteral("import"), kExample, QStringLiteral("--name"),
                             QStringLiteral("second")};
    ASSERT_EQ(run(QStringList{import.first(), after} + import.mid(1)).exitCode, 0);
    const QString removed = file(QStringLiteral("removed"));
    ASSERT_TRUE(QFile::copy(after, removed));
    const QStringList remove{QStringLiteral("remove"), QStringLiteral("second"), QStringLiteral("--yes")};
    ASSERT_EQ(run(QStringList{remove.first(), removed} + remove.mid(1)).exitCode, 0);

    const Check isImported = isOneOf(contentOf(before), contentOf(after));
    killAtEvents(import, before, 5, isImported);
    killByTheClock(import, before, 30, isImported);
    const Check isRemoved = isOneOf(contentOf(after), contentOf(removed));
    killAtEvents(remove, after, 2, isRemoved);
    killByTheClock(remove, after, 30, isRemoved);
}

TEST_F(Killed, APatchIsAppliedOrIsNot) {
    const QString before = newStore(QStringLiteral("before"));
    ASSERT_EQ(run({QStringLiteral("import"), before, kExample}).exitCode, 0);
    const QString edited = file(QStringLiteral("edited"));
    ASSERT_TRUE(QFile::copy(before, edited));
    alter(edited,
          {QStringLiteral("update Lane set width = width + 1"), QStringLiteral("delete from SignalLamp"),
           QStringLiteral("insert into GuideArrow select 1, laneID + 100, laneID, 1, 2, 3 from Lane")});
    const QString patch = file(QStringLiteral("patch"));
    ASSERT_EQ(run({QStringLiteral("diff"), before, edited, QStringLiteral("-o"), patch}).exitCode, 0);
    const QString after = file(QStringLiteral("after"));
    ASSERT_TRUE(QFile::copy(before, after));
    ASSERT_EQ(run({QStringLiteral("apply"), after, patch}).exitCode, 0);
    const Check isApplied = isOneOf(contentOf(before), contentOf(after));
    killAtEvents({QStringLiteral("apply"), patch}, before, 5, isApplied);
    killByTheClock({QStringLiteral("apply"), patch}, before, 20, isApplied);
}

TEST_F(Killed, ARepairIsDoneOrIsNot) {
    const QString before = newStore(QStringLiteral("before"));
    ASSERT_EQ(run({QStringLiteral("import"), before, kExample}).exitCode, 0);
    alter(before,
          {QStringLiteral("update IDGenerater set ID = 3"),
           QStringLiteral("delete from IDGenerater where TableName = 'Lane'"),
           QStringLiteral("insert into LinkVertex select 1, linkID + 100, vertexID, num from LinkVertex")});
    const QString after = file(QStringLiteral("after"));
    ASSERT_TRUE(QFile::copy(before, after));
    const QStringList repair{QStringLiteral("check"), QStringLiteral("--fix"), QStringLiteral("--no-backup"),
                             QStringLiteral("--rules"), QStringLiteral("counter,link-vertex")};
    ASSERT_EQ(run(QStringList{repair.first(), after} + repair.mid(1)).exitCode, 0);
    const Check isRepaired = isOneOf(contentOf(before), contentOf(after));
    killAtEvents(repair, before, 2, isRepaired);
    killByTheClock(repair, before, 20, isRepaired);
}
