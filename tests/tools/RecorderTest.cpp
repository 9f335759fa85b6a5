#include "tools/differences/Recorder.h"

#include "model/NetContents.h"
#include "store/StoredNet.h"
#include "store/Transaction.h"
#include "store/opening/RecordRows.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"
#include "tools/differences/PatchApplication.h"
#include "tools/differences/PatchText.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreSession.h"

#include <QSqlQuery>

#include <algorithm>
#include <memory>
#include <string>

using namespace moratools;

namespace {

/// Links 1 and 2, of two lanes each, which are in the store when a recording begins.
class RecorderTest : public StoreKindFixture {
protected:
    void prepare() override {
        for (const long id : {1, 2}) {
            ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(id).get(), true));
            // Its vertices take the heights of its line.
            ASSERT_TRUE(setLimit(id, 60.2));
        }
    }

    static std::string linesOf(const Recording &recording) {
        QByteArray lines;
        for (const RowChange &change : recording.changes)
            lines.append(patchtext::lineOf(change));
        return lines.toStdString();
    }
    static bool setLimit(long link, double limit) {
        StoredNet net(gDB, kNet);
        const auto read = net.read<Link>(link);
        if (!read)
            return false;
        read->limitSpeed = limit;
        return net.update(*read);
    }
    static bool insertArrow(long id, bool ownTransaction = true) {
        GuideArrow arrow;
        arrow.guideArrowID = id;
        arrow.laneID = 11;
        arrow.length = 2.5;
        arrow.distToTerminal = 3;
        arrow.arrowType = 4;
        return DBTools::insertGuideArrow(gDB, kNet, &arrow, ownTransaction);
    }
    static std::string limit(const char *link, const char *before, const char *after) {
        return QStringLiteral(
                   R"({"table":"Link","key":{"linkID":%1},"before":{"limitSpeed":%2},"after":{"limitSpeed":%3}}
)")
            .arg(QLatin1String(link), QLatin1String(before), QLatin1String(after))
            .toStdString();
    }
    static std::string arrow(const char *side, const char *id) {
        return QStringLiteral(
                   R"({"table":"GuideArrow","%1":{"arrowType":4,"distToTerminal":3,"guideArrowId":%2,"laneID":11,"length":2.5}}
)")
            .arg(QLatin1String(side), QLatin1String(id))
            .toStdString();
    }

    const StoreSession mSession = StoreSession::ofProcess(QStringLiteral("store"));
};

