#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"

// Partitions of a store on another server. That is another database of the test server here, reached by a
// connection of the server's own, as any other one is.

namespace {

constexpr char kOwner[] = "postgres"; ///< extensions are the administrator's to make

class Placement : public OnServer {
protected:
    void SetUp() override {
        OnServer::SetUp();
        if (IsSkipped())
            return;
        mHere = std::make_unique<PostgresDatabase>(PostgresDatabase::Content::Partitions);
        mThere = std::make_unique<PostgresDatabase>(PostgresDatabase::Content::Nothing);
        mStore = connectionTo(*mHere);
        succeed({"new", "--postgres", connectionTo(*mThere), "--leaves", "3"});
        here("create extension postgres_fdw");
        here(QStringLiteral(
                 "create server two foreign data wrapper postgres_fdw options (host '%1', port '%2', dbname "
                 "'%3')")
                 .arg(PostgresDatabase::host(), QString::number(PostgresDatabase::port()), mThere->name()));
        here(QStringLiteral("create user mapping for %1 server two options (user '%1', password '%2')")
                 .arg(QLatin1String(kOwner),
                      PostgresDatabase::password().replace(QLatin1Char('\''), QLatin1String("''"))));
    }

    static QString connectionTo(const PostgresDatabase &database) {
        return QStringLiteral("dbname=%1 host=%2 port=%3 user=%4")
            .arg(database.name(), PostgresDatabase::host(), QString::number(PostgresDatabase::port()),
                 QLatin1String(kOwner));
    }
    QString here(const QString &sql) const { return Beside(mHere->name(), QLatin1String(kOwner)).value(sql); }
    QString there(const QString &sql) const {
        return Beside(mThere->name(), QLatin1String(kOwner)).value(sql);
    }

    QString place(const QStringList &options) const {
        return succeed(QStringList{QStringLiteral("place"), mStore} + options);
    }
    void refuse(const QString &command, const QStringList &options, const char *expected) const {
        expectSentence(run(QStringList{command, mStore} + options), QLatin1String(expected));
    }
    QString digests() const { return succeed({"digest", mStore}); }
    QString digest(const QString &net) const { return succeed({"digest", mStore, "--net", net}).left(64); }
    int import(const QString &name) const {
        return run({"import", mStore, kExample, "--name", name}).exitCode;
    }
    /// The partition of a network, by the server's own function.
    int partitionOf(int net) const {
        return here(
                   QStringLiteral(
                       "select k from generate_series(0, 2) k where satisfies_hash_partition('lane'::regclass, "
                       "3, k, %1::bigint)")
                       .arg(net))
            .toInt();
    }
    /// The networks that have lanes in tables of that name in a database.
    static QString lanesOf(const char *table) {
        return QStringLiteral("select coalesce(string_agg(distinct NetId::text, ' '), '') from ") +
               QLatin1String(table);
    }
    QString lanesThere() const {
        QStringList all;
        for (int k = 0; k < 3; ++k)
            all.append(there(lanesOf(qPrintable(QStringLiteral("part_%1.lane").arg(k)))));
        return all.join(QLatin1Char('|'));
    }

