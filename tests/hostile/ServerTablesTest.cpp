#include "store/DBTools.h"
#include "tests/host/OnServer.h"

// Databases whose tables are more than tables.

namespace {

class ServerTables : public OnServer {
protected:
    void TearDown() override {
        gDB.close();
        gDB = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
        QSqlDatabase::removeDatabase(QStringLiteral("owner"));
    }

    void beOwnerOf(const PostgresDatabase &database) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), QStringLiteral("owner"));
        db.setHostName(PostgresDatabase::host());
        db.setPort(PostgresDatabase::port());
        db.setDatabaseName(database.name());
        db.setUserName(PostgresDatabase::user());
        db.setPassword(PostgresDatabase::password());
        ASSERT_TRUE(db.open());
    }
    static QString execute(const QString &sql) {
        QSqlQuery query(QSqlDatabase::database(QStringLiteral("owner")));
        EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << query.lastError().text().toStdString();
        return query.next() ? query.value(0).toString() : QString();
    }
};

TEST_F(ServerTables, AreRefusedByNameBeforeAnythingIsWritten) {
    const PostgresDatabase database;
    beOwnerOf(database);
    execute(
        QStringLiteral("create function f() returns trigger language plpgsql as 'begin return null; end'"));
    const struct {
        const char *make;
        const char *unmake;
        const char *expected;
    } intruders[] = {
        {"create trigger t before insert on Link for each row execute function f()", "drop trigger t on Link",
         "table link has the trigger \"t\""},
        {"create rule r as on insert to Lane do instead nothing", "drop rule r on Lane",
         "table lane has the rule \"r\""},
        {"alter table Vertex add constraint c check (x > 0)", "alter table Vertex drop constraint c",
         "table vertex has the check \"c\""},
        {"alter table Node add g bigint generated always as (NetId + 1) stored", "alter table Node drop g",
         "table node has the generated column \"g\""},
        {"alter table Logger rename to kept; create view Logger as select * from kept",
         "drop view Logger; alter table kept rename to Logger", "logger is a view"},
        {"alter table Logger rename to kept; create materialized view Logger as select * from kept",
         "drop materialized view Logger; alter table kept rename to Logger", "logger is a view"},
    };
    const QString store = database.connectionString();
    const QString sound = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), sound, kExample}).exitCode, 0);
    for (const auto &intruder : intruders) {
        SCOPED_TRACE(intruder.make);
        execute(QLatin1String(intruder.make));
        database.use();
        for (const auto open : {DBTools::openDatabase, DBTools::openDatabaseReadOnly}) {
            EXPECT_FALSE(open(gDB, QString(), true));
            ASSERT_EQ(DBTools::mlCallDbResult.size(), 1);
            EXPECT_TRUE(DBTools::mlCallDbResult.first().error.contains(QLatin1String(intruder.expected)))
                << DBTools::mlCallDbResult.first().error.toStdString();
        }
        for (const QStringList &command :
             {QStringList{QStringLiteral("info"), store}, QStringList{QStringLiteral("digest"), store},
              QStringList{QStringLiteral("import"), store, kExample},
              QStringList{QStringLiteral("remove"), store, QStringLiteral("1"), QStringLiteral("--yes")},
              QStringList{QStringLiteral("copy"), sound, store}})
            expectSentence(run(command), QLatin1String(intruder.expected));
        EXPECT_EQ(execute(QStringLiteral("select count(*) from Link")), QStringLiteral("0"));
        execute(QLatin1String(intruder.unmake));
    }
    // A plug-in's tables are its own affair.
    execute(QStringLiteral("create table Kiosk(NetId bigint check (NetId > 0))"));
    execute(QStringLiteral("create trigger t before insert on Kiosk for each row execute function f()"));
    EXPECT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
}

} // namespace
