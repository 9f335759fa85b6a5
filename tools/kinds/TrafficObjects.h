#pragma once

#include "model/NetContents.h"

namespace moratools {

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

} // namespace moratools