    std::unique_ptr<PostgresDatabase> mHere;
    std::unique_ptr<PostgresDatabase> mThere;
    QString mStore;
};

TEST_F(Placement, ANetworkIsTheSameOnAnotherServer) {
    for (int net = 1; net < 5; ++net)
        ASSERT_EQ(import(QStringLiteral("net %1").arg(net)), 0);
    // Of four networks two are in the same one of three partitions.
    int first = 1;
    int second = 2;
    while (partitionOf(first) != partitionOf(second)) {
        first += second == 4 ? 1 : 0;
        second = second == 4 ? first + 1 : second + 1;
    }
    const int moved = partitionOf(first);
    QStringList both;
    for (int net = 1; net < 5; ++net) {
        if (partitionOf(net) == moved)
            both.append(QString::number(net));
    }
    const QString net = both.last();
    const QString before = digests();
    const QString told = place({"two", "--net", "net " + net});
    EXPECT_EQ(told, QStringLiteral("partition %1 is on server two, with %2 networks\n")
                        .arg(QString::number(moved), QString::number(both.size())));
    EXPECT_EQ(digests(), before);
    QStringList expected{QString(), QString(), QString()};
    expected[moved] = both.join(QLatin1Char(' '));
    EXPECT_EQ(lanesThere(), expected.join(QLatin1Char('|')));
    EXPECT_EQ(
        here(QStringLiteral(
                 "select count(*) from pg_class where relnamespace = 'part_%1'::regnamespace and relkind "
                 "<> 'f'")
                 .arg(moved)),
        QStringLiteral("0"));
    EXPECT_TRUE(place({}).contains(told + QStringLiteral("  %1 net %1\n").arg(both.first())));

    // A patch, new networks, and a removal, there as here.
    const QString copy = newStore();
    succeed({"copy", mStore, copy, "--net", net});
    const QString edited = file(QStringLiteral("edited.mora"));
    ASSERT_TRUE(QFile::copy(copy, edited));
    alter(edited, {"update Lane set width = width + 0.25", "delete from GuideArrow"});
    EXPECT_EQ(run({"diff", copy, edited, "-o", file("edits.patch")}).exitCode, 0);
    succeed({"apply", mStore, file("edits.patch"), "--net", "net " + net});
    EXPECT_EQ(digest(net), succeed({"digest", edited}).left(64));
    for (int more = 5; more < 9; ++more)
        ASSERT_EQ(import(QStringLiteral("net %1").arg(more)), 0);
    succeed({"remove", mStore, both.first(), "--yes"});
    QStringList there;
    for (int each = both.first().toInt() + 1; each < 9; ++each) {
        if (partitionOf(each) == moved)
            there.append(QString::number(each));
    }
    ASSERT_GT(there.size(), 1);
    expected[moved] = there.join(QLatin1Char(' '));
    EXPECT_EQ(lanesThere(), expected.join(QLatin1Char('|')));

    const QString after = digests();
    EXPECT_EQ(place({"--back", "--partition", QString::number(moved)}),
              QStringLiteral("partition %1 is here, with %2 networks\n")
                  .arg(QString::number(moved), QString::number(there.size())));
    EXPECT_EQ(digests(), after);
    EXPECT_EQ(lanesThere(), QStringLiteral("||"));
    // With the keys of a leaf that is here.
    EXPECT_EQ(here(QStringLiteral(
                  "select count(distinct connamespace) || ' ' || count(*) % 3 from pg_constraint where "
                  "contype in ('p', 'f') and connamespace::regnamespace::text like 'part\\_%'")),
              QStringLiteral("3 0"));
}

TEST_F(Placement, IsRefusedWithTheStoreAsItWas) {
    ASSERT_EQ(import(QStringLiteral("one")), 0);
    const QString mine = QString::number(partitionOf(1));
    const QString before = digests() + place({});
    refuse("place", {"three", "--partition", mine}, "three");
    refuse("place", {"two", "--partition", "3"}, "there is no partition 3");
    refuse("place", {"two", "--net", "none"}, "there is no network \"none\"");
    refuse("place", {"--back", "--partition", mine}, "is there already");
    EXPECT_EQ(run({"place", mStore, "two"}).exitCode, 2);
    EXPECT_EQ(run({"place", mStore, "--partition", "1"}).exitCode, 2);
    expectSentence(run({"place", newStore()}), QStringLiteral("only a store on a server"));
    const PostgresDatabase plain;
    const bool isSpread = qEnvironmentVariableIsSet("MORA_TEST_PARTITIONS");
    if (!isSpread)
        expectSentence(run({"place", plain.connectionString()}), QStringLiteral("has no partitions"));
    // Rows that are there already, which may be another store's.
    there(QStringLiteral("insert into part_%1.vertex values(9, 9, 0, 0, 0)").arg(mine));
    refuse("place", {"two", "--partition", mine}, "hold rows already");
    EXPECT_EQ(there(QStringLiteral("select count(*) from part_%1.vertex").arg(mine)), QStringLiteral("1"));
    EXPECT_EQ(digests() + place({}), before);
    place({"two", "--partition", mine, "--empty"});
    EXPECT_EQ(digests(), before.left(before.indexOf(QLatin1Char('\n')) + 1));
    refuse("place", {"two", "--partition", mine}, "is there already");
    const QString other = QString::number((mine.toInt() + 1) % 3);
    there(QStringLiteral("drop table part_%1.logger").arg(other));
    refuse("place", {"two", "--partition", other}, "lacks tables of partition");
}

TEST_F(Placement, AServerThatIsAwayTakesItsNetworksAlone) {
    ASSERT_EQ(import(QStringLiteral("one")), 0);
    ASSERT_EQ(import(QStringLiteral("two")), 0);
    ASSERT_NE(partitionOf(1), partitionOf(2));
    place({"two", "--net", "1"});
    const QString before = digests();
    here(QStringLiteral("alter server two options (set dbname 'away')"));
    for (const QStringList &command :
         {QStringList{"digest", mStore, "--net", "1"},
          QStringList{"draw", mStore, file("a.svg"), "--net", "1"},
          QStringList{"remove", mStore, "1", "--yes"}, QStringList{"show", mStore, "links", "--net", "1"},
          QStringList{"import", mStore, kExample, "--name", "three"},
          QStringList{"copy", mStore, newStore("b")}})
        expectSentence(run(command), QStringLiteral("server \"two\""));
    EXPECT_EQ(digest(QStringLiteral("2")), before.section(QLatin1Char('\n'), 1, 1).left(64));
    succeed({"draw", mStore, file("b.svg"), "--net", "2"});
    succeed({"show", mStore, "links", "--net", "2"});
    here(QStringLiteral("alter server two options (set dbname '%1')").arg(mThere->name()));
    EXPECT_EQ(digests(), before);
}

TEST_F(Placement, WhatOneServerAloneHasCommittedIsNoNetwork) {
    ASSERT_EQ(import(QStringLiteral("one")), 0);
    const int next = 2;
    place({"two", "--partition", QString::number(partitionOf(next))});
    const QString before = digests();
    // As an import leaves it that came through there and not here.
    const QString leaf = QStringLiteral("part_%1").arg(partitionOf(next));
    there(QStringLiteral(
              "insert into %1.vertex values(2, 70, 0, 0, 0); insert into %1.node values(2, 7, 'n', 70)")
              .arg(leaf));
    EXPECT_EQ(digests(), before);
    ASSERT_EQ(import(QStringLiteral("two")), 0);
    EXPECT_EQ(here(QStringLiteral("select NetId from Net where name = 'two'")), QStringLiteral("3"));
    EXPECT_EQ(run({"check", mStore}).out.count(QStringLiteral("network 2")), 2);
    const QString with = digests();
    EXPECT_EQ(place({"--tidy"}), QStringLiteral("2 rows that belonged to no network are gone\n"));
    EXPECT_EQ(there(QStringLiteral("select count(*) from %1.vertex where NetId = 2").arg(leaf)),
              QStringLiteral("0"));
    EXPECT_EQ(digests(), with);
}

TEST_F(Placement, OnlyPostgresqlServersHoldLeaves) {
    here(QStringLiteral("create foreign data wrapper other"));
    here(QStringLiteral("create server files foreign data wrapper other"));
    here(QStringLiteral("alter table Lane detach partition part_1.Lane"));
    here(QStringLiteral(
        "create foreign table part_1.elsewhere partition of Lane for values with (modulus 3, remainder "
        "1) server files"));
    refuse("info", {}, "elsewhere is a foreign table");
}

} // namespace
