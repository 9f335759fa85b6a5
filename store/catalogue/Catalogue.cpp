#include "store/catalogue/Catalogue.h"

#include <algorithm>

namespace catalogue {

namespace {

// A detector's own test of whether it is on a link: no lane number of its far side, or a negative one. Queue
// counters, travel-time detectors, collectors and speed areas count lanes from 1 and take 0 for none.
constexpr int kFromZero = 0;
constexpr int kFromOne = 1;

/// Spells an entry: what is not said is not there.
class Entry {
public:
    explicit Entry(const char *name) : mTable{name} {}
    operator Table() const { return mTable; }

    /// Orders the rows as well.
    Entry &id(const char *column) {
        mTable.id = column;
        mTable.isIdTold = true;
        return key({column});
    }
    Entry &untoldId(const char *column) {
        id(column).mTable.isIdTold = false;
        return *this;
    }
    Entry &shared() {
        mTable.hasSharedIds = true;
        return *this;
    }
    Entry &key(std::vector<const char *> columns) {
        mTable.key = std::move(columns);
        return *this;
    }
    Entry &to(const char *table, const char *column) { return refer({column, table}); }
    Entry &toRoad(const char *column, const char *roadType) { return refer({column, nullptr, roadType}); }
    Entry &toRoad(const char *column, std::vector<const char *> lanes, int firstOfConnector) {
        return refer({column, nullptr, nullptr, std::move(lanes), firstOfConnector});
    }
    Entry &words(std::vector<const char *> columns) {
        mTable.words = std::move(columns);
        return *this;
    }
    Entry &fill(const char *column, const QVariant &value) {
        mTable.fillings.push_back({column, value});
        return *this;
    }

private:
    Entry &refer(Reference reference) {
        mTable.references.push_back(std::move(reference));
        return *this;
    }

