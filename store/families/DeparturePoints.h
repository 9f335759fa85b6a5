#pragma once

#include "model/DeparturePoint.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Departure points with the intervals of their timetables.
namespace departurepoints {

bool insertDeparturePoint(const Store &store, const DeparturePoint &point, bool useTransaction);
DeparturePoint *readDeparturePoint(const Store &store, const QHash<long, VehicleComposition> &compositions,
                                   long pointId);
bool listDeparturePointIds(const Store &store, QList<long> &ids);

void loadAllDeparturePoints(NetLoad &net);
void saveAllDeparturePoints(NetSave &net);

} // namespace departurepoints
