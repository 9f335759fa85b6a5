#pragma once

#include "model/DeparturePoint.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Departure points with the intervals of their timetables.
namespace departurepoints {

bool insert(const Store &store, const DeparturePoint &point, bool useTransaction);
DeparturePoint *read(const Store &store, const QHash<long, VehicleComposition> &compositions, long pointId);
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace departurepoints
