#include "tests/host/Beside.h"
#include "tests/host/Differences.h"

#include <memory>
#include <utility>

// Patches are applied, turned round, and refused.

namespace {

class Apply : public Differences {
protected:
    static Outcome apply(const QString &store, const QString &patch, const QStringList &options = {}) {
        return run(QStringList{QStringLiteral("apply"), store, patch} + options);
    }

    /// A patch with the header of a good one and other lines.
    QString patchOf(const QByteArray &header, const QByteArray &lines) const {
        return write(QStringLiteral("other.patch"), header + lines);
    }

    static QString value(const QString &store, const QString &sql) {
        return row(store, sql).first().toString();
    }
};

} // namespace

TEST_F(Apply, ThereAndBackOnEitherEngine) {
    const QString before = crossing(QStringLiteral("before"));
    const QString after = copyOf(before, QStringLiteral("after"), kChanges);
    const QString there = write(QStringLiteral("there"), patch(before, after));
    const QString back = file(QStringLiteral("back"));
    ASSERT_EQ(run({QStringLiteral("invert"), there, QStringLiteral("-o"), back}).exitCode, 0);
    EXPECT_EQ(read(back), patch(after, before));
    const QString order =
        QStringLiteral("select group_concat(rowid || ':' || signalPhaseID) from SignalPhase");
    const QString store = copyOf(before, QStringLiteral("store"), {});
    const Outcome outcome = apply(store, there);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.out, QStringLiteral("network 1: 12 changes\n"));
    EXPECT_EQ(value(store, QStringLiteral("select linkName || limitSpeed from Link where linkID = 1")),
              QStringLiteral("Quay\n30"));
    EXPECT_EQ(value(store, QStringLiteral("select count(*) from SignalColor where signalPhaseID = 99")),
              QStringLiteral("2"));
    // A text of geometry is bytes, as before.
    EXPECT_EQ(
        value(store, QStringLiteral("select group_concat(distinct typeof(leftBreakPointsJson)) from Lane")),
        value(before, QStringLiteral("select group_concat(distinct typeof(leftBreakPointsJson)) from Lane")));
    // What the host draws next is new.
    EXPECT_EQ(value(store, QStringLiteral("select max(ID) from IDGenerater where TableName = 'GuideArrow'")),
              QStringLiteral("77"));
    EXPECT_EQ(
        value(store, QStringLiteral("select ID >= 99 from IDGenerater where TableName = 'SignalPhase'")),
        QStringLiteral("1"));
    EXPECT_EQ(diff(store, after), QString());
    EXPECT_EQ(apply(store, back).exitCode, 0);
    EXPECT_EQ(diff(store, before), QString());
    EXPECT_EQ(value(store, order), value(before, order)) << "rows have left their places";
    if (!PostgresDatabase::hasServer())
        return;
    const PostgresDatabase database;
    const QString server = database.connectionString();
    ASSERT_EQ(run({QStringLiteral("copy"), before, server}).exitCode, 0);
    ASSERT_EQ(apply(server, there).exitCode, 0);
    EXPECT_EQ(diff(server, after), QString());
    EXPECT_EQ(Beside(database.name()).value(QStringLiteral("select nextval('seq_guidearrow_id') > 77")),
              QStringLiteral("true"));
    ASSERT_EQ(apply(server, back).exitCode, 0);
    EXPECT_EQ(diff(server, before), QString());
}

