#include "model/Net.h"
#include "model/NetContents.h"
#include "model/SignalGroup.h"
#include "tests/support/Builders.h"
#include "tests/support/Host.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/Reads.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/StoreText.h"

#include <QSqlQuery>

#include <functional>

// A question that could not be asked has no answer: what an operation would have done with one does not
// happen.

namespace {

/// What a version that cannot be read used to do.
class UnreadableVersionTest : public StoreFixture {
protected:
    void fill() {
        ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
        for (const long net : {kNet, 2L}) {
            ASSERT_TRUE(DBTools_V6::insertLink(gDB, net, sampleLink(7 + net).get(), true));
            ASSERT_TRUE(DBTools_V6::initDictionary(gDB, net, true));
        }
        clearFailures();
    }
    static void expectRefused(bool result, const char *operation) {
        EXPECT_FALSE(result) << operation;
        EXPECT_EQ(DBTools::mlCallDbResult.size(), 1) << operation;
        EXPECT_EQ(failureCount(), 1) << operation;
        EXPECT_TRUE(DBTools::mlCallDbResult.value(0).sql.contains(QStringLiteral("DbVersion"))) << operation;
        clearFailures();
    }
};

TEST_F(UnreadableVersionTest, NoOtherNetworkIsTouched) {
    openTemplate("EmptyNet_V6.0.0");
    fill();
    const QStringList before = contentOf(path());
    QList<ChangeLaneModelParam> sets = {ChangeLaneModelParam(1)};
    NetContents contents;
    NetContents another;
    const std::pair<const char *, std::function<bool()>> operations[] = {
        {"removeNetData", [] { return DBTools::removeNetData(gDB, 2, true); }},
        {"saveChangeLaneParam", [&] { return DBTools::saveChangeLaneParam(gDB, 2, sets, true); }},
        {"loadNet", [&] { return DBTools::loadNet(gDB, 2, contents); }},
        {"saveNet", [&] { return DBTools::saveNet(gDB, 3, another, true); }},
        {"updateNet", [] { return DBTools::updateNet(gDB, 2, true); }},
        {"selectLinkByID", [] { return DBTools::selectLinkByID(gDB, 2, 8) != nullptr; }},
    };
    const std::unique_ptr<Link> held(DBTools::selectLinkByID(gDB, kNet, 8));
    for (const auto &[name, operation] : operations) {
        OtherProcess other(OtherProcess::Holds::File);
        other.letGoAtTheFirstWait();
        expectRefused(operation(), name);
    }
    EXPECT_TRUE(contents.links.empty());
    EXPECT_TRUE(contentOf(path()) == before);

    gDB.close();
    EXPECT_FALSE(DBTools::updateNet(gDB, kNet, true));
    EXPECT_EQ(failureCount(), 1);
    EXPECT_FALSE(DBTools::hasTable(gDB, QStringLiteral("Link")));
    EXPECT_FALSE(DBTools::tableHasField(gDB, QStringLiteral("Link"), QStringLiteral("roadid")));
    EXPECT_EQ(DBTools::selectDbVersion(gDB), 0);
    EXPECT_EQ(failureCount(), 4);
}

TEST_F(UnreadableVersionTest, OnAServerALockThatIsNotHadInTimeIsAFailure) {
    openPostgres();
    if (IsSkipped())
        return;
    fill();
    const int links = count(QStringLiteral("Link"));
    execute(QStringLiteral("set lock_timeout = '20ms'"));
    {
        QSqlDatabase other = QSqlDatabase::cloneDatabase(gDB, QStringLiteral("other session"));
        ASSERT_TRUE(other.open());
        ASSERT_TRUE(other.transaction());
        QSqlQuery lock(other);
        ASSERT_TRUE(lock.exec(QStringLiteral("lock table DbVersion in access exclusive mode")));
        expectRefused(DBTools::removeNetData(gDB, 2, true), "removeNetData");
        ASSERT_TRUE(gDB.transaction());
        expectRefused(DBTools::removeNetData(gDB, 2, false), "removeNetData in a transaction");
        EXPECT_TRUE(gDB.commit());
        other.rollback();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other session"));
    EXPECT_EQ(count(QStringLiteral("Link")), links);
    EXPECT_TRUE(DBTools::removeNetData(gDB, 2, true));
    EXPECT_EQ(count(QStringLiteral("Link")), links - 1);
}

/// Answers that operations depend on, on files.
class UnansweredTest : public StoreKindFixture {};

TEST_P(UnansweredTest, NoNetworkIsWrittenTwice) {
    const QString name = gNet.name;
    NetContents contents;
    contents.record.name = QStringLiteral("another");
    {
        const Reads reads("Net");
        EXPECT_FALSE(DBTools::insertNet(gDB, 9, name, {}, {}, {}, QString(), true));
        EXPECT_EQ(failureCount(), 1);
        EXPECT_FALSE(hasSeveralNets() && DBTools_V6::insertNet(gDB, kNet, name, {}, {}, {}, {}, true, true));
        clearFailures();
        EXPECT_FALSE(DBTools::saveNet(gDB, kNet, contents, true));
        EXPECT_EQ(failureCount(), 1);
    }
    EXPECT_EQ(count(QStringLiteral("Net")), 1);
}

TEST_P(UnansweredTest, NoIdentifierIsDrawnWhereTheOnesInUseCannotBeRead) {
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(40).get(), true));
    long id = 7;
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
    EXPECT_EQ(id, 41);
    const QString question = QStringLiteral("select ID from IDGenerater where TableName = 'Link'");
    const QStringList counter = rows(question);
    DBTools::mhId.clear();
    id = 7;
    {
        const Reads reads("Link");
        EXPECT_FALSE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
        EXPECT_EQ(id, hasSeveralNets() ? 0 : 7);
        EXPECT_EQ(failureCount(), 1);
        EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("Link")), 0);
        EXPECT_EQ(failureCount(), 2);
    }
    EXPECT_EQ(rows(question), counter);
    clearFailures();
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("Link; drop table Net")), 0);
    EXPECT_EQ(failureCount(), 0) << "a table without an id column";
    execute(QStringLiteral("drop table GuideArrow"));
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("GuideArrow")), 0);
    EXPECT_EQ(failureCount(), 0) << "a store without the table has none in use";
}

