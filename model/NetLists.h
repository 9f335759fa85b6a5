#pragma once

#include "AccidentZone.h"
#include "BusLine.h"
#include "BusStation.h"
#include "ChangeLaneModelParam.h"
#include "Configuration.h"
#include "Connector.h"
#include "DecisionPoint.h"
#include "DeparturePoint.h"
#include "DriveFollowedModelParam.h"
#include "GuideArrow.h"
#include "LCStruct.h"
#include "Link.h"
#include "LinkType.h"
#include "Net.h"
#include "ReduceSpeedArea.h"
#include "RoadWorkZone.h"
#include "SignalGroup.h"
#include "SignalLamp.h"
#include "SimulateConfiguration.h"
#include "VehicleComposition.h"
#include "VehicleDetector.h"
#include "VehicleDrivInfoCollector.h"
#include "VehicleQueueCounter.h"
#include "VehicleTravelDetector.h"
#include "VehicleType.h"

#include <memory>
#include <optional>
#include <vector>

/// Objects of one kind, owned.
template <class T>
using Objects = std::vector<std::unique_ptr<T>>;

/// Lanes that a route uses on a connector.
struct RouteLanes {
    long routingID = 0;
    long connID = 0;
    LCStruct lanes;
};

/// The objects of a network besides its roads.
struct TrafficObjects {
    Objects<VehicleType> vehicleTypes;
    Objects<VehicleComposition> compositions;
    Objects<DeparturePoint> departurePoints;
    Objects<DecisionPoint> decisionPoints;
    QList<RouteLanes> routeLanes; ///< by route and connector
    Objects<SignalGroup> signalGroups;
    Objects<SignalLamp> signalLamps;
    Objects<VehicleDetector> vehicleDetectors;
    Objects<VehicleQueueCounter> queueCounters;
    Objects<VehicleTravelDetector> travelDetectors;
    Objects<VehicleDrivInfoCollector> collectors;
    Objects<BusStation> busStations;
    Objects<BusLine> busLines;
    Objects<ReduceSpeedArea> speedAreas;
    Objects<AccidentZone> accidentZones;
    Objects<RoadWorkZone> roadWorkZones;

    /// Calls `visit` with the table, the list's name and the list of each kind, in the order in which kinds
    /// are written and read.
    template <class Visit>
    static void forEachKind(const Visit &visit) {
        visit("VehicleType", "vehicleTypes", &TrafficObjects::vehicleTypes);
        visit("VehicleConstitutent", "compositions", &TrafficObjects::compositions);
        visit("DeparturePoint", "departurePoints", &TrafficObjects::departurePoints);
        visit("DecisionPoint", "decisionPoints", &TrafficObjects::decisionPoints);
        visit("SignalGroup", "signalGroups", &TrafficObjects::signalGroups);
        visit("SignalLamp", "signalLamps", &TrafficObjects::signalLamps);
        visit("VehicleDetector", "vehicleDetectors", &TrafficObjects::vehicleDetectors);
        visit("VehicleQueueCounter", "queueCounters", &TrafficObjects::queueCounters);
        visit("VehicleTravelDetector", "travelDetectors", &TrafficObjects::travelDetectors);
        visit("VehicleDrivInfoCollecter", "collectors", &TrafficObjects::collectors);
        visit("BusStation", "busStations", &TrafficObjects::busStations);
        visit("BusLine", "busLines", &TrafficObjects::busLines);
        visit("ReduceSpeedArea", "speedAreas", &TrafficObjects::speedAreas);
        visit("AccidentZone", "accidentZones", &TrafficObjects::accidentZones);
        visit("RoadWorkZone", "roadWorkZones", &TrafficObjects::roadWorkZones);
    }
};

/// The settings that a network is simulated and shown with.
struct NetSettings {
    QList<DriveFollowedModelParam> carFollowing; ///< by id
    QList<ChangeLaneModelParam> laneChanging;    ///< by id
    std::optional<SimulateConfiguration> simulation;
    std::optional<Configuration> scene;
};

/// All objects of a network, owned; each list in ascending order of ids, with new objects, whose id is 0, at the
/// end. What is made later refers to what is made earlier, and is destroyed before it.
struct NetLists {
    NetRecord record;
    NetSettings settings;
    QList<LinkType> linkTypes;
    Objects<Link> links;
    Objects<GuideArrow> guideArrows;
    Objects<Connector> connectors;
    TrafficObjects traffic;
};
