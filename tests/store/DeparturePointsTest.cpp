#include "model/DeparturePoint.h"
#include "tests/support/StoreFixture.h"

#include <memory>

namespace {

class DeparturePointsTest : public StoreKindFixture {
protected:
    void prepare() override { letReferencesDangle(); }

    static DepartureInterval interval(long id, long consCode) {
        DepartureInterval result;
        result.departureIntervalD = id;
        result.interval = int(id) * 10;
        result.vehiCount = int(id) * 100;
        result.vehiCons.vehicleConsCode = consCode;
        return result;
    }

    static DeparturePoint sample(long id, QList<DepartureInterval> intervals) {
        return {id, QStringLiteral("north 北"), id + 1000, intervals};
    }
};

TEST_P(DeparturePointsTest, ComesBackWithIntervalsById) {
    ASSERT_TRUE(
        DBTools::insertDeparturePoint(gDB, kNet, sample(7, {interval(12, 3), interval(11, 4)}), true));
    ASSERT_TRUE(DBTools::insertDeparturePoint(gDB, kNet, sample(5, {}), false));
    reopen();

    VehicleComposition known;
    known.vehicleConsCode = 3;
    known.mlDetail = {{3, 1, 100}};
    QHash<long, VehicleComposition> compositions = {{3, known}};
    const std::unique_ptr<DeparturePoint> read(DBTools::selectDeparturePoint(gDB, kNet, compositions, 7));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->departurePointID, 7);
    EXPECT_EQ(read->name, QStringLiteral("north 北"));
    EXPECT_EQ(read->linkID, 1007);
    ASSERT_EQ(read->mlInterval.size(), 2);
    const DepartureInterval &first = read->mlInterval.first();
    EXPECT_EQ(first.departureIntervalD, 11);
    EXPECT_EQ(first.interval, 110);
    EXPECT_EQ(first.vehiCount, 1100);
    EXPECT_EQ(first.vehiCons.vehicleConsCode, 0) << "a composition that the caller does not have";
    EXPECT_EQ(read->mlInterval.last().vehiCons.mlDetail.size(), 1);

    EXPECT_EQ(DBTools::selectDeparturePoint(gDB, kNet, compositions, 6), nullptr);
    QList<long> ids = {9};
    EXPECT_TRUE(DBTools::selectDeparturePointIds(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({9, 5, 7}));
}

TEST_P(DeparturePointsTest, GoodRowsStayInBothStyles) {
    for (const bool inTransaction : {true, false}) {
        const long id = inTransaction ? 7 : 8;
        const long base = id * 10;
        EXPECT_FALSE(DBTools::insertDeparturePoint(
            gDB, kNet, sample(id, {interval(base + 1, 1), interval(base + 1, 2), interval(base + 2, 3)}),
            inTransaction));
        // A point of a taken id: its new intervals are written.
        EXPECT_FALSE(
            DBTools::insertDeparturePoint(gDB, kNet, sample(id, {interval(base + 3, 4)}), inTransaction));
    }
    EXPECT_EQ(failures().size(), 4);
    EXPECT_EQ(count(QStringLiteral("DeparturePoint")), 2);
    EXPECT_EQ(
        rows(QStringLiteral("select departureIntervalD, departurePointID, interval, vehiCount, vehiCons "
                            "from DepartureInterval order by departureIntervalD")),
        QStringList({"71|7|710|7100|1", "72|7|720|7200|3", "73|7|730|7300|4", "81|8|810|8100|1",
                     "82|8|820|8200|3", "83|8|830|8300|4"}));
}

INSTANTIATE_TEST_SUITE_P(Stores, DeparturePointsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
