#include "model/VehicleDrivInfoCollector.h"
#include "model/VehicleQueueCounter.h"
#include "model/VehicleTravelDetector.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <memory>
#include <tuple>

namespace {

auto fields(VehicleQueueCounter &c) {
    return std::tie(c.queueCounterID, c.name, c.roadID, c.laneNumber, c.toLaneNumber, c.x, c.y, c.z,
                    c.speedLowLimit, c.speedUpLimit, c.maxDistInterval, c.maxQueueLength, c.distance,
                    c.startTime, c.endTime, c.dataInterval, c.countInterval);
}

auto fields(VehicleTravelDetector &d) {
    return std::tie(d.detectorId, d.name, d.startRoadId, d.start_laneNumber, d.start_toLaneNumber,
                    d.startDist, d.startX, d.startY, d.teminalRoadId, d.teminal_laneNumber,
                    d.teminal_toLaneNumber, d.teminalDist, d.teminalX, d.teminalY, d.startTime, d.endTime,
                    d.dataInterval, d.shortestDistance);
}

auto fields(VehicleDrivInfoCollector &c) {
    return std::tie(c.collecterID, c.name, c.roadID, c.laneNumber, c.toLaneNumber, c.distance, c.x, c.y, c.z,
                    c.startTime, c.endTime, c.dataInterval);
}

VehicleQueueCounter sampleCounter(long id, long roadId) {
    VehicleQueueCounter counter;
    fields(counter) = std::make_tuple(id, QStringLiteral("排队 'q'"), roadId, 2, 3, 1.0 / 3, -2.0 / 3, 0.7,
                                      1.1, 2.2, 3.3, 4.4, 5.5, 6, 7, 8, 9);
    return counter;
}

VehicleTravelDetector sampleTravelDetector(long id, long startRoadId, long teminalRoadId) {
    VehicleTravelDetector detector;
    fields(detector) =
        std::make_tuple(id, QStringLiteral("行程"), startRoadId, 1, 2, 1.0 / 3, 2.0 / 3, 4.0 / 3,
                        teminalRoadId, 3, 4, 5.0 / 3, 7.0 / 3, -8.0 / 3, 5, 6, 7, 10.0 / 3);
    return detector;
}

VehicleDrivInfoCollector sampleCollector(long id, long roadId) {
    VehicleDrivInfoCollector collector;
    fields(collector) = std::make_tuple(id, QStringLiteral("采集"), roadId, 1, 2, 1.0 / 3, -2.0 / 3, 4.0 / 3,
                                        5.0 / 3, 3, 4, 5);
    return collector;
}

/// Links 7 and 8 and connector 5 are the roads of the store.
class MeasuringDevicesTest : public StoreKindFixture {
protected:
    void prepare() override {
        mFrom = sampleLink(7);
        mTo = sampleLink(8);
        ASSERT_TRUE(DBTools::insertLink(gDB, kNet, mFrom.get(), true));
        ASSERT_TRUE(DBTools::insertLink(gDB, kNet, mTo.get(), true));
        ASSERT_TRUE(
            DBTools::insertConnector(gDB, kNet, sampleConnector(5, mFrom.get(), mTo.get()).get(), true));
        clearFailures();
    }

    void insert(VehicleQueueCounter counter) {
        EXPECT_TRUE(DBTools::insertVehicleQueueCounter(gDB, kNet, &counter, false));
    }
    void insert(VehicleTravelDetector detector) {
        EXPECT_TRUE(DBTools::insertVehicleTravelDetector(gDB, kNet, &detector, false));
    }
    void insert(const VehicleDrivInfoCollector &collector) {
        EXPECT_TRUE(DBTools::insertDrivInfoCollector(gDB, kNet, collector, false));
    }

