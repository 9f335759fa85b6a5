#include "model/Net.h"
#include "tests/resources/Generation6Tables.h"
#include "tests/support/StoreFixture.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

namespace {

class PostgresTemplates : public StoreFixture {
protected:
    void SetUp() override {
        if (!PostgresDatabase::hasServer())
            GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    }

    /// Restores a dump that the library carries, as a user does.
    void restore(const QString &dump, const PostgresDatabase &database) {
        const QString file = folder() + QLatin1Char('/') + dump;
        ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/") + dump, file));
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PGPASSWORD"), PostgresDatabase::password());
        tool.setProcessEnvironment(environment);
        tool.start(QStringLiteral("pg_restore"),
                   {QStringLiteral("--exit-on-error"), QStringLiteral("--host"), PostgresDatabase::host(),
                    QStringLiteral("--port"), QString::number(PostgresDatabase::port()),
                    QStringLiteral("--username"), PostgresDatabase::user(), QStringLiteral("--dbname"),
                    database.name(), file});
        ASSERT_TRUE(tool.waitForFinished());
        ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().constData();
    }

    void open(const PostgresDatabase &database) {
        database.use();
        ASSERT_TRUE(DBTools::openDatabase(gDB, {}, true));
        EXPECT_EQ(DBTools::dbVer(), 6);
        EXPECT_EQ(failureCount(), 0);
    }

    /// Everything that was declared: columns, keys, indexes, sequences.
    QStringList catalogue(const PostgresDatabase &database) {
        open(database);
        QStringList all;
        for (const char *part :
             {"select table_name, ordinal_position, column_name, data_type, is_nullable, column_default "
              "from information_schema.columns where table_schema = 'public' order by 1, 2",
              "select conrelid::regclass::text, conname, pg_get_constraintdef(oid) from pg_constraint "
              "where connamespace = 'public'::regnamespace order by 1, 2",
              "select indexdef from pg_indexes where schemaname = 'public' order by 1",
              "select sequencename, data_type, start_value, increment_by, cycle from pg_sequences "
              "where schemaname = 'public' order by 1"}) {
            const QStringList found = rows(QLatin1String(part));
            EXPECT_GT(found.size(), 20) << part;
            all += found;
        }
        return all;
    }
};

TEST_F(PostgresTemplates, TheDumpsHoldTheSchemaOfTheSqlText) {
    const PostgresDatabase text;
    const QStringList expected = catalogue(text);
    for (const char *dump : {"pgsql_db6_empty.backup", "pgsql_db6_init.backup"}) {
        const PostgresDatabase restored(PostgresDatabase::Content::Nothing);
        restore(QLatin1String(dump), restored);
        const QStringList found = catalogue(restored);
        ASSERT_EQ(found.size(), expected.size()) << dump << ": run scripts/make-dumps";
        for (int i = 0; i < found.size(); ++i)
            EXPECT_EQ(found[i].toStdString(), expected[i].toStdString())
                << dump << ": run scripts/make-dumps";
        EXPECT_EQ(rows(QStringLiteral("select * from DbVersion")),
                  QStringList(QStringLiteral("6|6|同一路网文件或数据库可以保存多个路网||20230202")));
        gDB.close();
    }
}

TEST_F(PostgresTemplates, TheInitialisedOneHoldsNetwork1WithItsDictionaries) {
    const PostgresDatabase restored(PostgresDatabase::Content::Nothing);
    restore(QStringLiteral("pgsql_db6_init.backup"), restored);
    open(restored);
    ASSERT_TRUE(DBTools::selectNetIdByName(gDB, {}));
    EXPECT_EQ(gNet.netName(), QStringLiteral("MoraSim"));
    const QStringList tables =
        rows(QStringLiteral("select tablename from pg_tables where schemaname = 'public' "
                            "and tablename <> 'configuration' order by 1"));
    const auto content = [&] {
        QStringList all;
        for (const QString &table : tables)
            all += rows(QStringLiteral("select '%1', t.* from %1 t order by t").arg(table));
        return all;
    };
    const QStringList found = content();
    EXPECT_TRUE(DBTools::initDictionary(gDB, 1, true)) << "there is nothing left to write";
    EXPECT_EQ(content(), found);
    long id = 0;
    EXPECT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("VehicleConstitutent"), id));
    EXPECT_EQ(id, 2) << "the standard composition has number 1";

    const PostgresDatabase fresh;
    open(fresh);
    const QString name = QStringLiteral("MoraSim");
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 1, name, {}, name, {}, QStringLiteral("{}"), true, true));
    ASSERT_TRUE(DBTools::initDictionary(gDB, 1, true));
    EXPECT_EQ(content(), found);
    gDB.close();
}

