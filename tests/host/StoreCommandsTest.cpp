#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"
#include "tests/support/OldStores.h"
#include "tests/support/RealData.h"
#include "tests/support/StoreText.h"

#include <QSet>
#include <QtEndian>

#include <algorithm>

// Commands that change a store as a whole: upgrade and remove.

namespace {

QStringList upgrade(const QString &store) {
    return {QStringLiteral("upgrade"), store};
}

} // namespace

TEST_F(Morastore, UpgradeKeepsACheckedCopyAndSaysWhatItAdded) {
    const QString store = file(QStringLiteral("路网 '1.mora"));
    copyTemplate("EmptyNet_V2.00.00", store);
    QStringList before = contentOf(store);
    const QByteArray bytes = read(store);
    EXPECT_EQ(run({QStringLiteral("info"), store}).exitCode, 0);
    EXPECT_EQ(read(store), bytes) << "reading does not change an older store";

    const Outcome outcome = run(upgrade(store));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.out.contains(
        QStringLiteral("AccidentZone, AccidentZoneWithLane, Net, RoadWorkZone, RoadWorkZoneWithLane, Rsu")));
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("Link.NetId, Link.centerLinePointsJson")));
    const QStringList copies = QDir(mFolder.path()).entryList({QStringLiteral("*.before-upgrade-*")});
    ASSERT_EQ(copies.size(), 1);
    EXPECT_TRUE(outcome.out.contains(copies.first()));
    // SQLite's own table without rows does not come along.
    before.removeAll(QStringLiteral("CREATE TABLE sqlite_sequence(name,seq);"));
    EXPECT_TRUE(contentOf(file(copies.first())) == before);

    const QByteArray current = read(store);
    EXPECT_EQ(run(upgrade(store)).out,
              QStringLiteral("%1: nothing to do, the store is current\n").arg(store));
    EXPECT_EQ(read(store), current);
}

TEST_F(Morastore, AStoreOfTheFirstGenerationIsWrittenByAnUpgradeOnly) {
    const QString store = file(QStringLiteral("first"));
    makeFirstGenerationStore(store);
    EXPECT_EQ(run({QStringLiteral("info"), store}).exitCode, 0);
    expectRefusal(
        [&] {
            return run({QStringLiteral("import"), store, kExample});
        },
        QStringLiteral("run \"morastore upgrade\" on it first"));
    const Outcome outcome = run(upgrade(store) + QStringList(QStringLiteral("--no-backup")));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("Lane.SerialNumber, SignalColor.serialNumber")));
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("one counter became one for each table")));
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Files), QStringList(QStringLiteral("first")));
    EXPECT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
}

TEST_F(Morastore, AnUpgradeThatCannotKeepACopyChangesNothing) {
#ifdef Q_OS_UNIX
    const QString store = file(QStringLiteral("store"));
    copyTemplate("EmptyNet_V2.00.00", store);
    const auto limited = [&](qint64 blocks, const QStringList &options) {
        return start(QStringLiteral("/bin/sh"),
                     QStringList{QStringLiteral("-c"),
                                 QStringLiteral("ulimit -f %1; exec \"$@\"").arg(blocks),
                                 QStringLiteral("sh"), morastoreProgram(), QStringLiteral("upgrade"), store} +
                         options);
    };
    const qint64 size = QFileInfo(store).size() / 512;
    expectRefusal([&] { return limited(size / 2, {}); }, QStringLiteral("the copy cannot be made"));
    expectRefusal([&] { return limited(size, {}); }, QStringLiteral("nothing was changed"));
    expectRefusal([&] { return limited(4, {QStringLiteral("--no-backup")}); },
                  QStringLiteral("nothing was changed"));
#else
    GTEST_SKIP() << "no limit on the size of files";
#endif
}

TEST_F(Morastore, ANewerStoreIsRefusedByEveryCommand) {
    const QString store = newStore();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("newer"));
        db.setDatabaseName(store);
        ASSERT_TRUE(db.open());
        ASSERT_TRUE(QSqlQuery(db).exec(QStringLiteral("update DbVersion set versionId = 7")));
        ASSERT_TRUE(QSqlQuery(db).exec(QStringLiteral("drop table Rsu")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("newer"));
    const QString picture = file(QStringLiteral("p.svg"));
    for (const QStringList &command :
         {QStringList{QStringLiteral("info")}, QStringList{QStringLiteral("upgrade")},
          QStringList{QStringLiteral("protect")}, QStringList{QStringLiteral("import"), kExample},
          QStringList{QStringLiteral("draw"), picture},
          QStringList{QStringLiteral("show"), QStringLiteral("links")},
          QStringList{QStringLiteral("remove"), QStringLiteral("1"), QStringLiteral("--yes")}})
        expectRefusal(
            [&] {
                return run(QStringList{command.first(), store} + command.mid(1));
            },
            QStringLiteral("of version 7, and this release knows none above 6"));
}

