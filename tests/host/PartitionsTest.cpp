#include "store/DBTools.h"
#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"

// Stores whose networks are spread over partitions: every command serves them as it serves others.

namespace {

class Partitions : public OnServer {
protected:
    static void import(const QString &store, const QString &name) {
        const QString folder = QFileInfo(kExample).path();
        succeed({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), name,
                 QStringLiteral("--additional"), folder + QStringLiteral("/crossing.add.xml"),
                 QStringLiteral("--routes"), folder + QStringLiteral("/crossing.rou.xml"),
                 QStringLiteral("--routes"), folder + QStringLiteral("/turns.xml")});
    }

    static QString digest(const QString &store, const QString &net) {
        return succeed({QStringLiteral("digest"), store, QStringLiteral("--net"), net}).left(64);
    }

    static const QStringList kNew;
};

const QStringList Partitions::kNew{QStringLiteral("new"), QStringLiteral("--postgres")};

TEST_F(Partitions, ServeEveryCommand) {
    const PostgresDatabase database(PostgresDatabase::Content::Nothing);
    const QString store = database.connectionString();
    succeed(kNew + QStringList{store, QStringLiteral("--partitions"), QStringLiteral("4")});
    const QString source = newStore();
    import(source, QStringLiteral("west"));
    import(source, QStringLiteral("east"));
    succeed({QStringLiteral("copy"), source, store});
    import(store, QStringLiteral("north"));
    for (const char *net : {"1", "2"})
        EXPECT_EQ(digest(store, QLatin1String(net)), digest(source, QLatin1String(net)));
    const Beside beside(database.name());
    // Three networks are in three leaves: what rows count as their place says nothing by itself.
    EXPECT_EQ(beside.value(
                  QStringLiteral("select count(*) || ' ' || count(distinct tableoid) from (select distinct "
                                 "NetId, tableoid from Lane) lanes")),
              QStringLiteral("3 3"));
    EXPECT_EQ(beside.value(QStringLiteral("select count(*) from only Lane")), QStringLiteral("0"));

    // A patch that was made in a file goes into its network alone.
    const QString edited = file(QStringLiteral("edited.mora"));
    ASSERT_TRUE(QFile::copy(source, edited));
    alter(edited, {QStringLiteral("update Lane set width = width + 0.25 where NetId = 1"),
                   QStringLiteral("delete from GuideArrow where NetId = 1"),
                   QStringLiteral("update Net set caption = 'edited' where NetId = 1")});
    const QString patch = file(QStringLiteral("edits.patch"));
    EXPECT_EQ(run({QStringLiteral("diff"), source, edited, QStringLiteral("--net"), QStringLiteral("west"),
                   QStringLiteral("-o"), patch})
                  .exitCode,
              0);
    const QString others = digest(store, QStringLiteral("2")) + digest(store, QStringLiteral("3"));
    succeed({QStringLiteral("apply"), store, patch, QStringLiteral("--net"), QStringLiteral("west")});
    EXPECT_EQ(digest(store, QStringLiteral("1")), digest(edited, QStringLiteral("1")));
    EXPECT_EQ(digest(store, QStringLiteral("2")) + digest(store, QStringLiteral("3")), others);

    for (const char *command : {"check", "info"})
        succeed({QLatin1String(command), store});
    succeed({QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("--net"),
             QStringLiteral("north")});
    const auto drawn = [this](const QString &from) {
        succeed({QStringLiteral("draw"), from, file(QStringLiteral("picture.svg")), QStringLiteral("--net"),
                 QStringLiteral("2")});
        const QByteArray picture = read(file(QStringLiteral("picture.svg")));
        QFile::remove(file(QStringLiteral("picture.svg")));
        return picture;
    };
    EXPECT_EQ(drawn(store), drawn(source));
    const QString back = newStore(QStringLiteral("back.mora"));
    succeed({QStringLiteral("copy"), store, back, QStringLiteral("--net"), QStringLiteral("1"),
             QStringLiteral("--net"), QStringLiteral("2")});
    EXPECT_EQ(digest(back, QStringLiteral("1")), digest(edited, QStringLiteral("1")));

    succeed({QStringLiteral("remove"), store, QStringLiteral("west"), QStringLiteral("--yes")});
    EXPECT_EQ(digest(store, QStringLiteral("2")) + digest(store, QStringLiteral("3")), others);
    EXPECT_EQ(beside.value(QStringLiteral(
                  "select string_agg(NetId::text, ',' order by NetId) from (select NetId from Net union "
                  "all select distinct NetId from Lane union all select distinct NetId "
                  "from Logger) n")),
              QStringLiteral("2,2,3,3"));
}

TEST_F(Partitions, AreMadeAsAWholeOrNotAtAll) {
    const PostgresDatabase database(PostgresDatabase::Content::Nothing);
    const QString store = database.connectionString();
    const QStringList four{QStringLiteral("--partitions"), QStringLiteral("4")};
    {
        const Beside beside(database.name());
        beside.value(QStringLiteral("create schema part_2"));
        expectSentence(run(kNew + QStringList(store) + four), QStringLiteral("part_2"));
        EXPECT_EQ(beside.value(QStringLiteral(
                      "select count(*) from pg_class where relnamespace = 'public'::regnamespace")),
                  QStringLiteral("0"));
        beside.value(QStringLiteral("drop schema part_2"));
    }
    for (const QStringList &wrong :
         {QStringList{QStringLiteral("new"), file(QStringLiteral("x")), QStringLiteral("--partitions"),
                      QStringLiteral("4")},
          kNew + QStringList{store, QStringLiteral("--partitions"), QStringLiteral("0")},
          kNew + QStringList{store, QStringLiteral("--partitions"), QStringLiteral("33")},
          kNew + QStringList(store) + four + QStringList{QStringLiteral("--leaves"), QStringLiteral("4")},
          kNew + QStringList(store) + four +
              QStringList{QStringLiteral("--template"), QStringLiteral("pgsql_db6_init")}})
        EXPECT_EQ(run(wrong).exitCode, 2) << wrong.join(QLatin1Char(' ')).toStdString();
    succeed(kNew + QStringList(store) + four);
    expectSentence(run(kNew + QStringList(store) + four), QStringLiteral("holds tables already"));
}

TEST_F(Partitions, AreGuardedLeafByLeaf) {
    const PostgresDatabase database(PostgresDatabase::Content::Partitions);
    const QString store = database.connectionString();
    const Beside beside(database.name());
    beside.value(
        QStringLiteral("create function f() returns trigger language plpgsql as 'begin return null; end'"));
    const struct {
        const char *make;
        const char *unmake;
        const char *expected;
    } intruders[] = {
        {"create trigger t before insert on part_1.Link for each row execute function f()",
         "drop trigger t on part_1.Link", "table link has the trigger \"t\""},
        {"alter table part_0.Vertex add constraint c check (x > 0)",
         "alter table part_0.Vertex drop constraint c", "table vertex has the check \"c\""},
        {"create rule r as on insert to part_2.Lane do instead nothing", "drop rule r on part_2.Lane",
         "table lane has the rule \"r\""},
    };
    for (const auto &intruder : intruders) {
        beside.value(QLatin1String(intruder.make));
        for (const QStringList &command : {QStringList{QStringLiteral("info"), store},
                                           QStringList{QStringLiteral("import"), store, kExample}})
            expectSentence(run(command), QLatin1String(intruder.expected));
        beside.value(QLatin1String(intruder.unmake));
    }
    EXPECT_EQ(run({QStringLiteral("info"), store}).exitCode, 0);
}

} // namespace