TEST_F(Apply, AnotherNetworkIsRefusedOrTakesWhatFits) {
    const QString before = crossing(QStringLiteral("before"));
    const QString after = copyOf(before, QStringLiteral("after"), kChanges);
    const QString there = write(QStringLiteral("there"), patch(before, after));
    expectRefusal([&] { return apply(after, there); },
                  QStringLiteral("has the changes of the patch already"));
    // Another speed, the road of the lane and the place of the arrow are gone, and another phase came first.
    const QStringList edits{
        QStringLiteral("update Link set limitSpeed = 70 where linkID = 1"),
        QStringLiteral("delete from GuideArrow"),
        QStringLiteral("delete from SignalLamp where laneID = 1"),
        QStringLiteral("delete from LaneConnector where startLaneID = 1 or endLaneID = 1"),
        QStringLiteral("delete from Lane where laneID = 1"),
        QStringLiteral("insert into SignalPhase values(1, 99, 1, 9, 'other')"),
    };
    const QString other = copyOf(before, QStringLiteral("other"), edits);
    expectRefusal([&] { return apply(other, there); },
                  QStringLiteral("is not the one that the patch was made for"));
    QStringList stores{other};
    std::unique_ptr<PostgresDatabase> database;
    if (PostgresDatabase::hasServer()) {
        database = std::make_unique<PostgresDatabase>();
        ASSERT_EQ(run({QStringLiteral("copy"), other, database->connectionString()}).exitCode, 0);
        stores.append(database->connectionString());
    }
    for (const QString &store : qAsConst(stores)) {
        const Outcome outcome = apply(store, there, {QStringLiteral("--anyway")});
        EXPECT_EQ(outcome.exitCode, 3);
        EXPECT_EQ(outcome.out, QStringLiteral("network 1: 7 changes\n")) << outcome.err.toStdString();
        for (const char *line :
             {"left out: line 3, table Link: limitSpeed is 70 and not 50.004",
              "line 6, table GuideArrow: laneID 1 is not there",
              "table SignalPhase: the row is there already", "done, but 5 changes did not fit"})
            EXPECT_TRUE(outcome.err.contains(QLatin1String(line))) << line << '\n'
                                                                   << outcome.err.toStdString();
    }
}

