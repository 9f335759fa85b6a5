#include "model/Net.h"
#include "tests/support/Builders.h"
#include "tests/support/Host.h"
#include "tests/support/StoreFixture.h"

#include <QSqlQuery>

#include <memory>

namespace {

/// What is PostgreSQL's own; everything else is in the suites of the families.
class PostgresTest : public StoreFixture {
protected:
    void SetUp() override { openPostgres(); }

    static long draw(const char *table) {
        long id = -1;
        EXPECT_TRUE(DBTools::getIDByTableName(gDB, QLatin1String(table), id)) << table;
        return id;
    }
    QString databaseName() { return rows(QStringLiteral("select current_database()")).value(0); }
};

TEST_F(PostgresTest, OpensTheServerThatTheHostNamesWhateverThePath) {
    const QString name = databaseName();
    DBTools::mDbHost.clear();
    DBTools::mDbName.clear();
    DBTools::mDbPassword.clear();
    Host host;
    host.settings = {{QStringLiteral("__dbdriver"), QStringLiteral("QPSQL")},
                     {QStringLiteral("__dbhost"), PostgresDatabase::host()},
                     {QStringLiteral("__dbname"), name},
                     {QStringLiteral("__dbuser"), PostgresDatabase::user()},
                     {QStringLiteral("__dbpassword"), PostgresDatabase::password()}};
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(databaseName(), name);
    EXPECT_EQ(DBTools::dbVer(), 6);
    EXPECT_EQ(gsDbPath, QString());
    EXPECT_FALSE(DBTools::mbLinkHasRouadId) << "the column probe answers no on a server";
    EXPECT_FALSE(DBTools::tableHasField(gDB, QStringLiteral("link"), QStringLiteral("roadid")));
    EXPECT_EQ(rows(QStringLiteral("select 1 from pg_tables where tablename = 'rsu'")), QStringList())
        << "no upgrade";
    EXPECT_EQ(failureCount(), 0);

    const QString wrong = QStringLiteral("not the password");
    host.settings.insert(QStringLiteral("__dbpassword"), wrong);
    EXPECT_FALSE(DBTools::openDatabase(gDB, {}, true));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_FALSE(DBTools::mlCallDbResult.first().error.contains(wrong));
}

TEST_F(PostgresTest, TheSwitchFromAFileClearsNetwork1) {
    const QString name = databaseName();
    for (const long net : {1L, 2L}) {
        if (net == 2) {
            ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
        }
        ASSERT_TRUE(DBTools_V6::insertLink(gDB, net, sampleLink(7).get(), true));
    }
    DBTools::mDbDriver = QStringLiteral("QSQLITE");
    openTemplate("EmptyNet_V6.0.0");
    Host host;
    host.settings = {{QStringLiteral("__pgdbdriver"), QStringLiteral("QPSQL")},
                     {QStringLiteral("__pgdbhost"), PostgresDatabase::host()},
                     {QStringLiteral("__pgdbport"), 1},
                     {QStringLiteral("__pgdbname"), name},
                     {QStringLiteral("__pgdbuser"), PostgresDatabase::user()},
                     {QStringLiteral("__pgdbpassword"), PostgresDatabase::password()}};
    // The port of the settings is kept and not applied; the client library's environment says which one
    // counts.
    qputenv("PGPORT", QByteArray::number(PostgresDatabase::port()));
    const QString file = QStringLiteral("file");
    QSqlDatabase store = QSqlDatabase::cloneDatabase(gDB, file);
    ASSERT_TRUE(store.open());
    ASSERT_TRUE(DBTools::transToPostgreSql(store));
    qunsetenv("PGPORT");
    EXPECT_FALSE(QSqlDatabase::database(file, false).isOpen());
    QSqlDatabase::removeDatabase(file);
    gDB = store;
    EXPECT_EQ(DBTools::mDbPort, 1);
    EXPECT_EQ(databaseName(), name);
    EXPECT_EQ(rows(QStringLiteral("select NetId from Link")), QStringList({"2"}));
    EXPECT_EQ(count(QStringLiteral("Net")), 2);
    EXPECT_EQ(failureCount(), 0);
    EXPECT_FALSE(DBTools::transToPostgreSql(gDB)) << "it is on the server already";
}

TEST_F(PostgresTest, IdentifiersComeFromSequencesInsideATransactionToo) {
    EXPECT_EQ(draw("Link"), 1);
    gNet.netId = 2;
    EXPECT_EQ(draw("Link"), 2) << "all networks share a sequence";
    EXPECT_EQ(draw("Node"), 1);
    ASSERT_TRUE(gDB.transaction());
    EXPECT_EQ(draw("VehicleType"), 1) << "a table without a sequence of its own has the shared one";
    EXPECT_EQ(draw("LinkType"), 2);
    EXPECT_EQ(draw("Link"), 3);
    ASSERT_TRUE(gDB.commit());
    long id = 0;
    EXPECT_TRUE(DBTools::getID(gDB, id));
    EXPECT_EQ(id, 1);
    EXPECT_TRUE(DBTools::updateIds(gDB, true));
    EXPECT_EQ(failureCount(), 0);

    execute(QStringLiteral("drop sequence seq_table_id"));
    ASSERT_TRUE(gDB.transaction());
    execute(QStringLiteral("update Net set sourceType = 'before'"));
    EXPECT_FALSE(DBTools::getIDByTableName(gDB, QStringLiteral("LinkType"), id));
    EXPECT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("Unknown")), 0);
    EXPECT_TRUE(gDB.commit()) << "the transaction is the caller's";
    EXPECT_EQ(rows(QStringLiteral("select sourceType from Net")), QStringList({"before"}));
}

