#include "model/BusLine.h"
#include "model/BusStation.h"
#include "model/Net.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <memory>
#include <tuple>

namespace {

auto fields(BusLine &line) {
    return std::tie(line.busLineID, line.name, line.length, line.dischargeFreq, line.dischargeStartTime,
                    line.dischargeEndTime, line.startX, line.startY, line.endX, line.endY, line.desirSpeed,
                    line.speedSD, line.passCountAtStartTime);
}

auto fields(BusStation &station) {
    return std::tie(station.busStationID, station.name, station.laneNumber, station.x, station.y,
                    station.length, station.type);
}

auto fields(BusStationLine &stop) {
    return std::tie(stop.stationLineID, stop.busStationID, stop.busLineID, stop.parkingTime,
                    stop.leavingPercent, stop.getOnTimePerson, stop.getOutTimePerson);
}

BusStation sampleStation(long id, Link *link) {
    BusStation station(link);
    fields(station) = std::make_tuple(id, QStringLiteral("O'Brien 站 %1").arg(id), 2, double(id) + 1.0 / 3,
                                      double(id) - 2.0 / 3, 100.0 / 7, QStringLiteral("港湾式"));
    return station;
}

BusStationLine *sampleStop(long id, long stationId, long lineId) {
    auto *stop = new BusStationLine;
    fields(*stop) = std::make_tuple(id, stationId, lineId, 12, 100.0 / 3, 1.0 / 3, 2.0 / 3);
    stop->mlPassengerArriving.append(new PassengerArriving(10 * id, 1, 300, 15));
    stop->mlPassengerArriving.append(new PassengerArriving(10 * id + 1, 301, 600, 25));
    return stop;
}

/// Links 7, 8 and 9 are in the store, with stations 1, 2 and 3 on them; line 4 runs over 7, 8 and 7 again and
/// stops at stations 2 and 1.
class BusLinesTest : public StoreKindFixture {
protected:
    void prepare() override {
        for (long id = 7; id <= 9; ++id) {
            mLinks.push_back(sampleLink(id));
            ASSERT_TRUE(DBTools::insertLink(gDB, kNet, mLinks.back().get(), true));
            BusStation station = sampleStation(id - 6, mLinks.back().get());
            ASSERT_TRUE(DBTools::insertBusStation(gDB, kNet, &station, false));
        }
        clearFailures();
        fields(mLine) = std::make_tuple(4L, QStringLiteral("Линия 4"), 1000.0 / 3, 1, 2, 3, 1.0 / 3, 2.0 / 3,
                                        4.0 / 3, 5.0 / 3, 7.0 / 3, 8.0 / 3, 9);
        mLine.mlLink = {mLinks[0].get(), mLinks[1].get(), mLinks[0].get()};
        mLine.mlStationLine.append(sampleStop(51, 2, 4));
        mLine.mlStationLine.append(sampleStop(52, 1, 4));
    }

    void reopenWithLinks(const QList<long> &ids) {
        reopen();
        mLinks.clear();
        for (const long id : ids)
            mLinks.emplace_back(DBTools::selectLinkByID(gDB, kNet, id));
    }
    std::unique_ptr<BusLine> readLine() const {
        return std::unique_ptr<BusLine>(DBTools::selectBusLine(gDB, kNet, 4));
    }
    /// Rows of the lines, their stops, arrivals and roads.
    QList<int> rowCounts() {
        return {count("BusLine"), count("BusStationLine"), count("BusStationPassengerArriving"),
                count("BusLineRoad")};
    }

