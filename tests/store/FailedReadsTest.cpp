#include "model/NetContents.h"
#include "tests/differential/RandomNet.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/Reads.h"
#include "tests/support/StatementList.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"

#include <QRegularExpression>
#include <QSqlQuery>

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

/// Whole networks, which the golden lists do without.
void saveAndLoad(StatementList &list) {
    differential::NetPlan plan;
    plan.severalNets = DBTools::dbVer() >= 6;
    const long net = plan.severalNets ? 2 : StatementList::kNet;
    const auto contents = differential::RandomNet(plan).make();
    list.addWrite(QStringLiteral("saveNet"), [&](bool flag) { DBTools::saveNet(gDB, net, *contents, flag); });
    NetContents loaded;
    list.add(QStringLiteral("loadNet"), [&] { DBTools::loadNet(gDB, net, loaded); });
    EXPECT_EQ(loaded.links.size(), contents->links.size());
}

QString recordedTexts() {
    QStringList texts;
    for (const CallDbResult &failure : DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult)
        texts.append(failure.sql + QStringLiteral(": ") + failure.error);
    return texts.join(QLatin1Char('\n'));
}

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
        tryAll(saveAndLoad, trial);
    }
    /// The operations that record no failure where @p loss took the connection from them.
    std::string unrecordedAfter(const std::function<void()> &loss) {
        QStringList unrecorded;
        onEveryOperation([&](const QString &operation, const Call &call) {
            clearFailures();
            loss();
            call(true);
            if (failureCount() == 0)
                unrecorded.append(operation);
            gDB.close();
            ASSERT_TRUE(gDB.open());
        });
        return unrecorded.join(QLatin1String(", ")).toStdString();
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

TEST_P(FailedReadsFileTest, AClosedStoreAnswersNothing) {
    EXPECT_EQ(unrecordedAfter([] { gDB.close(); }), "getMaxIdByAllTables, initSequence")
        << "which have nothing to do on files";
}

INSTANTIATE_TEST_SUITE_P(Stores, FailedReadsFileTest, testing::ValuesIn(kFileKinds), storeKindName);

/// On PostgreSQL, where a statement that fails ends the transaction around it.
class FailedReadsServerTest : public FailedReadsTest {
protected:
    void tryAll(StatementFamily::Recorder recorder, const Trials::Trial &trial) override {
        emptyDatabase();
        execute(QStringLiteral("create temp table own(id int)"));
        Trials trials(trial);
        recorder(trials);
    }
    void prepare() override { letReferencesDangle(); }

    /// The database with nothing but its network 1 again: a new one takes its time.
    void emptyDatabase() {
        for (const QString &statement :
             rows(QStringLiteral("select 'delete from ' || tablename from pg_tables where schemaname = "
                                 "'public' and tablename not in ('dbversion', 'net')")))
            execute(statement);
        execute(QStringLiteral("delete from Net where NetId <> 1"));
        reopen();
    }

    /// Carries out @p call in a transaction with a row of the caller's, after @p fault; the transaction must
    /// still be that of the row.
    static void tryWith(const QString &fault, const QString &operation, const Call &call) {
        clearFailures();
        Trials::insideTransaction([&] {
            QSqlQuery own(gDB);
            ASSERT_TRUE(own.exec(QStringLiteral("insert into pg_temp.own values(7)")));
            ASSERT_TRUE(own.exec(fault)) << qPrintable(fault);
            call(false);
            EXPECT_TRUE(own.exec(QStringLiteral("select id from pg_temp.own where xmin::text = "
                                                "txid_current()::text")) &&
                        own.next())
                << qPrintable(operation + QStringLiteral(" after ") + fault);
        });
    }
    /// The tables and the sequences that @p call needs, each led by its kind.
    static QStringList needsOf(const Call &call) {
        QStringList needs;
        Trials::insideTransaction([&] {
            call(false);
            QSqlQuery locks(gDB);
            ASSERT_TRUE(locks.exec(QStringLiteral(
                "select distinct case relkind when 'S' then 'sequence ' else 'table ' end || relname "
                "from pg_locks join pg_class on pg_class.oid = relation where pid = pg_backend_pid() and "
                "relnamespace = 'public'::regnamespace and relkind in ('r', 'S') order by 1")));
            while (locks.next())
                needs.append(locks.value(0).toString());
        });
        return needs;
    }
    /// Nothing that can be found; a table or a sequence that is missing; a role that may only ask for the
    /// version, and one that may only read.
    static QStringList faultsOf(const Call &call) {
        QStringList faults = {QStringLiteral("set local search_path = pg_temp")};
        QStringList needs = needsOf(call);
        // What goes through all of them treats them alike, and takes its time.
        const int step = 1 + needs.size() / 6;
        for (int i = 0; i < needs.size(); i += step)
            faults.append(QStringLiteral("alter %1 rename to gone").arg(needs.at(i)));
        if (needs.isEmpty())
            return faults;
        needs.replaceInStrings(QRegularExpression(QStringLiteral("^\\w+ ")), QString());
        const QString all = needs.join(QLatin1String(", "));
        const QString revoke = QStringLiteral("revoke all on %1 from current_user").arg(all);
        const QString grant = QStringLiteral("; grant select on %1 to current_user");
        return faults + QStringList{revoke + grant.arg(QStringLiteral("DbVersion")), revoke + grant.arg(all)};
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

TEST_P(FailedReadsServerTest, AnOwnTransactionDoesNotEndTheCallers) {
    int refused = 0;
    onEveryOperation([&](const QString &operation, const Call &call) {
        tryWith(QStringLiteral("select 1"), operation, [&call](bool) { call(true); });
        refused += recordedTexts().contains(QStringLiteral("within a transaction")) ? 1 : 0;
    });
    EXPECT_GT(refused, 30);
}

TEST_P(FailedReadsServerTest, InATransactionThatHasFailedNothingIsAnswered) {
    int recorded = 0;
    onEveryOperation([&](const QString &, const Call &call) {
        clearFailures();
        Trials::insideTransaction([&] {
            QSqlQuery(gDB).exec(QStringLiteral("nonsense"));
            call(false);
        });
        recorded += failureCount() > 0 ? 1 : 0;
    });
    EXPECT_GT(recorded, 100);
}

TEST_P(FailedReadsServerTest, WithoutItsServerNothingIsAnswered) {
    EXPECT_EQ(unrecordedAfter([] {
                  QSqlQuery(gDB).exec(QStringLiteral("select pg_terminate_backend(pg_backend_pid())"));
              }),
              "updateDatabase, updateIds")
        << "which have nothing to do on a server";
}

INSTANTIATE_TEST_SUITE_P(Stores, FailedReadsServerTest, testing::Values(kStoreKinds[2]), storeKindName);

} // namespace
