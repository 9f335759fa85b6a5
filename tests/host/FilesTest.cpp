#include "tests/host/Morastore.h"
#include "tests/support/OldStores.h"
#include "tests/support/StoreText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QProcessEnvironment>

#include <memory>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

// The program touches only what is its own: files, devices, the temporary folder.

namespace {

Outcome runWith(const QProcessEnvironment &environment, const QString &program,
                const QStringList &arguments) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(240000));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST_F(Morastore, ANewStoreLeavesTheFilesOfOthersAlone) {
    const QStringList strangers{QStringLiteral("k.db.new"), QStringLiteral("k.db.new-journal"),
                                QStringLiteral("k.db.new-wal"), QStringLiteral("k.db.new-shm")};
    for (const QString &name : strangers)
        write(name, name.toUtf8());
    const QString store = newStore(QStringLiteral("k.db"));
    for (const QString &name : strangers)
        EXPECT_EQ(read(file(name)), name.toUtf8());
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Files).size(), strangers.size() + 1);
    EXPECT_EQ(integrityOf(store), QStringLiteral("ok"));

    // SQLite would play a journal of that name into the new store.
    write(QStringLiteral("j.db-journal"), "a journal");
    expectRefusal(
        [&] {
            return run({QStringLiteral("new"), file(QStringLiteral("j.db"))});
        },
        QStringLiteral("j.db-journal: belongs to a store that is gone"));
}

TEST_F(Morastore, OfEightThatMakeOneStoreOneSucceeds) {
    for (int round = 0; round < 5; ++round) {
        const QString store = file(QStringLiteral("store%1").arg(round));
        std::vector<std::unique_ptr<QProcess>> processes;
        for (int i = 0; i < 8; ++i) {
            processes.push_back(std::make_unique<QProcess>());
            processes.back()->start(morastoreProgram(), {QStringLiteral("new"), store});
        }
        int made = 0;
        for (const std::unique_ptr<QProcess> &process : processes) {
            ASSERT_TRUE(process->waitForFinished(120000));
            made += process->exitCode() == 0;
            const QByteArray said = process->readAllStandardError();
            if (process->exitCode() != 0) {
                EXPECT_TRUE(said.contains("exists already")) << said.constData();
            }
        }
        EXPECT_EQ(made, 1);
        EXPECT_EQ(integrityOf(store), QStringLiteral("ok"));
        EXPECT_EQ(row(store, QStringLiteral("select max(versionId) from DbVersion")), QVariantList{6});
    }
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Files).size(), 5);
}

TEST_F(Morastore, APictureReplacesRegularFilesOnly) {
#ifdef Q_OS_UNIX
    const QString store = newStore(QStringLiteral("store.svg"));
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    const auto draw = [&](const QString &name) { return run({QStringLiteral("draw"), store, file(name)}); };
    expectRefusal([&] { return draw(QStringLiteral("store.svg")); }, QStringLiteral("this is a store"));
    ASSERT_TRUE(QDir(mFolder.path()).mkdir(QStringLiteral("folder.svg")));
    expectRefusal([&] { return draw(QStringLiteral("folder.svg")); }, QStringLiteral("this is a folder"));

    // A link to a link to a file: the file is replaced.
    write(QStringLiteral("picture"), "before");
    ASSERT_TRUE(QFile::link(file(QStringLiteral("picture")), file(QStringLiteral("second"))));
    ASSERT_TRUE(QFile::link(file(QStringLiteral("second")), file(QStringLiteral("first.svg"))));
    EXPECT_EQ(draw(QStringLiteral("first.svg")).exitCode, 0);
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("first.svg"))).isSymLink());
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("second"))).isSymLink());
    const QByteArray picture = read(file(QStringLiteral("picture")));
    EXPECT_TRUE(picture.startsWith("<?xml")) << picture.left(40).constData();

    // A link to a pipe: it takes the picture and stays.
    const QString pipe = file(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(pipe, file(QStringLiteral("pipe.svg"))));
    QProcess reader;
    reader.start(QStringLiteral("cat"), {pipe});
    EXPECT_EQ(draw(QStringLiteral("pipe.svg")).exitCode, 0);
    ASSERT_TRUE(reader.waitForFinished(10000)) << "the pipe was replaced";
    EXPECT_EQ(reader.readAllStandardOutput(), picture);
    EXPECT_TRUE(QFileInfo(file(QStringLiteral("pipe.svg"))).isSymLink());

    const QByteArray before = read(file(QStringLiteral("picture")));
    const Outcome full =
        runInShell({QStringLiteral("draw"), store, file(QStringLiteral("first.svg"))}, "", "ulimit -f 8;");
    expectSentence(full, QStringLiteral("first.svg: cannot be written ("));
    EXPECT_FALSE(full.err.contains(QStringLiteral("Unknown"))) << full.err.toStdString();
    EXPECT_EQ(read(file(QStringLiteral("picture"))), before);
#else
    GTEST_SKIP() << "no pipes by name";
