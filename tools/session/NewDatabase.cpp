#include "tools/session/NewDatabase.h"

#include "tools/reports/Failure.h"
#include "tools/session/Partitions.h"
#include "tools/session/Server.h"
#include "tools/session/StoreSession.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <functional>
#include <memory>

namespace moratools {

namespace {

/// A database that is dropped again unless it is kept.
class NewDatabase {
public:
    explicit NewDatabase(const StoreAddress &address) : mAddress(address), mName(address.value("dbname")) {}
    ~NewDatabase() {
        if (!mIsMade)
            return;
        try {
            mServer->run(QStringLiteral("drop database if exists %1").arg(mServer->identifier(mName)));
        } catch (const Failure &) {
            // The server is gone, and the reason has been told.
        }
    }

    /// Makes it from a database that every server has.
    void make() {
        if (mName.isEmpty())
            throw Failure(QStringLiteral("%1: name the database with dbname=...").arg(mAddress.name()));
        mServer = Server::open(mAddress.withDatabase(QStringLiteral("postgres")));
        if (!mServer)
            mServer = std::make_unique<Server>(mAddress.withDatabase(QStringLiteral("template1")));
        if (mServer->value(QStringLiteral("select rolcreatedb or rolsuper from pg_roles where rolname = "
                                          "current_user")) != QLatin1String("t")) {
            const QString sql =
                QStringLiteral("create database %1 owner %2 encoding 'UTF8' template template0")
                    .arg(mServer->identifier(mName),
                         mServer->identifier(mServer->value(QStringLiteral("select current_user"))));
            throw Failure(
                QStringLiteral("%1: there is no such database, and the user may not make it; have an "
                               "administrator run: %2")
                    .arg(mAddress.name(), sql));
        }
        mServer->run(QStringLiteral("create database %1 encoding 'UTF8' template template0")
                         .arg(mServer->identifier(mName)));
        mIsMade = true;
    }
    void keep() { mIsMade = false; }

private:
    Q_DISABLE_COPY(NewDatabase)

    const StoreAddress &mAddress;
    QString mName;
    std::unique_ptr<Server> mServer;
    bool mIsMade = false; ///< and not yet kept
};

void requireEmpty(Server &server, const StoreAddress &address) {
    if (server.value(QStringLiteral("show server_encoding")) != QLatin1String("UTF8"))
        throw Failure(QStringLiteral("%1: the database does not keep its texts in UTF-8; give one that does")
                          .arg(address.name()));
    const QString tables = server.value(
        QStringLiteral("select count(*) from pg_class c join pg_namespace n on n.oid = c.relnamespace where "
                       "c.relkind in ('r', 'p', 'v', 'm', 'f', 'S') and n.nspname not like 'pg\\_%' and "
                       "n.nspname <> 'information_schema'"));
    if (tables != QLatin1String("0"))
        throw Failure(QStringLiteral("%1: the database holds tables already; give the name of an empty or of "
                                     "a new one")
                          .arg(address.name()));
}

/// Where the tables are to go is asked before any is made: a store that statements do not find is none.
void requireSchema(Server &server, const StoreAddress &address, const QString &wanted) {
    const QString found = server.value(
        wanted.isEmpty()
            ? QStringLiteral("select current_schema()")
            : QStringLiteral("select %1 = any(current_schemas(false))").arg(server.literal(wanted)));
    if (!wanted.isEmpty() && found != QLatin1String("t"))
        throw Failure(
            QStringLiteral("%1: the template goes into schema \"%2\", which the search path of this user "
                           "does not have (\"%3\"); give options='-c search_path=%2', or make the store "
                           "with --partitions, which goes into the first schema of the path")
                .arg(address.name(), wanted, server.value(QStringLiteral("show search_path"))));
    if (found.isEmpty())
        throw Failure(QStringLiteral("%1: no schema of the search path exists (\"%2\"); make one, or give "
                                     "options='-c search_path=...'")
                          .arg(address.name(), server.value(QStringLiteral("show search_path"))));
}

/// An environment with the secrets of the connection string: what stands on a command line is everybody's to
/// read.
QProcessEnvironment environmentOf(const StoreAddress &address) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QList<StoreAddress::Option> &options = address.options();
    for (const StoreAddress::Option &option : options) {
        if (option.isSecret && !option.variable.isEmpty())
            environment.insert(QString::fromUtf8(option.variable), QString::fromUtf8(option.value));
    }
    return environment;
}

void restore(const StoreAddress &address, const QString &name) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("pg_restore"));
    if (program.isEmpty())
        throw Failure(QStringLiteral("the program pg_restore is missing; install the client programs of "
                                     "PostgreSQL (Debian: postgresql-client)"));
    QFile dump(QStringLiteral(":/Resources/EmptyNet/%1.backup").arg(name));
    if (!dump.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("the template %1 cannot be read (%2)").arg(name, dump.errorString()));
    QProcess process;
    process.setProcessEnvironment(environmentOf(address));
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, {QStringLiteral("--single-transaction"), QStringLiteral("--exit-on-error"),
                            QStringLiteral("--no-owner"), QStringLiteral("--no-privileges"),
                            QStringLiteral("--no-password"), QStringLiteral("--dbname=") + address.name()});
    process.write(dump.readAll());
    process.closeWriteChannel();
    // It waits for a silent server for ever: while it works the server is asked now and then whether it is there.
    constexpr int patience = 20000;
    try {
        while (process.state() != QProcess::NotRunning && !process.waitForFinished(patience))
            Server(address).run(QStringLiteral("select 1"));
    } catch (const Failure &) {
        process.kill();
        process.waitForFinished();
        throw;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw Failure(QStringLiteral("%1: the store cannot be made (%2); nothing was changed")
                          .arg(address.name(), QString::fromUtf8(process.readAll()).simplified().left(400)));
}

