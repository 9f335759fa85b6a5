#include "tests/support/OtherProcess.h"

#include "store/DBTools.h"
#include "tests/support/StatementTrace.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

#include <sqlite3.h>

OtherProcess::OtherProcess(Holds what) : mName(QStringLiteral("other process")) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), mName);
    db.setDatabaseName(gDB.databaseName());
    EXPECT_TRUE(db.open());
    QSqlQuery query(db);
    const bool holds = what == Holds::File  ? query.exec(QStringLiteral("begin exclusive"))
                       : what == Holds::Pen ? query.exec(QStringLiteral("begin immediate"))
                                            : query.exec(QStringLiteral("begin")) &&
                                                  query.exec(QStringLiteral("select * from IDGenerater"));
    EXPECT_TRUE(holds) << qPrintable(query.lastError().text());
    sqlite3_busy_handler(engineOf(gDB), onWait, this);
}

OtherProcess::~OtherProcess() {
    letGo();
    if (gDB.isOpen())
        sqlite3_busy_handler(engineOf(gDB), nullptr, nullptr);
    QSqlDatabase::removeDatabase(mName);
}

void OtherProcess::letGo() {
    if (mHolds)
        QSqlQuery(QSqlDatabase::database(mName)).exec(QStringLiteral("rollback"));
    mHolds = false;
}

int OtherProcess::onWait(void *self, int) {
    auto *other = static_cast<OtherProcess *>(self);
    ++other->mWaits;
    if (!other->mIsPatient)
        other->letGo();
    return 0;
}