#endif
}

TEST_F(Morastore, NothingStaysInTheTemporaryFolder) {
#ifdef Q_OS_UNIX
    ASSERT_TRUE(QDir(mFolder.path()).mkdir(QStringLiteral("tmp")));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), file(QStringLiteral("tmp")));
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    const auto left = [this] {
        return QDir(file(QStringLiteral("tmp"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    };
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    const QString older = file(QStringLiteral("older"));
    copyTemplate("EmptyNet_V2.00.00", older);
    for (const QStringList &command :
         {QStringList{QStringLiteral("info"), older},
          QStringList{QStringLiteral("draw"), store, file(QStringLiteral("p.svg"))},
          QStringList{QStringLiteral("roundtrip"), kExample, QStringLiteral("--png"),
                      file(QStringLiteral("p.png"))}}) {
        const Outcome outcome = runWith(environment, morastoreProgram(), command);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(outcome.err, QString());
        EXPECT_EQ(left(), QStringList()) << command.first().toStdString();
    }

    // One that is told to end takes its files along.
    const QString pipe = file(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QProcess waiting;
    waiting.setProcessEnvironment(environment);
    waiting.start(morastoreProgram(), {QStringLiteral("roundtrip"), pipe});
    for (int i = 0; i < 400 && left().isEmpty(); ++i)
        waiting.waitForFinished(50);
    EXPECT_EQ(left().size(), 1);
    waiting.terminate();
    ASSERT_TRUE(waiting.waitForFinished(10000));
    EXPECT_EQ(waiting.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(left(), QStringList());

    // What a process left that was killed goes with the next run, and nothing else does.
    QProcessEnvironment killing = environment;
    killing.insert(QStringLiteral("MORASTORE_KILL_AT"), QStringLiteral("40"));
    EXPECT_EQ(runWith(killing, killedMorastoreProgram(), {QStringLiteral("roundtrip"), kExample}).exitCode,
              -1);
    ASSERT_EQ(left().size(), 1);
    const QString used = QStringLiteral("morastore-used");
    const QString other = QStringLiteral("morastore-other");
    QDir(file(QStringLiteral("tmp"))).mkdir(used);
    QDir(file(QStringLiteral("tmp"))).mkdir(other);
    QLockFile lock(file(QStringLiteral("tmp/morastore-used/in-use.lock")));
    ASSERT_TRUE(lock.tryLock(0));
    EXPECT_EQ(runWith(environment, morastoreProgram(), {QStringLiteral("info"), store}).exitCode, 0);
    EXPECT_EQ(left(), (QStringList{other, used}));
#else
    GTEST_SKIP() << "no SIGKILL";
#endif
}

TEST_F(Morastore, NoFileGetsTheNumberOfAStandardStreamThatIsClosed) {
#ifdef Q_OS_LINUX
    const QString pipe = file(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QProcess waiting;
    waiting.start(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral("exec \"$@\" <&- >&- 2>&-"), QStringLiteral("sh"),
                   morastoreProgram(), QStringLiteral("roundtrip"), pipe});
    ASSERT_TRUE(waiting.waitForStarted());
    const auto standardStreams = [&waiting] {
        QStringList files;
        for (int number = 0; number < 3; ++number)
            files.append(QFile::symLinkTarget(
                QStringLiteral("/proc/%1/fd/%2")
                    .arg(QString::number(waiting.processId()), QString::number(number))));
        return files;
    };
    const QStringList nothing(QVector<QString>(3, QStringLiteral("/dev/null")).toList());
    for (int i = 0; i < 200 && standardStreams() != nothing; ++i)
        waiting.waitForFinished(50);
    EXPECT_EQ(standardStreams(), nothing);
    waiting.kill();
    EXPECT_TRUE(waiting.waitForFinished(10000));
#else
    GTEST_SKIP() << "no /proc";
#endif
}

TEST_F(Morastore, CompactGivesTheRoomOfARemovedNetworkBack) {
    const QString store = newStore();
    for (const char *name : {"first", "second", "third"})
        ASSERT_EQ(
            run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), QLatin1String(name)})
                .exitCode,
            0);
    const Outcome removed =
        run({QStringLiteral("remove"), store, QStringLiteral("second"), QStringLiteral("--yes")});
    EXPECT_TRUE(removed.out.contains(QStringLiteral("morastore compact"))) << removed.out.toStdString();
    // SQLite's own table without rows does not come along.
    const QString sequence = QStringLiteral("CREATE TABLE sqlite_sequence(name,seq);");
    QStringList content = contentOf(store);
    content.removeAll(sequence);
    const qint64 size = QFileInfo(store).size();
    const QStringList compact{QStringLiteral("compact"), store};
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("reader"));
        db.setDatabaseName(store);
        ASSERT_TRUE(db.open());
        QSqlQuery query(db);
        ASSERT_TRUE(query.exec(QStringLiteral("begin")) && query.exec(QStringLiteral("select * from Link")) &&
                    query.next());
        expectSentence(run(compact + QStringList{QStringLiteral("--wait"), QStringLiteral("0")}),
                       QStringLiteral("nothing was changed"));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("reader"));
    EXPECT_EQ(QFileInfo(store).size(), size);

    const Outcome outcome = run(compact);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_LT(QFileInfo(store).size(), size - 20'000);
    EXPECT_EQ(outcome.out, QStringLiteral("%1: %2 bytes, %3 before\n")
                               .arg(store, QString::number(QFileInfo(store).size()), QString::number(size)));
    EXPECT_TRUE(contentOf(store) == content);

    // One that is old stays old, and one that is damaged stays as it is.
    const QString older = file(QStringLiteral("older"));
    copyTemplate("EmptyNet_V2.00.00", older);
    QStringList before = contentOf(older);
    before.removeAll(sequence);
    EXPECT_EQ(run({QStringLiteral("compact"), older}).exitCode, 0);
    EXPECT_TRUE(contentOf(older) == before);
    QByteArray damaged = read(store);
    damaged.replace(damaged.size() - 3500, 3000, QByteArray(3000, '\x5a'));
    write(QStringLiteral("damaged"), damaged);
    expectRefusal(
        [&] {
            return run({QStringLiteral("compact"), file(QStringLiteral("damaged"))});
        },
        QStringLiteral("restore it from a copy"));
    expectSentence(run({QStringLiteral("compact"), QStringLiteral("dbname=x host=localhost")}),
                   QStringLiteral("only store files are compacted"));
}