TEST_F(Apply, APatchOfAStrangerIsRefusedByItsLine) {
    const QString store = crossing(QStringLiteral("store"));
    const QString after =
        copyOf(store, QStringLiteral("after"), {QStringLiteral("update Net set caption = 'c'")});
    const QByteArray good = patch(store, after);
    const QByteArray header = good.left(good.indexOf('\n') + 1);
    const struct {
        QByteArray lines;
        const char *sentence;
    } bad[] = {
        {"", "does not lead to the network"},
        {R"({"table":"IDGenerater","after":{"ID":1}})", "line 2 is not complete"},
        {"\n", "line 2 is no JSON object"},
        {"[]\n", "line 2 is no JSON object"},
        {"{\"table\":\"IDGenerater\",\"after\":{\"ID\":1}}\n", "line 2 names a table \"IDGenerater\""},
        {"{\"table\":\"sqlite_master\",\"before\":{\"name\":\"Link\"}}\n", "names a table"},
        {"{\"table\":\"Link; drop table Link\",\"before\":{}}\n", "names a table"},
        {"{\"table\":\"Link\",\"after\":{\"NetId\":2}}\n", "names a column \"NetId\""},
        {"{\"table\":\"Net\",\"key\":{},\"before\":{\"isDefault\":\"T\"},\"after\":{\"isDefault\":\"F\"}}\n",
         "names a column \"isDefault\""},
        {"{\"table\":\"Link\",\"after\":{\"x\\\" = 1; --\":2}}\n", "has no column x\" = 1; --"},
        {"{\"table\":\"Link\",\"after\":{\"rowid\":2}}\n", "has no column rowid"},
        {"{\"table\":\"Link\",\"after\":{\"linkID\":true}}\n", "has no value for column linkID"},
        {"{\"table\":\"Link\",\"after\":{\"linkID\":{\"integer\":\"9223372036854775808\"}}}\n",
         "has no value"},
        {"{\"table\":\"Link\",\"after\":{\"linkID\":{\"bytes\":\"?\"}}}\n", "has no value"},
        {"{\"table\":\"Link\",\"after\":{\"linkID\":1,\"LINKID\":2}}\n", "names column linkID twice"},
        {"{\"table\":\"Link\",\"after\":[1]}\n", "has no row"},
        {"{\"table\":\"Link\"}\n", "says neither"},
        {"{\"table\":\"Link\",\"key\":{},\"after\":{}}\n", "says neither"},
        {"{\"table\":\"Link\",\"key\":{\"linkID\":1},\"before\":{\"length\":1},\"after\":{}}\n",
         "does not give both values"},
        {"{\"table\":\"Link\",\"key\":{\"linkID\":1},\"before\":{\"linkID\":1},\"after\":{\"linkID\":2}}\n",
         "changes what tells its row"},
        {"{\"table\":\"Link\",\"key\":{\"linkID\":1},\"before\":{\"limitSpeed\":1},\"after\":{\"limitSpeed\":2}}\n",
         "line 2, table Link: limitSpeed is 50.00400"},
        {"{\"table\":\"Lane\",\"key\":{},\"before\":{\"width\":3.2},\"after\":{\"width\":4}}\n",
         "rows answer to it"},
        {"{\"table\":\"Net\",\"before\":{}}\n", "the record of a network stays with it"},
        {"{\"table\":\"Lane\",\"after\":{\"laneID\":1}}\n", "the row is there already"},
        {"{\"table\":\"Lane\",\"after\":{\"laneID\":1000}}\n", "the store refuses it"},
        {"{\"table\":\"GuideArrow\",\"before\":{\"guideArrowId\":70}}\n", "there is no such row"},
        {good.mid(header.size()) + good.mid(header.size()), "line 3, table Net: caption is c"},
        {good.mid(header.size()) + "{\"table\":\"V2xConfig\",\"after\":{\"v2xConfigId\":1}}\n",
         "line 3, table V2xConfig"},
    };
    for (const auto &entry : bad) {
        SCOPED_TRACE(entry.lines.toStdString());
        const QString patch = patchOf(header, entry.lines);
        expectRefusal([&] { return apply(store, patch); }, QLatin1String(entry.sentence));
    }
    for (const auto &[headers, sentence] :
         {std::pair<QByteArray, const char *>("", "line 1 is not complete"),
          {"{\"patch\":2}\n", "line 1 is no header"},
          {"SQLite format 3\n", "line 1 is no JSON object"},
          {QByteArray(header).replace("English", "Latin"), "line 1 lacks"},
          {QByteArray(header).replace("\"before\":\"", "\"before\":\"0"), "line 1 lacks"},
          {QByteArray(header).replace("{", "{\"x\":1,"), "line 1 lacks"}}) {
        const QString patch = patchOf(headers, good.mid(header.size()));
        if (headers.isEmpty())
            write(QStringLiteral("other.patch"), "");
        expectRefusal([&] { return apply(store, patch); }, QLatin1String(sentence));
        expectRefusal(
            [&] {
                return run(
                    {QStringLiteral("invert"), patch, QStringLiteral("-o"), file(QStringLiteral("i"))});
            },
            QLatin1String(sentence));
    }
    expectRefusal([&] { return apply(store, file(QStringLiteral("none"))); },
                  QStringLiteral("none: cannot be read"));
    expectRefusal([&] { return apply(store, mFolder.path()); }, QStringLiteral("is a folder"));
    // A header that lies about what is there, or about what comes of it.
    for (const auto &[which, sentence] :
         {std::make_pair("before", "is not the one that the patch was made for"),
          std::make_pair("after", "does not lead to the network")}) {
        const QByteArray lying = QByteArray(header).replace(
            header.mid(header.indexOf(which) + int(qstrlen(which)) + 3, 8), "00000000");
        const QString patch = patchOf(lying, good.mid(header.size()));
        expectRefusal([&] { return apply(store, patch); }, QLatin1String(sentence));
    }
    // Every line fits, and something else is another.
    const QString other = copyOf(store, QStringLiteral("other"),
                                 {QStringLiteral("update Lane set width = 9 where laneID = 2")});
    const QString whole = write(QStringLiteral("good"), good);
    expectRefusal([&] { return apply(other, whole); },
                  QStringLiteral("is not the one that the patch was made for"));
}

TEST_F(Apply, ColumnsOfPlugInsAreColumns) {
    const QString before = crossing(QStringLiteral("before"));
    alter(before, {QStringLiteral("alter table Lane add column \"noise level\" real"),
                   QStringLiteral("update Lane set \"noise level\" = 61.5 where laneID in (1, 2)")});
    const QString after = copyOf(before, QStringLiteral("after"),
                                 {QStringLiteral("update Lane set \"noise level\" = 58 where laneID = 1"),
                                  QStringLiteral("update Lane set \"noise level\" = null where laneID = 2")});
    const QString store = copyOf(before, QStringLiteral("store"), {});
    const Outcome outcome = apply(store, write(QStringLiteral("there"), patch(before, after)));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_EQ(value(store, QStringLiteral("select \"noise level\" from Lane where laneID = 1")),
              QStringLiteral("58"));
    EXPECT_EQ(diff(store, after), QString());
}
