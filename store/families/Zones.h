#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class AccidentZone;
class RoadWorkZone;

/// Accident and road-work zones: read for the simulation, written by other programs.
namespace zones {

AccidentZone *readAccident(const Store &store, long zoneId);
RoadWorkZone *readRoadWork(const Store &store, long zoneId);

/// @{ False when the query failed; true when a store of one network has no such table yet.
bool listAccidentIds(const Store &store, QList<long> &ids);
bool listRoadWorkIds(const Store &store, QList<long> &ids);
/// @}

void load(NetLoad &net);
void save(NetSave &net);

} // namespace zones