TEST_F(Morastore, ARefusedCommandDoesNotBringAnOlderStoreForward) {
    const QString store = file(QStringLiteral("store"));
    copyTemplate("EmptyNet_V2.00.00", store);
    const QStringList import{QStringLiteral("import"), store};
    const QString noNetwork = write(QStringLiteral("no.net.xml"), "<net/>");
    const QStringList remove{QStringLiteral("remove"), store, QStringLiteral("9")};
    expectRefusal([&] { return run(import + QStringList(file(QStringLiteral("none.net.xml")))); },
                  QStringLiteral("no such file"));
    expectRefusal([&] { return run(import + QStringList(noNetwork)); }, QStringLiteral("no.net.xml"));
    expectRefusal([&] { return run(remove + QStringList(QStringLiteral("--yes"))); },
                  QStringLiteral("no network \"9\""));
    // What the store would call its network is taken, and so is its only place.
    expectRefusal(
        [&] {
            return run(import + QStringList{kExample, QStringLiteral("--name"), QStringLiteral("MoraSim")});
        },
        QStringLiteral("has a network \"MoraSim\" already"));
    const QString several = file(QStringLiteral("several"));
    copyTemplate("EmptyNet_V6.0.0", several);
    const QString target = file(QStringLiteral("target"));
    copyTemplate("EmptyNet_V6.0.0", target);
    for (const QString &store6 : {several, target})
        ::alter(store6,
                {QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                                "values (1, 'a', '', 0, 0, 'T')")});
    const QStringList copy{QStringLiteral("copy"), several, target};
    expectRefusal([&] { return run(copy); }, QStringLiteral("has a network \"a\" already"));
    ::alter(several, {QStringLiteral("update Net set name = 'b'"),
                      QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                                     "values (2, 'b', '', 0, 0, 'F')")});
    expectRefusal([&] { return run(copy); }, QStringLiteral("two of the networks are called \"b\""));
    ::alter(store, {QStringLiteral("insert into Link(LinkID, StartNodeID, EndNodeID) values (1, 1, 2)")});
    expectRefusal([&] { return run(import + QStringList(kExample)); }, QStringLiteral("and has one"));
}

TEST_F(Morastore, RemovesANetworkAndLeavesTheOther) {
    const QString small = realDataFile(QStringLiteral("rilsa/net.net.xml"));
    const QString large = realDataFile(QStringLiteral("bologna/joined_buslanes.net.xml.gz"));
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, small.isEmpty() ? kExample : small,
                   QStringLiteral("--name"), QStringLiteral("small")})
                  .exitCode,
              0);
    QStringList import{QStringLiteral("import"), store, large.isEmpty() ? kExample : large,
                       QStringLiteral("--name"), QStringLiteral("O'Brien")};
    if (!large.isEmpty())
        import << QStringLiteral("--additional") << realDataFile(QStringLiteral("bologna/joined_tls.add.xml"))
               << QStringLiteral("--additional")
               << realDataFile(QStringLiteral("bologna/joined_bus_stops.add.xml"))
               << QStringLiteral("--routes") << realDataFile(QStringLiteral("bologna/joined_busses.rou.xml"));
    ASSERT_NE(run(import).exitCode, 1);
    const QStringList both = contentOf(store);
    const QStringList ofSmall = contentOfNetwork(store, 1);
    const QStringList ofLarge = contentOfNetwork(store, 2);
    ASSERT_GT(ofSmall.size(), 100);
    ASSERT_GT(ofLarge.size(), 100);

    const QStringList remove{QStringLiteral("remove"), store, QStringLiteral("O'Brien")};
    const Outcome unasked = run(remove);
    EXPECT_EQ(unasked.exitCode, 1);
    EXPECT_TRUE(unasked.err.contains(QStringLiteral("give --yes"))) << unasked.err.toStdString();
    expectRefusal(
        [&] {
            return run({QStringLiteral("remove"), store, QStringLiteral("none"), QStringLiteral("--yes")});
        },
        QStringLiteral("no network \"none\""));
    EXPECT_EQ(run(remove + QStringList(QStringLiteral("--yes"))).exitCode, 0);
    EXPECT_TRUE(contentOfNetwork(store, 1) == ofSmall);
    const QSet<QString> gone(ofLarge.begin(), ofLarge.end());
    QStringList expected;
    std::copy_if(both.begin(), both.end(), std::back_inserter(expected),
                 [&gone](const QString &line) { return !gone.contains(line); });
    EXPECT_EQ(expected.size(), both.size() - ofLarge.size());
    EXPECT_TRUE(contentOf(store) == expected);
}

TEST_F(Morastore, ARefusedRemovalLeavesTheNetworkWhole) {
    const QString store = file(QStringLiteral("store"));
    ASSERT_EQ(
        run({QStringLiteral("new"), store, QStringLiteral("--template"), QStringLiteral("EmptyNet_V3.0.0")})
            .exitCode,
        0);
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    // A row that cannot be deleted, in the middle of the removal: its text goes on in a page that is not
    // there.
    ::alter(store,
            {QStringLiteral("update LaneConnector set otherAttrsJson = replace(hex(zeroblob(6000)), '0', "
                            "'q') where rowid = (select min(rowid) from LaneConnector)"),
             QStringLiteral("insert into PassengerArriving values(1, 2, 3, 4, 5)")});
    const QByteArray sound = read(store);
    const int page = qFromBigEndian<quint16>(sound.constData() + 16);
    int broken = 0;
    while (broken < sound.size() && !(sound.mid(broken + 4, page - 4).count('q') == page - 4))
        broken += page;
    ASSERT_LT(broken, sound.size());
    write(QStringLiteral("store"), QByteArray(sound).replace(broken, 4, QByteArray(4, '\xff')));
    const QStringList remove{QStringLiteral("remove"), store, QStringLiteral("1"), QStringLiteral("--yes")};
    expectRefusal([&] { return run(remove); }, QStringLiteral("nothing was removed"));
    write(QStringLiteral("store"), sound);
    EXPECT_EQ(run(remove).exitCode, 0);
    EXPECT_TRUE(run({QStringLiteral("info"), store}).out.contains(QStringLiteral("networks    0")));
    EXPECT_EQ(row(store, QStringLiteral("select count(*) from PassengerArriving")), QVariantList{0});
    EXPECT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0) << "room for another";
}
