#include "tests/host/Differences.h"
#include "tests/support/OldStores.h"

#include <QJsonDocument>
#include <QJsonObject>

// Two versions of a network become one.

namespace {

class MergeCommand : public Differences {
protected:
    /// A version of `base` with changes.
    QString edited(const QString &base, const QString &name, const QStringList &changes) const {
        return copyOf(base, name, changes);
    }

    Outcome merge(const QStringList &versions, const QStringList &options = {}) const {
        QFile::remove(result());
        return run(QStringList{QStringLiteral("merge")} + versions +
                   QStringList{QStringLiteral("-o"), result()} + options);
    }
    QString result() const { return file(QStringLiteral("merged")); }

    QString value(const QString &sql) const { return row(result(), sql).first().toString(); }

    /// The conflicts of the last merge, with one answer for all.
    QString answered(const char *take) const {
        QByteArray text = read(result() + QStringLiteral(".conflicts"));
        text.replace("\"take\":null", QByteArray("\"take\":") + take);
        return write(QStringLiteral("answers"), text);
    }
};

} // namespace

// Each of the two is sound, and they fit together; what comes of them is not.
TEST_F(MergeCommand, WhatOnlyBothTogetherMakeWrongIsNamed) {
    const QString base = crossing(QStringLiteral("base"));
    const QString ours =
        edited(base, QStringLiteral("ours"),
               {QStringLiteral("update Link set limitSpeed = 30, desiredSpeed = 30 where linkID in (1, 2)")});
    const QString theirs = edited(base, QStringLiteral("theirs"),
                                  {QStringLiteral("update Link set minSpeed = 40 where linkID = 1"),
                                   QStringLiteral("update Lane set width = 0 where laneID = 5")});
    const Outcome outcome = merge({base, ours, theirs});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("new warning link.speeds-contradict: link 1 ")))
        << outcome.err.toStdString();
    EXPECT_EQ(outcome.err.count(QStringLiteral("new ")), 1) << outcome.err.toStdString();
}

TEST_F(MergeCommand, WhatEitherDidIsDone) {
    const QString base = crossing(QStringLiteral("base"));
    const QString ours =
        edited(base, QStringLiteral("ours"),
               {QStringLiteral("update Link set limitSpeed = 30, minSpeed = 1 where linkID = 1"),
                QStringLiteral("update Link set limitSpeed = 31 where linkID = 3"),
                QStringLiteral("insert into GuideArrow values(1, 70, 1, 1, 1, 1), (1, 72, 1, 1, 1, 1)"),
                QStringLiteral("delete from SignalLamp where signalLampID = 3"),
                QStringLiteral("insert into SignalGroup values(1, 98, 'a', 60, 0, 9)"),
                QStringLiteral("insert into SignalPhase values(1, 99, 98, 1, 'x')"),
                QStringLiteral("insert into SignalColor values(1, 99, 1, 'Red', 3)")});
    const QString theirs =
        edited(base, QStringLiteral("theirs"),
               {QStringLiteral("update Link set desiredSpeed = 40, minSpeed = 1 where linkID = 1"),
                QStringLiteral("update Link set linkName = 'c' where linkID = 3"),
                QStringLiteral("insert into GuideArrow values(1, 70, 2, 2, 2, 2), (1, 72, 1, 1, 1, 1)"),
                QStringLiteral("insert into SignalGroup values(1, 98, 'b', 60, 0, 9)"),
                QStringLiteral("insert into SignalPhase values(1, 99, 98, 1, 'x')"),
                QStringLiteral("insert into SignalColor values(1, 99, 1, 'Red', 3)")});
    const Outcome outcome = merge({base, ours, theirs});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.out, QStringLiteral("8 changes of ours, 7 of theirs, 3 new identifiers\n"));
    EXPECT_EQ(value(QStringLiteral(
                  "select limitSpeed || ' ' || desiredSpeed || ' ' || minSpeed from Link where linkID = 1")),
              QStringLiteral("30 40 1"));
    EXPECT_EQ(value(QStringLiteral("select limitSpeed || linkName from Link where linkID = 3")),
              QStringLiteral("31c"));
    // The second of two new objects gets a new number, and its parts and what refers to it follow.
    EXPECT_EQ(value(QStringLiteral("select group_concat(guideArrowId || '-' || laneID) from GuideArrow")),
              QStringLiteral("70-1,72-1,73-2"));
    EXPECT_EQ(value(QStringLiteral(
                  "select group_concat(g.name || p.signalPhaseID || c.color) from SignalGroup g join "
                  "SignalPhase p using (signalGroupID) join SignalColor c using (signalPhaseID) "
                  "where signalGroupID >= 98")),
              QStringLiteral("a99Red,b100Red"));
    EXPECT_EQ(value(QStringLiteral("select count(*) from SignalLamp where signalLampID = 3")),
              QStringLiteral("0"));
    EXPECT_EQ(value(QStringLiteral("select ID from IDGenerater where TableName = 'GuideArrow'")),
              QStringLiteral("73"));
    if (PostgresDatabase::hasServer()) {
        const QString digest = run({QStringLiteral("digest"), result()}).out;
        const PostgresDatabase servers[2];
        ASSERT_EQ(run({QStringLiteral("copy"), ours, servers[0].connectionString()}).exitCode, 0);
        ASSERT_EQ(run({QStringLiteral("copy"), theirs, servers[1].connectionString()}).exitCode, 0);
        EXPECT_EQ(merge({base, servers[0].connectionString(), servers[1].connectionString()}).exitCode, 0);
        EXPECT_EQ(run({QStringLiteral("digest"), result()}).out, digest);
    }
    expectRefusal(
        [&] {
            return run({QStringLiteral("merge"), base, ours, theirs, QStringLiteral("-o"), result()});
        },
        QStringLiteral("is there already"));
}