    Table mTable;
};

std::vector<Table> settings() {
    return {
        Entry("Net")
            .key({"NetId"})
            .fill("name", QStringLiteral("MoraSim"))
            .fill("sourceType", QStringLiteral("MoraSim"))
            .fill("centerX", 0.0)
            .fill("centerY", 0.0)
            .fill("isDefault", QStringLiteral("F")),
        Entry("Logger").untoldId("logID"),
        Entry("V2xConfig").key({"v2xConfigId"}),
        Entry("Configuration").fill("scale", 1.0),
        Entry("SimulateConfiguration"),
        Entry("VehicleTraceOption"),
        Entry("DriveFollowedModelParam").key({"modelParamID"}),
        Entry("ChangeLaneModelParam").key({"modelParamID"}),
        Entry("LinkType").key({"linkTypeID"}).words({"typeName"}),
        Entry("VehicleType").untoldId("vehicleTypeCode").shared().words({"vehicleTypeName"}),
        Entry("VehicleConstitutent").id("vehicleConsCode").shared(),
        Entry("VehicleConsDetail").key({"vehicleConsCode", "vehicleTypeCode"}),
    };
}

std::vector<Table> roads() {
    return {
        Entry("Vertex").id("VertexID"),
        Entry("Node").id("nodeID").to("Vertex", "vertexID"),
        // A link's number of its road is its own identifier unless a host gave it another one.
        Entry("Link")
            .id("linkID")
            .to("Link", "roadid")
            .to("Node", "StartNodeID")
            .to("Node", "EndNodeID")
            .words({"linkType"}),
        Entry("LinkVertex").key({"linkID", "num", "vertexID"}).to("Link", "linkID").to("Vertex", "vertexID"),
        Entry("Lane").id("laneID").to("Link", "linkID").words({"actionType", "expectTravelDirection"}),
        Entry("LaneLimitVehicle").key({"laneID", "vehicleTypeCode"}).to("Lane", "laneID"),
        Entry("LinkLimitVehicle").key({"linkID", "vehicleTypeCode"}).to("Link", "linkID"),
        Entry("LinkFenceMiddle").key({"linkID1", "linkID2"}).to("Link", "linkID1").to("Link", "linkID2"),
        Entry("GuideArrow").id("guideArrowID").to("Lane", "laneID"),
        Entry("Connector")
            .id("ConnID")
            .to("Connector", "roadId")
            .to("Link", "StartlinkID")
            .to("Link", "EndlinkID"),
        Entry("ConnectorLimitVehicle").key({"connID", "vehicleTypeCode"}).to("Connector", "connID"),
        Entry("LaneConnector")
            .untoldId("laneConnId")
            .key({"connID", "startLaneID", "endLaneID"})
            .to("Connector", "connID")
            .to("Lane", "startLaneID")
            .to("Lane", "endLaneID"),
    };
}

std::vector<Table> signalsAndDemand() {
    return {
        Entry("SignalGroup").id("signalGroupID"),
        Entry("SignalPhase").id("signalPhaseID").to("SignalGroup", "signalGroupID"),
        Entry("SignalColor")
            .key({"signalPhaseID", "serialNumber"})
            .to("SignalPhase", "signalPhaseID")
            .words({"color"}),
        Entry("SignalLamp")
            .id("signalLampID")
            .to("SignalPhase", "signalPhaseID")
            .to("Lane", "laneID")
            .to("Lane", "toLaneID"),
        Entry("DeparturePoint").id("departurePointID").to("Link", "linkID"),
        // The column is spelled without its I in every store.
        Entry("DepartureInterval").id("departureIntervalD").to("DeparturePoint", "departurePointID"),
        Entry("DecisionPoint").id("deciPointID").to("Link", "linkID"),
        Entry("Routing").id("routingID").to("DecisionPoint", "deciPointID"),
        Entry("RoutingLink")
            .key({"routingID", "num1", "num2", "linkID"})
            .to("Routing", "routingID")
            .to("Link", "linkID"),
        Entry("RoutingFLowRatio").id("RoutingFLowRatioID").to("Routing", "routingID"),
        Entry("RoutingLaneConnector")
            .key({"routingID", "connID", "laneID1", "laneID2"})
            .to("Routing", "routingID")
            .to("Connector", "connID")
            .to("Lane", "laneID1")
            .to("Lane", "laneID2"),
    };
}

std::vector<Table> devicesAndTransport() {
    return {
        Entry("VehicleDetector")
            .id("vehicleDetectorId")
            .to("SignalGroup", "signalGroupID")
            .toRoad("roadId", {"toLaneNumber"}, kFromZero)
            .words({"type"}),
        Entry("DetectorVehiType")
            .key({"vehicleDetectorId", "vehicleTypeCode"})
            .to("VehicleDetector", "vehicleDetectorId"),
        Entry("VehicleQueueCounter").id("QueueCounterID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("VehicleTravelDetector")
            .id("detectorId")
            .toRoad("startRoadId", {"start_laneNumber", "start_toLaneNumber"}, kFromOne)
            .toRoad("teminalRoadId", {"teminal_laneNumber", "teminal_toLaneNumber"}, kFromOne),
        Entry("VehicleDrivInfoCollecter").id("collecterID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("BusLine").id("busLineID"),
        Entry("BusLineRoad")
            .key({"busLineID", "serialNumber", "roadID"})
            .to("BusLine", "busLineID")
            .to("Link", "roadID"),
        Entry("BusStation").id("busStationID").to("Link", "linkID").words({"type"}),
        Entry("BusStationLine")
            .id("stationLineID")
            .to("BusStation", "busStationID")
            .to("BusLine", "busLineID"),
        Entry("BusStationPassengerArriving")
            .untoldId("passengerArrivingID")
            .to("BusStationLine", "stationLineID"),
        Entry("Passenger").untoldId("PassengerID").to("BusStationLine", "stationLineID"),
    };
}

std::vector<Table> zones() {
    return {
        Entry("AccidentZone").untoldId("accidentZoneId").toRoad("roadId", "roadType"),
        Entry("AccidentZoneWithLane")
            .key({"accidentZoneId", "laneNumber", "toLaneNumber"})
            .to("AccidentZone", "accidentZoneId"),
        Entry("RoadWorkZone")
            .untoldId("roadWorkZoneId")
            .toRoad("roadID", "roadType")
            .fill("roadName", QStringLiteral("")),
        Entry("RoadWorkZoneWithLane")
            .key({"roadWorkZoneId", "laneNumber", "toLaneNumber"})
            .to("RoadWorkZone", "roadWorkZoneId"),
        Entry("ReduceSpeedArea").id("reduceSpeedAreaID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("ReduceSpeedInterval").id("intervalID").to("ReduceSpeedArea", "reduceSpeedAreaID"),
        Entry("ReduceSpeedVehiType")
            .key({"reduceSpeedAreaID", "vehicleTypeCode"})
            .to("ReduceSpeedArea", "reduceSpeedAreaID"),
    };
}

const std::vector<Kind> kKinds = {
    {"vehicleTypes", "VehicleType", "vehicle type", "vehicleTypeName"},
    {"vehicleCompositions", "VehicleConstitutent", "vehicle composition"},
    {"linkTypes", "LinkType", "link type", "typeName"},
    {"links", "Link", "link", "linkName"},
    {"lanes", "Lane"},
    {"nodes", "Node"},
    {"vertices", "Vertex"},
    {"connectors", "Connector", "connector", "connName"},
    {"laneConnectors", "LaneConnector"},
    {"guideArrows", "GuideArrow", "guide arrow", "''"},
    {"signalGroups", "SignalGroup", "signal group"},
    {"signalPhases", "SignalPhase"},
    {"signalLamps", "SignalLamp", "signal lamp"},
    {"departurePoints", "DeparturePoint", "departure point"},
    {"decisionPoints", "DecisionPoint", "decision point", "deciPointName"},
    {"routes", "Routing", "route", "routingName"},
    {"vehicleDetectors", "VehicleDetector", "vehicle detector"},
    {"queueCounters", "VehicleQueueCounter", "queue counter"},
    {"travelTimeDetectors", "VehicleTravelDetector", "travel-time detector"},
    {"drivingDataCollectors", "VehicleDrivInfoCollecter", "driving-data collector"},
    {"busLines", "BusLine", "bus line"},
    {"busStations", "BusStation", "bus station"},
    {"accidentZones", "AccidentZone", "accident zone"},
    {"roadWorkZones", "RoadWorkZone", "road-work zone"},
    {"speedReductionAreas", "ReduceSpeedArea", "speed reduction area"},
};

// The order of removal is a list of its own: hosts see in it which statement a store refused, and a group
// goes on after a refusal, so that it decides what is left.
const Group kBusLines = {"BusStationLine", "BusLineRoad", "BusLine", "BusStation"};
const Group kDevicesAndDemand = {
    "ReduceSpeedVehiType", "ReduceSpeedInterval",   "ReduceSpeedArea",  "VehicleDrivInfoCollecter",
    "VehicleQueueCounter", "VehicleTravelDetector", "DetectorVehiType", "VehicleDetector",
    "SignalLamp",          "SignalColor",           "SignalPhase",      "SignalGroup",
    "VehicleConsDetail",   "VehicleConstitutent",   "VehicleType",      "DepartureInterval",
    "DeparturePoint"};

const std::vector<Group> kRemovalFromOneNet = {
    {"BusStationPassengerArriving"},
    kBusLines,
    kDevicesAndDemand,
    {"RoutingFlowRatio", "RoutingLaneConnector"},
    {"RoutingLink", "Routing", "DecisionPoint", "GuideArrow", "RoadWorkZoneWithLane", "RoadWorkZone",
     "AccidentZoneWithLane", "AccidentZone", "LaneConnector", "ConnectorLimitVehicle", "Connector",
     "LinkVertex", "LaneLimitVehicle", "Lane", "Link", "Node"},
    {"Vertex"},
};

// ConnectorLimitVehicle and LaneLimitVehicle are not touched: no operation of this generation writes them,
// and rows of other writers stay theirs.
const std::vector<Group> kRemovalFromSeveralNets = {
    {"BusStationPassengerArriving"},
    kBusLines,
    kDevicesAndDemand,
    {"RoutingFlowRatio", "RoutingLaneConnector"},
    {"RoutingLink", "Routing", "DecisionPoint"},
    {"GuideArrow"},
    {"RoadWorkZoneWithLane"},
    {"RoadWorkZone"},
    {"AccidentZoneWithLane", "AccidentZone"},
    {"LaneConnector"},
    {"Connector", "LinkVertex", "Lane", "Link", "Node"},
    {"Vertex"},
};

} // namespace

const std::vector<Table> &tables() {
    static const std::vector<Table> all = [] {
        std::vector<Table> tables;
        for (const auto &part : {settings(), roads(), signalsAndDemand(), devicesAndTransport(), zones()})
            tables.insert(tables.end(), part.begin(), part.end());
        return tables;
    }();
    return all;
}

const Table *find(const QString &name) {
    const auto found = std::find_if(tables().begin(), tables().end(), [&name](const Table &table) {
        return name.compare(QLatin1String(table.name), Qt::CaseInsensitive) == 0;
    });
    return found != tables().end() ? &*found : nullptr;
}

const std::vector<Kind> &kinds() {
    return kKinds;
}

const Kind *kindIn(const QString &table) {
    const auto found = std::find_if(kKinds.begin(), kKinds.end(), [&table](const Kind &kind) {
        return table == QLatin1String(kind.table);
    });
    return found != kKinds.end() ? &*found : nullptr;
}

const std::vector<Group> &removalOrder(bool hasSeveralNets) {
    return hasSeveralNets ? kRemovalFromSeveralNets : kRemovalFromOneNet;
}

} // namespace catalogue
