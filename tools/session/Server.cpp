#include "tools/session/Server.h"

#include "store/core/StoreVersion.h"
#include "store/server/Pooler.h"
#include "store/server/ServerWatch.h"
#include "store/server/SilentWait.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"

#include <QRegularExpression>

#include <libpq-fe.h>

namespace moratools {

namespace {

/// Why a server ends a connection before it is one: the SQLSTATE, all of it or its class
/// (https://www.postgresql.org/docs/15/errcodes-appendix.html), and what the user is told.
constexpr struct {
    const char *code;
    const char *sentence;
} kRefusals[] = {
    {"28P01",
     "the server refuses the user or the password; give the password in PGPASSWORD, the password file "
     "or the service file, and check the user"},
    {"28",
     "the server does not let this user in from here in this way (%1); check the user and sslmode, or ask its "
     "administrator for a line in pg_hba.conf"},
    {"3D000", "the server has no such database; make it with \"morastore new --postgres\""},
    {"53", "the server has no connection left; close other programs that use it, or raise max_connections"},
    {"57P03", "the server is starting or stopping; try again in a moment"},
};
constexpr char kNoDatabase[] = "3D000";

/// The last error in what libpq says in its verbose form; the code is empty when no server said anything.
struct Error {
    QString code;
    QString text;