TEST_F(MergeCommand, StoresOfOneNetworkGiveNewNumbers) {
    const QString base = file(QStringLiteral("base"));
    copyTemplate("EmptyNet_V3.0.0", base);
    ASSERT_EQ(run({QStringLiteral("import"), base, kExample}).exitCode, 0);
    const QString arrow = QStringLiteral(
        "insert into GuideArrow(guideArrowId, laneID, length, distToTerminal, arrowType) values(70, %1, 1, 1, 1)");
    const QString ours = edited(base, QStringLiteral("ours"), {arrow.arg(1)});
    const QString theirs = edited(base, QStringLiteral("theirs"), {arrow.arg(2)});
    const Outcome outcome = merge({base, ours, theirs});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.out, QStringLiteral("1 changes of ours, 1 of theirs, 1 new identifiers\n"));
    EXPECT_EQ(value(QStringLiteral("select group_concat(guideArrowId || '-' || laneID) from GuideArrow")),
              QStringLiteral("70-1,71-2"));
}

// A counter says that it stands on a connector, and only a link has the number of its road; then it is moved.
TEST_F(MergeCommand, WhatARoadIsDoesNotDependOnWhatChanged) {
    const QString base = crossing(QStringLiteral("base"));
    alter(base,
          {QStringLiteral("create temp table road as select * from Link where linkID = 1"),
           QStringLiteral("update road set linkID = 900, linkName = 'spare'"),
           QStringLiteral("insert into Link select * from road"),
           QStringLiteral("create temp table path as select * from Connector where connID = "
                          "(select min(connID) from Connector)"),
           QStringLiteral("update path set connID = 901"),
           QStringLiteral("insert into Connector select * from path"),
           QStringLiteral("insert into VehicleQueueCounter(NetId, QueueCounterID, name, roadID, laneNumber, "
                          "toLaneNumber, x, y, speedLowLimit, speedUpLimit, maxDistInterval, maxQueueLength, "
                          "startTime, endTime, distance, dataInterval, countInterval) "
                          "values(1, 90, 'c', 900, 1, 7, 0, 0, 1, 2, 3, 4, 0, 1, 0, 1, 1)")});
    const QString renamed = edited(base, QStringLiteral("renamed"),
                                   {QStringLiteral("update VehicleQueueCounter set name = 'd'")});
    const QString without = edited(base, QStringLiteral("without"),
                                   {QStringLiteral("delete from VehicleQueueCounter"),
                                    QStringLiteral("delete from Link where linkID = 900")});
    EXPECT_EQ(merge({base, renamed, without}).exitCode, 3);
    const Outcome kept = merge({base, renamed, without}, {QStringLiteral("--resolve"), answered("\"ours\"")});
    EXPECT_EQ(kept.exitCode, 0) << kept.err.toStdString();
    EXPECT_EQ(value(QStringLiteral(
                  "select name || (select linkName from Link where linkID = 900) from VehicleQueueCounter")),
              QStringLiteral("dspare"));

    const QString moved = edited(base, QStringLiteral("moved"),
                                 {QStringLiteral("update VehicleQueueCounter set roadID = 901")});
    const QString closed =
        edited(base, QStringLiteral("closed"), {QStringLiteral("delete from Connector where connID = 901")});
    EXPECT_EQ(merge({base, moved, closed}).exitCode, 3);
    EXPECT_TRUE(read(result() + QStringLiteral(".conflicts"))
                    .contains("\"conflict\":\"removed\",\"key\":{\"connID\":901}"))
        << read(result() + QStringLiteral(".conflicts")).constData();
}

