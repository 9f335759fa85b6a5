#include "model/LaneConnector.h"
#include "model/Net.h"
#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QSet>

namespace {

/// Identifiers are not given out twice, whatever becomes of transactions, counters and other networks.
class UniqueIdentifiersTest : public StoreKindFixture {
protected:
    static long draw(const char *table) {
        long id = -1;
        EXPECT_TRUE(DBTools::getIDByTableName(gDB, QLatin1String(table), id)) << table;
        return id;
    }
    /// No identifier comes; the failure names the table, and nothing is written.
    void expectNone(const char *table) {
        clearFailures();
        const QStringList counters = isPostgres() ? QStringList() : counter(table);
        long id = 0;
        EXPECT_FALSE(DBTools::getIDByTableName(gDB, QLatin1String(table), id)) << id;
        EXPECT_EQ(id, 0);
        expectOneFailureWith(QStringLiteral("Table %1 would get the identifier ").arg(QLatin1String(table)));
        if (!isPostgres()) {
            EXPECT_EQ(counter(table), counters);
        }
    }
    void expectOneFailureWith(const QString &text) {
        const QList<CallDbResult> all = DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
        ASSERT_EQ(all.size(), 1);
        EXPECT_TRUE(all.first().error.contains(text)) << qPrintable(all.first().error);
        clearFailures();
    }
    QStringList counter(const char *table) {
        return rows(QStringLiteral("select ID from IDGenerater where TableName = '%1' order by 1")
                        .arg(QLatin1String(table)));
    }
    void setCounter(const char *table, qint64 value) {
        const QString sql = isPostgres()       ? QStringLiteral("select setval('seq_%2_id', %1)")
                            : hasSeveralNets() ? QStringLiteral("insert into IDGenerater values(1, '%2', %1)")
                                               : QStringLiteral("insert into IDGenerater values('%2', %1)");
        if (!isPostgres())
            execute(
                QStringLiteral("delete from IDGenerater where TableName = '%1'").arg(QLatin1String(table)));
        execute(sql.arg(QString::number(value), QLatin1String(table)));
    }
    void addVertex(qint64 id) {
        addRow(QStringLiteral("Vertex"), QStringLiteral("vertexID, x, y, z"),
               QStringLiteral("%1, 0, 0, 0").arg(id));
    }
};

TEST_P(UniqueIdentifiersTest, ARolledBackDrawIsNotRepeated) {
    QSet<long> seen;
    const auto drawMany = [&seen] {
        for (int i = 0; i < 150; ++i) {
            const long id = draw("Link");
            ASSERT_FALSE(seen.contains(id)) << id;
            seen.insert(id);
        }
    };
    if (hasSeveralNets())
        gNet.netId = 2; // a new network: the counter's row goes with the roll back
    for (int round = 0; round < 4; ++round) {
        ASSERT_TRUE(gDB.transaction());
        if (hasSeveralNets()) {
            ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, false));
        }
        drawMany();
        // What a save hands out counts as well.
        NetContents contents;
        contents.links.push_back(sampleLink(7));
        contents.links.front()->linkID = 0;
        ASSERT_TRUE(DBTools::saveNet(gDB, gNet.netId, contents, false));
        ASSERT_FALSE(seen.contains(contents.links.front()->linkID));
        seen.insert(contents.links.front()->linkID);
        ASSERT_TRUE(gDB.rollback());
        drawMany();
    }
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(UniqueIdentifiersTest, RowsAreAskedWhereThereIsNoCounter) {
    addVertex(250);
    if (!isPostgres())
        execute(QStringLiteral("delete from IDGenerater where TableName = 'Vertex'"));
    EXPECT_EQ(draw("Vertex"), 251);
    EXPECT_EQ(draw("Vertex"), 252);
    if (!isPostgres()) {
        EXPECT_EQ(counter("Vertex"), QStringList(hasSeveralNets() ? "350" : "252"));
    }
    // One that is missing because the network brought it along, on a counter that was never used.
    NetContents contents;
    contents.links.push_back(sampleLink(1));
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    EXPECT_EQ(draw("Link"), 2);
}

TEST_P(UniqueIdentifiersTest, WhatASavedNetworkBringsAlongIsNotDrawn) {
    EXPECT_EQ(draw("Link"), 1);
    NetContents contents;
    for (const long id : {2L, 5L})
        contents.links.push_back(sampleLink(id));
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    for (int i = 0; i < 10; ++i) {
        const long id = draw("Link");
        EXPECT_TRUE(id > 1 && id != 2 && id != 5) << id;
    }
}

TEST_P(UniqueIdentifiersTest, WhatASavedNetworkHadIsNotDrawnOnceItIsGone) {
    for (const long brought : {205L, 0L}) {
        NetContents contents;
        contents.links.push_back(sampleLink(brought == 0 ? 7 : brought));
        contents.links.front()->linkID = brought;
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
        const long id = contents.links.front()->linkID;
        ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
        // Another process: all that is known is the counter.
        reopen();
        EXPECT_GT(draw("Link"), id);
    }
}

