#include "store/DBTools.h"
#include "store/guard/SchemaGuard.h"
#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"
#include "tests/resources/TemplateStore.h"
#include "tests/support/OldStores.h"
#include "tests/support/PostgresDatabase.h"

// Stores whose tables are more than tables, or that say of themselves what they are not.

namespace {

/// A template, what is done to it, and what the sentence says that refuses it.
struct Hostile {
    const char *name;
    const char *templateName;
    QStringList statements;
    const char *expected;

    friend std::ostream &operator<<(std::ostream &out, const Hostile &store) { return out << store.name; }
};

constexpr const char *kMany = "EmptyNet_V6.0.0";
constexpr const char *kOne = "EmptyNet_V3.0.0";
constexpr const char *kNoVersion = "does not say of which version it is";

QStringList rewritten(const char *table, const char *what, const char *with) {
    return {QStringLiteral("update sqlite_master set sql = replace(sql, '%1', '%2') where name = '%3'")
                .arg(QLatin1String(what), QLatin1String(with), QLatin1String(table))};
}

/// Makes a table anew without the keys that it had.
QStringList withoutKeys(const char *table) {
    return {QStringLiteral("create table open_%1 as select * from %1").arg(QLatin1String(table)),
            QStringLiteral("drop table %1").arg(QLatin1String(table)),
            QStringLiteral("alter table open_%1 rename to %1").arg(QLatin1String(table))};
}

QStringList versions(const char *values) {
    return {QStringLiteral("drop table DbVersion"), QStringLiteral("create table DbVersion(versionId)"),
            QStringLiteral("insert into DbVersion values %1").arg(QLatin1String(values))};
}

const Hostile kStores[] = {
    {"Trigger",
     kMany,
     {"create trigger t before insert on Link begin select raise(ignore); end"},
     "table Link has the trigger \"t\""},
    {"TriggerOfAnotherName",
     kOne,
     {"create trigger \"Lane\" after delete on ROUTING begin delete from Link; end"},
     "has the trigger \"Lane\""},
    {"EndlessView",
     kMany,
     {"drop table IDGenerater",
      "create view IDGenerater as with recursive n(i) as (select 1 union all select "
      "i + 1 from n) select i NetId, i TableName, i ID from n"},
     "IDGenerater is a view"},
    {"EndlessViewOfVersions",
     kOne,
     {"drop table DbVersion", "create view DbVersion as with recursive n(i) as (select 1 union all select "
                              "i from n) select i versionId from n"},
     "DbVersion is a view"},
    {"VirtualTable",
     kMany,
     {"drop table GuideArrow", "create virtual table GuideArrow using rtree(id, low, high)"},
     "GuideArrow is a virtual table"},
    {"GeneratedColumn",
     kMany,
     {"alter table Vertex add g as (hex(zeroblob(1000)))"},
     "Vertex has a generated column"},
    {"Check", kOne, {"alter table Link add c integer /* as */ check (c is null)"}, "Link has a check"},
    {"ComputedDefault", kOne,
     rewritten("SimulateConfiguration", "not null default 0", "not null default (random() + 1)"),
     "SimulateConfiguration has a computed default"},
    {"ConflictClause", kMany,
     rewritten("Link", "Varchar(64) null", "Varchar(64) not null on conflict ignore"),
     "Link has a conflict clause"},
    {"ExpressionIndex", kMany, {"create index odd on Lane(hex(laneID))"}, "the expression index \"odd\""},
    {"PartialIndex",
     kMany,
     {"create index odd on Lane(laneID desc) where laneID > 5"},
     "the partial index \"odd\""},

    {"VersionText", kMany, versions("('x')"), kNoVersion},
    {"VersionNull", kMany, versions("(null)"), kNoVersion},
    {"VersionNegative", kMany, versions("(-6)"), kNoVersion},
    {"VersionZero", kOne, versions("(0)"), kNoVersion},
    {"VersionFraction", kMany, versions("(6.5)"), kNoVersion},
    {"VersionBlob", kMany, versions("(x'06')"), kNoVersion},
    {"VersionsDisagree", kOne, versions("(3), (6)"), kNoVersion},
    {"VersionBeyond32Bits", kMany, versions("(4294967302)"), "is of version 4294967302"},
    {"VersionOfOneNetwork", kMany, {"update DbVersion set versionId = 3"}, "says that it is of version 3"},
    {"VersionOfOneNetworkWithoutKeys", kMany,
     QStringList{"update DbVersion set versionId = 3"} + withoutKeys("Link") + withoutKeys("Lane") +
         withoutKeys("Connector") + withoutKeys("Vertex"),
     "says that it is of version 3"},
    {"VersionOfSeveral", kOne, {"update DbVersion set versionId = 6"}, "says that it is of version 6"},
};

class OwnTables : public Morastore, public testing::WithParamInterface<Hostile> {
protected:
    void TearDown() override {
        gDB.close();
        gDB = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }
};

TEST_P(OwnTables, IsRefusedByNameBeforeAnythingIsWritten) {
    const QString store = file(QStringLiteral("store.mora"));
    copyTemplate(GetParam().templateName, store);
    ::alter(store, GetParam().statements);
    const QByteArray before = read(store);
    for (const auto open : {DBTools::openDatabase, DBTools::openDatabaseReadOnly}) {
        EXPECT_FALSE(open(gDB, store, true));
        ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
        EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(QLatin1String(GetParam().expected)))
            << DBTools::mlCallDbResult.first().error.toStdString();
    }
    gDB.close();
    EXPECT_TRUE(read(store) == before);
    const QString sound = newStore(QStringLiteral("sound.mora"));
    for (const QStringList &command : commandsThatOpen(store, sound, file(QStringLiteral("p.svg")))) {
        SCOPED_TRACE(command.join(QLatin1Char(' ')).toStdString());
        expectRefusal([&] { return run(command); }, QLatin1String(GetParam().expected));
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, OwnTables, testing::ValuesIn(kStores),
                         [](const auto &store) { return std::string(store.param.name); });

TEST_F(Morastore, TablesOfPluginsAreFreeAndRunNothing) {
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), QStringLiteral("b")})
                  .exitCode,
              0);
    const QList<int> links = counts(store);
    ::alter(
        store,
        {"create table Kiosk(NetId integer check (NetId > 0), price default (abs(1)), twice as (price * 2))",
         "insert into Kiosk(NetId) values (1), (2)", "create index kiosks on Kiosk(price + 1)",
         "create view Endless as with recursive n(i) as (select 1 union all select i from n) select i from n",
         "create virtual table Search using rtree(id, low, high)",
         "create trigger t before delete on Kiosk begin delete from Link where NetId = 1; end"});
    for (const char *command : {"info", "digest"})
        EXPECT_EQ(run({QLatin1String(command), store}).exitCode, 0) << command;
    EXPECT_EQ(run({QStringLiteral("remove"), store, QStringLiteral("2"), QStringLiteral("--yes")}).exitCode,
              0);
    EXPECT_EQ(row(store, QStringLiteral("select count(*), min(NetId), max(NetId) from Link")),
              QVariantList({links.first() / 2, 1, 1}));
    EXPECT_EQ(row(store, QStringLiteral("select count(*) from Kiosk")), QVariantList({1}));
}

