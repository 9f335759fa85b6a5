#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/guard/ReadOnlyFile.h"
#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"
#include "tests/support/OldStores.h"

#include <filesystem>
#include <memory>
#include <sys/types.h>
#include <unistd.h>

// Reading leaves a store, its time stamp and its folder as they were.

namespace {

namespace fs = std::filesystem;

fs::path native(const QString &path) {
    return fs::u8path(path.toStdString());
}

/// Names, contents and time stamps of all that a folder holds, and its own time stamp.
using Traces = QMap<QString, QPair<QByteArray, fs::file_time_type>>;

/// A store in a folder of its own, in a state that an engine would like to tidy up.
class Reading : public Morastore, public testing::WithParamInterface<const char *> {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(mFolder.path()).mkdir(QStringLiteral("store")));
        mStore = file(QStringLiteral("store/路网 %1?.mora"));
        const QString made = newStore();
        ASSERT_EQ(run({QStringLiteral("import"), made, kExample}).exitCode, 0);
        mTarget = newStore(QStringLiteral("target.mora"));
        prepare(made, QLatin1String(GetParam()));
        ASSERT_TRUE(QDir(mFolder.path()).mkdir(QStringLiteral("temporary")));
        qputenv("TMPDIR", file(QStringLiteral("temporary")).toUtf8());
    }
    void TearDown() override {
        closeLibrary();
        mLive = QSqlQuery();
        QSqlDatabase::removeDatabase(QStringLiteral("live"));
    }

    static void closeLibrary() {
        gNet = Net();
        gDB.close();
        gDB = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }

    void prepare(const QString &made, const QString &state) {
        if (state == QLatin1String("Older"))
            copyTemplate("EmptyNet_V2.00.00", mStore);
        else if (state == QLatin1String("FirstGeneration"))
            makeFirstGenerationStore(mStore);
        else if (state == QLatin1String("HotJournal"))
            leaveHalfWritten(made);
        else if (state.startsWith(QLatin1String("Log")))
            leaveLog(made, state);
        else
            ASSERT_TRUE(QFile::copy(made, mStore));
        if (state == QLatin1String("Newer"))
            alter(mStore, {QStringLiteral("update DbVersion set versionId = 7")});
    }

    void connect(const QString &path, const QStringList &statements) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("live"));
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        mLive = QSqlQuery(db);
        for (const QString &sql : statements)
            ASSERT_TRUE(mLive.exec(sql)) << mLive.lastError().text().toStdString();
    }

    void copyWith(const QString &from, std::initializer_list<const char *> suffixes) {
        for (const char *suffix : suffixes)
            ASSERT_TRUE(QFile::copy(from + QLatin1String(suffix), mStore + QLatin1String(suffix))) << suffix;
    }

    /// A program died while it renamed the network and wrote many rows: pages of both are in the file.
    void leaveHalfWritten(const QString &made) {
        connect(made, {QStringLiteral("pragma cache_size = 2"), QStringLiteral("begin"),
                       QStringLiteral("update Net set name = 'half'"),
                       QStringLiteral("update Vertex set X = X + 1"),
                       QStringLiteral("update Link set LinkName = 'half'")});
        copyWith(made, {"", "-journal"});
        ASSERT_TRUE(read(mStore).contains("half"));
        ASSERT_TRUE(mLive.exec(QStringLiteral("rollback")));
    }

    /// The network has got its name in a write-ahead log.
    void leaveLog(const QString &made, const QString &state) {
        const QStringList statements{QStringLiteral("pragma journal_mode = wal"),
                                     QStringLiteral("update Net set name = 'logged'"),
                                     QStringLiteral("select 1")};
        if (state == QLatin1String("LogInUse")) {
            ASSERT_TRUE(QFile::copy(made, mStore));
            connect(mStore, statements);
            return;
        }
        connect(made, statements);
        if (state == QLatin1String("LogWithIndex"))
            copyWith(made, {"", "-wal", "-shm"});
        else if (state == QLatin1String("LogAlone"))
            copyWith(made, {"", "-wal"});
        mLive = QSqlQuery();
        QSqlDatabase::removeDatabase(QStringLiteral("live"));
        if (state == QLatin1String("LogClosed"))
            copyWith(made, {""});
    }

    Traces traces() const {
        Traces all;
        const fs::path folder = native(QFileInfo(mStore).path());
        all.insert(QString(), {{}, fs::last_write_time(folder)});
        for (const auto &entry : fs::directory_iterator(folder)) {
            const QString path = QString::fromStdString(entry.path().u8string());
            // The index of a running program is its own affair; within a process all connections share it.
            if (mLive.isActive() && path.endsWith(QLatin1String("-shm")))
                continue;
            all.insert(path, {read(path), fs::last_write_time(entry.path())});
        }
        return all;
    }

    QStringList temporaryFiles() const {
        return QDir(file(QStringLiteral("temporary")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// `work` leaves everything as it was; time stamps are set back before, so that any writing shows.
    template <class Work>
    void expectNoTrace(const char *what, const Work &work) {
        const fs::path folder = native(QFileInfo(mStore).path());
        const auto past = fs::file_time_type::clock::now() - std::chrono::hours(24);
        for (const auto &entry : fs::directory_iterator(folder))
            fs::last_write_time(entry.path(), past);
        fs::last_write_time(folder, past);
        const Traces before = traces();
        work();
        const Traces after = traces();
        EXPECT_EQ(temporaryFiles(), QStringList()) << what;
        EXPECT_EQ(after.keys(), before.keys()) << what;
        for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
            EXPECT_TRUE(after.value(entry.key()) == entry.value())
                << what << ": " << entry.key().toStdString();
    }

    void expectRefusalByLibrary() const {
        EXPECT_FALSE(DBTools::openDatabaseReadOnly(gDB, mStore, true));
        ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
        EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(QLatin1String("is of version 7")));
    }

    /// What the network of the store is called.
    static QString expectedName() {
        const QString state = QLatin1String(GetParam());
        if (state == QLatin1String("Older") || state == QLatin1String("FirstGeneration"))
            return QStringLiteral("MoraSim");
        return state.startsWith(QLatin1String("Log")) ? QStringLiteral("logged") : QStringLiteral("crossing");
    }

    QString mStore;
    QString mTarget;
    QSqlQuery mLive;
};

TEST_P(Reading, EveryCommandLeavesNoTrace) {
    const QString picture = file(QStringLiteral("p.svg"));
    for (const QStringList &command :
         {QStringList{QStringLiteral("info"), mStore},
          QStringList{QStringLiteral("show"), mStore, QStringLiteral("links")},
          QStringList{QStringLiteral("draw"), mStore, picture}, QStringList{QStringLiteral("digest"), mStore},
          QStringList{QStringLiteral("copy"), mStore, mTarget}})
        expectNoTrace(command.first().toUtf8().constData(), [&] {
            const Outcome outcome = run(command);
            if (GetParam() == QStringLiteral("Newer"))
                return expectSentence(outcome, QStringLiteral("is of version 7"));
            EXPECT_TRUE(outcome.exitCode == 0 || outcome.exitCode == 3) << outcome.err.toStdString();
            if (command.first() == QLatin1String("info")) {
                EXPECT_TRUE(outcome.out.contains(QLatin1String(": ") + expectedName()))
                    << outcome.out.toStdString();
            }
        });
}

TEST_P(Reading, TheLibraryReadsAndRefusesToWrite) {
    expectNoTrace("openDatabaseReadOnly", [&] {
        if (GetParam() == QStringLiteral("Newer"))
            return expectRefusalByLibrary();
        ASSERT_TRUE(DBTools::openDatabaseReadOnly(gDB, mStore, true))
            << DBTools::mlCallDbResult.first().error.toStdString();
        EXPECT_EQ(gsDbPath, mStore);
        // A process that is killed now leaves none either.
        EXPECT_EQ(temporaryFiles(), QStringList());
        const QList<Net> nets = DBTools::selectNets(gDB);
        ASSERT_EQ(nets.size(), 1);
        EXPECT_EQ(nets.first().netName(), expectedName());
        DBTools::mlCallDbResult.clear();
        DBTools_V6::mlCallDbResult.clear();
        EXPECT_FALSE(DBTools::insertNet(gDB, 9, QStringLiteral("nine"), {}, QStringLiteral("test"), {},
                                        QString(), false));
        EXPECT_EQ(DBTools::mlCallDbResult.size() + DBTools_V6::mlCallDbResult.size(), 1);
        EXPECT_EQ(DBTools::selectNets(gDB).size(), 1);
        closeLibrary();
    });
}

/// A process without the rights that the system's administrator has over others' files.
class Unprivileged : public QProcess {
protected:
    void setupChildProcess() override {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
            _exit(127);
    }
};

TEST_P(Reading, NeedsNoRightToWrite) {
    const QString folder = QFileInfo(mStore).path();
    for (const auto &entry : fs::directory_iterator(native(folder)))
        fs::permissions(entry.path(), fs::perms(0444));
    fs::permissions(native(folder), fs::perms(0555));
    fs::permissions(native(mFolder.path()), fs::perms(0755));
    fs::permissions(native(file(QStringLiteral("temporary"))), fs::perms(0777));
    const auto start = [](QProcess &process, const QStringList &arguments) {
        process.start(morastoreProgram(), arguments);
        return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    };
    Unprivileged trial;
    if (!start(trial, {QStringLiteral("--version")}) || trial.exitCode() != 0)
        GTEST_SKIP() << "the program is where other users cannot start it";
    expectNoTrace("without rights", [&] {
        for (const char *command : {"info", "digest"}) {
            Unprivileged process;
            ASSERT_TRUE(start(process, {QLatin1String(command), mStore}));
            EXPECT_EQ(process.exitCode(), GetParam() == QStringLiteral("Newer") ? 1 : 0)
                << process.readAllStandardError().toStdString();
            if (GetParam() != QStringLiteral("Newer") && command == std::string("info")) {
                EXPECT_TRUE(process.readAllStandardOutput().contains(expectedName().toUtf8()));
            }
        }
    });
    fs::permissions(native(folder), fs::perms(0755));
}

TEST_F(Morastore, AStoreWithALogIsReadAsItIsWhereNothingChanges) {
    const QString store = newStore();
    ::alter(store, {QStringLiteral("pragma journal_mode = wal")});
    const auto files = [this] { return QDir(mFolder.path()).entryList(QDir::Files).join(QLatin1Char(' ')); };
    ASSERT_EQ(files(), QStringLiteral("store.mora"));
    {
        const ReadOnlyFile file(store, ReadOnlyFile::Medium::ReadOnly);
        EXPECT_EQ(file.refusal(), QString());
        EXPECT_FALSE(file.isCopy());
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("live"));
        file.applyTo(db);
        ASSERT_TRUE(db.open());
        QSqlQuery version(QStringLiteral("select versionId from DbVersion"), db);
        EXPECT_TRUE(version.next() && version.value(0).toInt() == 6)
            << qPrintable(version.lastError().text());
        EXPECT_EQ(files(), QStringLiteral("store.mora"));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("live"));
    // Elsewhere a program may write at any time, and what a log holds is part of the store.
    EXPECT_TRUE(ReadOnlyFile(store, ReadOnlyFile::Medium::Writable).isCopy());
    write(QStringLiteral("store.mora-wal"), "not empty");
    EXPECT_TRUE(ReadOnlyFile(store, ReadOnlyFile::Medium::ReadOnly).isCopy());
}

INSTANTIATE_TEST_SUITE_P(States, Reading,
                         testing::Values("Current", "Newer", "Older", "FirstGeneration", "HotJournal",
                                         "LogWithIndex", "LogAlone", "LogClosed", "LogInUse"),
                         [](const auto &state) { return std::string(state.param); });

} // namespace
