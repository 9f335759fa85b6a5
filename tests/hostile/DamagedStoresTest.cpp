#include "model/NetContents.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"
#include "tools/kinds/Kinds.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

#include <QElapsedTimer>

#include <random>

using namespace moratools;

// Stores with anything in their cells and pages. Whatever it is, every command and every reading of the
// library ends, soon, with objects or with one sentence, and a command that fails leaves the store as it was.
//
// MORASTORE_HOSTILE=all makes each store of both generations, shows every kind and damages more pages.

namespace {

bool isThorough() {
    return qgetenv("MORASTORE_HOSTILE") == "all";
}

/// Makes a table without the keys that it had.
QStringList withoutKeys(const QString &table) {
    return {QStringLiteral("create table open_%1 as select * from %1").arg(table),
            QStringLiteral("drop table %1").arg(table),
            QStringLiteral("alter table open_%1 rename to %1").arg(table)};
}

/// One way to damage a store.
struct Damage {
    const char *name;
    QStringList statements;
};

class DamagedStores : public Morastore, public testing::WithParamInterface<const char *> {
protected:
    void SetUp() override {
        mSound = makeSound(QStringLiteral("sound.mora"));
        mTarget = newStore(QStringLiteral("target.mora"));
        mStore = file(QStringLiteral("damaged.mora"));
    }
    void TearDown() override { closeStore(); }

    QString makeSound(const QString &name) const {
        QString store = file(name);
        const QString folder = QFileInfo(kExample).path();
        EXPECT_EQ(run({QStringLiteral("new"), store, QStringLiteral("--template"), QLatin1String(GetParam())})
                      .exitCode,
                  0);
        const Outcome imported =
            run({QStringLiteral("import"), store, kExample, QStringLiteral("--additional"),
                 folder + QStringLiteral("/crossing.add.xml"), QStringLiteral("--routes"),
                 folder + QStringLiteral("/crossing.rou.xml")});
        EXPECT_EQ(imported.exitCode, 0) << qPrintable(imported.err);
        return store;
    }

    static void copyTo(const QString &from, const QString &to) {
        QFile::remove(to);
        ASSERT_TRUE(QFile::copy(from, to)) << qPrintable(to);
    }

    static void closeStore() {
        gNet.loadRecord(NetRecord());
        gDB.close();
        gDB = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }

    QList<QStringList> commands() const {
        QList<QStringList> all{
            {QStringLiteral("info"), mStore},
            {QStringLiteral("draw"), mStore, file(QStringLiteral("picture.svg"))},
            {QStringLiteral("digest"), mStore},
            {QStringLiteral("check"), mStore},
            {QStringLiteral("check"), mStore, QStringLiteral("--fix"), QStringLiteral("--no-backup")},
            {QStringLiteral("export"), mStore, file(QStringLiteral("out")), QStringLiteral("--sumo")},
            {QStringLiteral("copy"), mStore, mTarget, QStringLiteral("--name"), QStringLiteral("copied")},
            {QStringLiteral("copy"), mSound, mStore, QStringLiteral("--name"), QStringLiteral("copied")},
            {QStringLiteral("import"), mStore, kExample, QStringLiteral("--name"), QStringLiteral("more")},
            {QStringLiteral("remove"), mStore, QStringLiteral("1"), QStringLiteral("--yes")},
            {QStringLiteral("upgrade"), mStore, QStringLiteral("--no-backup")},
            {QStringLiteral("compact"), mStore},
            {QStringLiteral("protect"), mStore}};
        QStringList kinds{QStringLiteral("links"), QStringLiteral("routes")};
        if (isThorough()) {
            kinds.clear();
            for (const NamedKind &kind : namedKinds())
                kinds.append(kind.name);
        }
        for (const QString &kind : qAsConst(kinds)) {
            all.append({QStringLiteral("show"), mStore, kind});
            all.append({QStringLiteral("show"), mStore, kind, QStringLiteral("1")});
        }
        return all;
    }