TEST_P(UnansweredTest, WhatCannotBeProbedIsNotTakenForMissing) {
    {
        const Reads reads("a pragma");
        EXPECT_FALSE(DBTools::insertLink(gDB, kNet, sampleLink(40).get(), true)) << "without its geometry";
        EXPECT_EQ(failureCount(), 1);
    }
    clearFailures();
    const QStringList before = contentOf(path());
    {
        const Reads reads("sqlite_master");
        NetContents contents;
        EXPECT_EQ(DBTools::loadNet(gDB, kNet, contents), hasSeveralNets())
            << "a store of one network is asked for each table";
        QList<long> zones;
        EXPECT_EQ(DBTools::selectAccidentZoneIds(gDB, kNet, zones), hasSeveralNets());
        EXPECT_EQ(DBTools::selectRoadWorkZoneIds(gDB, kNet, zones), hasSeveralNets());
        DBTools::updateDatabase(gDB);
        EXPECT_GT(failureCount(), 0);
        EXPECT_TRUE(DBTools::mlCallDbResult.last().sql.startsWith(QStringLiteral("select ")))
            << "no table is made";
    }
    EXPECT_TRUE(contentOf(path()) == before);
}

TEST_P(UnansweredTest, HalfAnObjectIsNone) {
    execute(QStringLiteral("insert into SignalGroup values(%1)")
                .arg(hasSeveralNets() ? QStringLiteral("1, 4, 'g', 60, 0, 60")
                                      : QStringLiteral("4, 'g', 60, 0, 60")));
    addRow(QStringLiteral("SignalPhase"), QStringLiteral("signalPhaseID, signalGroupID, name, serialNumber"),
           QStringLiteral("41, 4, 'p', 1"));
    addRow(QStringLiteral("SignalColor"), QStringLiteral("signalPhaseID, serialNumber, color, timeLength"),
           QStringLiteral("41, 1, 'Red', 60"));
    const auto link = sampleLink(7);
    const auto second = sampleLink(8);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, second.get(), true));
    const auto path = sampleConnector(5, link.get(), second.get());
    ASSERT_TRUE(DBTools::insertConnector(gDB, kNet, path.get(), true));
    clearFailures();
    const auto readsLink = [] { return !!std::unique_ptr<Link>(DBTools::selectLinkByID(gDB, kNet, 7)); };
    const auto readsGroup = [] {
        return !!std::unique_ptr<SignalGroup>(DBTools::selectSignalGroupByID(gDB, kNet, 4));
    };
    const auto readsConnector = [] {
        const std::unique_ptr<Link> from(DBTools::selectLinkByID(gDB, kNet, 7));
        const std::unique_ptr<Link> to(DBTools::selectLinkByID(gDB, kNet, 8));
        return !!std::unique_ptr<Connector>(DBTools::selectConnectorByID(gDB, kNet, 5));
    };
    const std::pair<const char *, std::function<bool()>> parts[] = {
        {"LinkVertex", readsLink},   {"Node", readsLink},         {"Lane", readsLink},
        {"SignalPhase", readsGroup}, {"SignalColor", readsGroup}, {"LaneConnector", readsConnector}};
    for (const auto &[table, isRead] : parts) {
        EXPECT_TRUE(isRead()) << table;
        EXPECT_EQ(failureCount(), 0) << table;
        {
            const Reads reads(table);
            EXPECT_FALSE(isRead()) << table;
        }
        EXPECT_EQ(failureCount(), 1) << table;
        clearFailures();
        EXPECT_EQ(gNet.getLinkById(7), nullptr) << table;
    }
    // A store that lacks the table has none of the parts.
    execute(QStringLiteral("drop table SignalColor"));
    EXPECT_TRUE(readsGroup());
    EXPECT_EQ(failureCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, UnansweredTest, testing::ValuesIn(kFileKinds), storeKindName);

