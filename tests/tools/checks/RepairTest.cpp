#include "tools/checks/Repair.h"
#include "tests/host/Beside.h"
#include "tests/tools/checks/SoundStore.h"
#include "tools/reports/Failure.h"

#include <QFileInfo>

using namespace moratools;

// Repairs, by the rows that they leave. What they must leave alone comes near to what they repair.

namespace {

class Repaired : public SoundStore {
protected:
    /// The first value of a statement on a store.
    static QString value(const QString &store, const char *sql) {
        return row(store, QLatin1String(sql)).value(0).toString();
    }
    static QString line(const char *points) {
        return QStringLiteral(R"({"data":[%1]})").arg(QLatin1String(points));
    }
    static QString setLine(const char *column, const char *points, int lane = 1) {
        return QStringLiteral("update Lane set %1 = '%2' where laneID = %3")
            .arg(QLatin1String(column), line(points), QString::number(lane));
    }
};

constexpr const char *kA = R"({"x":0,"y":0,"z":0})";
constexpr const char *kTwice =
    R"({"x":0,"y":0,"z":0},{"x":5,"y":1,"z":0},{"x":5,"y":1,"z":0},{"x":9,"y":0,"z":0},{"x":9,"y":0,"z":0})";
constexpr const char *kOnce = R"({"x":0,"y":0,"z":0},{"x":5,"y":1,"z":0},{"x":9,"y":0,"z":0})";
constexpr const char *kOther =
    R"({"x":0,"y":2,"z":0},{"x":5,"y":3,"z":0},{"x":5,"y":3.5,"z":0},{"x":9,"y":2,"z":0},{"x":9,"y":2,"z":0})";

} // namespace

TEST_F(Repaired, ASoundStoreIsLeftAlone) {
    const QByteArray before = read(mSound);
    const Repairs repairs = repairStore(mSound, {}, true);
    EXPECT_TRUE(repairs.done.isEmpty()) << repairs.done.join('\n').toStdString();
    EXPECT_TRUE(repairs.copy.isEmpty());
    EXPECT_EQ(read(mSound), before);
}

TEST_F(Repaired, CountersArePastTheirRowsAndThoseOfNoNetworkAreGone) {
    const QString store =
        storeAfter({QStringLiteral("update IDGenerater set ID = 12 where TableName = 'Link'"),
                    QStringLiteral("update IDGenerater set ID = 500 where TableName = 'Node'"),
                    QStringLiteral("delete from IDGenerater where TableName = 'Lane'"),
                    QStringLiteral("insert into IDGenerater values (9, 'Link', 5)")});
    const QByteArray before = read(store);
    const Repairs repairs = repairStore(store, {}, true);
    EXPECT_EQ(repairs.done.size(), 3) << repairs.done.join('\n').toStdString();
    EXPECT_EQ(
        value(
            store,
            "select group_concat(NetId || TableName || ID) from (select * from IDGenerater where TableName in "
            "('Link', 'Lane', 'Node') order by TableName)"),
        QStringLiteral("1Lane28,1Link13,1Node500"));
    ASSERT_TRUE(repairs.copy.startsWith(store + QStringLiteral(".before-fix-")));
    EXPECT_EQ(value(repairs.copy, "select ID from IDGenerater where TableName = 'Link' and NetId = 1"),
              QStringLiteral("12"));
    EXPECT_NE(read(store), before);
}

TEST_F(Repaired, PartsOfNothingGoAndOthersStay) {
    const QString store = storeAfter({QStringLiteral("insert into LinkVertex values (1, 90, 1, 1)"),
                                      QStringLiteral("insert into LinkLimitVehicle values (1, 90, 1)"),
                                      // An object of its own, and an entry of one that is there.
                                      QStringLiteral("update Lane set linkID = 90 where laneID = 3"),
                                      QStringLiteral("insert into LaneLimitVehicle values (1, 2, 90)")});
    EXPECT_EQ(repairStore(store, {}, false).done.size(), 2);
    EXPECT_EQ(
        row(store, QStringLiteral(
                       "select (select count(*) from LinkVertex), (select count(*) from LinkLimitVehicle), "
                       "(select count(*) from Lane), (select count(*) from LaneLimitVehicle)")),
        (QVariantList{40, 1, 28, 2}));
    EXPECT_TRUE(QDir(QFileInfo(store).path()).entryList({QStringLiteral("*.before-fix-*")}).isEmpty());
}

TEST_F(Repaired, WhatRoundingTookFromSharesComesBack) {
    const QString store = storeAfter(
        {QStringLiteral(
             "update VehicleConsDetail set proportion = 9.99 where vehicleConsCode = 1 and vehicleTypeCode = 2"),
         // More than rounding can take away from two shares.
         QStringLiteral(
             "update VehicleConsDetail set proportion = 9.5 where vehicleConsCode = 2 and vehicleTypeCode = 14"),
         QStringLiteral("update Routing set proportion = 0.19 where routingID = 3")});
    EXPECT_EQ(repairStore(store, {}, false).done.size(), 2);
    EXPECT_EQ(
        value(
            store,
            "select group_concat(round(proportion, 6)) from (select * from VehicleConsDetail where vehicleConsCode < 3 "
            "order by vehicleConsCode, vehicleTypeCode)"),
        QStringLiteral("90.01,9.99,90.0,9.5"));
    EXPECT_EQ(
        value(
            store,
            "select group_concat(round(proportion, 6)) from (select * from Routing where deciPointID = 1 order by routingID)"),
        QStringLiteral("0.51,0.3,0.19"));
}

