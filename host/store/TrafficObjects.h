#pragma once

#include "model/AccidentZone.h"
#include "model/BusLine.h"
#include "model/BusStation.h"
#include "model/DecisionPoint.h"
#include "model/DeparturePoint.h"
#include "model/ReduceSpeedArea.h"
#include "model/RoadWorkZone.h"
#include "model/SignalGroup.h"
#include "model/SignalLamp.h"
#include "model/VehicleComposition.h"
#include "model/VehicleDetector.h"
#include "model/VehicleDrivInfoCollector.h"
#include "model/VehicleQueueCounter.h"
#include "model/VehicleTravelDetector.h"
#include "model/VehicleType.h"

#include <memory>
#include <vector>

template <class T>
using Objects = std::vector<std::unique_ptr<T>>;

/// The objects of a network besides its roads, owned.
struct TrafficObjects {
    Objects<VehicleType> vehicleTypes;
    Objects<VehicleComposition> compositions;
    Objects<DeparturePoint> departurePoints;
    Objects<DecisionPoint> decisionPoints;
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
};

/// Calls `visit` with the member that lists each kind, in the order in which kinds are written and read.
template <class Visit>
void forEachKind(const Visit &visit) {
    visit(&TrafficObjects::vehicleTypes);
    visit(&TrafficObjects::compositions);
    visit(&TrafficObjects::departurePoints);
    visit(&TrafficObjects::decisionPoints);
    visit(&TrafficObjects::signalGroups);
    visit(&TrafficObjects::signalLamps);
    visit(&TrafficObjects::vehicleDetectors);
    visit(&TrafficObjects::queueCounters);
    visit(&TrafficObjects::travelDetectors);
    visit(&TrafficObjects::collectors);
    visit(&TrafficObjects::busStations);
    visit(&TrafficObjects::busLines);
    visit(&TrafficObjects::speedAreas);
    visit(&TrafficObjects::accidentZones);
    visit(&TrafficObjects::roadWorkZones);
}