    /// Ends with an exit code of its own and, where that says so, with one sentence.
    void expectOrderlyEnd(const QStringList &command) const {
        SCOPED_TRACE(command.join(QLatin1Char(' ')).toStdString());
        const bool changes =
            QStringList{QStringLiteral("import"), QStringLiteral("remove"), QStringLiteral("upgrade"),
                        QStringLiteral("compact"), QStringLiteral("protect")}
                .contains(command.first()) ||
            command.value(2) == mStore || command.contains(QLatin1String("--fix"));
        const QByteArray before = read(mStore);
        QElapsedTimer timer;
        timer.start();
        const Outcome outcome = run(command);
        EXPECT_LT(timer.elapsed(), 60000);
        EXPECT_TRUE(outcome.exitCode == 0 || outcome.exitCode == 1 || outcome.exitCode == 3)
            << outcome.exitCode << qPrintable(outcome.err);
        const QStringList said = outcome.err.trimmed().split(QLatin1Char('\n'));
        EXPECT_TRUE(outcome.exitCode == 0 || said.last().startsWith(QLatin1String("morastore: ")))
            << qPrintable(outcome.err);
        EXPECT_TRUE(outcome.exitCode != 1 || said.size() == 1) << qPrintable(outcome.err);
        EXPECT_FALSE(outcome.err.contains(QLatin1String("runtime error"))) << qPrintable(outcome.err);
        EXPECT_TRUE((changes && outcome.exitCode != 1) || read(mStore) == before)
            << outcome.exitCode << qPrintable(outcome.err);
    }

    void expectOrderlyEnds() {
        const QString damaged = file(QStringLiteral("kept"));
        copyTo(mStore, damaged);
        const QByteArray target = read(mTarget);
        for (const QStringList &command : commands()) {
            copyTo(damaged, mStore);
            expectOrderlyEnd(command);
            QDir(file(QStringLiteral("out"))).removeRecursively();
            const QByteArray picture = read(file(QStringLiteral("picture.svg")));
            EXPECT_FALSE(picture.contains("nan") || picture.contains("inf,")) << "numbers of a picture";
            if (read(mTarget) != target)
                write(QFileInfo(mTarget).fileName(), target);
        }
        copyTo(damaged, mStore);
        readWithLibrary();
    }

    static void readKinds(bool withRoads) {
        constexpr long largestId = 7;
        for (const NamedKind &kind : namedKinds()) {
            for (long id = 0; id <= largestId && kind.needsNetwork == withRoads; ++id) {
                try {
                    kind.read(StoreSession::ofProcess({}), 1, id);
                } catch (const Failure &failure) {
                    EXPECT_FALSE(failure.message().isEmpty());
                }
            }
        }
    }

    /// Reads in every way, and saves what was read in place of the network.
    void readWithLibrary() const {
        if (DBTools::openDatabase(gDB, mStore, true) && DBTools::selectNetById(gDB, 1)) {
            readKinds(false);
            NetContents network;
            const bool loaded = DBTools::loadNet(gDB, 1, network);
            EXPECT_TRUE(loaded || !DBTools::mlCallDbResult.isEmpty() ||
                        !DBTools_V6::mlCallDbResult.isEmpty());
            readKinds(true);
            DBTools::removeNetData(gDB, 1, true);
            DBTools::saveNet(gDB, 1, network, true);
        }
        closeStore();
    }

    void expectOrderlyEndsOf(const std::vector<Damage> &damages) {
        for (const Damage &damage : damages) {
            SCOPED_TRACE(damage.name);
            copyTo(mSound, mStore);
            // The fixture's own leaves the catalogue alone.
            ::alter(mStore, damage.statements);
            expectOrderlyEnds();
        }
    }

