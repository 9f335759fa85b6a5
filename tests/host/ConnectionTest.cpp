#include "store/OpenStore.h"
#include "store/server/ConnectionWords.h"
#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"
#include "tests/support/Proxy.h"
#include "tools/session/StoreSession.h"

#include <QElapsedTimer>

// How connections to a server are asked for, and what becomes of those on which nothing is heard.

namespace {

class Connections : public OnServer {
protected:
    /// What the server answers the library's own connection.
    static QString asked(const QString &address, const QString &sql) {
        const moratools::StoreSession store(address, moratools::Access::Read);
        QSqlQuery query(sql, store.db());
        return query.next() ? query.value(0).toString() : query.lastError().text();
    }
};

} // namespace

TEST_F(Connections, AServerThatAcceptsAndSaysNothingIsGivenUp) {
    const PostgresDatabase store;
    Proxy proxy;
    proxy.beSilent(true);
    const QString address = proxy.connectionString(store.name(), QStringLiteral("connect_timeout=2"));
    QElapsedTimer since;
    since.start();
    expectSentence(run({QStringLiteral("info"), address}), QStringLiteral("no server answers"));
    EXPECT_GT(since.elapsed(), 1500);
    EXPECT_LT(since.restart(), 6000);
    // The library's connection is Qt's.
    StoreSettings settings;
    settings.driver = QStringLiteral("QPSQL");
    settings.host = QStringLiteral("127.0.0.1");
    settings.port = proxy.port();
    settings.name = store.name();
    settings.user = PostgresDatabase::user();
    settings.options = QStringLiteral("connect_timeout=2");
    EXPECT_FALSE(OpenStore(settings, OpenStore::Access::Read).isOpen());
    EXPECT_LT(since.elapsed(), 6000);
}

TEST_F(Connections, EveryWordOfAConnectionStringGetsToTheServer) {
    const PostgresDatabase store;
    const Proxy proxy;
    const auto address = [&](const QString &more) { return proxy.connectionString(store.name(), more); };
    const QString plain = address({});
    EXPECT_EQ(asked(plain, QStringLiteral("show application_name")), QStringLiteral("morastore"));
    EXPECT_EQ(asked(address(QStringLiteral("application_name='my %1 city'")),
                    QStringLiteral("show application_name")),
              QStringLiteral("my %1 city"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("PGAPPNAME"));
    // The library's own part of the options does not take their place.
    const QString options =
        address(QStringLiteral("options='-c work_mem=7MB -c standard_conforming_strings=off'"));
    EXPECT_EQ(asked(options, QStringLiteral("show work_mem")), QStringLiteral("7MB"));
    EXPECT_EQ(asked(options, QStringLiteral("show standard_conforming_strings")), QStringLiteral("on"));
    expectSentence(run({QStringLiteral("info"), address(QStringLiteral("options='-c a.b=1;2'"))}),
                   QStringLiteral("the value of \"options\" has a semicolon"));
}

TEST_F(Connections, LimitsOnSilenceAreSetWhereNobodyElseSetsThem) {
    using namespace connectionwords;
    write(QStringLiteral("services"), "[slow]\nconnect_timeout=77\nkeepalives_idle=78\n");
    qputenv("PGSERVICEFILE", file(QStringLiteral("services")).toUtf8());
    const struct {
        const char *given;
        const char *expected;
    } table[] = {
        {"host=h", "host=h connect_timeout=10 keepalives_idle=15 keepalives_interval=10 keepalives_count=3 "
                   "tcp_user_timeout=45000"},
        {"host=h connect_timeout=3 tcp_user_timeout=0",
         "connect_timeout=3 host=h tcp_user_timeout=0 keepalives_idle=15 keepalives_interval=10 keepalives_count=3"},
        {"service=slow", "service=slow keepalives_interval=10 keepalives_count=3 tcp_user_timeout=45000"},
    };
    for (const auto &entry : table)
        EXPECT_EQ(text(withLimits(parsed(QLatin1String(entry.given)))), QLatin1String(entry.expected));
    qputenv("PGCONNECT_TIMEOUT", "4");
    EXPECT_TRUE(value(withLimits(parsed(QStringLiteral("host=h"))), "connect_timeout").isEmpty());
    qunsetenv("PGCONNECT_TIMEOUT");
    StoreSettings settings;
    settings.driver = QStringLiteral("QPSQL");
    settings.options = QStringLiteral("keepalives_idle=7");
    QSqlDatabase db = QSqlDatabase::addDatabase(settings.driver, QStringLiteral("named"));
    nameStore(db, settings);
    EXPECT_EQ(db.connectOptions(),
              QStringLiteral("keepalives_idle=7 connect_timeout=10 keepalives_interval=10 "
                             "keepalives_count=3 tcp_user_timeout=45000"));
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("named"));
}

TEST_F(Connections, AHostThatIsDeadOrSilentIsPassedOver) {
    const PostgresDatabase store;
    ASSERT_EQ(run({QStringLiteral("import"), store.connectionString(), kExample}).exitCode, 0);
    Proxy silent;
    silent.beSilent(true);
    const Proxy alive;
    const auto address = [&](const QString &more) {
        return QStringLiteral("dbname=%1 host=127.0.0.1,127.0.0.1,127.0.0.1 port=1,%2,%3 user=%4 %5")
            .arg(store.name(), QString::number(silent.port()), QString::number(alive.port()),
                 PostgresDatabase::user(), more);
    };
    const QString writable = address(QStringLiteral("connect_timeout=2 target_session_attrs=read-write"));
    const Outcome outcome = run({QStringLiteral("digest"), writable});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
}