TEST_P(RecorderTest, WhatOperationsWriteIsOneChangeARow) {
    ASSERT_TRUE(insertArrow(1));
    Recorder recorder(mSession, kNet);
    ASSERT_TRUE(insertArrow(2)); // before it begins
    recorder.begin();
    EXPECT_TRUE(setLimit(1, 40));
    EXPECT_TRUE(setLimit(2, 30));
    EXPECT_TRUE(insertArrow(3));
    EXPECT_TRUE(insertArrow(4));
    StoredNet net(gDB, kNet);
    EXPECT_TRUE(net.remove<GuideArrow>(QList<long>{1, 4}));
    // Once more, and back again.
    EXPECT_TRUE(setLimit(1, 50.5));
    EXPECT_TRUE(setLimit(2, 60.2));
    EXPECT_EQ(linesOf(recorder.end()),
              limit("1", "60.2", "50.5") + arrow("before", "1") + arrow("after", "3"));
    EXPECT_TRUE(setLimit(1, 20)); // after its end

    recorder.begin();
    EXPECT_TRUE(setLimit(1, 25));
    EXPECT_EQ(linesOf(recorder.end()), limit("1", "20", "25"));
    recorder.begin();
    EXPECT_TRUE(setLimit(2, 25));
    recorder.cancel();
    recorder.begin();
    EXPECT_EQ(linesOf(recorder.end()), "");
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(RecorderTest, WhatIsTakenBackIsNotInIt) {
    Recorder recorder(mSession, kNet);
    recorder.begin();
    EXPECT_TRUE(setLimit(1, 40));
    {
        Transaction whole(gDB);
        EXPECT_TRUE(setLimit(1, 41));
        {
            const Transaction dropped(gDB);
            EXPECT_TRUE(insertArrow(1, false));
            EXPECT_TRUE(setLimit(1, 42));
        }
        EXPECT_TRUE(insertArrow(2, false));
        EXPECT_TRUE(whole.commit());
    }
    {
        const Transaction dropped(gDB);
        EXPECT_TRUE(setLimit(2, 43));
    }
    // The host's own, and what an operation takes back after a row that is refused.
    execute(QStringLiteral("begin"));
    EXPECT_TRUE(setLimit(2, 44));
    execute(QStringLiteral("rollback"));
    clearFailures();
    refuse(QStringLiteral("insert"), QStringLiteral("Lane"));
    StoredNet net(gDB, kNet);
    EXPECT_FALSE(net.insert(*sampleLink(3)));
    letPass(QStringLiteral("Lane"));
    EXPECT_EQ(linesOf(recorder.end()), limit("1", "60.2", "41") + arrow("after", "2"));
}

TEST_P(RecorderTest, TransactionsGoNotAcrossItsEnds) {
    Recorder recorder(mSession, kNet);
    {
        const Transaction open(gDB);
        EXPECT_THROW(recorder.begin(), Failure);
        EXPECT_FALSE(recorder.isRecording());
        EXPECT_THROW(Recorder(mSession, kNet), Failure);
        // Which on a server takes no further statement.
        EXPECT_FALSE(QSqlQuery(QStringLiteral("select nonsense"), gDB).isActive());
        EXPECT_THROW(recorder.begin(), Failure);
    }
    recorder.begin();
    EXPECT_THROW(recorder.begin(), Failure);
    EXPECT_THROW(Recorder(mSession, kNet), Failure);
    Transaction open(gDB);
    EXPECT_TRUE(setLimit(1, 40));
    EXPECT_THROW(recorder.end(), Failure);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_TRUE(open.commit());
    EXPECT_EQ(linesOf(recorder.end()), limit("1", "60.2", "40"));
    EXPECT_THROW(recorder.end(), Failure);
}

TEST_P(RecorderTest, AHostsOwnStatementsCountInAFile) {
    Recorder recorder(mSession, kNet);
    recorder.begin();
    execute(QStringLiteral("update Link set limitSpeed = 40 where linkID = 1"));
    EXPECT_EQ(linesOf(recorder.end()), isPostgres() ? "" : limit("1", "60.2", "40"));
    recorder.begin();
    const char *const statements[] = {
        "UPDATE Link SET limitSpeed = (select 40 + 5 where 'where' <> ')') WHERE linkID in (1, 2)",
        "update Net set name = 'a where b' "};
    for (const char *statement : statements)
        execute(asRecorded(gDB, QLatin1String(statement)));
    EXPECT_EQ(linesOf(recorder.end()),
              R"({"table":"Net","key":{},"before":{"name":"测试"},"after":{"name":"a where b"}})"
              "\n" +
                  limit("1", "40", "45") + limit("2", "60.2", "45"));
}

TEST_P(RecorderTest, ChangesThatAreAppliedAreRecordedAsWell) {
    ASSERT_TRUE(insertArrow(1));
    Recorder recorder(mSession, kNet);
    recorder.begin();
    EXPECT_TRUE(setLimit(1, 40));
    EXPECT_TRUE(insertArrow(2));
    StoredNet net(gDB, kNet);
    EXPECT_TRUE(net.remove<GuideArrow>(1));
    std::vector<RowChange> back = recorder.end().changes;
    std::transform(back.begin(), back.end(), back.begin(), inverted);
    recorder.begin();
    applyChanges(mSession, kNet, back);
    EXPECT_EQ(linesOf(recorder.end()), limit("1", "40", "60.2") + arrow("after", "1") + arrow("before", "2"));
}

TEST_P(RecorderTest, OtherNetworksAreNotInIt) {
    if (!hasSeveralNets())
        GTEST_SKIP();
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("other"), {}, {}, {}, {}, false, true));
    Recorder recorder(mSession, 2);
    recorder.begin();
    EXPECT_TRUE(setLimit(1, 40));
    EXPECT_TRUE(DBTools::insertLink(gDB, 2, sampleLink(7).get(), true));
    int links = 0;
    for (const RowChange &change : recorder.end().changes) {
        EXPECT_EQ(change.kind, RowChange::Kind::Added);
        links += change.table == catalogue::find(QStringLiteral("Link")) ? 1 : 0;
    }
    EXPECT_EQ(links, 1);
}

