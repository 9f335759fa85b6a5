#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class BusStation;

/// Bus stations.
namespace busstations {

bool insertBusStation(const Store &store, const BusStation *station, bool inTransaction);
BusStation *readBusStation(const Store &store, long stationId);
/// The stations whose link exists; true in every case.
bool listBusStationIds(const Store &store, QList<long> &ids);

void loadAllBusStations(NetLoad &net);
void saveAllBusStations(NetSave &net);

} // namespace busstations
