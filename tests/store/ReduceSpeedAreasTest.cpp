#include "model/ReduceSpeedArea.h"
#include "tests/support/StoreFixture.h"

#include <memory>
#include <tuple>

namespace {

auto fields(ReduceSpeedArea &area) {
    return std::tie(area.reduceSpeedAreaID, area.name, area.location, area.areaLength, area.roadID,
                    area.laneNumber, area.toLaneNumber);
}

ReduceSpeedArea sampleArea(long id) {
    ReduceSpeedArea area;
    fields(area) = std::make_tuple(id, QStringLiteral("限速 'a' %1").arg(id), 100.0 / 3, 200.0 / 3, 7L, 2, 1);
    area.mlSpeedInterval.append(new ReduceSpeedInterval{10 * id, id, 1, 300});
    area.mlSpeedInterval.append(new ReduceSpeedInterval{10 * id + 1, id, 301, 600});
    for (int code = 1; code <= 3; ++code)
        area.mlSpeedVehiType.append(new ReduceSpeedVehiType{id, code, code * 10.0 / 3, code / 7.0});
    return area;
}

class ReduceSpeedAreasTest : public StoreKindFixture {
protected:
    /// Rows of the areas, their intervals and vehicle types.
    QList<int> rowCounts() {
        return {count("ReduceSpeedArea"), count("ReduceSpeedInterval"), count("ReduceSpeedVehiType")};
    }
};

TEST_P(ReduceSpeedAreasTest, ComesBackAsWritten) {
    letReferencesDangle();
    ReduceSpeedArea written = sampleArea(5);
    EXPECT_TRUE(DBTools::insertReduceSpeedArea(gDB, kNet, &written, true));
    EXPECT_EQ(rowCounts(), QList<int>({0, 0, 0})) << "with the flag it is a trial run";
    ASSERT_TRUE(DBTools::insertReduceSpeedArea(gDB, kNet, &written, false));
    ReduceSpeedArea other = sampleArea(4);
    other.mlSpeedInterval.last()->reduceSpeedAreaID = 99;
    ASSERT_TRUE(DBTools::insertReduceSpeedArea(gDB, kNet, &other, false));
    reopen();

    const std::unique_ptr<ReduceSpeedArea> read(DBTools::selectReduceSpeedArea(gDB, kNet, 5));
    ASSERT_TRUE(read);
    EXPECT_TRUE(fields(*read) == fields(written));
    ASSERT_EQ(read->mlSpeedInterval.size(), 2);
    EXPECT_EQ(read->mlSpeedInterval.last()->intervalID, 51);
    EXPECT_EQ(read->mlSpeedInterval.last()->reduceSpeedAreaID, 5);
    EXPECT_EQ(read->mlSpeedInterval.last()->startTime, 301);
    EXPECT_EQ(read->mlSpeedInterval.last()->endTime, 600);
    ASSERT_EQ(read->mlSpeedVehiType.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(read->mlSpeedVehiType.at(i)->reduceSpeedAreaID, 5);
        EXPECT_EQ(read->mlSpeedVehiType.at(i)->vehicleTypeCode, i + 1);
        EXPECT_EQ(read->mlSpeedVehiType.at(i)->avgSpeed, (i + 1) * 10.0 / 3);
        EXPECT_EQ(read->mlSpeedVehiType.at(i)->speedSD, (i + 1) / 7.0);
    }
    const std::unique_ptr<ReduceSpeedArea> readOther(DBTools::selectReduceSpeedArea(gDB, kNet, 4));
    EXPECT_EQ(readOther->mlSpeedInterval.size(), 1) << "an interval goes to the area that it names itself";
    QList<long> ids = {9};
    EXPECT_TRUE(DBTools::selectReduceSpeedAreaIds(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({9, 4, 5}));
    EXPECT_EQ(DBTools::selectReduceSpeedArea(gDB, kNet, 6), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(ReduceSpeedAreasTest, GoesOnAfterAFailedRow) {
    ReduceSpeedArea area = sampleArea(5);
    area.mlSpeedInterval.last()->intervalID = 50;
    ASSERT_TRUE(gDB.transaction());
    EXPECT_FALSE(DBTools::insertReduceSpeedArea(gDB, kNet, &area, false));
    EXPECT_TRUE(gDB.commit()) << "the failed row does not end the caller's transaction";
    EXPECT_EQ(rowCounts(), QList<int>({1, 1, 3}));
    EXPECT_EQ(failures().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, ReduceSpeedAreasTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
