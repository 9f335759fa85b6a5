#include "tools/session/GuardedTransaction.h"

#include "store/core/ConnectionName.h"
#include "store/core/Engine.h"
#include "store/guard/ConnectionGuard.h"
#include "tools/reports/Failure.h"
#include "tools/session/Patience.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

namespace {

constexpr char kIsWriting[] = "another program is writing to the store; try again when it has finished";

/// How long, in milliseconds, is waited for others at least: for one that writes, for one that reads.
constexpr int kQuick = 500;
constexpr int kWhileReading = 2000;

/// Whether another session has the lock on a server.
bool isTaken(const QSqlError &error) {
    return error.nativeErrorCode() == QLatin1String("55P03");
}

} // namespace

GuardedTransaction::Reader::Reader(const QString &path) : mName(newConnectionName("reader")) {
    QSqlDatabase reader = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mName);
    reader.setDatabaseName(path);
    reader.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    connectionguard::open(reader);
    for (const char *sql : {"begin", "select count(*) from IDGenerater"}) {
        QSqlQuery query(reader);
        if (!query.exec(QLatin1String(sql)))
            throw Failure(QStringLiteral("the store cannot be read a second time (%1); nothing was changed")
                              .arg(query.lastError().databaseText()));
    }
}

void GuardedTransaction::Reader::close() {
    if (!QSqlDatabase::contains(mName))
        return;
    QSqlDatabase::database(mName, false).close();
    QSqlDatabase::removeDatabase(mName);
}

GuardedTransaction::GuardedTransaction(const StoreSession &store)
    : mStore(store), mDb(store.db()), mFailuresBefore(store.unexpectedFailures()) {
    if (engine::isSqlite(mDb))
        beginSqlite();
    else
        beginServer();
}

void GuardedTransaction::beginSqlite() {
    runPatiently("begin immediate", kQuick);
    mOpen = true;
    // Changed pages that the cache has no room for are written early where nobody reads the store, and wait
    // in memory where somebody does: neither waits for the reader.
    run("pragma busy_timeout = 0");
    mGuard = std::make_unique<CommitGuard>(mDb);
    if (mGuard->isActive()) {
        run("pragma cache_size = -65536");
        return;
    }
    mReader = std::make_unique<Reader>(mDb.databaseName());
}

void GuardedTransaction::beginServer() {
    run("begin");
    mOpen = true;
    // Writers go one at a time, as they do in a file: they take the numbers of new networks from what is
    // there.
    const QString lock = QStringLiteral("lock table Net in share row exclusive mode");
    QSqlError error = tryOnServer({lock + QStringLiteral(" nowait")});
    if (isTaken(error) && patience::most() > 0) {
        patience::tellWaiting();
        run("begin");
        mOpen = true;
        error = tryOnServer({QStringLiteral("set local lock_timeout = %1").arg(patience::most()), lock,
                             QStringLiteral("set local lock_timeout to default")});
    }
    if (isTaken(error))
        throw Failure(QLatin1String(kIsWriting));
    if (error.isValid())
        refuse(error);
    mWithoutSavepoints.emplace(mDb);
}

QSqlError GuardedTransaction::tryOnServer(const QStringList &statements) {
    QSqlQuery query(mDb);
    for (const QString &sql : statements) {
        if (query.exec(sql))
            continue;
        QSqlError error = query.lastError();
        const QSqlQuery rollback(QStringLiteral("rollback"), mDb);
        mOpen = false;
        return error;
    }
    return {};
}

GuardedTransaction::~GuardedTransaction() {
    mWithoutSavepoints.reset();
    if (mOpen)
        const QSqlQuery rollback(QStringLiteral("rollback"), mDb);
}

void GuardedTransaction::commit() {
    if (mGuard)
        commitFile();
    else
        commitOnServer();
    mOpen = false;
}

void GuardedTransaction::commitFile() {
    if (mGuard->isRolledBack())
        throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                          .arg(mStore.unexpectedFailures() > mFailuresBefore
                                   ? mStore.firstFailureText().simplified()
                                   : QStringLiteral("the engine took the changes back")));
    mGuard->allow();
    if (mReader)
        mReader->close();
    // Another program may be reading for a moment.
    runPatiently("commit", kWhileReading);
}

void GuardedTransaction::commitOnServer() {
    // What failed first has ended the transaction, and says why.
    if (mStore.unexpectedFailures() > mFailuresBefore) {
        mStore.requireServerAlive();
        throw Failure(QStringLiteral("the store refused a statement (%1); nothing was changed")
                          .arg(mStore.firstFailureText().simplified()));
    }
    run("select 1");
    QSqlQuery end(mDb);
    if (!end.exec(QStringLiteral("commit"))) {
        // The answer is lost, not necessarily what it is about. Class 08 is the loss of another server that holds
        // a part of the store.
        const QString code = end.lastError().nativeErrorCode();
        if (code.isEmpty() || code.startsWith(QLatin1String("08")))
            throw Failure(QStringLiteral("the connection to the server was lost at the very end; see with "
                                         "\"morastore info\" whether the changes are there"));
        refuse(end.lastError());
    }
    mWithoutSavepoints.reset();
}

void GuardedTransaction::run(const char *sql) {
    QSqlQuery query(mDb);
    if (!query.exec(QLatin1String(sql)))
        refuse(query.lastError());
}

void GuardedTransaction::runPatiently(const char *sql, int quick) {
    const QSqlQuery query = patience::exec(mDb, QLatin1String(sql), quick);
    if (query.lastError().isValid())
        refuse(query.lastError());
}

void GuardedTransaction::refuse(const QSqlError &error) {
    mStore.requireServerAlive();
    if (!engine::isSqlite(mDb))
        requireServer(error.nativeErrorCode(), error.databaseText());
    else if (patience::isHeld(error))
        throw Failure(mOpen
                          ? QStringLiteral("another program is reading the store and does not let go of it; "
                                           "nothing was changed, close it there and try again")
                          : QLatin1String(kIsWriting));
    throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                      .arg(error.databaseText().simplified()));
}

} // namespace moratools
