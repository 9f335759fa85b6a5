#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleDetector;

/// Vehicle detectors with the vehicle types that they register.
namespace vehicledetectors {

bool insertVehicleDetector(const Store &store, const VehicleDetector *detector, bool inTransaction);
VehicleDetector *readVehicleDetector(const Store &store, long detectorId);
/// True in every case.
bool listVehicleDetectorIds(const Store &store, QList<long> &ids);

void loadAllVehicleDetectors(NetLoad &net);
void saveAllVehicleDetectors(NetSave &net);

} // namespace vehicledetectors