/// A plug-in that is asked for its tables just before the catalogue becomes unreadable.
class LateDenial : public Host {
public:
    QList<QPair<QString, QString>> tables() const override {
        mDenial = std::make_unique<Reads>("sqlite_master");
        return {{QStringLiteral("Kiosk"), QStringLiteral("create table Kiosk(kioskID Bigint)")}};
    }

private:
    mutable std::unique_ptr<Reads> mDenial;
};

TEST_F(UnreadableVersionTest, AnOpeningFailsWhereTheUpgradeGetsNoAnswer) {
    openTemplate("EmptyNet_V3.0.0");
    {
        const LateDenial host;
        EXPECT_FALSE(DBTools::openDatabase(gDB, path(), true));
        EXPECT_EQ(failureCount(), 1);
    }
    EXPECT_FALSE(DBTools::hasTable(gDB, QStringLiteral("Kiosk")));
}

TEST_F(UnreadableVersionTest, AnOpeningThatCannotReadTheStoreFails) {
    openPostgres();
    if (IsSkipped())
        return;
    execute(QStringLiteral("revoke all on LinkType from current_user"));
    EXPECT_FALSE(DBTools::openDatabase(gDB, {}, true));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_TRUE(DBTools::mlCallDbResult.first().sql.contains(QStringLiteral("LinkType")));
    execute(QStringLiteral("drop table LinkType"));
    EXPECT_TRUE(DBTools::openDatabase(gDB, {}, true))
        << "a store without the table has no Chinese link types";
    EXPECT_EQ(failureCount(), 0);
}

} // namespace
