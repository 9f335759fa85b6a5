#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tests/resources/Generation6Tables.h"
#include "tests/resources/ReadStatements.h"
#include "tests/resources/TemplateStore.h"

#include <QRegularExpression>
#include <QResource>
#include <gtest/gtest.h>

#include <ostream>

namespace {

/// What sets the templates apart.
struct Expected {
    const char *name;
    int tables; ///< SQLite's own sqlite_sequence counted
    const char *version;
    const char *language; ///< "Chinese" where the probe of an opening finds its word
    const char *jsonColumns;

    friend std::ostream &operator<<(std::ostream &out, const Expected &kind) { return out << kind.name; }
};

constexpr const char *kVersion5 = "5|EmptyNet_V1.00.05|增加表VehiTraceOption，设置车辆轨迹输出选项|20200503";
constexpr const char *kUpgradeJson = "Connector.leftBreakPointsJson Connector.otherAttrsJson "
                                     "Connector.rightBreakPointsJson Lane.centerLinePointsJson "
                                     "Lane.leftBreakPointsJson Lane.otherAttrsJson Lane.rightBreakPointsJson "
                                     "LaneConnector.centerLinePointsJson LaneConnector.otherAttrsJson "
                                     "Link.centerLinePointsJson Link.leftBreakPointsJson Link.otherAttrsJson "
                                     "Link.rightBreakPointsJson";
constexpr const char *kAllJson = "Connector.leftBreakPointsJson Connector.otherAttrsJson "
                                 "Connector.rightBreakPointsJson Lane.centerLinePointsJson "
                                 "Lane.leftBreakPointsJson Lane.otherAttrsJson Lane.rightBreakPointsJson "
                                 "LaneConnector.centerLinePointsJson LaneConnector.leftBreakPointsJson "
                                 "LaneConnector.otherAttrsJson LaneConnector.rightBreakPointsJson "
                                 "Link.centerLinePointsJson Link.leftBreakPointsJson Link.otherAttrsJson "
                                 "Link.rightBreakPointsJson";

constexpr Expected kTemplates[] = {
    {"EmptyNet_V6.0.0", 58, "6|6|同一路网文件或数据库可以保存多个路网|20230202", "English", kAllJson},
    {"EmptyNet_V3.0.0", 54, "3|3|适应专业数据库及国际化要求|20221024", "English", kAllJson},
    {"EmptyNet_V2.1.1", 54, kVersion5, "Chinese", kUpgradeJson},
    {"EmptyNet_V2.01.00", 54, kVersion5, "Chinese", kUpgradeJson},
    {"EmptyNet_V2.00.00", 53, kVersion5, "Chinese", ""},
};

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

/// The foreign keys of a table, as columns and target, sorted. What is not the rule shows behind it: target
/// columns other than the target's key, actions other than restrict.
QStringList foreignKeys(const TemplateStore &store, const QString &table) {
    const QString groups = QStringLiteral(
        "select group_concat([from], ',') || '>' || [table], [table], group_concat([to], ','), on_update, on_delete "
        "from (select * from pragma_foreign_key_list('%1') order by id, seq) group by id");
    QStringList result;
    for (const QString &row : store.rows(groups.arg(table))) {
        const QStringList key = row.split(QLatin1Char('|'));
        const QStringList target = store.rows(
            QStringLiteral("select name from pragma_table_info('%1') where pk > 0 order by pk").arg(key[1]));
        QString shown = key[0];
        if (key[2] != target.join(QLatin1Char(',')))
            shown += QStringLiteral("(%1)").arg(key[2]);
        if (key[3] != QStringLiteral("RESTRICT") || key[4] != QStringLiteral("RESTRICT"))
            shown += QStringLiteral(" on update %1 on delete %2").arg(key[3], key[4]);
        result.append(shown);
    }
    result.sort();
    return result;
}

/// A table in the form of kGeneration6Tables.
QString describe(const TemplateStore &store, const QString &table) {
    const QString key =
        store
            .rows(QStringLiteral("select name from pragma_table_info('%1') where pk > 0 order by pk")
                      .arg(table))
            .join(QLatin1Char(','));
    static const QRegularExpression keyName(QStringLiteral("constraint (\\w+) primary key"));
    const QString sql =
        store
            .rows(QStringLiteral("select sql from sqlite_master where type = 'table' and name = '%1'")
                      .arg(table))
            .value(0);
    return QStringList({table, QString::number(store.columns(table).size()), key,
                        keyName.match(sql).captured(1), foreignKeys(store, table).join(QLatin1Char(';'))})
        .join(QLatin1Char('|'));
}

/// The steps of a statement's plan that walk a whole table, or a whole network where the statement asks for
/// less.
QString scans(const TemplateStore &store, const QString &statement) {
    const QStringList plan = store.rows(QStringLiteral("explain query plan ") + statement);
    EXPECT_FALSE(plan.isEmpty()) << qPrintable(statement);
    QStringList found = plan.filter(QStringLiteral("|SCAN "));
    if (statement.contains(QStringLiteral("= 1 and ")))
        found += plan.filter(QStringLiteral("(NetId=?)"), Qt::CaseInsensitive);
    return found.join(QLatin1Char('\n'));
}

class Template : public testing::TestWithParam<Expected> {
protected:
    const TemplateStore store{text(GetParam().name)};
};

} // namespace

