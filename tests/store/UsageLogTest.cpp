#include "model/AppVersionManager.h"
#include "tests/support/StoreFixture.h"

#include <QDateTime>

namespace {

class UsageLogTest : public StoreKindFixture {
protected:
    QList<Logger> events(int limit = 0) {
        QList<Logger> list;
        EXPECT_TRUE(DBTools::selectLogger(gDB, kNet, list, limit));
        return list;
    }
    QString netColumn() const { return hasSeveralNets() ? QStringLiteral("NetId,") : QString(); }
    QString netValue() const { return hasSeveralNets() ? QStringLiteral("1,") : QString(); }
};

Logger sampleEvent(const QString &operation, const QString &time) {
    Logger event;
    event.appVersionName = QStringLiteral("4.2");
    event.appVersionDate = QStringLiteral("2026-02-03");
    event.operation = operation;
    event.operDate = time;
    event.userName = QStringLiteral("王");
    event.hostName = QStringLiteral("machine");
    event.remark = QStringLiteral("O'Brien");
    return event;
}

QStringList texts(const Logger &event) {
    return {event.appVersionName,  event.appVersionDate, event.operation,  event.operDate,
            event.userName,        event.hostName,       event.pluginName, event.pluginVersion,
            event.pluginOperation, event.remark};
}

TEST_P(UsageLogTest, ReadsBackNewestFirst) {
    const Logger save = sampleEvent(QStringLiteral("save"), QStringLiteral("20260102030405"));
    Logger plugin = sampleEvent(QStringLiteral("export"), QStringLiteral("20260102030406"));
    EXPECT_TRUE(DBTools::logInfoWithPlugin(gDB, kNet, plugin, QStringLiteral("sumo"), QStringLiteral("7.1"),
                                           QStringLiteral("写")));
    EXPECT_TRUE(DBTools::logInfo(gDB, kNet, save));
    EXPECT_TRUE(DBTools::logInfo(gDB, kNet, save));
    EXPECT_EQ(failureCount(), 0);
    reopen();

    plugin.pluginName = QStringLiteral("sumo");
    plugin.pluginVersion = QStringLiteral("7.1");
    plugin.pluginOperation = QStringLiteral("写");
    const QList<Logger> all = events();
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(texts(all[0]), texts(plugin)) << "later, though it was written first";
    EXPECT_EQ(texts(all[1]), texts(save));
    EXPECT_GT(all[1].logID, all[2].logID);
    EXPECT_EQ(events(2).last().logID, all[1].logID);
}

TEST_P(UsageLogTest, FillsInWhatTheCallerLeavesOut) {
    ASSERT_TRUE(DBTools::logInfo(gDB, kNet, Logger()));
    const Logger event = events().value(0);
    const AppVersion &newest = AppVersionManager::ofLibrary().newest();
    EXPECT_EQ(event.appVersionName, newest.number.toString());
    EXPECT_EQ(event.appVersionDate, newest.date.toString(Qt::ISODate));
    const auto time = QDateTime::fromString(event.operDate, QStringLiteral("yyyyMMddhhmmss"));
    EXPECT_LT(qAbs(time.secsTo(QDateTime::currentDateTime())), 60);
    EXPECT_FALSE(event.hostName.isEmpty());
    EXPECT_TRUE(event.remark.contains(gDB.driverName()));
}

TEST_P(UsageLogTest, PassesIdsThatRowsUse) {
    execute(QStringLiteral("insert into Logger(%1logID,appVersionName,appVersionDate,operation,operDate) "
                           "values(%2 1,'1','1','old','20200101000000')")
                .arg(netColumn(), netValue()));
    execute(QStringLiteral("insert into Logger(%1logID,appVersionName,appVersionDate,operation,operDate) "
                           "values(%2 5000,'1','1','old','20200101000000')")
                .arg(netColumn(), netValue()));
    EXPECT_TRUE(DBTools::logInfo(gDB, kNet, Logger()));
    EXPECT_TRUE(DBTools::logInfo(gDB, kNet, Logger()));
    EXPECT_EQ(count(QStringLiteral("Logger")), 4);
    EXPECT_EQ(failureCount(), 0);
    // None follows the largest there can be, also where the id that was drawn has to give way.
    for (const char *id : {"5003", "2147483647"})
        execute(QStringLiteral("insert into Logger(%1logID,appVersionName,appVersionDate,operation,operDate) "
                               "values(%2 %3,'1','1','old','20200101000000')")
                    .arg(netColumn(), netValue(), QLatin1String(id)));
    EXPECT_FALSE(DBTools::logInfo(gDB, kNet, Logger()));
    ASSERT_EQ(failures().size(), 1);
    EXPECT_TRUE(failures().first().error.startsWith(
        QStringLiteral("Table Logger would get the identifier 2147483648")))
        << qPrintable(failures().first().error);
    EXPECT_EQ(count(QStringLiteral("Logger")), 6);
}

TEST_P(UsageLogTest, AFailedAppendLeavesTheCallersTransaction) {
    refuse(QStringLiteral("insert"), QStringLiteral("Logger"));
    ASSERT_TRUE(gDB.transaction());
    execute(QStringLiteral("update Net set name = 'before'"));
    EXPECT_FALSE(DBTools::logInfo(gDB, kNet, Logger()));
    execute(QStringLiteral("update Net set sourceType = 'after'"));
    ASSERT_EQ(failures().size(), 1);
    EXPECT_TRUE(failures().first().error.contains(QLatin1String("refused")));
    EXPECT_TRUE(DBTools::validateDatabase(gDB)) << "the connection stays usable";
    ASSERT_TRUE(gDB.commit());
    EXPECT_EQ(rows(QStringLiteral("select name, sourceType from Net")).value(0),
              QStringLiteral("before|after"));

    execute(QStringLiteral("drop table Logger"));
    QList<Logger> none;
    EXPECT_FALSE(DBTools::logInfo(gDB, kNet, Logger()));
    EXPECT_FALSE(DBTools::selectLogger(gDB, kNet, none, 1));
    EXPECT_EQ(failures().size(), 3);
}

TEST_P(UsageLogTest, OutlivesTheObjectsOfItsNetwork) {
    ASSERT_TRUE(DBTools::logInfo(gDB, kNet, Logger()));
    EXPECT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    EXPECT_EQ(events().size(), 1);
    if (hasSeveralNets()) {
        QList<Logger> ofOther;
        EXPECT_TRUE(DBTools::selectLogger(gDB, 2, ofOther, 0));
        EXPECT_TRUE(ofOther.isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, UsageLogTest, testing::ValuesIn(kStoreKinds), storeKindName);

TEST_F(StoreFixture, UsageLogFitsTheColumnsOfAnOlderStore) {
    openTemplate("EmptyNet_V2.00.00");
    execute(QStringLiteral("drop table Logger"));
    execute(QStringLiteral(
        "create table Logger(logID Bigint not null primary key, appVersionName Varchar(32) not null, "
        "appVersionDate Varchar(32) not null, operation Varchar(1000) not null, "
        "operDate Char(14) not null)"));
    EXPECT_TRUE(
        DBTools::logInfo(gDB, kNet, sampleEvent(QStringLiteral("save"), QStringLiteral("20260102030405"))));
    QList<Logger> events;
    EXPECT_TRUE(DBTools::selectLogger(gDB, kNet, events, 1));
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events.first().operation, QStringLiteral("save"));
    EXPECT_EQ(events.first().remark, QString());
    EXPECT_EQ(failureCount(), 0);
}

} // namespace
