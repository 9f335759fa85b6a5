#include "store/catalogue/Catalogue.h"

#include <QHash>

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
    Entry &identity(std::vector<const char *> columns) {
        mTable.identity = std::move(columns);
        return *this;
    }
    Entry &to(const char *table, const char *column, Bond bond = Bond::Object) {
        return refer({column, table, nullptr, {}, 0, bond, bond == Bond::Named});
    }
    Entry &mayBeNone() {
        mTable.references.back().mayBeNone = true;
        return *this;
    }
    Entry &partOf(const char *table, const char *column) { return to(table, column, Bond::Part); }
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
    Entry &aside() {
        mTable.isAside = true;
        return *this;
    }
    Entry &asWritten() {
        mTable.isAsWritten = true;
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
        Entry("VehicleConsDetail")
            .key({"vehicleConsCode", "vehicleTypeCode"})
            .partOf("VehicleConstitutent", "vehicleConsCode")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
    };
}

std::vector<Table> roads() {
    return {
        Entry("Vertex").id("VertexID"),
        Entry("Node").id("nodeID").to("Vertex", "vertexID", Bond::Carried),
        // A link's number of its road is its own identifier unless a host gave it another one.
        Entry("Link")
            .id("linkID")
            .to("Link", "roadid", Bond::HostNumber)
            .to("Node", "StartNodeID", Bond::Carried)
            .to("Node", "EndNodeID", Bond::Carried)
            .words({"linkType"}),
        Entry("LinkVertex")
            .key({"linkID", "num", "vertexID"})
            .identity({"linkID", "num"})
            .partOf("Link", "linkID")
            .to("Vertex", "vertexID", Bond::Carried),
        Entry("Lane").id("laneID").partOf("Link", "linkID").words({"actionType", "expectTravelDirection"}),
        Entry("LaneLimitVehicle")
            .key({"laneID", "vehicleTypeCode"})
            .partOf("Lane", "laneID")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
        Entry("LinkLimitVehicle")
            .aside()
            .key({"linkID", "vehicleTypeCode"})
            .partOf("Link", "linkID")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
        Entry("LinkFenceMiddle")
            .aside()
            .key({"linkID1", "linkID2"})
            .partOf("Link", "linkID1")
            .partOf("Link", "linkID2"),
        Entry("GuideArrow").id("guideArrowID").to("Lane", "laneID"),
        Entry("Connector")
            .id("ConnID")
            .to("Connector", "roadId", Bond::HostNumber)
            .to("Link", "StartlinkID")
            .to("Link", "EndlinkID"),
        Entry("ConnectorLimitVehicle")
            .key({"connID", "vehicleTypeCode"})
            .partOf("Connector", "connID")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
        Entry("LaneConnector")
            .untoldId("laneConnId")
            .asWritten()
            .key({"connID", "startLaneID", "endLaneID"})
            .partOf("Connector", "connID")
            .to("Lane", "startLaneID", Bond::Entry)
            .to("Lane", "endLaneID", Bond::Entry),
    };
}

