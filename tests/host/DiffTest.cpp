#include "tests/host/Beside.h"
#include "tests/host/Differences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// What two networks differ in, as the command tells and writes it.

namespace {

using Diff = Differences;

const char kText[] =
    R"(Net: caption "" -> "c"
link 1 "Quay\n": limitSpeed 50.004 -> 30, linkName "approach_market" -> "Quay\n"
link 2 "east_quay":
  LinkVertex (num 4) removed
  lane 5: leftBreakPointsJson changed (4 points -> 1 points), otherAttrsJson changed (none -> 8 characters), width 3.2 -> 3.25
guide arrow 77 added
connector 1 "approach_market->south_out":
  LaneConnector 2: connID 2 -> 1, endLaneID 9 -> 25, startLaneID 2 -> 1
connector 2 "approach_market->market_quay":
  LaneConnector 1: connID 1 -> 2, endLaneID 25 -> 9, startLaneID 1 -> 2
signal group 98 "night" added with 1 x signal phase
signal phase 1 "0":
  SignalColor (serialNumber 1): timeLength 45 -> 46
signal phase 99 "extra":
  SignalColor (serialNumber 1) added
  SignalColor (serialNumber 1) added
)";

const char kSummary[] = R"(Net                    0 added, 0 removed, 1 changed
links                  0 added, 0 removed, 2 changed
guideArrows            1 added, 0 removed, 0 changed
connectors             0 added, 0 removed, 2 changed
signalGroups           1 added, 0 removed, 0 changed
signalPhases           0 added, 0 removed, 2 changed
)";

} // namespace

TEST_F(Diff, IsToldObjectByObject) {
    const QString before = crossing(QStringLiteral("before"));
    const QString after = copyOf(before, QStringLiteral("after"), kChanges);
    EXPECT_EQ(diff(before, after), QString::fromLatin1(kText));
    EXPECT_EQ(diff(before, after, {QStringLiteral("--summary")}), QString::fromLatin1(kSummary));
    const QJsonObject json =
        QJsonDocument::fromJson(diff(after, before, {QStringLiteral("--json")}).toUtf8()).object();
    const QJsonArray changes = json.value(QStringLiteral("changes")).toArray();
    ASSERT_EQ(changes.size(), 12);
    EXPECT_EQ(changes.at(1).toObject(), QJsonDocument::fromJson(R"({"table": "Link", "key": {"linkID": 1},
                  "before": {"limitSpeed": 30, "linkName": "Quay\n"},
                  "after": {"limitSpeed": 50.004000000000005, "linkName": "approach_market"}})")
                                            .object());
    EXPECT_EQ(json.value(QStringLiteral("summary"))
                  .toArray()
                  .at(2)
                  .toObject()
                  .value(QStringLiteral("removed"))
                  .toInt(),
              1);
    const Outcome outcome = run({QStringLiteral("diff"), before, after, QStringLiteral("--exit-code")});
    EXPECT_EQ(outcome.exitCode, 3);
    // The store's own: which network it opens, and under which number it has it.
    const QString same =
        copyOf(before, QStringLiteral("same"), {QStringLiteral("update Net set isDefault = 'F'")});
    EXPECT_EQ(diff(before, same, {QStringLiteral("--exit-code")}), QString());
}

TEST_F(Diff, APatchIsEqualBytesOnEitherEngine) {
    const QString before = crossing(QStringLiteral("before"));
    const QString after = copyOf(before, QStringLiteral("after"), kChanges);
    const QByteArray text = patch(before, after);
    const QList<QByteArray> lines = text.split('\n');
    ASSERT_EQ(lines.size(), 14);
    const auto digest = [](const QString &store) {
        return run({QStringLiteral("digest"), store}).out.left(64);
    };
    EXPECT_EQ(QString::fromUtf8(lines.at(0)),
              QStringLiteral("{\"patch\":1,\"before\":\"%1\",\"after\":\"%2\",\"words\":\"English\"}")
                  .arg(digest(before), digest(after)));
    EXPECT_EQ(lines.at(3), R"({"table":"LinkVertex","before":{"linkID":2,"num":4,"vertexID":6}})");
    EXPECT_EQ(
        lines.at(6),
        R"({"table":"LaneConnector","key":{"laneConnId":1},"before":{"connID":1,"endLaneID":25,"startLaneID":1},"after":{"connID":2,"endLaneID":9,"startLaneID":2}})");
    EXPECT_EQ(lines.at(13), QByteArray());
    EXPECT_EQ(patch(before, after), text);
    EXPECT_EQ(patch(before, before).count('\n'), 1);
    if (!PostgresDatabase::hasServer())
        return;
    const PostgresDatabase one;
    const PostgresDatabase other;
    ASSERT_EQ(run({QStringLiteral("copy"), before, one.connectionString()}).exitCode, 0);
    ASSERT_EQ(run({QStringLiteral("copy"), after, other.connectionString()}).exitCode, 0);
    EXPECT_EQ(patch(one.connectionString(), other.connectionString()), text);
    EXPECT_EQ(patch(one.connectionString(), after), text);
    EXPECT_EQ(patch(before, one.connectionString()).count('\n'), 1);
}

// Words are compared in the language of the first.
TEST_F(Diff, ALanguageIsNoDifference) {
    const QString english = newStore(QStringLiteral("english"));
    ASSERT_EQ(run({QStringLiteral("import"), english, kExample}).exitCode, 0);
    const QString chinese = file(QStringLiteral("chinese"));
    ASSERT_EQ(
        run({QStringLiteral("new"), chinese, QStringLiteral("--template"), QStringLiteral("EmptyNet_V2.1.1")})
            .exitCode,
        0);
    ASSERT_EQ(
        run({QStringLiteral("import"), chinese, kExample, QStringLiteral("--lang"), QStringLiteral("zh")})
            .exitCode,
        0);
    ASSERT_EQ(row(chinese, QStringLiteral("select count(*) from Lane where actionType = '机动车道'"))
                  .first()
                  .toInt(),
              11);
    const QString told = diff(english, chinese);
    EXPECT_FALSE(told.contains(QStringLiteral("actionType"))) << told.toStdString();
    EXPECT_FALSE(told.contains(QStringLiteral("expectTravelDirection"))) << told.toStdString();
}

TEST_F(Diff, WhatCannotBeComparedIsRefused) {
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    const QString empty = newStore(QStringLiteral("empty"));
    expectRefusal(
        [&] {
            return run({QStringLiteral("diff"), store, file(QStringLiteral("none"))});
        },
        QStringLiteral("none: "));
    expectRefusal(
        [&] {
            return run({QStringLiteral("diff"), store, empty});
        },
        QStringLiteral("the store has no network"));
    expectRefusal(
        [&] {
            return run(
                {QStringLiteral("diff"), store, store, QStringLiteral("--net-b"), QStringLiteral("7")});
        },
        QStringLiteral("no network \"7\""));
    expectRefusal(
        [&] {
            return run({QStringLiteral("diff"), store, store, QStringLiteral("-o"), store});
        },
        QStringLiteral("store"));
    const QString damaged =
        copyOf(store, QStringLiteral("damaged"),
               {QStringLiteral("update Link set linkName = cast(x'61C328' as text) where linkID = 3")});
    expectRefusal(
        [&] {
            return run(
                {QStringLiteral("diff"), store, damaged, QStringLiteral("-o"), file(QStringLiteral("p"))});
        },
        QStringLiteral("the text in column linkName of table Link, row 3, is not UTF-8"));
}
