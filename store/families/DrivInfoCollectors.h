#pragma once

#include "model/VehicleDrivInfoCollector.h"
#include "store/core/Store.h"

#include <QList>

/// Driving-data collectors.
namespace drivinfocollectors {

bool insert(const Store &store, const VehicleDrivInfoCollector &collector, bool inTransaction);
/// A new collector when there is no such row.
VehicleDrivInfoCollector read(const Store &store, long collectorId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

} // namespace drivinfocollectors