TEST_F(Morastore, ANetworkIsChosenByNumberOrName) {
    const QString store = newStore();
    for (const char *name : {"7", "O'Brien"})
        ASSERT_EQ(
            run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), QLatin1String(name)})
                .exitCode,
            0);
    const QString zone =
        QStringLiteral("insert into AccidentZone(NetId, accidentZoneId, name, location, "
                       "zoneLength, roadId, roadType) values(%1, 5, 'of %1', 1, 2, 3, 'link')");
    const QString lane = QStringLiteral("insert into AccidentZoneWithLane(NetId, accidentZoneId, laneNumber, "
                                        "toLaneNumber) values(%1, 5, %1, -1)");
    alter(store, {zone.arg(1), zone.arg(2), lane.arg(1), lane.arg(2),
                  QStringLiteral("update Link set linkName = 'second' where NetId = 2")});
    const auto show = [&](const QStringList &what, const QString &net) {
        return run(QStringList{QStringLiteral("show"), store} + what +
                   QStringList{QStringLiteral("--net"), net});
    };
    for (const char *net : {"2", "O'Brien"}) {
        EXPECT_TRUE(
            show({QStringLiteral("links")}, QLatin1String(net)).out.contains(QStringLiteral("second")));
        const QStringList zones(QStringLiteral("accidentZones"));
        EXPECT_EQ(show(zones, QLatin1String(net)).out, QStringLiteral("       5  of 2\n"));
        const QJsonObject shown =
            QJsonDocument::fromJson(
                show({QStringLiteral("accidentZones"), QStringLiteral("5"), QStringLiteral("--json")},
                     QLatin1String(net))
                    .out.toUtf8())
                .object();
        EXPECT_EQ(shown.value(QStringLiteral("name")).toString(), QStringLiteral("of 2"));
        const QJsonArray lanes = shown.value(QStringLiteral("lanes")).toArray();
        ASSERT_EQ(lanes.size(), 1);
        EXPECT_EQ(lanes.at(0).toObject().value(QStringLiteral("laneNumber")).toInt(), 2);
    }
    // A number goes first, and "7" is none of a network here.
    const Outcome digest =
        run({QStringLiteral("digest"), store, QStringLiteral("--net"), QStringLiteral("7")});
    EXPECT_TRUE(digest.out.endsWith(QStringLiteral("  1 7\n"))) << digest.out.toStdString();
    const QString target = newStore(QStringLiteral("target"));
    EXPECT_EQ(run({QStringLiteral("copy"), store, target, QStringLiteral("--net"), QStringLiteral("O'Brien")})
                  .exitCode,
              0);
    EXPECT_EQ(row(target, QStringLiteral("select group_concat(name) from Net")),
              QVariantList{QStringLiteral("O'Brien")});
    for (const QStringList &command :
         {QStringList{QStringLiteral("digest"), store},
          QStringList{QStringLiteral("draw"), store, file(QStringLiteral("p.svg"))},
          QStringList{QStringLiteral("show"), store, QStringLiteral("links")}})
        expectRefusal(
            [&] {
                return run(command + QStringList{QStringLiteral("--net"), QStringLiteral("none")});
            },
            QStringLiteral("has no network \"none\""));
    alter(store, {QStringLiteral("update Net set name = 'twin'")});
    expectRefusal([&] { return show({QStringLiteral("links")}, QStringLiteral("twin")); },
                  QStringLiteral("has 2 networks \"twin\"; give the number of one"));
}