    QString mSound;
    QString mTarget;
    QString mStore;
};

/// A statement for each of the columns of several tables.
QStringList everywhere(const QString &value,
                       const std::vector<std::pair<const char *, const char *>> &columns) {
    QStringList statements;
    for (const auto &[table, column] : columns)
        statements.append(
            QStringLiteral("update %1 set %2 = %3").arg(QLatin1String(table), QLatin1String(column), value));
    return statements;
}

TEST_P(DamagedStores, NumbersThatAreNone) {
    const std::vector<std::pair<const char *, const char *>> measures{
        {"Link", "length"},    {"Lane", "width"},        {"Vertex", "x"},
        {"SignalLamp", "x"},   {"BusStation", "length"}, {"SignalColor", "timeLength"},
        {"DecisionPoint", "y"}};
    expectOrderlyEndsOf({
        {"texts", everywhere(QStringLiteral("'wide'"), measures)},
        {"bytes", everywhere(QStringLiteral("x'00ff'"), measures)},
        {"infinite", everywhere(QStringLiteral("9e999"), measures)},
        {"huge", everywhere(QStringLiteral("-1e308"), measures)},
        {"fractions for ids",
         {QStringLiteral("update or ignore Link set StartNodeID = 1.5, linkID = linkID + 0.25")}},
    });
}

TEST_P(DamagedStores, IdsThatAreNone) {
    const QStringList open = withoutKeys(QStringLiteral("Link")) + withoutKeys(QStringLiteral("Lane")) +
                             withoutKeys(QStringLiteral("BusLine")) + withoutKeys(QStringLiteral("Routing")) +
                             withoutKeys(QStringLiteral("Connector"));
    const auto ids = [](const QString &value) {
        return everywhere(value, {{"Link", "linkID"}, {"Lane", "laneID"}, {"Connector", "connID"}});
    };
    expectOrderlyEndsOf({
        {"missing", open + ids(QStringLiteral("null"))},
        {"all the same", open + ids(QStringLiteral("1"))},
        {"beyond 32 bits", open + ids(QStringLiteral("rowid + 4294967296"))},
        {"the largest", open + ids(QStringLiteral("9223372036854775807"))},
        {"rows twice", open + QStringList{QStringLiteral("insert into Link select * from Link"),
                                          QStringLiteral("insert into Lane select * from Lane"),
                                          QStringLiteral("insert into Routing select * from Routing"),
                                          QStringLiteral("insert into BusLine select * from BusLine")}},
        {"references to nothing",
         {QStringLiteral("delete from Node"), QStringLiteral("delete from Vertex"),
          QStringLiteral("update Connector set EndLinkID = 99"), QStringLiteral("delete from SignalPhase")}},
        {"no rows", {QStringLiteral("delete from Lane"), QStringLiteral("delete from Net")}},
    });
}

TEST_P(DamagedStores, CountersThatAreNone) {
    expectOrderlyEndsOf({
        {"full", {QStringLiteral("update IDGenerater set ID = 9223372036854775807")}},
        {"negative", {QStringLiteral("update IDGenerater set ID = -9223372036854775808")}},
        {"texts", {QStringLiteral("update IDGenerater set ID = 'many'")}},
        {"none", {QStringLiteral("delete from IDGenerater")}},
    });
}

TEST_P(DamagedStores, TextsOfAnyKind) {
    const auto names = [](const QString &value) {
        return everywhere(
            value, {{"Link", "LinkName"}, {"Net", "name"}, {"Lane", "actionType"}, {"BusLine", "name"}});
    };
    expectOrderlyEndsOf({
        {"control characters", names(QStringLiteral("char(27) || '[2J' || char(10, 8, 133, 8238, 65534)"))},
        {"no UTF-8", names(QStringLiteral("cast(x'c328ff' as text)"))},
        {"a NUL", names(QStringLiteral("'a' || char(0) || 'b'"))},
        {"placeholders", names(QStringLiteral("'%1 %2 %L3 %n'"))},
        {"bytes", names(QStringLiteral("x'6162'"))},
        {"very long",
         {QStringLiteral("update Link set LinkName = zeroblob(2000000) where linkID = "
                         "(select min(linkID) from Link)")}},
    });
}

TEST_P(DamagedStores, GeometryOfAnyKind) {
    const auto geometry = [](const QString &value) {
        return everywhere(value, {{"Link", "leftBreakPointsJson"},
                                  {"Link", "centerLinePointsJson"},
                                  {"Lane", "centerLinePointsJson"},
                                  {"Lane", "leftBreakPointsJson"},
                                  {"Connector", "leftBreakPointsJson"},
                                  {"Lane", "otherAttrsJson"}});
    };
    expectOrderlyEndsOf({
        {"no JSON", geometry(QStringLiteral("'{\"data\":[{'"))},
        {"no object", geometry(QStringLiteral("'[1,2]'"))},
        {"nested", geometry(QStringLiteral("'{\"data\":' || replace(hex(zeroblob(100000)), '00', '[')"))},
        {"far away", geometry(QStringLiteral("'{\"data\":[{\"x\":1e308,\"y\":-1e308,\"z\":1e308},"
                                             "{\"x\":-1e308,\"y\":1e308,\"z\":0}]}'"))},
        {"infinite", geometry(QStringLiteral("'{\"data\":[{\"x\":1e999,\"y\":0,\"z\":0},{\"x\":1}]}'"))},
        {"one point", geometry(QStringLiteral("'{\"data\":[{\"x\":1,\"y\":2,\"z\":3}]}'"))},
        {"a number", geometry(QStringLiteral("17"))},
    });
}

TEST_P(DamagedStores, TablesOfAnyKind) {
    expectOrderlyEndsOf({
        {"lacking", {QStringLiteral("drop table LinkVertex"), QStringLiteral("drop table SignalColor")}},
        {"lacking the networks", {QStringLiteral("drop table Net")}},
        {"lacking columns",
         {QStringLiteral("alter table Link rename column LinkName to other"),
          QStringLiteral("alter table Lane rename column width to breadth")}},
        {"a catalogue that does not parse",
         {QStringLiteral("update sqlite_master set sql = 'create table Link(' where name = 'Link'")}},
        {"two tables on one page",
         {QStringLiteral("update sqlite_master set rootpage = (select rootpage from sqlite_master where "
                         "name = 'Lane') where name = 'Link'")}},
        {"a table on no page",
         {QStringLiteral("update sqlite_master set rootpage = 100000 where name = 'Link'")}},
    });
}

TEST_P(DamagedStores, PagesOfAnyKind) {
    const QByteArray sound = read(mSound);
    std::minstd_rand random(1); // NOLINT(cert-msc51-cpp): the same pages on every run
    const int stores = isThorough() ? 40 : 4;
    for (int i = 0; i < stores; ++i) {
        SCOPED_TRACE(i);
        QByteArray bytes = sound;
        // From a few bytes to many, the header's spared: without it a file is no store at all.
        for (int changes = 1 << (i % 10); changes > 0; --changes)
            bytes[100 + int(random() % unsigned(bytes.size() - 100))] = char(random());
        write(QFileInfo(mStore).fileName(), bytes);
        expectOrderlyEnds();
    }
    for (const int size : {0, 1, 99, 100, 4096, sound.size() / 2, sound.size() - 1}) {
        SCOPED_TRACE(size);
        write(QFileInfo(mStore).fileName(), sound.left(size));
        expectOrderlyEnd({QStringLiteral("info"), mStore});
        expectOrderlyEnd({QStringLiteral("import"), mStore, kExample});
    }
}

std::vector<const char *> templates() {
    if (isThorough())
        return {"EmptyNet_V3.0.0", "EmptyNet_V6.0.0"};
    return {"EmptyNet_V6.0.0"};
}

INSTANTIATE_TEST_SUITE_P(Generation, DamagedStores, testing::ValuesIn(templates()),
                         [](const testing::TestParamInfo<const char *> &of) {
                             return qstrcmp(of.param, "EmptyNet_V6.0.0") == 0 ? "SeveralNets" : "OneNet";
                         });

} // namespace