TEST_P(RecorderTest, NothingIsLeftOfIt) {
    const QString tables =
        isPostgres() ? QStringLiteral("select count(*) from pg_class where relname like 'morastore%'")
                     : QStringLiteral("select (select count(*) from sqlite_temp_master) + "
                                      "(select count(*) from sqlite_master where name like 'morastore%')");
    {
        Recorder recorder(mSession, kNet);
        recorder.begin();
        EXPECT_TRUE(setLimit(1, 40));
        EXPECT_GT(rows(tables).value(0).toInt(), 0);
    }
    EXPECT_EQ(rows(tables), QStringList{QStringLiteral("0")});
    EXPECT_TRUE(setLimit(1, 45));
    auto recorder = std::make_unique<Recorder>(mSession, kNet);
    recorder->begin();
    EXPECT_TRUE(setLimit(1, 50));
    // A connection that is gone has taken everything along.
    reopen();
    EXPECT_EQ(rows(tables), QStringList{QStringLiteral("0")});
    EXPECT_THROW(recorder->end(), Failure);
    recorder.reset();
    EXPECT_TRUE(setLimit(1, 55));
    Recorder anew(mSession, kNet);
    anew.begin();
    EXPECT_TRUE(setLimit(1, 60));
    EXPECT_EQ(linesOf(anew.end()), limit("1", "55", "60"));
}

TEST_P(RecorderTest, WholeNetworksAreRecordedAsWell) {
    // By kind and table, how many rows.
    const auto countsOf = [](const std::vector<RowChange> &changes) {
        QMap<QString, int> counts;
        for (const RowChange &change : changes)
            ++counts[(change.kind == RowChange::Kind::Added ? QLatin1String("+") : QLatin1String("-")) +
                     QLatin1String(change.table->name)];
        QStringList texts;
        for (auto count = counts.cbegin(); count != counts.cend(); ++count)
            texts.append(count.key() + QString::number(count.value()));
        return texts.join(QLatin1Char(' ')).toStdString();
    };
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    Recorder recorder(mSession, kNet);
    recorder.begin();
    ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    const std::string removed = countsOf(recorder.end().changes);
    EXPECT_NE(removed.find("-Lane4 -Link2 -LinkVertex6"), std::string::npos) << removed;
    EXPECT_NE(removed.find("-Node4"), std::string::npos) << removed;
    EXPECT_EQ(removed.find('+'), std::string::npos) << removed;

    recorder.begin();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, net, true));
    const std::string saved = countsOf(recorder.end().changes);
    EXPECT_NE(saved.find("+Lane4 +Link2 +LinkVertex6"), std::string::npos) << saved;
    EXPECT_NE(saved.find("+Node4"), std::string::npos) << saved;
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(RecorderTest, SessionsRecordWhatTheyDoThemselves) {
    const StoreAddress address(
        isPostgres() ? QStringLiteral("host='%1' port=%2 user=%3 password='%4' dbname=%5")
                           .arg(PostgresDatabase::host(), QString::number(PostgresDatabase::port()),
                                PostgresDatabase::user(), PostgresDatabase::password(), gDB.databaseName())
                     : path());
    const StoreSession other(address, Access::Write);
    Recorder mine(mSession, kNet);
    Recorder theirs(other, kNet);
    mine.begin();
    EXPECT_TRUE(setLimit(1, 40));
    theirs.begin();
    StoredNet net(other.db(), kNet);
    const auto link = net.read<Link>(2);
    ASSERT_TRUE(link);
    link->limitSpeed = 30;
    EXPECT_TRUE(net.update(*link));
    EXPECT_TRUE(net.read<Link>(1)->limitSpeed == 40);
    EXPECT_TRUE(setLimit(1, 45));
    EXPECT_EQ(linesOf(mine.end()), limit("1", "60.2", "45"));
    EXPECT_EQ(linesOf(theirs.end()), limit("2", "60.2", "30"));
    EXPECT_EQ(other.unexpectedFailures(), 0);
}

TEST_P(RecorderTest, AFailureNamesTheStatementAsItIsWithoutARecorder) {
    const auto failing = [this] {
        clearFailures();
        EXPECT_FALSE(DBTools::insertLink(gDB, kNet, sampleLink(1).get(), true));
        QStringList statements;
        for (const CallDbResult &failure : qAsConst(failures()))
            statements.append(failure.sql);
        return statements.join(QLatin1Char('\n')).toStdString();
    };
    const std::string expected = failing();
    ASSERT_FALSE(expected.empty());
    Recorder recorder(mSession, kNet);
    recorder.begin();
    EXPECT_EQ(failing(), expected);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecorderTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
