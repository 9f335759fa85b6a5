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
    QSqlQuery begin(db);
    EXPECT_TRUE(begin.exec(what == Holds::File ? QStringLiteral("begin exclusive")
                                               : QStringLiteral("begin immediate")))
        << qPrintable(begin.lastError().text());
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
