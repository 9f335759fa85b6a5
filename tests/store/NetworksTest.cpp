#include "model/Net.h"
#include "tests/support/Builders.h"
#include "tests/support/OtherProcess.h"
#include "tests/support/StoreFixture.h"

namespace {

class NetworksTest : public StoreFixture {};

TEST_F(NetworksTest, NamesAreUniqueInAnOlderStore) {
    openTemplate("EmptyNet_V3.0.0");
    const QJsonObject attributes = {{QStringLiteral("k"), QStringLiteral("'v'")}};
    const QString name = QStringLiteral("O'Brien 50% 城 🏙");
    EXPECT_TRUE(DBTools::insertNet(gDB, 5, name, {1.5, -2.25}, QStringLiteral("sumo"),
                                   QStringLiteral("map.png"), attributes, true));
    EXPECT_FALSE(DBTools::insertNet(gDB, 6, name, {}, QStringLiteral("sumo"), {}, attributes, true));
    EXPECT_EQ(failureCount(), 0) << "a taken name is no failed statement";
    EXPECT_TRUE(DBTools::insertNet(gDB, 7, QString(), {}, QString(), QString(), QString(), true));
    EXPECT_EQ(rows(QStringLiteral("select name from Net where NetId = 7")), QStringList({"MoraSim"}));
    EXPECT_FALSE(DBTools::insertNet(gDB, 7, QStringLiteral("same id"), {}, {}, {}, QString(), true));
    EXPECT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::selectMaxNetId(gDB), 7);

    ASSERT_EQ(DBTools::selectNetIdByName(gDB, name), &gNet);
    EXPECT_EQ(gNet.netId, 5);
    EXPECT_EQ(gNet.netName(), name);
    EXPECT_EQ(gNet.centerPoint(), QPointF(1.5, -2.25));
    EXPECT_EQ(gNet.type(), QStringLiteral("sumo"));
    EXPECT_EQ(gNet.bkgUrl(), QStringLiteral("map.png"));
    EXPECT_EQ(gNet.otherAttrs(), attributes);
    EXPECT_EQ(DBTools::selectNetById(gDB, 99), nullptr);
    EXPECT_EQ(DBTools::selectNetIdByName(gDB, QStringLiteral("none")), nullptr);
    EXPECT_EQ(gNet.netId, 5) << "unchanged";
    EXPECT_TRUE(DBTools::updateNet(gDB, 5, true));

    ASSERT_NE(DBTools::selectNetIdByName(gDB, QString()), nullptr);
    EXPECT_EQ(gNet.netId, DBTools::selectNets(gDB).first().netId) << "the first by id";
    ASSERT_GE(DBTools::selectNets(gDB).size(), 3);
    EXPECT_EQ(DBTools::selectNets(gDB).at(1).otherAttrs(), attributes);
}

TEST_F(NetworksTest, AStoreWithoutCentreKeepsTheRest) {
    openTemplate("EmptyNet_V3.0.0");
    execute(QStringLiteral("alter table Net drop column centerX"));
    execute(QStringLiteral("alter table Net drop column centerY"));
    EXPECT_TRUE(DBTools::insertNet(gDB, 5, QStringLiteral("a"), {1, 2}, {}, {}, QJsonObject(), true));
    ASSERT_NE(DBTools::selectNetById(gDB, 5), nullptr);
    EXPECT_EQ(gNet.centerPoint(), QPointF());
}

TEST_F(NetworksTest, GenerationSixTellsNetworksByTheirIds) {
    openTemplate("EmptyNet_V6.0.0");
    const QString name = QStringLiteral("a");
    EXPECT_TRUE(
        DBTools_V6::insertNet(gDB, 5, name, {1, 2}, name, {}, QStringLiteral("{\"k\":1}"), true, true));
    EXPECT_TRUE(DBTools_V6::insertNet(gDB, 6, name, {}, name, {}, {}, false, true)) << "names may repeat";
    EXPECT_FALSE(DBTools_V6::insertNet(gDB, 6, QStringLiteral("b"), {}, name, {}, {}, false, true));
    EXPECT_EQ(failureCount(), 0);
    ASSERT_NE(DBTools::selectNetById(gDB, 5), nullptr);
    EXPECT_TRUE(gNet.isDefault);
    EXPECT_EQ(gNet.otherAttrs().value(QStringLiteral("k")).toInt(), 1);

    gNet.name = QStringLiteral("改");
    gNet.caption = QStringLiteral("about");
    gNet.sourceUrl = QStringLiteral("/données/ville.xml");
    gNet.isDefault = false;
    EXPECT_TRUE(DBTools::updateNet(gDB, 5, true));
    gNet = Net();
    ASSERT_NE(DBTools::selectNetById(gDB, 5), nullptr);
    EXPECT_EQ(gNet.name, QStringLiteral("改"));
    EXPECT_EQ(gNet.caption, QStringLiteral("about"));
    EXPECT_EQ(gNet.url(), QStringLiteral("/données/ville.xml"));
    EXPECT_FALSE(gNet.isDefault);

    // The operation for older stores leaves out a column that generation 6 requires.
    EXPECT_FALSE(DBTools::insertNet(gDB, 8, QStringLiteral("c"), {}, name, {}, QString(), true));
    EXPECT_EQ(DBTools::mlCallDbResult.size(), 1);
    EXPECT_FALSE(DBTools::selectNetId(gDB, 8));
    EXPECT_TRUE(DBTools::selectNetId(gDB, 6));
}

TEST_F(NetworksTest, ARecordWhoseCommitFailsIsTakenBack) {
    openTemplate("EmptyNet_V6.0.0");
    const QString name = QStringLiteral("a");
    gNet.name = name;
    for (const bool isNew : {true, false}) {
        const OtherProcess other(OtherProcess::Holds::Reading);
        EXPECT_FALSE(isNew ? DBTools_V6::insertNet(gDB, 5, name, {}, name, {}, {}, false, true)
                           : DBTools::updateNet(gDB, kNet, true));
    }
    EXPECT_EQ(DBTools_V6::mlCallDbResult.size(), 2);
    EXPECT_TRUE(gDB.transaction()) << "none is left open";
    EXPECT_EQ(rows(QStringLiteral("select NetId from Net where NetId = 5 or name = 'a'")), QStringList());
}

TEST_F(NetworksTest, AnotherRecordEmptiesTheTables) {
    openTemplate("EmptyNet_V6.0.0");
    ASSERT_TRUE(DBTools_V6::insertNet(gDB, 2, QStringLiteral("b"), {}, {}, {}, {}, false, true));
    const auto written = sampleLink(7);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, written.get(), true));
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(gDB, kNet, 7));
    DBTools::selectNetById(gDB, kNet);
    EXPECT_EQ(gNet.getLinkById(7), read.get());
    DBTools::selectNetById(gDB, 2);
    EXPECT_EQ(gNet.getLinkById(7), nullptr);
}

} // namespace
