#include "tests/tools/checks/Examples.h"

// Collector 1 is on lane 2 of link 1, which is 79.11 m long and has four lanes. Travel-time detector 1 leads from link 5
// to link 9. Speed areas 1 and 2 are on lanes 1 and 2 of link 2, each with one interval from 601 to 1800. The accident is
// on link 6 from 70 m to 80 m, the works are on the whole of link 4. Signal group 1 has the phases 1 to 16.

namespace {

QStringList set(const char *table, const char *values, const char *row = "1 = 1") {
    return {QStringLiteral("update %1 set %2 where %3")
                .arg(QLatin1String(table), QLatin1String(values), QLatin1String(row))};
}

} // namespace

std::vector<Example> deviceExamples() {
    const char *collector = "VehicleDrivInfoCollecter";
    const char *collector1 = "collecterID = 1";
    const char *counter = "VehicleQueueCounter";
    const char *interval = "ReduceSpeedInterval";
    const char *area = "ReduceSpeedVehiType";
    // The end of the detector goes to link 3, which leads to link 9.
    const QStringList endOnLink3 =
        set("VehicleTravelDetector", "teminalRoadId = 3, teminalX = 286.58, teminalY = -149.77");
    return {
        {"device.beyond-road", set(collector, "distance = 82", collector1),
         set(collector, "distance = 80", collector1)},
        {"device.lane-missing", set(collector, "laneNumber = 5", collector1),
         set(collector, "laneNumber = 4", collector1)},
        {"device.off-road", set(collector, "y = y + 40", collector1),
         set(collector, "y = y + 15", collector1)},
        {"device.ends-before-begin", set(counter, "endTime = 0"), set(counter, "endTime = 1")},
        {"device.interval-not-positive", set(counter, "dataInterval = 0"), set(counter, "dataInterval = 1")},
        {"queue-counter.limits-contradict", set(counter, "speedLowLimit = 2.8"),
         set(counter, "speedLowLimit = 2.7")},
        {"vehicle-detector.phase-missing", set("VehicleDetector", "phaseNumber = 17"),
         set("VehicleDetector", "phaseNumber = 16")},
        {"travel-detector.ends-apart",
         QStringList{"delete from LaneConnector where connID in (6, 7)",
                     "delete from Connector where connID in (6, 7)"} +
             endOnLink3,
         endOnLink3,
         {"lane.not-entered", "link.isolated"}},
        {"guide-arrow.beyond-lane", set("GuideArrow", "distToTerminal = 82"),
         set("GuideArrow", "distToTerminal = 80")},
        {"speed-area.ends-before-begin", set(interval, "endTime = 600", "intervalID = 1"),
         set(interval, "endTime = 601", "intervalID = 1")},
        {"speed-area.overlaps",
         set(interval, "reduceSpeedAreaID = 1, startTime = 1799, endTime = 2400", "intervalID = 2"),
         set(interval, "reduceSpeedAreaID = 1, startTime = 1800, endTime = 2400", "intervalID = 2"),
         {"speed-area.without-effect"}},
        {"speed-area.speed-negative", set(area, "avgSpeed = -1", "vehicleTypeCode = 1"),
         set(area, "avgSpeed = 0", "vehicleTypeCode = 1")},
        {"speed-area.without-effect",
         {"delete from ReduceSpeedInterval where intervalID = 2"},
         {"delete from ReduceSpeedVehiType where vehicleTypeCode = 1"}},
        {"zone.without-lanes",
         {"delete from AccidentZoneWithLane"},
         set("AccidentZoneWithLane", "laneNumber = 2")},
        {"zone.length-negative", set("AccidentZone", "zoneLength = -1"),
         set("AccidentZone", "zoneLength = 0")},
    };
}