// Theirs led a line and a counter from a road that goes to one that ours removed.
TEST_F(MergeCommand, WhatIsAsItWasKeepsWhatItStoodOn) {
    const QString base = crossing(QStringLiteral("base"));
    QStringList roads;
    for (const QString &id : {QStringLiteral("900"), QStringLiteral("901"), QStringLiteral("902")}) {
        for (const char *sql : {"create temp table road%1 as select * from Link where linkID = 1",
                                "update road%1 set linkID = %1", "insert into Link select * from road%1"})
            roads.append(QString::fromLatin1(sql).replace(QLatin1String("%1"), id));
    }
    alter(base,
          roads + QStringList{
                      QStringLiteral("create temp table line as select * from BusLine limit 1"),
                      QStringLiteral("update line set busLineID = 90"),
                      QStringLiteral("insert into BusLine select * from line"),
                      QStringLiteral("insert into BusLineRoad(NetId, busLineID, serialNumber, roadID) "
                                     "values(1, 90, 1, 902)"),
                      QStringLiteral(
                          "update VehicleQueueCounter set roadID = 900, laneNumber = 1, toLaneNumber = 0"),
                  });
    const QString ours =
        edited(base, QStringLiteral("ours"), {QStringLiteral("delete from Link where linkID = 901")});
    const QString theirs = edited(base, QStringLiteral("theirs"),
                                  {QStringLiteral("update BusLineRoad set roadID = 901 where busLineID = 90"),
                                   QStringLiteral("update VehicleQueueCounter set roadID = 901"),
                                   QStringLiteral("delete from Link where linkID in (900, 902)")});
    EXPECT_EQ(merge({base, ours, theirs}).exitCode, 3);
    const struct {
        const char *take;
        const char *links;
        const char *counter;
        const char *line;
    } answers[] = {{"\"ours\"", "900,902", "900", "902"}, {"\"theirs\"", "901", "901", "901"}};
    for (const auto &expected : answers) {
        const Outcome outcome =
            merge({base, ours, theirs}, {QStringLiteral("--resolve"), answered(expected.take)});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(value(QStringLiteral("select group_concat(linkID) from Link where linkID >= 900")),
                  QLatin1String(expected.links));
        EXPECT_EQ(value(QStringLiteral("select roadID from VehicleQueueCounter")),
                  QLatin1String(expected.counter));
        EXPECT_EQ(value(QStringLiteral("select roadID from BusLineRoad where busLineID = 90")),
                  QLatin1String(expected.line));
    }
}

