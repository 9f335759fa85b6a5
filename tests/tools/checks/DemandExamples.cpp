#include "tests/tools/checks/Examples.h"

// Composition 1, the default, is used by no departure: types 1 and 2 at 90 and 10 percent; composition 3 has cyclists
// alone. Route 1 goes over links 11, 5 and 9, route 2 over 11 and 8, route 3 over 11 and 6, with shares of 0.5, 0.3 and
// 0.2 in two quarters of an hour; route 5 goes over 13, 1 and 8. From link 3 one vehicle departs, in interval 6.

namespace {

QStringList set(const char *table, const char *values, const char *row) {
    return {QStringLiteral("update %1 set %2 where %3")
                .arg(QLatin1String(table), QLatin1String(values), QLatin1String(row))};
}

std::vector<Example> vehicleExamples() {
    const char *type = "VehicleType";
    const char *code2 = "vehicleTypeCode = 2";
    const char *detail = "VehicleConsDetail";
    const char *share1 = "vehicleConsCode = 1 and vehicleTypeCode = 1";
    const char *share2 = "vehicleConsCode = 1 and vehicleTypeCode = 2";
    return {
        {"vehicle-type.measures-not-positive", set(type, "width = 0", code2),
         set(type, "width = 0.01", code2)},
        {"vehicle-type.deviation-negative", set(type, "lengthSD = -0.1", code2),
         set(type, "lengthSD = 0", code2)},
        {"vehicle-type.speeds-contradict", set(type, "avgSpeed = 70.1", code2),
         set(type, "avgSpeed = 70", code2)},
        {"vehicle-type.name-twice", set(type, "vehicleTypeName = 'Car'", code2),
         set(type, "vehicleTypeName = 'car'", code2)},
        {"composition.without-types",
         {"delete from VehicleConsDetail where vehicleConsCode = 1"},
         {"delete from VehicleConsDetail where vehicleConsCode = 1 and vehicleTypeCode = 2"}},
        {"composition.share-not-positive",
         set(detail, "proportion = 110", share1) + set(detail, "proportion = -10", share2),
         set(detail, "proportion = 100", share1) + set(detail, "proportion = 0", share2)},
        {"composition.shares-off", set(detail, "proportion = 89.98", share1),
         set(detail, "proportion = 89.99", share1)},
        {"composition.default-twice", set("VehicleConstitutent", "IsDefault = 'T'", "vehicleConsCode = 2"),
         set("VehicleConstitutent", "IsDefault = 'F'", "vehicleConsCode = 1") +
             set("VehicleConstitutent", "IsDefault = 'T'", "vehicleConsCode = 2")},
    };
}

std::vector<Example> departureExamples() {
    const char *interval = "DepartureInterval";
    const QStringList footway = set("Lane", "actionType = 'Sidewalk'", "linkID = 3");
    return {
        {"departure-point.closed-road", footway,
         footway + set(interval, "vehiCons = 3", "departureIntervalD = 6")},
        {"departure-point.interval-impossible", set(interval, "vehiCount = -1", "departureIntervalD = 2"),
         set(interval, "vehiCount = 0", "departureIntervalD = 2")},
        {"departure-point.without-composition", set(interval, "vehiCons = 0", "departureIntervalD = 1"),
         set(interval, "vehiCons = 0", "departureIntervalD = 7")},
        {"departure-point.without-vehicles", set(interval, "vehiCount = 0", "departureIntervalD = 6"),
         set(interval, "vehiCount = 0", "departureIntervalD = 1")},
    };
}

std::vector<Example> routeExamples() {
    const char *point = "DecisionPoint";
    const QStringList withoutRoute5{"delete from RoutingFLowRatio where routingID = 5",
                                    "delete from RoutingLaneConnector where routingID = 5",
                                    "delete from RoutingLink where routingID = 5",
                                    "delete from Routing where routingID = 5"};
    return {
        {"decision-point.off-link", set(point, "X = X + 40", "deciPointID = 1"),
         set(point, "X = X + 5", "deciPointID = 1")},
        {"decision-point.without-routes",
         withoutRoute5,
         {"delete from RoutingLink where routingID = 3", "delete from Routing where routingID = 3"}},
        {"decision-point.shares-off", set("Routing", "proportion = 0.55", "routingID = 1"),
         set("Routing", "proportion = proportion * 100", "deciPointID = 1")},
        {"decision-point.ratios-off", set("RoutingFLowRatio", "ratio = 0.55", "RoutingFLowRatioID = 1"),
         set("RoutingFLowRatio", "ratio = 0", "RoutingFLowRatioID <= 3")},
        {"route.without-links",
         {"delete from RoutingLink where routingID = 3"},
         {"delete from RoutingLink where routingID = 3 and linkID = 6"}},
        {"route.starts-elsewhere",
         set(point, "linkID = 13, X = -320, Y = -4.95", "deciPointID = 2"),
         {"delete from RoutingLink where routingID = 1 and linkID = 9"}},
        {"route.broken",
         {"delete from RoutingLink where routingID = 1 and linkID = 5"},
         {"delete from RoutingLink where routingID = 1 and linkID = 9"}},
        {"route.closed-road", set("Lane", "actionType = 'NonMotorizedLane'", "laneID = 17"),
         set("Lane", "actionType = 'NonMotorizedLane'", "laneID = 11")},
        {"route.share-negative",
         set("Routing", "proportion = 0.9", "routingID = 1") +
             set("Routing", "proportion = -0.2", "routingID = 3"),
         set("Routing", "proportion = 0.7", "routingID = 1") +
             set("Routing", "proportion = 0", "routingID = 3")},
        {"route.lanes-not-joined", set("RoutingLaneConnector", "laneID1 = 2", "connID = 1"),
         set("RoutingLaneConnector", "connID = 2, laneID1 = 2, laneID2 = 9", "connID = 1")},
    };
}

std::vector<Example> ratioExamples() {
    const char *ratio = "RoutingFLowRatio";
    return {
        {"flow-ratio.negative",
         set(ratio, "ratio = 0.9", "RoutingFLowRatioID = 1") +
             set(ratio, "ratio = -0.2", "RoutingFLowRatioID = 3"),
         set(ratio, "ratio = 0.7", "RoutingFLowRatioID = 1") +
             set(ratio, "ratio = 0", "RoutingFLowRatioID = 3")},
        {"flow-ratio.ends-before-begin", set(ratio, "startDateTime = 901", "RoutingFLowRatioID = 1"),
         set(ratio, "startDateTime = 900", "RoutingFLowRatioID = 1")},
        {"flow-ratio.overlaps", set(ratio, "startDateTime = 900", "RoutingFLowRatioID = 4"),
         set(ratio, "startDateTime = 950", "RoutingFLowRatioID = 4")},
    };
}

} // namespace

std::vector<Example> demandExamples() {
    std::vector<Example> examples = vehicleExamples();
    for (const auto &more : {departureExamples(), routeExamples(), ratioExamples()})
        examples.insert(examples.end(), more.begin(), more.end());
    return examples;
}