void requireWorking(const StoreAddress &address) {
    const StoreSession store(address, Access::Write);
    if (store.unexpectedFailures() > 0)
        throw Failure(QStringLiteral("%1: the new store does not work (%2)")
                          .arg(address.name(), store.firstFailureText()));
}

/// Has `make` fill an empty database, which is made where there is none.
void fill(const StoreAddress &address, const std::function<void(std::unique_ptr<Server>)> &make) {
    if (!address.isServer())
        throw Failure(QStringLiteral("%1: this is no connection string; give \"dbname=... host=...\"")
                          .arg(address.name()));
    NewDatabase database(address);
    std::unique_ptr<Server> server = Server::open(address);
    if (!server) {
        database.make();
        server = std::make_unique<Server>(address);
    }
    requireEmpty(*server, address);
    make(std::move(server));
    database.keep();
}

/// Makes tables of partitions in one transaction; what fails takes all of them back.
void inPartitions(Server &server, int partitions, const std::function<void()> &make) {
    if (partitions < 1 || partitions > kMostPartitions)
        throw Failure(QStringLiteral("a store has 1 to %1 partitions, not %2")
                          .arg(QString::number(kMostPartitions), QString::number(partitions)));
    server.run(QStringLiteral("begin"));
    make();
    server.run(QStringLiteral("commit"));
}

} // namespace

QStringList databaseTemplateNames() {
    return {QStringLiteral("pgsql_db6_empty"), QStringLiteral("pgsql_db6_init")};
}

void makeDatabaseStore(const StoreAddress &address, const QString &name) {
    if (!databaseTemplateNames().contains(name))
        throw Failure(QStringLiteral("there is no template \"%1\" for servers; the templates are %2")
                          .arg(name, databaseTemplateNames().join(QStringLiteral(", "))));
    fill(address, [&](std::unique_ptr<Server> server) {
        requireSchema(*server, address, QStringLiteral("public"));
        server.reset();
        restore(address, name);
        requireWorking(address);
    });
}

void makePartitionedStore(const StoreAddress &address, int partitions) {
    fill(address, [&](std::unique_ptr<Server> server) {
        requireSchema(*server, address, {});
        inPartitions(*server, partitions, [&] { partitions::makeStore(*server, partitions); });
        requireWorking(address);
    });
}

void makePlaceForPartitions(const StoreAddress &address, int partitions) {
    fill(address, [&](std::unique_ptr<Server> server) {
        inPartitions(*server, partitions, [&] {
            for (int partition = 0; partition < partitions; ++partition)
                partitions::makeLeaves(*server, partitions::schemaOf(partition));
        });
    });
}

} // namespace moratools
