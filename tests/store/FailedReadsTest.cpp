#include "model/Net.h"
#include "model/NetContents.h"
#include "model/SignalGroup.h"
#include "tests/support/Builders.h"
#include "tests/support/OldStores.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/StatementList.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/StoreText.h"

#include <QSqlQuery>

#include <set>
#include <sqlite3.h>

// A read that fails is no answer: every operation says so, writes nothing on the strength of it, and leaves a
// transaction of the caller's as it is.

namespace {

using Call = std::function<void(bool)>;

/// Tries every operation before it is carried out; the trial must leave nothing behind.
class Trials : public StatementList {
public:
    using Trial = std::function<void(const QString &operation, const Call &call)>;
    explicit Trials(Trial trial) : mTrial(std::move(trial)) {}

    void add(const QString &operation, const std::function<void()> &call) override {
        mTrial(operation, [&call](bool) { call(); });
        call();
    }
    void addWrite(const QString &operation, const Call &call) override {
        mTrial(operation, call);
        call(true);
    }

    /// Every operation of the family, with the transaction that the caller opens around @p body.
    static void insideTransaction(const std::function<void()> &body) {
        ASSERT_TRUE(gDB.transaction());
        body();
        ASSERT_TRUE(gDB.rollback());
    }

private:
    Trial mTrial;
};

QString recordedTexts() {
    QStringList texts;
    for (const CallDbResult &failure : DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult)
        texts.append(failure.sql + QStringLiteral(": ") + failure.error);
    return texts.join(QLatin1Char('\n'));
}

/// What the engine asks leave for: reading tables, and questions for columns.
class Reads {
public:
    Reads() { sqlite3_set_authorizer(engineOf(gDB), onRead, this); }
    explicit Reads(std::string denied) : Reads() { mDenied = std::move(denied); }
    ~Reads() { sqlite3_set_authorizer(engineOf(gDB), nullptr, nullptr); }
    Reads(const Reads &) = delete;
    Reads &operator=(const Reads &) = delete;

    const std::set<std::string> &tables() const { return mTables; }

private:
    static int onRead(void *self, int action, const char *name, const char *, const char *, const char *) {
        auto *reads = static_cast<Reads *>(self);
        if ((action != SQLITE_READ && action != SQLITE_PRAGMA) || !name)
            return SQLITE_OK;
        const std::string table = action == SQLITE_PRAGMA ? "a pragma" : name;
        reads->mTables.insert(table);
        return table == reads->mDenied ? SQLITE_DENY : SQLITE_OK;
    }

