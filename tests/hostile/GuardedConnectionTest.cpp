#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/guard/ConnectionGuard.h"
#include "tests/host/Morastore.h"
#include "tests/support/OldStores.h"
#include "tools/session/SqliteConnection.h"

using namespace moratools;

// What a connection to a stranger's store does not do.

namespace {

class GuardedConnection : public Morastore {
protected:
    void TearDown() override {
        gDB.close();
        gDB = QSqlDatabase();
        gDBForBackup = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
        QSqlDatabase::removeDatabase(QStringLiteral("own"));
    }

    /// The value, or the reason why there is none.
    static std::string answer(const QSqlDatabase &db, const QString &sql) {
        QSqlQuery query(db);
        if (!query.exec(sql))
            return query.lastError().databaseText().toStdString();
        return query.next() ? query.value(0).toString().toStdString()
                            : query.lastError().databaseText().toStdString();
    }

    static void expectHard(const QSqlDatabase &db, const char *what) {
        SCOPED_TRACE(what);
        EXPECT_EQ(answer(db, QStringLiteral("pragma trusted_schema")), "0");
        EXPECT_EQ(answer(db, QStringLiteral("pragma cell_size_check")), "1");
        EXPECT_EQ(answer(db, QStringLiteral("select length(zeroblob(268435456))")), "268435456");
        EXPECT_EQ(answer(db, QStringLiteral("select length(zeroblob(268435457))")), "string or blob too big");
        EXPECT_EQ(answer(db, QStringLiteral("select 1") + QStringLiteral(" + 1").repeated(100)),
                  "Expression tree is too large (maximum depth 100)");
        EXPECT_EQ(answer(db, QStringLiteral("select '%1'").arg(QString(1024 * 1024, QLatin1Char('x')))),
                  "string or blob too big");
        answer(db, QStringLiteral("pragma writable_schema = on"));
        EXPECT_EQ(answer(db, QStringLiteral("update sqlite_master set sql = sql")),
                  "table sqlite_master may not be modified");
    }
};

TEST_F(GuardedConnection, IsHardHoweverItIsMade) {
    const QString store = newStore();
    ASSERT_TRUE(DBTools::openDatabase(gDB, store, true));
    expectHard(gDB, "openDatabase");
    ASSERT_TRUE(DBTools::openDatabaseReadOnly(gDB, store, true));
    expectHard(gDB, "openDatabaseReadOnly");
    ASSERT_TRUE(DBTools_V6::openDatabaseForBackup(gDBForBackup, store, true));
    expectHard(gDBForBackup, "openDatabaseForBackup");
    {
        const SqliteConnection host(store);
        expectHard(QSqlDatabase::database(QStringLiteral("host")), "SqliteConnection");
    }
    const QString first = file(QStringLiteral("first.mora"));
    makeFirstGenerationStore(first);
    QSqlDatabase own = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("own"));
    own.setDatabaseName(first);
    ASSERT_TRUE(own.open());
    DBTools::updateDatabase1x(own);
    expectHard(own, "updateDatabase1x");
}

TEST_F(GuardedConnection, EndsQuestionsThatTakeLong) {
    QSqlDatabase own = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("own"));
    own.setDatabaseName(newStore());
    ASSERT_TRUE(connectionguard::open(own));
    const QString numbers = QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n "
                                           "limit %1) select count(*) from n");
    {
        const connectionguard::QuickQuestions quick(own);
        EXPECT_EQ(answer(own, numbers.arg(1000)), "1000");
        EXPECT_EQ(answer(own, numbers.arg(-1)), "interrupted");
    }
    EXPECT_EQ(answer(own, numbers.arg(3000000)), "3000000");
}

} // namespace
