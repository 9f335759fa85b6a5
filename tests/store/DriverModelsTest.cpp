#include "model/ChangeLaneModelParam.h"
#include "model/DriveFollowedModelParam.h"
#include "tests/support/StoreFixture.h"

namespace {

class DriverModelsTest : public StoreKindFixture {
protected:
    void prepare() override { ASSERT_TRUE(DBTools::initDictionary(gDB, kNet, true)); }

    static QList<ChangeLaneModelParam> readLaneChange() {
        QList<ChangeLaneModelParam> params;
        EXPECT_TRUE(DBTools::selectChangeLaneParam(gDB, kNet, params));
        return params;
    }
};

TEST_P(DriverModelsTest, FollowingSetsAreWrittenOver) {
    DriveFollowedModelParam written{2, 1.0 / 3, 2.0 / 3, 4.0 / 3, 5.0 / 3, 7.0 / 3, 8.0 / 3};
    ASSERT_TRUE(DBTools::saveDriveFollowedModelParam(gDB, kNet, written, true));
    reopen();
    DriveFollowedModelParam first, second;
    ASSERT_TRUE(DBTools::selectDriveFollowedModelParam(gDB, kNet, first, second));
    EXPECT_EQ(first.modelParamID, 1);
    EXPECT_EQ(first.maxAcce, 5) << "the standard set, not a new record's";
    EXPECT_EQ(second.modelParamID, 2);
    EXPECT_EQ(second.maxAcce, written.maxAcce);
    EXPECT_EQ(second.safeTimeInterval, written.safeTimeInterval);
    EXPECT_EQ(second.desireDece, written.desireDece);
    EXPECT_EQ(second.spaceBetween, written.spaceBetween);
    EXPECT_EQ(second.alfa, written.alfa);
    EXPECT_EQ(second.beit, written.beit);

    execute(QStringLiteral("delete from DriveFollowedModelParam where modelParamID = 2"));
    second.alfa = 99;
    EXPECT_TRUE(DBTools::saveDriveFollowedModelParam(gDB, kNet, second, false)) << "no row is made";
    EXPECT_TRUE(DBTools::selectDriveFollowedModelParam(gDB, kNet, first, second));
    EXPECT_EQ(second.alfa, 99) << "without a row the record stays as it was";
}

TEST_P(DriverModelsTest, LaneChangeSetsAreReplaced) {
    ChangeLaneModelParam set(2);
    double figure = 1.0 / 3;
    const auto members = {&ChangeLaneModelParam::headBeit0,     &ChangeLaneModelParam::headBeit1Coef,
                          &ChangeLaneModelParam::headBeit2Coef, &ChangeLaneModelParam::headBeit3Coef,
                          &ChangeLaneModelParam::headBeit4Coef, &ChangeLaneModelParam::headRandParam,
                          &ChangeLaneModelParam::headDistParam, &ChangeLaneModelParam::lagBeit0,
                          &ChangeLaneModelParam::lagBeit1Coef,  &ChangeLaneModelParam::lagBeit2Coef,
                          &ChangeLaneModelParam::lagBeit3Coef,  &ChangeLaneModelParam::lagBeit4Coef,
                          &ChangeLaneModelParam::lagRandParam,  &ChangeLaneModelParam::lagDistParam};
    for (double ChangeLaneModelParam::*member : members)
        set.*member = figure += 1;
    QList<ChangeLaneModelParam> params = {set, ChangeLaneModelParam(1)};
    ASSERT_TRUE(DBTools::saveChangeLaneParam(gDB, kNet, params, true));
    reopen();
    const QList<ChangeLaneModelParam> read = readLaneChange();
    ASSERT_EQ(read.size(), 2);
    EXPECT_EQ(read.first().modelParamID, 1);
    for (double ChangeLaneModelParam::*member : members)
        EXPECT_EQ(read.last().*member, set.*member);

    params.clear();
    ASSERT_TRUE(DBTools::saveChangeLaneParam(gDB, hasSeveralNets() ? 2 : kNet, params, false));
    EXPECT_EQ(readLaneChange().size(), hasSeveralNets() ? 2 : 0) << "another network's sets stay";
}

TEST_P(DriverModelsTest, GoodLaneChangeSetsStayInBothStyles) {
    QList<ChangeLaneModelParam> params = {ChangeLaneModelParam(3), ChangeLaneModelParam(3),
                                          ChangeLaneModelParam(1)};
    params[1].headBeit0 = 9;
    for (const bool inTransaction : {true, false}) {
        EXPECT_FALSE(DBTools::saveChangeLaneParam(gDB, kNet, params, inTransaction));
        const QList<ChangeLaneModelParam> read = readLaneChange();
        ASSERT_EQ(read.size(), 2);
        EXPECT_EQ(read.last().headBeit0, 0.5);
    }
    EXPECT_EQ(failures().size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Stores, DriverModelsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
