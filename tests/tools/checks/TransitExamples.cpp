#include "tests/tools/checks/Examples.h"

// Line 1 goes over links 13, 1, 5 and 9, 772 m in all, and stops at station 1 on link 13 (of 221 m, at x = -157.5, lane
// 1 of 3) and at station 2 on link 5; passengers arrive at stop 1 from 1 to 3600.

namespace {

QStringList set(const char *table, const char *values, const char *row) {
    return {QStringLiteral("update %1 set %2 where %3")
                .arg(QLatin1String(table), QLatin1String(values), QLatin1String(row))};
}

} // namespace

std::vector<Example> transitExamples() {
    const char *station = "BusStation";
    const char *first = "busStationID = 1";
    const char *second = "busStationID = 2";
    const char *line = "BusLine";
    const char *line1 = "busLineID = 1";
    const QString withoutStop2 = QStringLiteral("delete from BusStationLine where stationLineID = 2");
    return {
        {"bus-station.lane-missing", set(station, "laneNumber = 4", first),
         set(station, "laneNumber = 3", first)},
        {"bus-station.length-impossible", set(station, "length = 222", first),
         set(station, "length = 221", first)},
        {"bus-station.off-link", set(station, "y = -23.15", first), set(station, "y = -13.15", first)},
        {"bus-station.not-served",
         {withoutStop2},
         set("BusStationLine", "parkingTime = 0", "stationLineID = 2")},
        {"bus-line.broken",
         {"delete from BusLineRoad where roadID = 1"},
         {"delete from BusLineRoad where roadID = 9"}},
        {"bus-line.closed-road",
         {"insert into LaneLimitVehicle values (1, 18, 3), (1, 19, 3)"},
         {"insert into LaneLimitVehicle values (1, 18, 3), (1, 19, 2)"}},
        {"bus-line.length-off", set(line, "length = 600", line1), set(line, "length = 640", line1)},
        {"bus-line.timetable-impossible", set(line, "dischargeFreq = 0", line1),
         set(line, "dischargeStartTime = dischargeEndTime", line1)},
        {"bus-line.speed-impossible", set(line, "desirSpeed = 0", line1), set(line, "speedSD = 0", line1)},
        {"bus-line.without-stops",
         {"delete from Passenger", "delete from BusStationPassengerArriving", "delete from BusStationLine"},
         {withoutStop2},
         {"bus-station.not-served"}},
        {"stop.off-line",
         set(station, "linkID = 12, x = -2.62, y = -16.89", second),
         set(station, "linkID = 9, x = 267.035, y = 18.65", second),
         {"bus-station.not-served", "network.rows-left-out"}},
        {"stop.out-of-order", set(station, "linkID = 13, x = -300, y = -8.15", second),
         set(station, "linkID = 13, x = -120, y = -8.15", second)},
        {"stop.figures-impossible", set("BusStationLine", "leavingPercent = 100.1", "stationLineID = 1"),
         set("BusStationLine", "leavingPercent = 100", "stationLineID = 1")},
        {"stop.arrivals-impossible",
         set("BusStationPassengerArriving", "startTime = 3601", "stationLineID = 1"),
         set("BusStationPassengerArriving", "startTime = 3600", "stationLineID = 1")},
    };
}