TEST_F(MergeCommand, AConflictIsNamedAndTakesAnAnswer) {
    const QString base = crossing(QStringLiteral("base"));
    const QString ours = edited(
        base, QStringLiteral("ours"),
        {QStringLiteral("update Link set limitSpeed = 30, linkName = 'o' where linkID = 1"),
         QStringLiteral("update SignalColor set timeLength = 1 where signalPhaseID = 1"),
         QStringLiteral("insert into LaneLimitVehicle select 1, 3, vehicleTypeCode from VehicleType")});
    const QString theirs = edited(
        base, QStringLiteral("theirs"),
        {QStringLiteral("update Link set limitSpeed = 40, minSpeed = 3 where linkID = 1"),
         QStringLiteral("update SignalColor set timeLength = 2 where signalPhaseID = 1 and serialNumber = 1"),
         QStringLiteral("insert into LaneLimitVehicle select 1, 3, vehicleTypeCode from VehicleType")});
    const QStringList versions{base, ours, theirs};
    const Outcome open = merge(versions);
    EXPECT_EQ(open.exitCode, 3);
    EXPECT_TRUE(open.err.contains(QStringLiteral("2 conflicts"))) << open.err.toStdString();
    EXPECT_FALSE(QFile::exists(result()));
    const QList<QByteArray> lines = read(result() + QStringLiteral(".conflicts")).split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(
        QJsonDocument::fromJson(lines.at(2)).object(),
        QJsonDocument::fromJson(R"({"take": null, "conflict": "column", "table": "Link", "key": {"linkID": 1},
                  "column": "limitSpeed", "base": 50.004000000000005, "ours": 30, "theirs": 40})")
            .object());
    EXPECT_TRUE(lines.at(1).contains("\"conflict\":\"list\"")) << lines.at(1).constData();
    const QString speed = QStringLiteral(
        "select limitSpeed || linkName || minSpeed || '-' || (select timeLength from SignalColor where "
        "signalPhaseID = 1 and serialNumber = 1) from Link where linkID = 1");
    for (const auto &[take, expected] :
         {std::pair("\"ours\"", "30o3-1"), std::pair("\"theirs\"", "40o3-2")}) {
        const Outcome outcome = merge(versions, {QStringLiteral("--resolve"), answered(take)});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(value(speed), QLatin1String(expected));
    }
    QByteArray text = read(answered("\"ours\""));
    text.replace("\"take\":\"ours\",\"base\"", "\"take\":{\"value\":35.5},\"base\"");
    ASSERT_EQ(merge(versions, {QStringLiteral("--resolve"), write(QStringLiteral("answers"), text)}).exitCode,
              0);
    EXPECT_EQ(value(speed), QStringLiteral("35.5o3-1"));
    QFile::remove(result());
    for (const auto &[take, sentence] :
         {std::pair("\"mine\"", "line 2 has no answer"), std::pair("{\"value\":1}", "line 2 has no answer"),
          std::pair("7", "line 2 has no answer"), std::pair("null}\n{", "line 3 is no conflict")}) {
        const QString answers = answered(take);
        expectRefusal(
            [&, words = sentence] {
                return merge(versions, {QStringLiteral("--resolve"), answers});
            },
            QLatin1String(sentence));
    }
    const QString answers = answered("\"ours\"");
    expectRefusal(
        [&] {
            return merge({base, theirs, ours}, {QStringLiteral("--resolve"), answers});
        },
        QStringLiteral("conflicts of other networks"));
}

TEST_F(MergeCommand, AnObjectThatOneRemovedAndTheOtherNeeds) {
    const QString base = crossing(QStringLiteral("base"));
    const QString ours = edited(
        base, QStringLiteral("ours"),
        {QStringLiteral(
             "delete from SignalColor where signalPhaseID in (select signalPhaseID from SignalPhase where signalGroupID = 1)"),
         QStringLiteral(
             "delete from SignalLamp where signalPhaseID in (select signalPhaseID from SignalPhase where signalGroupID = 1)"),
         QStringLiteral("delete from SignalPhase where signalGroupID = 1"),
         QStringLiteral("delete from SignalGroup where signalGroupID = 1")});
    // A part of it changes, and something new refers to a part.
    const QString theirs = edited(
        base, QStringLiteral("theirs"),
        {QStringLiteral("update SignalPhase set name = 'changed' where signalPhaseID = 1"),
         QStringLiteral(
             "insert into SignalLamp select 1, 500, 1, laneID, null, 'new', 0, 0, 0 from Lane limit 1")});
    const QString counts = QStringLiteral(
        "select (select count(*) from SignalGroup) || ' ' || (select count(*) from SignalPhase) || ' ' || "
        "(select count(*) from SignalColor) || ' ' || (select count(*) from SignalLamp where signalLampID = 500) || ' ' || "
        "(select count(*) from SignalPhase where name = 'changed')");
    const QString all = row(base, counts).first().toString();
    for (const bool isOurs : {true, false}) {
        const QStringList versions =
            isOurs ? QStringList{base, ours, theirs} : QStringList{base, theirs, ours};
        const Outcome open = merge(versions);
        EXPECT_EQ(open.exitCode, 3);
        const QList<QByteArray> lines = read(result() + QStringLiteral(".conflicts")).split('\n');
        ASSERT_EQ(lines.size(), 3) << lines.join('\n').constData();
        const QJsonObject conflict = QJsonDocument::fromJson(lines.at(1)).object();
        EXPECT_EQ(conflict.value(QStringLiteral("table")).toString(), QStringLiteral("SignalGroup"));
        EXPECT_EQ(conflict.value(QStringLiteral("by")).toString(),
                  isOurs ? QStringLiteral("ours") : QStringLiteral("theirs"));
        for (const bool isKept : {false, true}) {
            const Outcome outcome = merge(versions, {QStringLiteral("--resolve"),
                                                     answered(isOurs != isKept ? "\"ours\"" : "\"theirs\"")});
            ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
            EXPECT_EQ(value(counts), isKept ? all.left(all.size() - 3) + QStringLiteral("1 1")
                                            : row(ours, counts).first().toString());
        }
    }
}