TEST_F(PostgresTest, SequencesFollowWhatWasCopiedIn) {
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(70).get(), true));
    execute(QStringLiteral("insert into BusLine values(1, 900, '', null, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1)"));
    long largest = 0;
    EXPECT_TRUE(DBTools::getMaxIdByAllTables(gDB, largest, {}));
    EXPECT_EQ(largest, 900);
    EXPECT_TRUE(DBTools::initSequence(gDB, {}));
    EXPECT_EQ(draw("Link"), 71);
    EXPECT_EQ(draw("Net"), 2);
    EXPECT_EQ(draw("Vertex"), rows(QStringLiteral("select max(vertexID) from Vertex")).value(0).toLong() + 1);
    EXPECT_EQ(draw("BusLine"), 901);
    EXPECT_EQ(draw("Routing"), 1);
    EXPECT_EQ(draw("LinkType"), 900) << "the shared sequence starts with the largest identifier itself";
    EXPECT_EQ(failureCount(), 0);
    execute(QStringLiteral("drop sequence seq_lane_id"));
    EXPECT_FALSE(DBTools::initSequence(gDB, QStringLiteral("public")));
    EXPECT_EQ(failureCount(), 1);
}

TEST_F(PostgresTest, SequencesAreThoseThatStatementsFind) {
    execute(QStringLiteral("create schema elsewhere"));
    execute(QStringLiteral("create sequence elsewhere.seq_linktype_id"));
    execute(QStringLiteral("create sequence elsewhere.seq_busline_id"));
    execute(QStringLiteral("drop sequence if exists seq_busline_id"));
    EXPECT_EQ(draw("LinkType"), 1) << "of the shared sequence";
    EXPECT_TRUE(DBTools::initSequence(gDB, {}));
    execute(QStringLiteral("create sequence \"seq_a\"\"b'c;_id\" start 70"));
    EXPECT_EQ(draw("A\"b'c;"), 70);
    EXPECT_EQ(failureCount(), 0);
}

TEST_F(PostgresTest, ASequenceThatCannotBeLookedForIsNotTakenForMissing) {
    EXPECT_EQ(draw("Link"), 1);
    ASSERT_TRUE(gDB.transaction());
    QSqlQuery(gDB).exec(QStringLiteral("nonsense")); // the server answers nothing more
    long id = 0;
    EXPECT_FALSE(DBTools_V6::getIDByTableName(gDB, kNet, QStringLiteral("Link"), id));
    EXPECT_EQ(failureCount(), 1) << "no other sequence is looked for";
    ASSERT_TRUE(gDB.rollback());
    EXPECT_EQ(draw("Link"), 2);
}

TEST_F(PostgresTest, BackslashesAreNothingSpecialWhateverTheServerIsSetTo) {
    execute(QStringLiteral("alter database %1 set standard_conforming_strings = off").arg(databaseName()));
    reopen();
    const QString name = QStringLiteral("C:\\roads\\");
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, name, {}, {}, {}, {}, false, true));
    const Net *found = DBTools::selectNetIdByName(gDB, name);
    ASSERT_NE(found, nullptr) << qPrintable(DBTools::mlCallDbResult.value(0).error);
    EXPECT_EQ(found->netName(), name);
}

TEST_F(PostgresTest, RemovalLeavesTablesOfOtherWritersAlone) {
    ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true));
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(7).get(), true));
    const char *const kept[] = {"LaneLimitVehicle", "ConnectorLimitVehicle", "LinkLimitVehicle",
                                "LinkFenceMiddle", "Passenger"};
    for (const char *table : kept) {
        const bool isPassenger = qstrcmp(table, "Passenger") == 0;
        execute(QStringLiteral("insert into %1 values(1, 7, 1%2)")
                    .arg(QLatin1String(table), QLatin1String(isPassenger ? ", 0" : "")));
    }
    EXPECT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(count(QStringLiteral("Link")) + count(QStringLiteral("VehicleType")), 0);
    for (const char *table : kept)
        EXPECT_EQ(count(QLatin1String(table)), 1) << table;
}

} // namespace
