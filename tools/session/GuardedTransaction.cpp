#include "tools/session/GuardedTransaction.h"

#include "store/core/ConnectionName.h"
#include "store/core/Engine.h"
#include "store/guard/ConnectionGuard.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

namespace moratools {

namespace {

constexpr char kIsWriting[] = "another program is writing to the store; try again when it has finished";

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
    run("begin immediate");
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
    QSqlQuery lock(mDb);
    if (lock.exec(QStringLiteral("lock table Net in share row exclusive mode nowait"))) {
        mWithoutSavepoints.emplace(mDb);
        return;
    }
    const bool isTaken = lock.lastError().nativeErrorCode() == QLatin1String("55P03");
    const QSqlError error = lock.lastError();
    const QSqlQuery rollback(QStringLiteral("rollback"), mDb);
    mOpen = false;
    if (isTaken)
        throw Failure(QLatin1String(kIsWriting));
    refuse(error);
}

GuardedTransaction::~GuardedTransaction() {
    mWithoutSavepoints.reset();
    if (mOpen)
        const QSqlQuery rollback(QStringLiteral("rollback"), mDb);
}

void GuardedTransaction::commit() {
    if (mGuard) {
        if (mGuard->isRolledBack())
            throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                              .arg(mStore.unexpectedFailures() > mFailuresBefore
                                       ? mStore.firstFailureText().simplified()
                                       : QStringLiteral("the engine took the changes back")));
        mGuard->allow();
        if (mReader)
            mReader->close();
        // Another program may be reading for a moment.
        run("pragma busy_timeout = 2000");
    } else {
        run("select 1");
        if (mStore.unexpectedFailures() > mFailuresBefore)
            mStore.requireServerAlive();
        if (mStore.unexpectedFailures() > mFailuresBefore)
            throw Failure(QStringLiteral("the store refused a statement (%1); nothing was changed")
                              .arg(mStore.firstFailureText().simplified()));
    }
    QSqlQuery end(mDb);
    if (!end.exec(QStringLiteral("commit"))) {
        // The answer is lost, not necessarily what it is about.
        if (!mGuard && end.lastError().nativeErrorCode().isEmpty())
            throw Failure(QStringLiteral("the connection to the server was lost at the very end; see with "
                                         "\"morastore info\" whether the changes are there"));
        refuse(end.lastError());
    }
    mWithoutSavepoints.reset();
    mOpen = false;
}

void GuardedTransaction::run(const char *sql) {
    QSqlQuery query(mDb);
    if (!query.exec(QLatin1String(sql)))
        refuse(query.lastError());
}

void GuardedTransaction::refuse(const QSqlError &error) {
    mStore.requireServerAlive();
    if (!engine::isSqlite(mDb))
        requireServer(error.nativeErrorCode(), error.databaseText());
    // The result code of SQLite for a lock that another connection has, https://www.sqlite.org/rescode.html.
    constexpr int busy = 5;
    const bool isFile = engine::isSqlite(mDb);
    if (isFile && (error.nativeErrorCode().toInt() & 0xff) == busy)
        throw Failure(mOpen
                          ? QStringLiteral("another program is reading the store and does not let go of it; "
                                           "nothing was changed, close it there and try again")
                          : QLatin1String(kIsWriting));
    throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                      .arg(error.databaseText().simplified()));
}

} // namespace moratools