TEST_F(Repaired, APointThatAllLinesRepeatGoes) {
    const QString store =
        storeAfter({setLine("centerLinePointsJson", kTwice), setLine("leftBreakPointsJson", kOther),
                    setLine("rightBreakPointsJson", kTwice),
                    // Its lines have no points in common: each is a line of its own.
                    setLine("centerLinePointsJson", kTwice, 2), setLine("leftBreakPointsJson", kOnce, 2),
                    setLine("rightBreakPointsJson", kA, 2),
                    // What else is in the text would be lost.
                    setLine("centerLinePointsJson",
                            R"({"x":0,"y":0,"z":0,"w":1},{"x":0,"y":0,"z":0},{"x":9,"y":0,"z":0})", 3)});
    EXPECT_EQ(repairStore(store, {}, false).done.size(), 2);
    // Its left edge turns where the others stand still, and all three come to rest at the end.
    EXPECT_EQ(
        value(
            store,
            "select json_array_length(centerLinePointsJson, '$.data') || json_array_length(leftBreakPointsJson, '$.data') || "
            "json_array_length(rightBreakPointsJson, '$.data') from Lane where laneID = 1"),
        QStringLiteral("444"));
    EXPECT_EQ(value(store, "select leftBreakPointsJson from Lane where laneID = 1"),
              line(R"({"x":0,"y":2,"z":0},{"x":5,"y":3,"z":0},{"x":5,"y":3.5,"z":0},{"x":9,"y":2,"z":0})"));
    EXPECT_EQ(value(store, "select centerLinePointsJson from Lane where laneID = 2"), line(kOnce));
    EXPECT_EQ(
        value(store, "select json_array_length(centerLinePointsJson, '$.data') from Lane where laneID = 3"),
        QStringLiteral("3"));
}

TEST_F(Repaired, AVertexOfALinkGoesWithItsPointUnlessANodeStandsOnIt) {
    const QStringList before = {
        value(mSound,
              "select group_concat(vertexID) from (select * from LinkVertex where linkID = 1 order by num)")};
    ASSERT_EQ(before.first(), QStringLiteral("1,2"));
    // Vertex 900 repeats the last one, on which the end node of the link stands; 901 repeats the first one.
    const QString store = storeAfter(
        {QStringLiteral("insert into Vertex select 1, 900, x, y, z from Vertex where vertexID = 2"),
         QStringLiteral("insert into Vertex select 1, 901, x, y, z from Vertex where vertexID = 1"),
         QStringLiteral("update LinkVertex set num = 9 where linkID = 1 and vertexID = 2"),
         QStringLiteral("insert into LinkVertex values (1, 1, 900, 5)"),
         QStringLiteral("insert into LinkVertex values (1, 1, 901, 3)"),
         QStringLiteral("update IDGenerater set ID = 1000 where TableName = 'Vertex'")});
    EXPECT_EQ(repairStore(store, {}, false).done.size(), 1);
    EXPECT_EQ(
        value(store,
              "select group_concat(vertexID) from (select * from LinkVertex where linkID = 1 order by num)"),
        QStringLiteral("1,2"));
    EXPECT_EQ(value(store, "select count(*) from Vertex where vertexID >= 900"), QStringLiteral("0"));
    EXPECT_EQ(value(store, "select count(*) from Vertex"), QStringLiteral("40"));
}

TEST_F(Repaired, ARepairThatIsRefusedLeavesAllAsItWas) {
    // The first route is to get 0.51, which the index lets no second one have.
    const QString store =
        storeAfter({QStringLiteral("update Routing set proportion = 0.19 where routingID = 3"),
                    QStringLiteral("update Routing set proportion = 0.51 where routingID = 4"),
                    QStringLiteral("update Routing set proportion = 0.49 where routingID = 5"),
                    QStringLiteral("create unique index Shares on Routing (proportion)"),
                    QStringLiteral("update IDGenerater set ID = 12 where TableName = 'Link'")});
    try {
        repairStore(store, {}, true);
        FAIL() << "repaired";
    } catch (const Failure &failure) {
        EXPECT_TRUE(failure.message().contains(QStringLiteral("nothing was changed"))) << failure.what();
    }
    EXPECT_EQ(value(store, "select ID from IDGenerater where TableName = 'Link'"), QStringLiteral("12"));
    EXPECT_TRUE(QDir(QFileInfo(store).path()).entryList({QStringLiteral("*.before-fix-*")}).isEmpty());
}

TEST_F(Repaired, OnAServerSequencesMoveOn) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "no PostgreSQL server";
    const PostgresDatabase database;
    const QString store = database.connectionString();
    qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    ASSERT_EQ(run({QStringLiteral("copy"), mSound, store}).exitCode, 0);
    QMap<QString, int> found =
        findings(store, {QStringLiteral("store"), QStringLiteral("references"), QStringLiteral("json")});
    EXPECT_TRUE(found.isEmpty()) << found.firstKey().toStdString();
    database.use();
    const Beside beside(database.name());
    beside.value(QStringLiteral("select setval('seq_link_id', 5)"));
    beside.value(QStringLiteral("update Link set length = 'NaN' where linkID = 1"));
    found = findings(store, {QStringLiteral("store")});
    EXPECT_EQ(found.value(QStringLiteral("counter.behind")), 1);
    EXPECT_EQ(found.value(QStringLiteral("number.not-finite")), 1);
    EXPECT_EQ(repairStore(store, {}, true).done.size(), 1);
    EXPECT_GT(beside.value(QStringLiteral("select nextval('seq_link_id')")).toInt(), 13);
}
