#include "tests/tools/checks/Examples.h"

namespace {

const QString kOtherNet =
    QStringLiteral("insert into Net values (2, '%1', '', 'MoraSim', '', 0, 0, '', '', '%2')");
/// Guide arrows without a key: the one of the sound network.
const QStringList kWithoutKey{
    QStringLiteral("create table Arrows as select * from GuideArrow"),
    QStringLiteral("drop table GuideArrow"),
    QStringLiteral("create table GuideArrow (NetId Bigint, guideArrowId Bigint, laneID Bigint, "
                   "length Numeric(6,2), distToTerminal Numeric(6,2), arrowType int)"),
    QStringLiteral("insert into GuideArrow select * from Arrows"),
    QStringLiteral("drop table Arrows"),
    QStringLiteral("create index IX_GUIDEARROW_LANE on GuideArrow (NetId, laneID)"),
    QStringLiteral("create index IX_GUIDEARROW_LARGEST on GuideArrow (guideArrowID)")};

} // namespace

std::vector<Example> storeExamples() {
    return {
        // The index keeps another name than the row.
        {"store.damaged",
         {QStringLiteral("pragma writable_schema = on"),
          QStringLiteral("update sqlite_master set sql = 'CREATE INDEX IX_NET_NAME on Net (sourceType)' "
                         "where name = 'IX_NET_NAME'")},
         {QStringLiteral("reindex IX_NET_NAME")}},
        {"store.table-missing",
         {QStringLiteral("drop table LinkFenceMiddle")},
         {QStringLiteral("create table OfAPlugIn (a)")}},
        {"store.column-missing",
         {QStringLiteral("alter table Logger drop column remark")},
         {QStringLiteral("alter table Logger add column mood")}},
        {"store.column-unknown",
         {QStringLiteral("alter table Logger add column mood")},
         {QStringLiteral("create table Moods (mood)")}},
        {"store.key-changed",
         kWithoutKey,
         {QStringLiteral("create unique index Arrows on GuideArrow (guideArrowId)")}},
        {"store.index-missing",
         {QStringLiteral("drop index IX_GUIDEARROW_LANE")},
         {QStringLiteral("create index Another on GuideArrow (length)")}},
        {"store.version-unclear",
         {QStringLiteral("insert into DbVersion values (7, '7', '', '', '')")},
         {QStringLiteral("update DbVersion set updateContent = ''")}},
        {"network.name-twice",
         {kOtherNet.arg(QStringLiteral("crossing"), QStringLiteral("F"))},
         {kOtherNet.arg(QStringLiteral("Crossing"), QStringLiteral("F"))}},
        {"network.default-twice",
         {QStringLiteral("update Net set isDefault = 'T'"),
          kOtherNet.arg(QStringLiteral("other"), QStringLiteral("T"))},
         {QStringLiteral("update Net set isDefault = 'T'"),
          kOtherNet.arg(QStringLiteral("other"), QStringLiteral("F"))}},
        {"store.older", {}, {}, {}, "EmptyNet_V2.00.00"},
        {"store.empty",
         {QStringLiteral("delete from Net")},
         {kOtherNet.arg(QStringLiteral("other"), QStringLiteral("F"))},
         {QStringLiteral("network.record-missing"), QStringLiteral("counter.of-no-network")}},
        {"network.not-readable",
         {QStringLiteral("update Link set linkName = cast(x'ff' as text) where linkID = 1")},
         {QStringLiteral("update Link set linkName = cast(x'c3bc' as text) where linkID = 1")}},
        {"network.rows-left-out",
         {QStringLiteral("insert into Configuration select * from Configuration")},
         {QStringLiteral("delete from Configuration")}},
        {"identifier.twice",
         QStringList(kWithoutKey) << QStringLiteral("insert into GuideArrow values (1, 1, 2, 6, 20, 1)"),
         QStringList(kWithoutKey) << QStringLiteral("insert into GuideArrow values (1, 2, 2, 6, 20, 1)"),
         {QStringLiteral("store.key-changed")}},
        {"identifier.unfit",
         {QStringLiteral("update GuideArrow set guideArrowId = 0")},
         {QStringLiteral("update GuideArrow set guideArrowId = 2147483647")}},
        {"number.not-finite",
         {QStringLiteral("update Link set length = 9e999 where linkID = 1")},
         {QStringLiteral("update Link set length = 1e300 where linkID = 1"),
          QStringLiteral("update Link set length = null where linkID = 2"),
          QStringLiteral("update Link set length = '' where linkID = 3"),
          QStringLiteral("update SignalGroup set startTime = -9223372036854775808 where signalGroupID = 1")}},
        {"network.record-missing",
         {QStringLiteral("insert into V2xConfig values (9, 1, 'range', 'radio', '300')")},
         {QStringLiteral("insert into V2xConfig values (1, 2, 'range', 'radio', '300')")}},
        {"counter.behind",
         {QStringLiteral("update IDGenerater set ID = 12 where TableName = 'Link'")},
         {QStringLiteral("update IDGenerater set ID = 100 where TableName = 'Link'")}},
        {"counter.missing",
         {QStringLiteral("delete from IDGenerater where TableName = 'Link'")},
         {QStringLiteral("delete from GuideArrow"),
          QStringLiteral("delete from IDGenerater where TableName = 'GuideArrow'")}},
        {"counter.of-no-network",
         {QStringLiteral("insert into IDGenerater values (9, 'Link', 5)")},
         {QStringLiteral("insert into IDGenerater values (1, 'Rsu', 5)")}},
    };
}
