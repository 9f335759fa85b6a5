#pragma once

#include "model/VehicleDrivInfoCollector.h"
#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;

/// Driving-data collectors.
namespace drivinfocollectors {

bool insertDrivInfoCollector(const Store &store, const VehicleDrivInfoCollector &collector,
                             bool inTransaction);
/// A new collector when there is no such row.
VehicleDrivInfoCollector readDrivInfoCollector(const Store &store, long collectorId);
/// True in every case.
bool listDrivInfoCollectorIds(const Store &store, QList<long> &ids);

void loadAllDrivInfoCollectors(NetLoad &net);
void saveAllDrivInfoCollectors(NetSave &net);

} // namespace drivinfocollectors