TEST_F(PostgresTemplates, AnIndexAnswersForTheLargestIdentifierOfEachTable) {
    const PostgresDatabase database;
    open(database);
    // What a sequence numbers, by the column that follows the network's in its key.
    const QString numbered = QStringLiteral(
        "from pg_class t join pg_constraint k on k.conrelid = t.oid and k.contype = 'p' and cardinality(conkey) = 2 and relname <> 'logger' "
        "where exists (select 1 from pg_sequences where sequencename = 'seq_' || relname || '_id')");
    EXPECT_EQ(rows(QStringLiteral("select count(*) ") + numbered), QStringList(QStringLiteral("28")));
    EXPECT_EQ(rows(QStringLiteral("select relname ") + numbered +
                   QStringLiteral(" and not exists (select 1 from pg_index where indrelid = t.oid "
                                  "and indkey[0] = conkey[2])")),
              QStringList());
    gDB.close();
}

/// The keys of the format but for those that no store could keep.
TEST_F(PostgresTemplates, EveryKeyThatCanHoldIsDeclaredAndIndexed) {
    const PostgresDatabase database;
    open(database);
    QStringList expected;
    for (const char *table : kGeneration6Tables) {
        const QStringList parts = QString::fromLatin1(table).toLower().split(QLatin1Char('|'));
        for (const QString &key : parts[4].split(QLatin1Char(';'), Qt::SkipEmptyParts))
            expected.append(parts[0] + QLatin1Char('.') + key);
    }
    for (const char *impossible :
         {"lanelimitvehicle.netid,laneid>lane", "lanelimitvehicle.netid,vehicletypecode>vehicletype",
          "linklimitvehicle.netid,linkid>link", "linklimitvehicle.netid,vehicletypecode>vehicletype",
          "linkfencemiddle.netid,linkid1>link", "linkfencemiddle.netid,linkid2>link",
          "connectorlimitvehicle.netid,vehicletypecode>vehicletype",
          "connectorlimitvehicle.netid,connid>connector", "passenger.netid,stationlineid>busstationline",
          "reducespeedvehitype.netid,vehicletypecode>vehicleconstitutent",
          "vehicle.vehicletypecode>vehicletype(vehicletypecode)",
          "vehicledriving.routingid>routing(routingid)"})
        EXPECT_TRUE(expected.removeOne(QLatin1String(impossible))) << impossible;
    const QString columns = QStringLiteral(
        "(select string_agg(attname, ',' order by n) from unnest(conkey) with ordinality k(c, n) "
        "join pg_attribute on attrelid = conrelid and attnum = c)");
    QStringList found =
        rows(QStringLiteral(
                 "select conrelid::regclass || '.' || %1 || '>' || confrelid::regclass from pg_constraint "
                 "where contype = 'f' and confupdtype = 'r' and confdeltype = 'r'")
                 .arg(columns));
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
    // A row that goes is looked for in the tables that refer to it.
    EXPECT_EQ(rows(QStringLiteral(
                       "select conrelid::regclass || '.' || %1 from pg_constraint f where contype = 'f' "
                       "and confrelid <> 'net'::regclass and not exists (select 1 from pg_index i where "
                       "i.indrelid = f.conrelid and (i.indkey::int2[])[0:cardinality(conkey) - 1] @> conkey)")
                       .arg(columns)),
              QStringList());
    EXPECT_EQ(rows(QStringLiteral("select distinct data_type from information_schema.columns "
                                  "where table_schema = 'public' order by 1")),
              QStringList({"bigint", "bytea", "date", "double precision", "text"}));
    gDB.close();
}

} // namespace