    explicit Error(PGconn *connection) {
        const QString all = QString::fromUtf8(PQerrorMessage(connection));
        static const QRegularExpression reported(
            QStringLiteral(":\\s+((?=[A-Z]*[0-9])[0-9A-Z]{5}): ([^\\n]*)"));
        auto reports = reported.globalMatch(all);
        while (reports.hasNext()) {
            const QRegularExpressionMatch report = reports.next();
            code = report.captured(1);
            text = report.captured(2);
        }
        if (text.isEmpty())
            text = all.simplified();
    }
};

} // namespace

void Server::Close::operator()(pg_conn *connection) const {
    PQfinish(connection);
}

Server::Server(const StoreAddress &address) : Server(address, false) {}

Server::Server(const StoreAddress &address, bool mayLackDatabase) : mName(address.name()) {
    ConnectionWords words{{"fallback_application_name", "morastore"}};
    for (const StoreAddress::Option &option : address.options())
        words.append(ConnectionWord{option.keyword, option.value});
    words.append(ConnectionWord{"client_encoding", "UTF8"});
    const silentwait::Reached reached = connect(connectionwords::withLimits(words));
    if (reached == silentwait::Reached::Connection) {
        serverwatch::watch(mConnection.get());
        return;
    }
    if (mayLackDatabase && Error(mConnection.get()).code == QLatin1String(kNoDatabase))
        mConnection.reset();
    else
        refuse(reached);
}

std::unique_ptr<Server> Server::open(const StoreAddress &address) {
    std::unique_ptr<Server> server(new Server(address, true));
    return server->mConnection ? std::move(server) : nullptr;
}

silentwait::Reached Server::connect(const ConnectionWords &words) {
    const connectionwords::Arrays arrays(words);
    const ConnectionWords all = connectionwords::resolved(words);
    const QByteArray hosts = connectionwords::value(all, "host") + connectionwords::value(all, "hostaddr");
    // Only libpq's own waiting goes on to the next of several hosts when one is silent.
    if (hosts.contains(',')) {
        mConnection.reset(PQconnectdbParams(arrays.keywords.data(), arrays.values.data(), 0));
        if (PQstatus(mConnection.get()) == CONNECTION_OK) {
            PQsetErrorVerbosity(mConnection.get(), PQERRORS_VERBOSE);
            return silentwait::Reached::Connection;
        }
    }
    mConnection.reset(PQconnectStartParams(arrays.keywords.data(), arrays.values.data(), 0));
    if (!mConnection)
        throw std::bad_alloc();
    // Texts are in the server's language; the code, which only this form has, is not.
    PQsetErrorVerbosity(mConnection.get(), PQERRORS_VERBOSE);
    const int seconds = connectionwords::value(all, "connect_timeout").toInt(); // 0: no limit
    return silentwait::connect(mConnection.get(), seconds > 0 ? seconds * 1000 : -1);
}

void Server::refuse(silentwait::Reached reached) {
    const Error error(mConnection.get());
    if (PQconnectionNeedsPassword(mConnection.get()))
        throw Failure(QStringLiteral("%1: the server asks for a password; give it in PGPASSWORD, the "
                                     "password file or the service file")
                          .arg(mName));
    for (const auto &refusal : kRefusals) {
        if (!error.code.isEmpty() && error.code.startsWith(QLatin1String(refusal.code)))
            throw Failure(QStringLiteral("%1: %2").arg(
                mName, QString::fromLatin1(refusal.sentence).replace(QLatin1String("%1"), error.text)));
    }
    throw Failure(
        (reached == silentwait::Reached::Encryption && error.code.isEmpty()
             ? QStringLiteral("%1: no encrypted connection to the server comes about (%2); check sslmode "
                              "and the certificates")
         : error.code.isEmpty()
             ? QStringLiteral("%1: no server answers; check host and port and that it runs (%2)")
             : QStringLiteral("%1: the server refuses the connection (%2); ask its administrator"))
            .arg(mName, error.text));
}

QString Server::value(const QString &sql) {
    const std::unique_ptr<PGresult, decltype(&PQclear)> result(
        PQexec(mConnection.get(), sql.toUtf8().constData()), PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
        const QString code = QString::fromLatin1(PQresultErrorField(result.get(), PG_DIAG_SQLSTATE));
        if (code.isEmpty())
            throw Failure(lostConnection(mName));
        requireServer(code, Error(mConnection.get()).text, mName);
        throw Failure(QStringLiteral("%1: the server refuses a statement (%2)")
                          .arg(mName, Error(mConnection.get()).text));
    }
    return PQntuples(result.get()) > 0 ? QString::fromUtf8(PQgetvalue(result.get(), 0, 0)) : QString();
}

void Server::requireOwnSession() {
    if (const QString objection = pooler::objection(mConnection.get()); !objection.isEmpty())
        throw Failure(QStringLiteral("%1: %2").arg(mName, objection));
}

void Server::run(const QString &sql) {
    value(sql);
}

QString Server::literal(const QString &text) {
    const QByteArray bytes = text.toUtf8();
    const std::unique_ptr<char, decltype(&PQfreemem)> spelled(
        PQescapeLiteral(mConnection.get(), bytes.constData(), std::size_t(bytes.size())), PQfreemem);
    return QString::fromUtf8(spelled.get());
}

QString Server::identifier(const QString &name) {
    const QByteArray bytes = name.toUtf8();
    const std::unique_ptr<char, decltype(&PQfreemem)> spelled(
        PQescapeIdentifier(mConnection.get(), bytes.constData(), std::size_t(bytes.size())), PQfreemem);
    return QString::fromUtf8(spelled.get());
}

void requireServerStore(const StoreAddress &address, Access access) {
    Server server(address);
    server.requireOwnSession();
    const QString tables =
        server.value(QStringLiteral("select count(*) from unnest(array['dbversion', 'net', 'idgenerater']) "
                                    "name where to_regclass(name) is not null"));
    if (tables != QLatin1String("3"))
        throw Failure(QStringLiteral("%1: this database is no store; make one with \"morastore new "
                                     "--postgres\" in an empty database")
                          .arg(address.name()));
    const QString version = server.value(QStringLiteral("select max(versionId) from DbVersion"));
    if (const QString refusal = probes::refusalOfVersion(version.toLongLong()); !refusal.isEmpty())
        throw Failure(QStringLiteral("%1: %2").arg(address.name(), refusal));
    const QString privileges =
        access != Access::Read ? QStringLiteral("select, insert, update, delete") : QStringLiteral("select");
    // A list of privileges asks for any of them, so each is asked for.
    for (const QString &privilege : privileges.split(QLatin1String(", "))) {
        if (server.value(QStringLiteral("select has_table_privilege('net', '%1')").arg(privilege)) !=
            QLatin1String("t"))
            throw Failure(
                QStringLiteral("%1: the user \"%2\" has no right to %3 here; ask the owner of the "
                               "database to grant it")
                    .arg(address.name(), server.value(QStringLiteral("select current_user")), privilege));
    }
    if (access != Access::Read &&
        server.value(QStringLiteral("show transaction_read_only")) == QLatin1String("on"))
        throw Failure(QStringLiteral("%1: the server takes no changes; use the server that it is a copy of")
                          .arg(address.name()));
}

} // namespace moratools
