#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleDetector;

/// Vehicle detectors with the vehicle types that they register.
namespace vehicledetectors {

bool insert(const Store &store, const VehicleDetector *detector, bool inTransaction);
VehicleDetector *read(const Store &store, long detectorId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace vehicledetectors