TEST_F(Morastore, TablesOfPluginsMayNeedWhatIsNotHere) {
    for (const char *name : {kMany, kOne, "EmptyNet_V2.00.00"}) {
        SCOPED_TRACE(name);
        const QString store = file(QLatin1String(name));
        copyTemplate(name, store);
        ::alter(store,
                {"insert into sqlite_master values('table', 'Odd', 'Odd', 0, 'CREATE VIRTUAL TABLE Odd "
                 "using nonesuch(NetId, SerialNnumber)')"});
        for (const QStringList &command :
             {QStringList{"info", store}, QStringList{"upgrade", store, "--no-backup"},
              QStringList{"import", store, kExample}, QStringList{"digest", store}}) {
            const Outcome outcome = run(command);
            EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
            EXPECT_EQ(outcome.err.toStdString(), "") << command.first().toStdString();
        }
    }
}

/// A host brings a store of the first generation forward on a connection of its own.
TEST_F(Morastore, AStoreOfTheFirstGenerationIsJudgedBeforeItIsBroughtForward) {
    const QString store = file(QStringLiteral("first.mora"));
    makeFirstGenerationStore(store);
    ::alter(store, {"create trigger t after delete on Link begin delete from Node; end"});
    const QByteArray before = read(store);
    {
        QSqlDatabase own = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("own"));
        own.setDatabaseName(store);
        ASSERT_TRUE(own.open());
        DBTools::mlCallDbResult.clear();
        DBTools::updateDatabase1x(own);
        ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
        EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains("table Link has the trigger \"t\""));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("own"));
    EXPECT_TRUE(read(store) == before);
}

TEST_F(Morastore, AStoreThatNamesNoVersionIsOneOfASingleNetwork) {
    const QString one = file(QStringLiteral("one.mora"));
    copyTemplate(kOne, one);
    ::alter(one, {"delete from DbVersion"});
    EXPECT_EQ(run({QStringLiteral("info"), one}).exitCode, 0);
    // Removing its network would take the rows of all.
    const QString many = newStore();
    ::alter(many, {"delete from DbVersion"});
    expectRefusal(
        [&] {
            return run({QStringLiteral("remove"), many, QStringLiteral("1"), QStringLiteral("--yes")});
        },
        QLatin1String(kNoVersion));
}

TEST(TablesOfTheFormat, AreThoseOfAllTemplates) {
    QSet<QString> made;
    for (const char *name : {"EmptyNet_V6.0.0", "EmptyNet_V3.0.0", "EmptyNet_V2.1.1", "EmptyNet_V2.00.00"}) {
        const TemplateStore store{QLatin1String(name)};
        const QStringList tables = store.tables();
        made += QSet<QString>(tables.begin(), tables.end());
    }
    made.remove(QStringLiteral("sqlite_sequence"));
    made.insert(QStringLiteral("Rsu")); // which the first opening makes
    const QStringList &known = schemaguard::tablesOfTheFormat();
    EXPECT_EQ(QSet<QString>(known.begin(), known.end()), made);
}

} // namespace