TEST_P(UniqueIdentifiersTest, TablesThatHostsDoNotListAreAskedToo) {
    letReferencesDangle();
    addRow(QStringLiteral("AccidentZone"),
           QStringLiteral("accidentZoneId, name, location, zoneLength, roadId, roadType"),
           QStringLiteral("70, 'a', 1, 1, 1, 'link'"));
    EXPECT_EQ(draw("AccidentZone"), 71);
    if (!hasSeveralNets())
        return;
    const auto addLaneConnector = [this](int id) {
        addRow(QStringLiteral("LaneConnector"), QStringLiteral("laneConnId, connID, startLaneID, endLaneID"),
               QStringLiteral("%1, 1, 1, 1").arg(id));
    };
    for (int i = 1; i <= 3; ++i)
        addLaneConnector(int(draw("LaneConnector")));
    addLaneConnector(500);
    // Another network gives its identifiers back, which sets the counters of all.
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
    gNet.netId = 2;
    draw("LaneConnector");
    ASSERT_TRUE(DBTools::updateIds(gDB, true));

    // Another process: nothing is reserved, and lane connectors number themselves from the start.
    LaneConnector::generId = 0;
    reopen();
    EXPECT_EQ(LaneConnector(nullptr, nullptr, nullptr).laneConnId, 501);
    EXPECT_GT(draw("LaneConnector"), 500);
    EXPECT_EQ(DBTools::getIDName(QStringLiteral("LaneConnector")), QString())
        << "the list of hosts stays what it is";
}

TEST_P(UniqueIdentifiersTest, ALaneConnectorThatNumbersItselfPassesThoseThatWereDrawn) {
    if (!hasSeveralNets())
        GTEST_SKIP() << "such a store keeps no identifiers of lane connectors";
    LaneConnector::generId = 0;
    const long drawn = draw("LaneConnector");
    EXPECT_GT(LaneConnector(nullptr, nullptr, nullptr).laneConnId, drawn);
    const long next = draw("LaneConnector");
    EXPECT_NE(next, drawn);
    EXPECT_GT(LaneConnector(nullptr, nullptr, nullptr).laneConnId, next);
}

TEST_P(UniqueIdentifiersTest, OneBeyond32BitsIsNotGivenOut) {
    constexpr qint64 largest = 2147483647;
    setCounter("Vertex", largest - 2);
    EXPECT_EQ(draw("Vertex"), 2147483646);
    EXPECT_EQ(draw("Vertex"), 2147483647);
    expectNone("Vertex");
    for (const qint64 stored : {largest, qint64(1) << 40}) {
        setCounter("Node", stored);
        expectNone("Node");
    }
    letReferencesDangle();
    addRow(QStringLiteral("SignalPhase"), QStringLiteral("signalPhaseID, signalGroupID, serialNumber, name"),
           QStringLiteral("%1, 1, 1, 'a'").arg(qint64(1) << 33));
    expectNone("SignalPhase");
    EXPECT_EQ(DBTools::getMaxID(gDB, kNet, QStringLiteral("SignalPhase")), largest);
    expectOneFailureWith(QStringLiteral("Table SignalPhase"));

    // A save that would need one, and one that brings one along.
    for (const long id : {0L, long(qint64(1) << 33)}) {
        if (id == 0)
            setCounter("Link", largest);
        NetContents contents;
        contents.links.push_back(sampleLink(7));
        contents.links.front()->linkID = id;
        EXPECT_FALSE(DBTools::saveNet(gDB, kNet, contents, true));
        expectOneFailureWith(QStringLiteral("Table Link would get the identifier "));
        EXPECT_EQ(contents.links.front()->linkID, id);
        EXPECT_EQ(count(QStringLiteral("Link")) + count(QStringLiteral("Node")), 0);
    }
    const auto link = sampleLink(7);
    link->linkID = long(qint64(1) << 33);
    EXPECT_FALSE(DBTools::insertLink(gDB, kNet, link.get(), true));
    EXPECT_EQ(count(QStringLiteral("Link")), 0);
}

TEST_P(UniqueIdentifiersTest, AWithdrawnSaveReservesNothing) {
    EXPECT_EQ(draw("Link"), 1);
    NetContents contents;
    contents.links.push_back(sampleLink(2));
    contents.links.push_back(sampleLink(3));
    contents.links.back()->linkID = 0;
    EXPECT_FALSE(DBTools::saveNet(gDB, kNet, contents, true, [](const NetStep &step) {
        return qstrcmp(step.table, "LinkVertex") != 0;
    }));
    EXPECT_EQ(failureCount(), 0);
    if (!isPostgres()) { // sequences do not go back
        EXPECT_EQ(draw("Link"), 2);
    }
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    EXPECT_GT(contents.links.back()->linkID, 2);
}

INSTANTIATE_TEST_SUITE_P(Stores, UniqueIdentifiersTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
