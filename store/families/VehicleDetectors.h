#pragma once

#include "store/core/Store.h"

#include <QList>

class VehicleDetector;

/// Vehicle detectors with the vehicle types that they register.
namespace vehicledetectors {

bool insert(const Store &store, const VehicleDetector *detector, bool inTransaction);
VehicleDetector *read(const Store &store, long detectorId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

} // namespace vehicledetectors