TEST_P(Template, HoldsItsTablesItsVersionAndItsLanguage) {
    EXPECT_EQ(store.tables().size(), GetParam().tables);
    EXPECT_TRUE(store.tables().contains(QStringLiteral("sqlite_sequence")));
    EXPECT_EQ(
        store.rows(QStringLiteral("select versionId, appVersion, updateContent, updateDate from DbVersion")),
        QStringList(text(GetParam().version)));
    EXPECT_EQ(store.rows(QStringLiteral("select * from LinkType where typeName='高速路'")).isEmpty()
                  ? "English"
                  : "Chinese",
              std::string(GetParam().language));
    const QStringList json = store.rows(QStringLiteral(
        "select m.name || '.' || c.name from sqlite_master m, pragma_table_info(m.name) c where m.name "
        "in ('Link', 'Lane', 'Connector', 'LaneConnector') and c.name like '%Json' order by 1"));
    EXPECT_EQ(json.join(QLatin1Char(' ')), text(GetParam().jsonColumns));
}

TEST_P(Template, KeepsTheStatementOfTheTraceOptionsInVersion5Only) {
    const QString statement =
        store.rows(QStringLiteral("select sql from sqlite_master where name = 'VehicleTraceOption'"))
            .value(0);
    ASSERT_TRUE(statement.startsWith(QStringLiteral("CREATE TABLE VehicleTraceOption")));
    const bool isVersion5 = text(GetParam().version).startsWith(QStringLiteral("5|"));
    EXPECT_EQ(store.rows(QStringLiteral("select updateSql from DbVersion")),
              QStringList(isVersion5 ? statement : QString()));
}

TEST_P(Template, IsCompressedInTheResources) {
    const QResource resource(QStringLiteral(":/Resources/EmptyNet/") + text(GetParam().name));
    EXPECT_EQ(resource.compressionAlgorithm(), QResource::ZlibCompression);
}

TEST_P(Template, ReadsByIdAndByOwnerWithoutScans) {
    const bool isMany = QLatin1String(GetParam().name) == QLatin1String("EmptyNet_V6.0.0");
    for (const ReadStatement &read : kReadStatements) {
        const QString statement = text(isMany ? read.many : read.one);
        if (statement.isEmpty())
            continue;
        if (statement.contains(QStringLiteral(" Net ")) && !store.tables().contains(QStringLiteral("Net")))
            continue;
        EXPECT_EQ(scans(store, statement), QString()) << qPrintable(statement);
    }
    // Every counter that the older templates hold is checked against the largest identifier of its table.
    const TemplateStore older(QStringLiteral("EmptyNet_V3.0.0"));
    const QStringList counters =
        older.rows(QStringLiteral("select TableName from IDGenerater where TableName <> 'General'"));
    EXPECT_EQ(counters.size(), 24);
    for (const QString &table : counters) {
        const QString largest = QStringLiteral("select max(%1) from %2%3")
                                    .arg(DBTools::getIDName(table), table,
                                         isMany ? QStringLiteral(" where NetId = 1") : QString());
        EXPECT_EQ(scans(store, largest), QString()) << qPrintable(largest);
    }
}

TEST_P(Template, OpensWithoutFailuresBesidesThatOfTheRsuCounter) {
    gNet.netId = 1;
    ASSERT_TRUE(DBTools::openDatabase(gDB, store.path(), true));
    const bool isMany = DBTools::dbVer() >= 6;
    // Generation 6 has no counters without a network, so the one of the new table is refused.
    EXPECT_EQ(DBTools::mlCallDbResult.size() + DBTools_V6::mlCallDbResult.size(), isMany ? 1 : 0);
    // The standard composition has identifier 1; links start from nothing.
    long composition = 0;
    long link = 0;
    if (!isMany) {
        EXPECT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("VehicleConstitutent"), composition));
        EXPECT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), link));
        EXPECT_EQ(composition, 2);
        EXPECT_EQ(link, 1);
    }
    gDB.close();
}

