#include "tools/rows/NetworkTables.h"

namespace moratools {

namespace {

// A detector's own test of whether it is on a link: no lane number of its far side, or a negative one. Queue
// counters, travel-time detectors, collectors and speed areas count lanes from 1 and take 0 for none.
constexpr int kFromZero = 0;
constexpr int kFromOne = 1;

const std::vector<NetworkTable> kTables = {
    {"Net",
     nullptr,
     {"NetId"},
     {},
     {},
     {{"name", QStringLiteral("MoraSim")},
      {"sourceType", QStringLiteral("MoraSim")},
      {"centerX", 0.0},
      {"centerY", 0.0},
      {"isDefault", QStringLiteral("F")}}},
    {"Logger", "logID", {"logID"}},
    {"V2xConfig", nullptr, {"v2xConfigId"}},
    {"Configuration", nullptr, {}, {}, {}, {{"scale", 1.0}}},
    {"SimulateConfiguration"},
    {"VehicleTraceOption"},
    {"DriveFollowedModelParam", nullptr, {"modelParamID"}},
    {"ChangeLaneModelParam", nullptr, {"modelParamID"}},
    {"LinkType", nullptr, {"linkTypeID"}, {}, {"typeName"}},
    {"VehicleType", nullptr, {"vehicleTypeCode"}, {}, {"vehicleTypeName"}},
    {"VehicleConstitutent", nullptr, {"vehicleConsCode"}},
    {"VehicleConsDetail", nullptr, {"vehicleConsCode", "vehicleTypeCode"}},

    {"Vertex", "vertexID", {"vertexID"}},
    {"Node", "nodeID", {"nodeID"}, {{"vertexID", "Vertex"}}},
    // A link's number of its road is its own identifier unless a host gave it another one.
    {"Link",
     "linkID",
     {"linkID"},
     {{"roadid", "Link"}, {"StartNodeID", "Node"}, {"EndNodeID", "Node"}},
     {"linkType"}},
    {"LinkVertex", nullptr, {"linkID", "num", "vertexID"}, {{"linkID", "Link"}, {"vertexID", "Vertex"}}},
    {"Lane", "laneID", {"laneID"}, {{"linkID", "Link"}}, {"actionType", "expectTravelDirection"}},
    {"LaneLimitVehicle", nullptr, {"laneID", "vehicleTypeCode"}, {{"laneID", "Lane"}}},
    {"LinkLimitVehicle", nullptr, {"linkID", "vehicleTypeCode"}, {{"linkID", "Link"}}},
    {"LinkFenceMiddle", nullptr, {"linkID1", "linkID2"}, {{"linkID1", "Link"}, {"linkID2", "Link"}}},
    {"GuideArrow", "guideArrowID", {"guideArrowID"}, {{"laneID", "Lane"}}},
    {"Connector",
     "connID",
     {"connID"},
     {{"roadId", "Connector"}, {"StartlinkID", "Link"}, {"EndlinkID", "Link"}}},
    {"ConnectorLimitVehicle", nullptr, {"connID", "vehicleTypeCode"}, {{"connID", "Connector"}}},
    {"LaneConnector",
     "laneConnId",
     {"connID", "startLaneID", "endLaneID"},
     {{"connID", "Connector"}, {"startLaneID", "Lane"}, {"endLaneID", "Lane"}}},

    {"SignalGroup", "signalGroupID", {"signalGroupID"}},
    {"SignalPhase", "signalPhaseID", {"signalPhaseID"}, {{"signalGroupID", "SignalGroup"}}},
    {"SignalColor",
     nullptr,
     {"signalPhaseID", "serialNumber"},
     {{"signalPhaseID", "SignalPhase"}},
     {"color"}},
    {"SignalLamp",
     "signalLampID",
     {"signalLampID"},
     {{"signalPhaseID", "SignalPhase"}, {"laneID", "Lane"}, {"toLaneID", "Lane"}}},

    {"DeparturePoint", "departurePointID", {"departurePointID"}, {{"linkID", "Link"}}},
    {"DepartureInterval",
     "departureIntervalD",
     {"departureIntervalD"},
     {{"departurePointID", "DeparturePoint"}}},
    {"DecisionPoint", "deciPointID", {"deciPointID"}, {{"linkID", "Link"}}},
    {"Routing", "routingID", {"routingID"}, {{"deciPointID", "DecisionPoint"}}},
    {"RoutingLink",
     nullptr,
     {"routingID", "num1", "num2", "linkID"},
     {{"routingID", "Routing"}, {"linkID", "Link"}}},
    {"RoutingFLowRatio", "RoutingFLowRatioID", {"RoutingFLowRatioID"}, {{"routingID", "Routing"}}},
    {"RoutingLaneConnector",
     nullptr,
     {"routingID", "connID", "laneID1", "laneID2"},
     {{"routingID", "Routing"}, {"connID", "Connector"}, {"laneID1", "Lane"}, {"laneID2", "Lane"}}},

    {"VehicleDetector",
     "vehicleDetectorId",
     {"vehicleDetectorId"},
     {{"signalGroupID", "SignalGroup"}, {"roadId", nullptr, nullptr, {"toLaneNumber"}, kFromZero}},
     {"type"}},
    {"DetectorVehiType",
     nullptr,
     {"vehicleDetectorId", "vehicleTypeCode"},
     {{"vehicleDetectorId", "VehicleDetector"}}},
    {"VehicleQueueCounter",
     "QueueCounterID",
     {"QueueCounterID"},
     {{"roadID", nullptr, nullptr, {"toLaneNumber"}, kFromOne}}},
    {"VehicleTravelDetector",
     "detectorId",
     {"detectorId"},
     {{"startRoadId", nullptr, nullptr, {"start_laneNumber", "start_toLaneNumber"}, kFromOne},
      {"teminalRoadId", nullptr, nullptr, {"teminal_laneNumber", "teminal_toLaneNumber"}, kFromOne}}},
    {"VehicleDrivInfoCollecter",
     "collecterID",
     {"collecterID"},
     {{"roadID", nullptr, nullptr, {"toLaneNumber"}, kFromOne}}},

    {"BusLine", "busLineID", {"busLineID"}},
    {"BusLineRoad",
     nullptr,
     {"busLineID", "serialNumber", "roadID"},
     {{"busLineID", "BusLine"}, {"roadID", "Link"}}},
    {"BusStation", "busStationID", {"busStationID"}, {{"linkID", "Link"}}, {"type"}},
    {"BusStationLine",
     "stationLineID",
     {"stationLineID"},
     {{"busStationID", "BusStation"}, {"busLineID", "BusLine"}}},
    {"BusStationPassengerArriving",
     "passengerArrivingID",
     {"passengerArrivingID"},
     {{"stationLineID", "BusStationLine"}}},
    {"Passenger", "PassengerID", {"PassengerID"}, {{"stationLineID", "BusStationLine"}}},

    {"AccidentZone", "accidentZoneId", {"accidentZoneId"}, {{"roadId", nullptr, "roadType"}}},
    {"AccidentZoneWithLane",
     nullptr,
     {"accidentZoneId", "laneNumber", "toLaneNumber"},
     {{"accidentZoneId", "AccidentZone"}}},
    {"RoadWorkZone",
     "roadWorkZoneId",
     {"roadWorkZoneId"},
     {{"roadID", nullptr, "roadType"}},
     {},
     {{"roadName", QStringLiteral("")}}},
    {"RoadWorkZoneWithLane",
     nullptr,
     {"roadWorkZoneId", "laneNumber", "toLaneNumber"},
     {{"roadWorkZoneId", "RoadWorkZone"}}},
    {"ReduceSpeedArea",
     "reduceSpeedAreaID",
     {"reduceSpeedAreaID"},
     {{"roadID", nullptr, nullptr, {"toLaneNumber"}, kFromOne}}},
    {"ReduceSpeedInterval", "intervalID", {"intervalID"}, {{"reduceSpeedAreaID", "ReduceSpeedArea"}}},
    {"ReduceSpeedVehiType",
     nullptr,
     {"reduceSpeedAreaID", "vehicleTypeCode"},
     {{"reduceSpeedAreaID", "ReduceSpeedArea"}}},
};

} // namespace

const std::vector<NetworkTable> &networkTables() {
    return kTables;
}

const NetworkTable *networkTable(const QString &name) {
    for (const NetworkTable &table : networkTables()) {
        if (name.compare(QLatin1String(table.name), Qt::CaseInsensitive) == 0)
            return &table;
    }
    return nullptr;
}

} // namespace moratools