    std::vector<std::unique_ptr<Link>> mLinks;
    BusLine mLine;
};

TEST_P(BusLinesTest, ComesBackAsWritten) {
    mLine.mlStationLine.append(sampleStop(53, 3, 4));
    ASSERT_TRUE(DBTools::insertBusLine(gDB, kNet, &mLine, true)) << "committed, unlike other inserts";
    EXPECT_EQ(rows("select serialNumber, roadID from BusLineRoad order by serialNumber"),
              QStringList({"1|7", "2|8", "3|7"}));
    reopenWithLinks({7, 8, 9});

    const auto read = readLine();
    ASSERT_TRUE(read);
    EXPECT_TRUE(fields(*read) == fields(mLine));
    EXPECT_EQ(read->mlLink, QList<Link *>({mLinks[0].get(), mLinks[1].get(), mLinks[0].get()}));
    EXPECT_EQ(read->mlRoadId, QList<long>({7, 8, 7}));
    // In the order of the route, twice on the link driven twice, without the stop away from it.
    ASSERT_EQ(read->mlStationLine.size(), 3);
    const int order[] = {1, 0, 1};
    for (int i = 0; i < 3; ++i) {
        BusStationLine &after = *read->mlStationLine.at(i);
        BusStationLine &before = *mLine.mlStationLine.at(order[i]);
        EXPECT_TRUE(fields(after) == fields(before));
        EXPECT_EQ(after.linkID, read->mlRoadId.at(i));
        ASSERT_EQ(after.mlPassengerArriving.size(), 2);
        const PassengerArriving &arrival = *after.mlPassengerArriving.at(1);
        EXPECT_EQ(arrival.passengerArrivingID, 10 * after.stationLineID + 1);
        EXPECT_EQ(arrival.startTime, 301);
        EXPECT_EQ(arrival.endTime, 600);
        EXPECT_EQ(arrival.passengerCount, 25);
    }
    QList<long> ids = {9};
    EXPECT_TRUE(DBTools::selectBusLineIds(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({9, 4}));
    EXPECT_EQ(DBTools::selectBusLine(gDB, kNet, 5), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(BusLinesTest, RoadsThatAreNotKnownAreSkipped) {
    ASSERT_TRUE(DBTools::insertBusLine(gDB, kNet, &mLine, false));
    execute("update BusLine set dischargeStartTime = 2.9");
    reopenWithLinks({});
    EXPECT_EQ(readLine(), nullptr) << "no road is known";
    reopenWithLinks({8});
    const auto read = readLine();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mlRoadId, QList<long>({8}));
    EXPECT_EQ(read->mlStationLine.size(), 1);
    EXPECT_EQ(read->dischargeStartTime, isPostgres() ? 3 : 2)
        << "what SQLite keeps is cut off; the server rounds what it is given";
    if (!isPostgres()) {
        execute("update BusLine set dischargeStartTime = 9e999");
        EXPECT_EQ(readLine()->dischargeStartTime, 0) << "a number that has no place is none";
    }

    gNet.netId = 2;
    const auto ofAnother = readLine();
    EXPECT_EQ(ofAnother == nullptr, hasSeveralNets()) << "gNet holds another network";
    const std::unique_ptr<BusStation> station(DBTools::selectBusStation(gDB, kNet, 2));
    EXPECT_EQ(station->mpLink, hasSeveralNets() ? nullptr : mLinks[0].get());
}

TEST_P(BusLinesTest, StopsAtTheFirstFailure) {
    mLine.mlStationLine.append(sampleStop(52, 2, 4));
    mLine.mlStationLine.append(sampleStop(53, 2, 4));
    EXPECT_FALSE(DBTools::insertBusLine(gDB, kNet, &mLine, true));
    EXPECT_EQ(rowCounts(), QList<int>({0, 0, 0, 0})) << "nothing of the line is left";
    EXPECT_FALSE(DBTools::insertBusLine(gDB, kNet, &mLine, false));
    EXPECT_EQ(rowCounts(), QList<int>({1, 2, 4, 0})) << "the caller's transaction decides";
    EXPECT_FALSE(DBTools::insertBusLine(gDB, kNet, &mLine, false)) << "the line itself";
    EXPECT_EQ(rowCounts(), QList<int>({1, 2, 4, 0}));
    EXPECT_EQ(failures().size(), 3);

    mLine.busLineID = 5;
    mLine.mlStationLine.deleteAll();
    mLine.mlStationLine.append(sampleStop(61, 1, 5));
    mLine.mlStationLine.first()->mlPassengerArriving.first()->passengerArrivingID = 510;
    EXPECT_FALSE(DBTools::insertBusLine(gDB, kNet, &mLine, true)) << "an arrival of that id is there already";
    EXPECT_EQ(rowCounts(), QList<int>({1, 2, 4, 0}));
    mLine.mlStationLine.deleteAll();
    mLine.mlLink.clear();
    EXPECT_TRUE(DBTools::insertBusLine(gDB, kNet, &mLine, true)) << "a line without roads is written";
    EXPECT_EQ(DBTools::selectBusLine(gDB, kNet, 5), nullptr) << "and reads as null";
}

TEST_P(BusLinesTest, Stations) {
    BusStation written = sampleStation(6, mLinks[1].get());
    EXPECT_TRUE(DBTools::insertBusStation(gDB, kNet, &written, true));
    EXPECT_EQ(count("BusStation"), 3) << "with the flag it is a trial run";
    ASSERT_TRUE(DBTools::insertBusStation(gDB, kNet, &written, false));
    EXPECT_FALSE(DBTools::insertBusStation(gDB, kNet, &written, true));
    BusStation nowhere;
    nowhere.busStationID = 7;
    EXPECT_FALSE(DBTools::insertBusStation(gDB, kNet, &nowhere, false));
    ASSERT_EQ(failures().size(), 2);
    EXPECT_EQ(failures().last().error,
              QStringLiteral("Bus station 7 has no link: set mpLink before it is stored."));
    EXPECT_EQ(count("BusStation"), 4);
    letReferencesDangle();
    execute("delete from Link where linkID = 9");
    reopenWithLinks({7, 8});

    std::unique_ptr<BusStation> read(DBTools::selectBusStation(gDB, kNet, 6));
    ASSERT_TRUE(read);
    EXPECT_TRUE(fields(*read) == fields(written));
    EXPECT_EQ(read->mpLink, mLinks[1].get());
    QList<long> ids = {9};
    EXPECT_TRUE(DBTools::selectBusStationIds(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({9, 1, 2, 6})) << "a station whose link is gone is not listed";
    read.reset(DBTools::selectBusStation(gDB, kNet, 3));
    ASSERT_TRUE(read) << "but it can be read";
    EXPECT_EQ(read->mpLink, nullptr);
    EXPECT_EQ(DBTools::selectBusStation(gDB, kNet, 7), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, BusLinesTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