INSTANTIATE_TEST_SUITE_P(All, Template, testing::ValuesIn(kTemplates), [](const auto &kind) {
    return text(kind.param.name).replace(QLatin1Char('.'), QLatin1Char('_')).toStdString();
});

TEST(Templates, Generation6HasTheTablesAndKeysOfTheFormat) {
    const TemplateStore store(QStringLiteral("EmptyNet_V6.0.0"));
    QStringList found;
    for (const QString &table : store.tables()) {
        if (table != QStringLiteral("sqlite_sequence"))
            found.append(describe(store, table));
    }
    QStringList expected;
    for (const char *table : kGeneration6Tables)
        expected.append(text(table));
    found.sort();
    expected.sort();
    ASSERT_EQ(found.size(), expected.size());
    for (int i = 0; i < found.size(); ++i)
        EXPECT_EQ(found[i], expected[i]);
    for (const QString &table : store.tables()) {
        const int rows = store.rows(QStringLiteral("select count(*) from [%1]").arg(table)).value(0).toInt();
        EXPECT_EQ(rows, table == QStringLiteral("DbVersion") ? 1 : 0) << qPrintable(table);
    }
}

TEST(Templates, Generation3HasTheTablesOfGeneration6ButForTheNewOnes) {
    QStringList expected = TemplateStore(QStringLiteral("EmptyNet_V6.0.0")).tables();
    for (const char *added : {"AccidentZone", "AccidentZoneWithLane", "Passenger", "RoadWorkZone",
                              "RoadWorkZoneWithLane", "V2xConfig"})
        EXPECT_TRUE(expected.removeOne(text(added)));
    expected << QStringLiteral("PassengerArriving") << QStringLiteral("RoadType");
    QStringList found = TemplateStore(QStringLiteral("EmptyNet_V3.0.0")).tables();
    expected.sort();
    found.sort();
    EXPECT_EQ(found, expected);
}

TEST(Templates, DisplayWordsAreThoseThatTheDictionaryTurnsIntoTheStoredOnes) {
    SpecialWords words;
    words.setDbIsEnglish(true);
    words.setLangIsNotZh(true);
    const QString names = QStringLiteral("select vehicleTypeName from VehicleType order by vehicleTypeCode");
    const QStringList display = TemplateStore(QStringLiteral("EmptyNet_V2.1.1")).rows(names);
    const QStringList stored = TemplateStore(QStringLiteral("EmptyNet_V3.0.0")).rows(names);
    ASSERT_EQ(display.size(), 12);
    ASSERT_EQ(stored.size(), 12);
    for (int i = 0; i < display.size(); ++i) {
        EXPECT_NE(display[i], stored[i]);
        EXPECT_EQ(words.trZhToEn(display[i]), stored[i]);
    }
}

/// A store without networks that is opened must end as one made from a later template of its generation.
TEST(Templates, OpeningTheOldestStoreLeadsToTheLayoutOfTheNextTemplate) {
    const TemplateStore oldest(QStringLiteral("EmptyNet_V2.00.00"));
    const TemplateStore next(QStringLiteral("EmptyNet_V2.01.00"));
    EXPECT_FALSE(oldest.rows(QStringLiteral("select sql from sqlite_master where name = 'Link'"))
                     .join(QString())
                     .contains(QStringLiteral("NetId"), Qt::CaseInsensitive));
    for (const TemplateStore *store : {&oldest, &next}) {
        gNet.netId = 1;
        ASSERT_TRUE(DBTools::openDatabase(gDB, store->path(), true));
        gDB.close();
    }
    ASSERT_EQ(oldest.tables(), next.tables());
    for (const QString &table : next.tables())
        EXPECT_EQ(oldest.columns(table), next.columns(table)) << qPrintable(table);
    EXPECT_EQ(oldest.rows(QStringLiteral("select NetId from Net")), QStringList(QStringLiteral("1")));
}

/// The read has no ordering clause, so the index that answers it decides.
TEST(Templates, LaneConnectorsOfOneNetworkComeInTheOrderTheyWereWritten) {
    const TemplateStore store(QStringLiteral("EmptyNet_V3.0.0"));
    store.rows(QStringLiteral("insert into LaneConnector(connID, StartLaneID, EndLaneID, weight) "
                              "values (7, 3, 9, 1), (7, 1, 8, 2), (5, 1, 8, 0), (7, 2, 4, 3)"));
    EXPECT_EQ(store.rows(QStringLiteral("select weight from LaneConnector where connID = 7")),
              QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    EXPECT_EQ(store.rows(QStringLiteral("select * from LaneConnector where connID = 7"))
                  .value(0)
                  .section('|', 1, 1),
              QStringLiteral("3"));
}
