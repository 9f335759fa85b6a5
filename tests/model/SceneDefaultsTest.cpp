#include "model/AccidentZone.h"
#include "model/BusLine.h"
#include "model/BusStation.h"
#include "model/Net.h"
#include "model/ReduceSpeedArea.h"
#include "model/RoadWorkZone.h"
#include "model/SpecialWords.h"
#include "model/VehicleDetector.h"
#include "model/VehicleQueueCounter.h"
#include "model/VehicleTravelDetector.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

// Every default that depends on the scale, at the scale that gNet has now.
QList<double> sceneDefaults() {
    const VehicleQueueCounter counter;
    const RoadWorkZone works;
    return {VehicleDetector().length, counter.speedLowLimit,  counter.speedUpLimit,
            counter.maxDistInterval,  counter.maxQueueLength, BusStation().length,
            BusLine().desirSpeed,     works.zoneLength,       works.limitSpeed};
}

} // namespace

TEST(SceneDefaults, AreDividedByTheScaleOfTheCurrentNetwork) {
    const QList<double> metres = {
        1.0,   1.3888888888888888, 2.7777777777777777, 20.0, 500.0, 30.0, 13.88888888888889,
        100.0, 16.666666666666668};
    EXPECT_EQ(sceneDefaults(), metres);

    gNet.config().scale = 0.3;
    QList<double> scaled;
    for (const double value : metres)
        scaled.append(value / 0.3);
    EXPECT_EQ(sceneDefaults(), scaled);

    for (const double none : {0.0, -2.0, std::numeric_limits<double>::quiet_NaN()}) {
        gNet.config().scale = none;
        EXPECT_EQ(sceneDefaults(), metres) << none;
    }
    gNet.config().scale = 1;
}

TEST(SceneDefaults, KindsAreWordsOfTheDictionary) {
    EXPECT_EQ(VehicleDetector().type, QStringLiteral("标准检测器"));
    EXPECT_EQ(BusStation().type, QStringLiteral("路侧式"));
    gSpecialWords.setDbIsEnglish(true);
    gSpecialWords.setLangIsNotZh(true);
    EXPECT_EQ(VehicleDetector().type, QStringLiteral("StandardDetector"));
    EXPECT_EQ(BusStation().type, QStringLiteral("Curbside"));
    gSpecialWords = SpecialWords();
}

TEST(Detectors, TellByTheirLanesWhetherTheyStandOnALink) {
    VehicleDetector detector;
    VehicleQueueCounter counter;
    ReduceSpeedArea area;
    struct {
        int toLaneNumber;
        bool detectorOnLink;
        bool othersOnLink;
    } const cases[] = {{-1, true, true}, {0, false, true}, {1, false, false}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.toLaneNumber);
        detector.toLaneNumber = counter.toLaneNumber = area.toLaneNumber = expected.toLaneNumber;
        EXPECT_EQ(detector.isOnLink(), expected.detectorOnLink);
        EXPECT_EQ(counter.isOnLink(), expected.othersOnLink);
        EXPECT_EQ(area.isOnLink(), expected.othersOnLink);
    }
    EXPECT_FALSE(detector.hasVehiType(0));
    detector.mlVehiTypeCode = {3, 4};
    EXPECT_TRUE(detector.hasVehiType(4));

    for (const auto lane :
         {&VehicleTravelDetector::start_laneNumber, &VehicleTravelDetector::start_toLaneNumber}) {
        VehicleTravelDetector travel;
        travel.*lane = 1;
        EXPECT_FALSE(travel.isOnLinkStart());
        EXPECT_TRUE(travel.isOnLinkTeminal());
    }
    for (const auto lane :
         {&VehicleTravelDetector::teminal_laneNumber, &VehicleTravelDetector::teminal_toLaneNumber}) {
        VehicleTravelDetector travel;
        travel.*lane = 1;
        EXPECT_TRUE(travel.isOnLinkStart());
        EXPECT_FALSE(travel.isOnLinkTeminal());
    }
}

TEST(Detectors, EmptiedTravelDetectorKeepsItsPlace) {
    VehicleTravelDetector travel;
    travel.detectorId = 4;
    travel.endTime = 60;
    travel.startX = 1;
    travel.startY = 2;
    travel.teminalX = 3;
    travel.teminalY = 4;
    travel.empty();
    EXPECT_EQ(travel.detectorId, 0);
    EXPECT_EQ(travel.endTime, 3600);
    EXPECT_EQ(QList<double>({travel.startX, travel.startY, travel.teminalX, travel.teminalY}),
              QList<double>({1, 2, 3, 4}));
}

TEST(Zones, AccidentLastsByItsLevelUnlessFixed) {
    const QList<QPair<int, long>> durations = {{-1, 2147483}, {0, 2147483}, {1, 600},
                                               {2, 3600},     {3, 10800},   {5, 10800}};
    for (const auto &expected : durations) {
        AccidentZone zone;
        zone.level = expected.first;
        EXPECT_EQ(zone.duration(), expected.second) << expected.first;
        zone.fixedDuration = 90;
        EXPECT_EQ(zone.duration(), 90);
    }
}

TEST(Zones, RescueAndPlace) {
    AccidentZone zone;
    EXPECT_TRUE(zone.needRescue()); // -1: not planned, but due
    zone.rescueTime = 0;
    EXPECT_FALSE(zone.needRescue());
    zone.rescueTime = 30;
    EXPECT_TRUE(zone.needRescue());

    EXPECT_TRUE(zone.isOnLink());
    zone.mlLane.append(new ZoneLane{1, 2, -1});
    EXPECT_TRUE(zone.isOnLink());
    zone.mlLane.append(new ZoneLane{1, 0, 1});
    EXPECT_FALSE(zone.isOnLink());
    zone.mlLane.last()->toLaneNumber = 0;
    EXPECT_FALSE(zone.isOnLink());
}