    std::string mDenied;
    std::set<std::string> mTables;
};

class FailedReadsTest : public StoreKindFixture {
protected:
    void onEveryOperation(const Trials::Trial &trial) {
        const QList<StatementFamily> families = StatementFamily::all();
        for (const StatementFamily &family : families) {
            tryAll(family.dbTools, trial);
            // Operations with a namesake in DBTools share its body; on a server, where databases take their
            // time, that is all of them.
            if (hasSeveralNets() && !isPostgres())
                tryAll(family.dbToolsV6, [&trial](const QString &operation, const Call &call) {
                    if (operation.startsWith(QLatin1String("DBTools_V6::")))
                        trial(operation, call);
                });
        }
    }
    virtual void tryAll(StatementFamily::Recorder recorder, const Trials::Trial &trial) {
        openNewStore();
        Trials trials(trial);
        recorder(trials);
    }
};

class FailedReadsFileTest : public FailedReadsTest {};

TEST_P(FailedReadsFileTest, NothingOfAnOperationRunsOnceTheFileCouldNotBeRead) {
    onEveryOperation([](const QString &operation, const Call &call) {
        clearFailures();
        OtherProcess other(OtherProcess::Holds::File);
        other.letGoAtTheFirstWait();
        const StatementTrace trace(gDB);
        call(true);
        QStringList executed = trace.statements();
        for (const char *frame : {"BEGIN", "COMMIT", "ROLLBACK"})
            executed.removeAll(QLatin1String(frame));
        EXPECT_LE(executed.size(), 1) << qPrintable(operation + executed.join(QLatin1Char('\n')));
        EXPECT_EQ(failureCount(), other.waits()) << qPrintable(operation + recordedTexts());
        EXPECT_TRUE(sqlite3_get_autocommit(engineOf(gDB))) << qPrintable(operation);
    });
}

TEST_P(FailedReadsFileTest, AnOwnTransactionEndsAtTheFirstStatementThatAnotherProcessKeepsFromWriting) {
    onEveryOperation([](const QString &operation, const Call &call) {
        clearFailures();
        const OtherProcess other(OtherProcess::Holds::Pen);
        call(true);
        EXPECT_LE(other.waits(), 1) << qPrintable(operation + recordedTexts());
        EXPECT_LE(recordedTexts().count(QStringLiteral("locked")), 1)
            << qPrintable(operation + recordedTexts());
        EXPECT_GE(failureCount(), other.waits()) << qPrintable(operation);
        EXPECT_TRUE(sqlite3_get_autocommit(engineOf(gDB))) << qPrintable(operation);
    });
}

TEST_P(FailedReadsFileTest, WhatCannotBeReadIsRecorded) {
    onEveryOperation([](const QString &operation, const Call &call) {
        // Only the last statement of a group has a say in a removal.
        if (operation == QLatin1String("removeNetData"))
            return;
        std::set<std::string> tables;
        Trials::insideTransaction([&] {
            const Reads reads;
            call(false);
            tables = reads.tables();
        });
        for (const std::string &table : tables) {
            clearFailures();
            DBTools::mhId.clear(); // what is reserved needs no reading
            Trials::insideTransaction([&] {
                const Reads reads(table);
                call(false);
            });
            EXPECT_GT(failureCount(), 0) << qPrintable(operation) << " without " << table;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Stores, FailedReadsFileTest, testing::ValuesIn(kFileKinds), storeKindName);

/// On PostgreSQL, where a statement that fails ends the transaction around it.
class FailedReadsServerTest : public FailedReadsTest {
protected:
    void tryAll(StatementFamily::Recorder recorder, const Trials::Trial &trial) override {
        openNewStore();
        letReferencesDangle();
        execute(QStringLiteral("create temp table own(id int)"));
        Trials trials(trial);
        recorder(trials);
    }

    /// Carries out @p call in a transaction with a row of the caller's, after @p fault; the row must stay.
    static void tryWith(const QString &fault, const QString &operation, const Call &call) {
        clearFailures();
        Trials::insideTransaction([&] {
            QSqlQuery own(gDB);
            ASSERT_TRUE(own.exec(QStringLiteral("insert into pg_temp.own values(7)")));
            ASSERT_TRUE(own.exec(fault)) << qPrintable(fault);
            call(false);
            EXPECT_TRUE(own.exec(QStringLiteral("select id from pg_temp.own")) && own.next())
                << qPrintable(operation + QStringLiteral(" after ") + fault);
        });
    }
    /// The tables, or the sequences, that @p call needs.
    static QStringList needsOf(const Call &call, QChar kind) {
        QStringList needs;
        Trials::insideTransaction([&] {
            call(false);
            QSqlQuery locks(gDB);
            ASSERT_TRUE(locks.exec(
                QStringLiteral(
                    "select distinct relname from pg_locks join pg_class on pg_class.oid = relation "
                    "where pid = pg_backend_pid() and relnamespace = 'public'::regnamespace and "
                    "relkind = '%1'")
                    .arg(kind)));
            while (locks.next())
                needs.append(locks.value(0).toString());
        });
        return needs;
    }
    /// A role without rights, one that may only ask for the version, one that may only read; each table and
    /// each sequence missing, and all of them.
    static QStringList faultsOf(const Call &call) {
        QStringList faults = {QStringLiteral("set local search_path = pg_temp")};
        const QStringList tables = needsOf(call, QLatin1Char('r'));
        const QStringList sequences = needsOf(call, QLatin1Char('S'));
        // What goes through all tables treats them alike.
        const int step = 1 + tables.size() / 4;
        for (int i = 0; i < tables.size(); i += step)
            faults.append(QStringLiteral("alter table %1 rename to gone").arg(tables.at(i)));
        for (const QString &sequence : sequences)
            faults.append(QStringLiteral("alter sequence %1 rename to gone").arg(sequence));
        const QString all = (tables + sequences).join(QLatin1String(", "));
        if (all.isEmpty())
            return faults;
        const QString revoke = QStringLiteral("revoke all on %1 from current_user").arg(all);
        const QString grant = QStringLiteral("; grant select on %1 to current_user");
        return faults +
               QStringList{revoke, revoke + grant.arg(QStringLiteral("DbVersion")), revoke + grant.arg(all)};
    }
};

TEST_P(FailedReadsServerTest, ATransactionOfTheCallersSurvivesEveryFailure) {
    int recorded = 0;
    onEveryOperation([&](const QString &operation, const Call &call) {
        for (const QString &fault : faultsOf(call)) {
            tryWith(fault, operation, call);
            recorded += failureCount();
        }
    });
    EXPECT_GT(recorded, 200) << "the faults have to be faults";
}

INSTANTIATE_TEST_SUITE_P(Stores, FailedReadsServerTest, testing::Values(kStoreKinds[2]), storeKindName);

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
