#include "host/store/GuardedTransaction.h"

#include "host/Failure.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

GuardedTransaction::GuardedTransaction(QSqlDatabase &db) : mDb(db) {
    raiseGuard();
    run(QStringLiteral("begin immediate"));
    mOpen = true;
    // Part of the transaction: when the engine ends it, the row is gone and the triggers refuse to write.
    run(QStringLiteral("insert into temp.OpenImport values(1)"));
}

GuardedTransaction::~GuardedTransaction() {
    if (mOpen)
        QSqlQuery(QStringLiteral("rollback"), mDb);
    dropGuard();
}

void GuardedTransaction::commit() {
    run(QStringLiteral("delete from temp.OpenImport"));
    run(QStringLiteral("commit"));
    mOpen = false;
}

void GuardedTransaction::run(const QString &sql) {
    QSqlQuery query(mDb);
    if (!query.exec(sql))
        throw Failure(QStringLiteral("the store cannot be written (%1); nothing was changed")
                          .arg(query.lastError().databaseText()));
}

void GuardedTransaction::raiseGuard() {
    run(QStringLiteral("create temp table OpenImport(number integer)"));
    QStringList tables;
    QSqlQuery names(
        QStringLiteral("select name from main.sqlite_master where type = 'table' and name not like "
                       "'sqlite~_%' escape '~'"),
        mDb);
    while (names.next())
        tables.append(names.value(0).toString());
    names.finish();
    for (const QString &table : qAsConst(tables)) {
        for (const char *event : {"insert", "update", "delete"}) {
            const QString trigger = QStringLiteral("\"guard %1 %2\"").arg(QLatin1String(event), table);
            run(QStringLiteral(
                    "create temp trigger %1 before %2 on main.\"%3\" when not exists(select 1 from "
                    "temp.OpenImport) begin select raise(abort, 'the transaction has ended'); end")
                    .arg(trigger, QLatin1String(event), table));
            mTriggers.append(trigger);
        }
    }
}

void GuardedTransaction::dropGuard() {
    for (const QString &trigger : qAsConst(mTriggers))
        QSqlQuery(QStringLiteral("drop trigger temp.%1").arg(trigger), mDb);
    QSqlQuery(QStringLiteral("drop table temp.OpenImport"), mDb);
}
