#include "host/store/GuardedTransaction.h"

#include "host/Failure.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString kReader = QStringLiteral("morastore-reader");

} // namespace

GuardedTransaction::Reader::Reader(const QString &path) {
    QSqlDatabase reader = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kReader);
    reader.setDatabaseName(path);
    reader.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    reader.open();
    for (const char *sql : {"begin", "select count(*) from IDGenerater"}) {
        QSqlQuery query(reader);
        if (!query.exec(QLatin1String(sql)))
            throw Failure(QStringLiteral("the store cannot be read a second time (%1); nothing was changed")
                              .arg(query.lastError().databaseText()));
    }
}

void GuardedTransaction::Reader::close() {
    if (!QSqlDatabase::contains(kReader))
        return;
    QSqlDatabase::database(kReader, false).close();
    QSqlDatabase::removeDatabase(kReader);
}

GuardedTransaction::GuardedTransaction(QSqlDatabase &db) : mDb(db), mReader(db.databaseName()) {
    run("begin immediate");
    mOpen = true;
    // Waiting for our own reader would be in vain, and changed pages stay in memory until the commit: writing
    // them early needs the store for itself, too.
    run("pragma busy_timeout = 0");
    run("pragma cache_spill = off");
}

GuardedTransaction::~GuardedTransaction() {
    if (mOpen)
        QSqlQuery(QStringLiteral("rollback"), mDb);
    QSqlQuery(QStringLiteral("pragma cache_spill = on"), mDb);
}

void GuardedTransaction::commit() {
    mReader.close();
    // Another program may be reading for a moment.
    run("pragma busy_timeout = 2000");
    run("commit");
    mOpen = false;
}

void GuardedTransaction::run(const char *sql) {
    QSqlQuery query(mDb);
    if (!query.exec(QLatin1String(sql)))
        throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                          .arg(query.lastError().databaseText()));
}