    std::unique_ptr<Link> mFrom, mTo;
};

TEST_P(MeasuringDevicesTest, ComeBackAsWritten) {
    VehicleQueueCounter counter = sampleCounter(3, 7);
    VehicleTravelDetector detector = sampleTravelDetector(4, 7, 8);
    VehicleDrivInfoCollector collector = sampleCollector(6, 5);
    EXPECT_TRUE(DBTools::insertVehicleQueueCounter(gDB, kNet, &counter, true));
    EXPECT_TRUE(DBTools::insertVehicleTravelDetector(gDB, kNet, &detector, true));
    EXPECT_TRUE(DBTools::insertDrivInfoCollector(gDB, kNet, collector, true));
    EXPECT_EQ(
        count("VehicleQueueCounter") + count("VehicleTravelDetector") + count("VehicleDrivInfoCollecter"), 0)
        << "with the flag they are trial runs";
    insert(counter);
    insert(detector);
    insert(collector);
    EXPECT_FALSE(DBTools::insertVehicleQueueCounter(gDB, kNet, &counter, true));
    EXPECT_FALSE(DBTools::insertVehicleTravelDetector(gDB, kNet, &detector, true));
    EXPECT_FALSE(DBTools::insertDrivInfoCollector(gDB, kNet, collector, true));
    EXPECT_EQ(failures().size(), 3);
    reopen();

    const std::unique_ptr<VehicleQueueCounter> readCounter(DBTools::selectVehicleQueueCounter(gDB, kNet, 3));
    EXPECT_TRUE(fields(*readCounter) == fields(counter));
    const std::unique_ptr<VehicleTravelDetector> readDetector(
        DBTools::selectVehicleTravelDetector(gDB, kNet, 4));
    ASSERT_TRUE(readDetector);
    EXPECT_TRUE(fields(*readDetector) == fields(detector));
    VehicleDrivInfoCollector readCollector = DBTools::selectVehicleDrivInfoCollector(gDB, kNet, 6);
    EXPECT_TRUE(fields(readCollector) == fields(collector));

    execute("update VehicleTravelDetector set start_laneNumber = null, teminal_toLaneNumber = null");
    const std::unique_ptr<VehicleTravelDetector> onLink(DBTools::selectVehicleTravelDetector(gDB, kNet, 4));
    EXPECT_EQ(onLink->start_laneNumber, 0);
    EXPECT_EQ(onLink->teminal_toLaneNumber, 0);
}

TEST_P(MeasuringDevicesTest, MissingOnesReadAsNewOnesOrAsNull) {
    const std::unique_ptr<VehicleQueueCounter> counter(DBTools::selectVehicleQueueCounter(gDB, kNet, 3));
    ASSERT_TRUE(counter);
    VehicleQueueCounter fresh;
    EXPECT_TRUE(fields(*counter) == fields(fresh));
    EXPECT_EQ(DBTools::selectVehicleTravelDetector(gDB, kNet, 3), nullptr);
    VehicleDrivInfoCollector collector = DBTools::selectVehicleDrivInfoCollector(gDB, kNet, 3);
    VehicleDrivInfoCollector freshCollector;
    EXPECT_TRUE(fields(collector) == fields(freshCollector));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(MeasuringDevicesTest, ListsFollowTheRoadsInStoresOfOneNetwork) {
    const long roads[] = {8, 99, 5};
    long id = 30;
    for (const long road : roads) {
        --id;
        insert(sampleCounter(id, road));
        insert(sampleCollector(id, road));
        insert(sampleTravelDetector(id, road, 7));
        insert(sampleTravelDetector(id - 10, 7, road));
    }
    const bool all = hasSeveralNets();
    QList<long> counters = {1}, collectors = {2}, travel;
    EXPECT_TRUE(DBTools::selectVehicleQueueCounterIds(gDB, kNet, counters));
    EXPECT_TRUE(DBTools::selectVehicleDrivInfoCollectorIds(gDB, kNet, collectors));
    EXPECT_TRUE(DBTools::selectVehicleTravelDetectorIds(gDB, kNet, travel));
    EXPECT_EQ(counters, all ? QList<long>({1, 27, 28, 29}) : QList<long>({1, 27, 29}));
    EXPECT_EQ(collectors, all ? QList<long>({2, 27, 28, 29}) : QList<long>({2, 27, 29}));
    EXPECT_EQ(travel, all ? QList<long>({17, 18, 19, 27, 28, 29}) : QList<long>({17, 19, 27, 29}));
    const std::unique_ptr<VehicleTravelDetector> lost(DBTools::selectVehicleTravelDetector(gDB, kNet, 18));
    EXPECT_TRUE(lost) << "what is not listed can still be read";

    execute("drop table VehicleQueueCounter");
    EXPECT_TRUE(DBTools::selectVehicleQueueCounterIds(gDB, kNet, counters)) << "true in every case";
    EXPECT_EQ(failures().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, MeasuringDevicesTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
