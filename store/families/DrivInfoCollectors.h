#pragma once

#include "model/VehicleDrivInfoCollector.h"
#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;

/// Driving-data collectors.
namespace drivinfocollectors {

bool insert(const Store &store, const VehicleDrivInfoCollector &collector, bool inTransaction);
/// A new collector when there is no such row.
VehicleDrivInfoCollector read(const Store &store, long collectorId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace drivinfocollectors