std::vector<Table> signalsAndDemand() {
    return {
        Entry("SignalGroup").id("signalGroupID"),
        Entry("SignalPhase").asWritten().id("signalPhaseID").partOf("SignalGroup", "signalGroupID"),
        Entry("SignalColor")
            .key({"signalPhaseID", "serialNumber"})
            .partOf("SignalPhase", "signalPhaseID")
            .words({"color"}),
        Entry("SignalLamp")
            .id("signalLampID")
            .to("SignalPhase", "signalPhaseID")
            .to("Lane", "laneID")
            .to("Lane", "toLaneID", Bond::Named),
        Entry("DeparturePoint").id("departurePointID").to("Link", "linkID"),
        // The column is spelled without its I in every store.
        Entry("DepartureInterval")
            .id("departureIntervalD")
            .partOf("DeparturePoint", "departurePointID")
            .to("VehicleConstitutent", "vehiCons", Bond::Named),
        Entry("DecisionPoint").id("deciPointID").to("Link", "linkID"),
        Entry("Routing").id("routingID").partOf("DecisionPoint", "deciPointID"),
        Entry("RoutingLink")
            .key({"routingID", "num1", "num2", "linkID"})
            .identity({"routingID", "num1", "linkID"})
            .partOf("Routing", "routingID")
            .to("Link", "linkID", Bond::Owner),
        Entry("RoutingFLowRatio").id("RoutingFLowRatioID").partOf("Routing", "routingID"),
        // Lanes of routes are kept beside the routes.
        Entry("RoutingLaneConnector")
            .aside()
            .key({"routingID", "connID", "laneID1", "laneID2"})
            .partOf("Routing", "routingID")
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
            .mayBeNone()
            .toRoad("roadId", {"toLaneNumber"}, kFromZero)
            .words({"type"}),
        Entry("DetectorVehiType")
            .key({"vehicleDetectorId", "vehicleTypeCode"})
            .partOf("VehicleDetector", "vehicleDetectorId")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
        Entry("VehicleQueueCounter").id("QueueCounterID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("VehicleTravelDetector")
            .id("detectorId")
            .toRoad("startRoadId", {"start_laneNumber", "start_toLaneNumber"}, kFromOne)
            .toRoad("teminalRoadId", {"teminal_laneNumber", "teminal_toLaneNumber"}, kFromOne),
        Entry("VehicleDrivInfoCollecter").id("collecterID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("BusLine").id("busLineID"),
        Entry("BusLineRoad")
            .key({"busLineID", "serialNumber", "roadID"})
            .identity({"busLineID", "serialNumber"})
            .partOf("BusLine", "busLineID")
            .to("Link", "roadID", Bond::Owner),
        Entry("BusStation").id("busStationID").to("Link", "linkID").words({"type"}),
        Entry("BusStationLine")
            .asWritten()
            .id("stationLineID")
            .to("BusStation", "busStationID")
            .partOf("BusLine", "busLineID"),
        Entry("BusStationPassengerArriving")
            .asWritten()
            .untoldId("passengerArrivingID")
            .partOf("BusStationLine", "stationLineID"),
        Entry("Passenger").aside().untoldId("PassengerID").partOf("BusStationLine", "stationLineID"),
    };
}

std::vector<Table> zones() {
    return {
        Entry("AccidentZone").untoldId("accidentZoneId").toRoad("roadId", "roadType"),
        Entry("AccidentZoneWithLane")
            .key({"accidentZoneId", "laneNumber", "toLaneNumber"})
            .partOf("AccidentZone", "accidentZoneId"),
        Entry("RoadWorkZone")
            .untoldId("roadWorkZoneId")
            .toRoad("roadID", "roadType")
            .fill("roadName", QStringLiteral("")),
        Entry("RoadWorkZoneWithLane")
            .key({"roadWorkZoneId", "laneNumber", "toLaneNumber"})
            .partOf("RoadWorkZone", "roadWorkZoneId"),
        Entry("ReduceSpeedArea").id("reduceSpeedAreaID").toRoad("roadID", {"toLaneNumber"}, kFromOne),
        Entry("ReduceSpeedInterval")
            .asWritten()
            .id("intervalID")
            .partOf("ReduceSpeedArea", "reduceSpeedAreaID"),
        Entry("ReduceSpeedVehiType")
            .asWritten()
            .key({"reduceSpeedAreaID", "vehicleTypeCode"})
            .partOf("ReduceSpeedArea", "reduceSpeedAreaID")
            .to("VehicleType", "vehicleTypeCode", Bond::Entry),
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

bool Reference::saysConnector(const std::function<QVariant(const char *)> &valueOf) const {
    if (roadType)
        return !valueOf(roadType).toString().startsWith(QLatin1Char('l'), Qt::CaseInsensitive);
    return std::any_of(lanes.cbegin(), lanes.cend(), [&](const char *lane) {
        const QVariant number = valueOf(lane);
        return !number.isNull() && number.toLongLong() >= firstOfConnector;
    });
}

const Reference *Table::owner() const {
    const auto found = std::find_if(references.cbegin(), references.cend(),
                                    [](const Reference &reference) { return reference.bond == Bond::Part; });
    return found != references.cend() ? &*found : nullptr;
}

bool isCarried(const Table &table) {
    const auto carries = [&table](const Reference &reference) {
        return reference.bond == Bond::Carried && qstrcmp(reference.table, table.name) == 0;
    };
    return std::any_of(tables().begin(), tables().end(), [&carries](const Table &from) {
        return std::any_of(from.references.begin(), from.references.end(), carries);
    });
}

QString wordFor(const QString &table) {
    static const QHash<QString, QString> parts = {
        {QStringLiteral("Lane"), QStringLiteral("lane")},
        {QStringLiteral("Node"), QStringLiteral("node")},
        {QStringLiteral("Vertex"), QStringLiteral("vertex")},
        {QStringLiteral("SignalPhase"), QStringLiteral("signal phase")},
        {QStringLiteral("BusStationLine"), QStringLiteral("bus stop")},
        {QStringLiteral("RoutingLaneConnector"), QStringLiteral("lane pair of route")},
    };
    const Kind *kind = kindIn(table);
    return kind && kind->word ? QString::fromLatin1(kind->word)
                              : parts.value(table, QStringLiteral("row of ") + table);
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
