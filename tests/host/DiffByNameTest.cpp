#include "tests/host/Differences.h"

#include <QRegularExpression>

// Networks that were made independently: their numbers say nothing, their names do.

namespace {

class DiffByName : public Differences {
protected:
    void SetUp() override {
        Differences::SetUp();
        mFirst = crossing(QStringLiteral("first"));
        // Beside another network, where all of it has other numbers.
        mSecond = newStore(QStringLiteral("second"));
        ASSERT_EQ(run({QStringLiteral("import"), mSecond, kExample}).exitCode, 0);
        ASSERT_EQ(run({QStringLiteral("copy"), mFirst, mSecond, QStringLiteral("--name"), kName}).exitCode,
                  0);
        ASSERT_EQ(row(mSecond, QStringLiteral("select count(*) from Link a, Link b where a.NetId = 1 and "
                                              "b.NetId = 2 and a.linkID = b.linkID"))
                      .first()
                      .toInt(),
                  0);
    }

    Outcome diffBy(const QString &by) const {
        return run({QStringLiteral("diff"), mFirst, mSecond, QStringLiteral("--net-b"), kName,
                    QStringLiteral("--by"), by});
    }

    static const QString kName;
    QString mFirst;
    QString mSecond;
};

const QString DiffByName::kName = QStringLiteral("again");
const QString kRecord = QStringLiteral("Net: name \"crossing\" -> \"again\"\n");

} // namespace

TEST_F(DiffByName, OtherNumbersAreNoDifference) {
    EXPECT_EQ(diffBy(QStringLiteral("name")).out, kRecord);
    EXPECT_NE(diffBy(QStringLiteral("number")).out, kRecord);
}

TEST_F(DiffByName, WhatDiffersIsToldUnderTheNumbersOfTheFirst) {
    const QString group =
        row(mFirst, QStringLiteral("select name from SignalGroup where signalGroupID = (select "
                                   "signalGroupID from SignalPhase where signalPhaseID = 1 and "
                                   "serialNumber = 1)"))
            .first()
            .toString();
    alter(mSecond,
          {QStringLiteral("update Link set limitSpeed = 30 where NetId = 2 and linkName = 'quay_east'"),
           QStringLiteral(
               "update SignalColor set timeLength = 46 where serialNumber = 1 and signalPhaseID = "
               "(select p.signalPhaseID from SignalPhase p join SignalGroup g on g.NetId = p.NetId and "
               "g.signalGroupID = p.signalGroupID where p.NetId = 2 and g.name = '%1' and "
               "p.serialNumber = 1)")
               .arg(group),
           QStringLiteral("insert into SignalGroup values(2, 98, 'night', 60, 0, 9)"),
           QStringLiteral("delete from VehicleQueueCounter where NetId = 2")});
    const int quayEast =
        row(mFirst, QStringLiteral("select linkID from Link where linkName = 'quay_east'")).first().toInt();
    const int largest =
        row(mSecond, QStringLiteral("select max(signalGroupID) from SignalGroup")).first().toInt();
    const int counters =
        row(mFirst, QStringLiteral("select count(*) from VehicleQueueCounter")).first().toInt();
    ASSERT_GT(counters, 0);
    const QString told = diffBy(QStringLiteral("name")).out;
    EXPECT_TRUE(
        told.contains(QStringLiteral("link %1 \"quay_east\": limitSpeed 50.004 -> 30\n").arg(quayEast)))
        << told.toStdString();
    EXPECT_TRUE(told.contains(
        QStringLiteral("signal phase 1 \"0\":\n  SignalColor (serialNumber 1): timeLength 45 -> 46\n")))
        << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("signal group %1 \"night\" added\n").arg(largest + 1)))
        << told.toStdString();
    EXPECT_EQ(told.count(QStringLiteral("queue counter")), counters) << told.toStdString();
    EXPECT_EQ(told.count(QLatin1Char('\n')), 1 + 1 + 2 + 1 + counters) << told.toStdString();
}

TEST_F(DiffByName, WhatSeveralAreCalledIsNotGuessed) {
    alter(mSecond, {QStringLiteral(
                       "update Link set linkName = 'quay_east' where NetId = 2 and linkName = 'west_in'")});
    const Outcome outcome = diffBy(QStringLiteral("name"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("table Link: 3 rows have no counterpart")))
        << outcome.err.toStdString();
    EXPECT_EQ(outcome.out.count(QRegularExpression(QStringLiteral("(^|\n)link [^\n]* removed"))), 2)
        << outcome.out.toStdString();
}

TEST_F(DiffByName, ALinkOfAnotherNameIsFoundWhereItLies) {
    alter(mSecond, {QStringLiteral(
                       "update Link set linkName = 'Promenade' where NetId = 2 and linkName = 'quay_east'")});
    const int quayEast =
        row(mFirst, QStringLiteral("select linkID from Link where linkName = 'quay_east'")).first().toInt();
    EXPECT_TRUE(diffBy(QStringLiteral("name"))
                    .out.contains(QStringLiteral("link %1 \"quay_east\" removed").arg(quayEast)));
    const Outcome outcome = diffBy(QStringLiteral("geometry"));
    EXPECT_EQ(
        outcome.out,
        kRecord +
            QStringLiteral("link %1 \"Promenade\": linkName \"quay_east\" -> \"Promenade\"\n").arg(quayEast));
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("link %1 \"quay_east\" is link ").arg(quayEast)))
        << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("\"Promenade\" by its geometry")))
        << outcome.err.toStdString();
}

// Older stores have other words, and lane connectors without numbers.
TEST_F(DiffByName, AnOlderStoreIsComparedAsWell) {
    const QString old = file(QStringLiteral("old"));
    ASSERT_EQ(
        run({QStringLiteral("new"), old, QStringLiteral("--template"), QStringLiteral("EmptyNet_V2.1.1")})
            .exitCode,
        0);
    ASSERT_EQ(run({QStringLiteral("import"), old, kExample}).exitCode, 0);
    const QString plain = newStore(QStringLiteral("plain"));
    ASSERT_EQ(run({QStringLiteral("import"), plain, kExample}).exitCode, 0);
    const Outcome outcome = run({QStringLiteral("diff"), plain, old, QStringLiteral("--by"),
                                 QStringLiteral("name"), QStringLiteral("--summary")});
    for (const char *kind : {"links", "lanes", "nodes", "vertices", "signalGroups", "vehicleTypes"})
        EXPECT_FALSE(
            outcome.out.contains(QRegularExpression(QStringLiteral("(^|\n)%1 ").arg(QLatin1String(kind)))))
            << outcome.out.toStdString();
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("connectors             0 added, 0 removed")))
        << outcome.out.toStdString();
}
