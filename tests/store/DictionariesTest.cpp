#include "model/SpecialWords.h"
#include "tests/support/StoreFixture.h"

#include <QDate>

namespace {

/// The tables that the templates of one network carry filled; the seeds of a new network are compared with
/// those.
const char *const kTables[] = {"VehicleType", "VehicleConstitutent", "VehicleConsDetail",
                               "DriveFollowedModelParam", "ChangeLaneModelParam"};

class DictionariesTest : public StoreFixture {
protected:
    /// Everything in kTables; in generation 6 of one network, without its id.
    QStringList contents(long net = 0) {
        QStringList all;
        for (const char *table : kTables) {
            const QString sql = QStringLiteral("select * from %1").arg(QLatin1String(table));
            if (net == 0) {
                all += rows(sql + QStringLiteral(" order by 1, 2"));
                continue;
            }
            const QString lead = QStringLiteral("%1|").arg(net);
            for (const QString &row : rows(sql + QStringLiteral(" where NetId = %1 order by 2, 3").arg(net)))
                all.append(row.mid(row.startsWith(lead) ? lead.size() : 0));
        }
        return all;
    }
};

TEST_F(DictionariesTest, ANewNetworkStartsWithTheRowsOfTheTemplates) {
    const struct {
        const char *templateName;
        bool langIsNotZh;
    } cases[] = {{"EmptyNet_V3.0.0", true}, {"EmptyNet_V2.1.1", false}};
    for (const auto &[templateName, langIsNotZh] : cases) {
        openTemplate(templateName);
        const QStringList standard = contents();
        EXPECT_EQ(standard.size(), 12 + 1 + 2 + 2 + 3);
        openTemplate("EmptyNet_V6.0.0");
        gSpecialWords.setLangIsNotZh(langIsNotZh);
        ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, !langIsNotZh));
        EXPECT_EQ(contents(kNet), standard) << templateName;
        EXPECT_EQ(rows(QStringLiteral("select * from Configuration")),
                  QStringList("1|600|400|1|NULL|T|T|" + QDate::currentDate().toString(Qt::ISODate)));
        EXPECT_EQ(failureCount(), 0);
    }
}

TEST_F(DictionariesTest, LinkTypesAreSeededOnce) {
    openTemplate("EmptyNet_V6.0.0");
    for (int call = 0; call < 2; ++call) {
        ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true));
        EXPECT_EQ(count(QStringLiteral("LinkType")), 10);
    }
    EXPECT_EQ(rows(QStringLiteral("select * from LinkType where linkTypeID = 6")),
              QStringList({"1|6|Ramp|0|30|40|20|NULL"}));
    QList<LinkType> types;
    EXPECT_TRUE(DBTools::selectLinkType(gDB, kNet, types));
    EXPECT_EQ(types.value(0).trafficCapacity, 1600);
    EXPECT_EQ(types.value(5).typeName, QStringLiteral("匝道")) << "a Chinese host reads its own word";
    ASSERT_TRUE(DBTools::initDictionary(gDB, 2, true))
        << "a network without a row gets no row, but its words";
    EXPECT_EQ(count(QStringLiteral("Net")), 1);

    openTemplate("EmptyNet_V2.1.1");
    for (int call = 0; call < 2; ++call) {
        ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true));
        EXPECT_EQ(count(QStringLiteral("LinkType")), 10);
        execute(QStringLiteral("delete from LinkType"));
    }
}

TEST_F(DictionariesTest, WhatANetworkHasStays) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral(
        "insert into VehicleType(NetId, vehicleTypeCode, vehicleTypeName) values(1, 77, 'own')"));
    ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true));
    execute(QStringLiteral("delete from ChangeLaneModelParam where modelParamID > 1"));
    execute(QStringLiteral("update VehicleConsDetail set proportion = 50"));
    execute(QStringLiteral("update Configuration set scale = 2"));
    const QStringList before = contents(kNet);
    ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true));
    EXPECT_EQ(contents(kNet), before);
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeCode from VehicleType")), QStringList("77"));
    EXPECT_EQ(rows(QStringLiteral("select scale from Configuration")), QStringList("2"));

    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
    ASSERT_TRUE(DBTools::initDictionary(gDB, 2, true));
    EXPECT_EQ(contents(2).size(), 20) << "each network has its own";
    EXPECT_EQ(contents(kNet), before);
}

TEST_F(DictionariesTest, AMissingTableIsAFailureAndTheOthersAreFilled) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("drop table DriveFollowedModelParam"));
    EXPECT_FALSE(DBTools::initDictionary(gDB, kNet, true));
    EXPECT_EQ(DBTools_V6::mlCallDbResult.size(), 1);
    EXPECT_EQ(count(QStringLiteral("ChangeLaneModelParam")), 3);
    EXPECT_EQ(count(QStringLiteral("Configuration")), 1);
}

} // namespace
