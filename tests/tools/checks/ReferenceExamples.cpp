#include "tests/tools/checks/Examples.h"

namespace {

/// A column that names 900, which nothing is, and one that names what is there.
Example column(const char *rule, const char *table, const char *column, int there, const char *row) {
    const QString update = QStringLiteral("update %1 set %2 = %3 where %4");
    const auto to = [&](int id) {
        return QStringList{
            update.arg(QLatin1String(table), QLatin1String(column), QString::number(id), QLatin1String(row))};
    };
    return {rule, to(900), to(there)};
}

/// The same where 0 names none.
Example columnOrNone(const char *rule, const char *table, const char *named, const char *row) {
    return column(rule, table, named, 0, row);
}

} // namespace

std::vector<Example> referenceExamples() {
    return {
        column("vehicle-cons-detail.vehicle-composition-missing", "VehicleConsDetail", "vehicleConsCode", 5,
               "vehicleConsCode = 3"),
        column("vehicle-cons-detail.vehicle-type-missing", "VehicleConsDetail", "vehicleTypeCode", 2,
               "vehicleConsCode = 3"),
        column("node.vertex-missing", "Node", "vertexID", 2, "nodeID = 1"),
        column("link.start-node-missing", "Link", "StartNodeID", 2, "linkID = 1"),
        column("link.end-node-missing", "Link", "EndNodeID", 1, "linkID = 1"),
        column("link-vertex.link-missing", "LinkVertex", "linkID", 2, "linkID = 1 and num = 1"),
        column("link-vertex.vertex-missing", "LinkVertex", "vertexID", 9, "linkID = 1 and num = 1"),
        column("lane.link-missing", "Lane", "linkID", 2, "laneID = 3"),
        column("lane-limit-vehicle.lane-missing", "LaneLimitVehicle", "laneID", 2, "laneID = 1"),
        column("lane-limit-vehicle.vehicle-type-missing", "LaneLimitVehicle", "vehicleTypeCode", 2,
               "laneID = 1"),
        column("link-limit-vehicle.link-missing", "LinkLimitVehicle", "linkID", 2, "linkID = 1"),
        column("link-limit-vehicle.vehicle-type-missing", "LinkLimitVehicle", "vehicleTypeCode", 2,
               "linkID = 1"),
        column("link-fence-middle.link-1-missing", "LinkFenceMiddle", "linkID1", 1, "linkID1 = 3"),
        column("link-fence-middle.link-2-missing", "LinkFenceMiddle", "linkID2", 1, "linkID1 = 3"),
        column("guide-arrow.lane-missing", "GuideArrow", "laneID", 2, "laneID = 1"),
        column("connector.startlink-missing", "Connector", "StartlinkID", 2, "connID = 1"),
        column("connector.endlink-missing", "Connector", "EndlinkID", 2, "connID = 1"),
        column("connector-limit-vehicle.connector-missing", "ConnectorLimitVehicle", "connID", 2,
               "connID = 1"),
        column("connector-limit-vehicle.vehicle-type-missing", "ConnectorLimitVehicle", "vehicleTypeCode", 2,
               "connID = 1"),
        column("lane-connector.connector-missing", "LaneConnector", "connID", 2, "laneConnId = 1"),
        column("lane-connector.start-lane-missing", "LaneConnector", "startLaneID", 2, "laneConnId = 1"),
        column("lane-connector.end-lane-missing", "LaneConnector", "endLaneID", 2, "laneConnId = 1"),
        column("signal-phase.signal-group-missing", "SignalPhase", "signalGroupID", 2, "signalPhaseID = 1"),
        column("signal-color.signal-phase-missing", "SignalColor", "signalPhaseID", 1,
               "signalPhaseID = 17 and serialNumber = 3"),
        column("signal-lamp.signal-phase-missing", "SignalLamp", "signalPhaseID", 18, "signalLampID = 1"),
        column("signal-lamp.lane-missing", "SignalLamp", "laneID", 2, "signalLampID = 1"),
        columnOrNone("signal-lamp.to-lane-missing", "SignalLamp", "toLaneID", "signalLampID = 1"),
        column("departure-point.link-missing", "DeparturePoint", "linkID", 2, "departurePointID = 1"),
        column("departure-interval.departure-point-missing", "DepartureInterval", "departurePointID", 2,
               "departureIntervalD = 1"),
        columnOrNone("departure-interval.vehicle-composition-missing", "DepartureInterval", "vehiCons",
                     "departureIntervalD = 1"),
        column("decision-point.link-missing", "DecisionPoint", "linkID", 2, "deciPointID = 1"),
        column("route.decision-point-missing", "Routing", "deciPointID", 2, "routingID = 1"),
        column("routing-link.route-missing", "RoutingLink", "routingID", 2, "routingID = 5 and linkID = 13"),
        column("routing-link.link-missing", "RoutingLink", "linkID", 2, "routingID = 5 and linkID = 13"),
        column("routing-flow-ratio.route-missing", "RoutingFLowRatio", "routingID", 2,
               "RoutingFLowRatioID = 1"),
        column("lane-pair-of-route.route-missing", "RoutingLaneConnector", "routingID", 2, "connID = 1"),
        column("lane-pair-of-route.connector-missing", "RoutingLaneConnector", "connID", 2, "connID = 1"),
        column("lane-pair-of-route.lane-1-missing", "RoutingLaneConnector", "laneID1", 2, "connID = 1"),
        column("lane-pair-of-route.lane-2-missing", "RoutingLaneConnector", "laneID2", 2, "connID = 1"),
        columnOrNone("vehicle-detector.signal-group-missing", "VehicleDetector", "signalGroupID",
                     "vehicleDetectorId = 1"),
        // 19 is a connector, and no link.
        column("vehicle-detector.road-missing", "VehicleDetector", "roadId", 19, "vehicleDetectorId = 1"),
        column("detector-vehi-type.vehicle-detector-missing", "DetectorVehiType", "vehicleDetectorId", 1,
               "vehicleDetectorId = 1"),
        column("detector-vehi-type.vehicle-type-missing", "DetectorVehiType", "vehicleTypeCode", 2,
               "vehicleDetectorId = 1"),
        column("queue-counter.road-missing", "VehicleQueueCounter", "roadID", 19, "QueueCounterID = 1"),
        column("travel-time-detector.start-road-missing", "VehicleTravelDetector", "startRoadId", 19,
               "detectorId = 1"),
        column("travel-time-detector.teminal-road-missing", "VehicleTravelDetector", "teminalRoadId", 19,
               "detectorId = 1"),
        column("driving-data-collector.road-missing", "VehicleDrivInfoCollecter", "roadID", 19,
               "collecterID = 1"),
        column("bus-line-road.bus-line-missing", "BusLineRoad", "busLineID", 1, "serialNumber = 1"),
        column("bus-line-road.link-missing", "BusLineRoad", "roadID", 7, "serialNumber = 1"),
        column("bus-station.link-missing", "BusStation", "linkID", 7, "busStationID = 1"),
        column("bus-stop.bus-station-missing", "BusStationLine", "busStationID", 2, "stationLineID = 1"),
        column("bus-stop.bus-line-missing", "BusStationLine", "busLineID", 1, "stationLineID = 1"),
        column("bus-station-passenger-arriving.bus-stop-missing", "BusStationPassengerArriving",
               "stationLineID", 2, "passengerArrivingID = 1"),
        column("passenger.bus-stop-missing", "Passenger", "stationLineID", 2, "PassengerID = 1"),
        column("accident-zone.road-missing", "AccidentZone", "roadId", 19, "accidentZoneId = 1"),
        column("accident-zone-with-lane.accident-zone-missing", "AccidentZoneWithLane", "accidentZoneId", 1,
               "accidentZoneId = 1"),
        column("road-work-zone.road-missing", "RoadWorkZone", "roadID", 19, "roadWorkZoneId = 1"),
        column("road-work-zone-with-lane.road-work-zone-missing", "RoadWorkZoneWithLane", "roadWorkZoneId", 1,
               "roadWorkZoneId = 1"),
        column("speed-reduction-area.road-missing", "ReduceSpeedArea", "roadID", 19, "reduceSpeedAreaID = 1"),
        column("reduce-speed-interval.speed-reduction-area-missing", "ReduceSpeedInterval",
               "reduceSpeedAreaID", 2, "intervalID = 1"),
        column("reduce-speed-vehi-type.speed-reduction-area-missing", "ReduceSpeedVehiType",
               "reduceSpeedAreaID", 1, "reduceSpeedAreaID = 1 and vehicleTypeCode = 3"),
        // Another network's vehicle types are not this one's.
        {"reduce-speed-vehi-type.vehicle-type-missing",
         {QStringLiteral("insert into Net values (2, 'other', '', 'MoraSim', '', 0, 0, '', '', 'F')"),
          QStringLiteral(
              "insert into VehicleType select 2, 900, vehicleTypeName, Length, lengthSD, width, widthSD, "
              "avgSpeed, speedSD, maxSpeed, avgAcce, acceSD, maxAcce, avgDece, deceSD, maxDece "
              "from VehicleType where vehicleTypeCode = 3"),
          QStringLiteral(
              "update ReduceSpeedVehiType set vehicleTypeCode = 900 where reduceSpeedAreaID = 1 and "
              "vehicleTypeCode = 3")},
         {QStringLiteral("delete from ReduceSpeedVehiType where vehicleTypeCode = 3")}},
    };
}
