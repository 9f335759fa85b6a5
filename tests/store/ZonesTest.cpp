#include "model/AccidentZone.h"
#include "model/RoadWorkZone.h"
#include "tests/support/StoreFixture.h"

#include <memory>

namespace {

/// Zone 3 of either kind, with the lanes 2 and 1 of a link, written as other programs write them.
class ZonesTest : public StoreKindFixture {
protected:
    void prepare() override {
        addRow("AccidentZone", "accidentZoneId, name, location, zoneLength, roadId, roadType",
               "3, '事故 1', 12.25, 0.1, 7, 'connector'");
        addRow("RoadWorkZone",
               "roadWorkZoneId, name, location, zoneLength, limitSpeed, roadID, roadName, roadType",
               "3, '施工 1', 12.7, 40.3, 8.9, 12.7, 'Main Road', 'connector'");
        for (const char *lane : {"3, 2, -1", "3, 1, -1"}) {
            addRow("AccidentZoneWithLane", "accidentZoneId, laneNumber, toLaneNumber", lane);
            addRow("RoadWorkZoneWithLane", "roadWorkZoneId, laneNumber, toLaneNumber", lane);
        }
    }

    static void expectLanesByNumber(const QList<ZoneLane *> &lanes) {
        ASSERT_EQ(lanes.size(), 2);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(lanes.at(i)->zoneId, 3);
            EXPECT_EQ(lanes.at(i)->laneNumber, i + 1);
            EXPECT_EQ(lanes.at(i)->toLaneNumber, -1);
        }
    }
};

TEST_P(ZonesTest, RoadWorkZonesAreRead) {
    const std::unique_ptr<RoadWorkZone> zone(DBTools::selectRoadWorkZone(gDB, kNet, 3));
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->roadWorkZoneId, 3);
    EXPECT_EQ(zone->name, QStringLiteral("施工 1"));
    EXPECT_EQ(zone->location, 12.7);
    EXPECT_EQ(zone->zoneLength, 40.3);
    EXPECT_EQ(zone->limitSpeed, 8.9);
    EXPECT_EQ(zone->roadID, isPostgres() ? 13 : 12)
        << "what SQLite keeps is cut off; the server rounds what it is given";
    EXPECT_EQ(zone->roadName, QStringLiteral("Main Road"));
    EXPECT_EQ(zone->roadType, QStringLiteral("connector"));
    expectLanesByNumber(zone->mlLane);
    EXPECT_TRUE(zone->isOnLink());
    EXPECT_EQ(DBTools::selectRoadWorkZone(gDB, kNet, 4), nullptr);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(ZonesTest, AccidentZonesAreReadByTheOperationThatNeverForwards) {
    const std::unique_ptr<AccidentZone> zone(DBTools::selectAccidentZone(gDB, kNet, 3));
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->accidentZoneId, 3);
    EXPECT_EQ(zone->name, QStringLiteral("事故 1"));
    EXPECT_EQ(zone->location, 12.25F);
    EXPECT_EQ(zone->zoneLength, 0.1F);
    EXPECT_EQ(zone->roadId, 7);
    EXPECT_EQ(zone->roadType, QStringLiteral("connector"));
    expectLanesByNumber(zone->mlLane);
    EXPECT_EQ(DBTools::selectAccidentZone(gDB, kNet, 4), nullptr);
    EXPECT_EQ(failureCount(), 0);
    if (!hasSeveralNets())
        return;
    ASSERT_TRUE(gDB.transaction());
    EXPECT_EQ(DBTools_V6::selectAccidentZone(gDB, kNet, 3), nullptr);
    ASSERT_EQ(DBTools_V6::mlCallDbResult.size(), 1);
    EXPECT_TRUE(DBTools::mlCallDbResult.isEmpty());
    EXPECT_EQ(count("AccidentZone"), 1) << "the caller's transaction goes on";
    EXPECT_TRUE(gDB.commit());
}

TEST_P(ZonesTest, ListsReportAFailedQuery) {
    addRow("AccidentZone", "accidentZoneId, name, location, zoneLength, roadId, roadType",
           "2, '', 0, 0, 7, 'link'");
    addRow("RoadWorkZone",
           "roadWorkZoneId, name, location, zoneLength, limitSpeed, roadID, roadName, roadType",
           "1, '', 0, 0, 0, 7, '', 'link'");
    QList<long> accidents = {9}, works = {9};
    EXPECT_TRUE(DBTools::selectAccidentZoneIds(gDB, kNet, accidents));
    EXPECT_TRUE(DBTools::selectRoadWorkZoneIds(gDB, kNet, works));
    EXPECT_EQ(accidents, QList<long>({9, 2, 3}));
    EXPECT_EQ(works, QList<long>({9, 1, 3}));

    // A store of one network that has no such table yet has no zones; a table without its key is a failure.
    execute("drop table RoadWorkZoneWithLane");
    execute("drop table RoadWorkZone");
    EXPECT_EQ(DBTools::selectRoadWorkZoneIds(gDB, kNet, works), !hasSeveralNets());
    EXPECT_EQ(failures().size(), hasSeveralNets() ? 1 : 0);
    clearFailures();
    execute("drop table AccidentZoneWithLane");
    execute("drop table AccidentZone");
    execute("create table AccidentZone (other Integer)");
    EXPECT_FALSE(DBTools::selectAccidentZoneIds(gDB, kNet, accidents));
    EXPECT_EQ(failures().size(), 1);
    EXPECT_EQ(accidents.size() + works.size(), 6);
}

INSTANTIATE_TEST_SUITE_P(Stores, ZonesTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
