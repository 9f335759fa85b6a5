#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class AccidentZone;
class RoadWorkZone;

/// Accident and road-work zones: read for the simulation, written by other programs.
namespace zones {

AccidentZone *readAccidentZone(const Store &store, long zoneId);
/// The zone of that id of the store's network, also in generation 6.
AccidentZone *readOwnAccidentZone(const Store &store, long zoneId);
RoadWorkZone *readRoadWorkZone(const Store &store, long zoneId);

/// @{ False when the query failed; true when a store of one network has no such table yet.
bool listAccidentZoneIds(const Store &store, QList<long> &ids);
bool listRoadWorkZoneIds(const Store &store, QList<long> &ids);
/// @}

void loadAllZones(NetLoad &net);
void saveAllZones(NetSave &net);

} // namespace zones
