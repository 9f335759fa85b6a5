#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleTravelDetector;

/// Travel-time detectors.
namespace traveldetectors {

bool insert(const Store &store, const VehicleTravelDetector *detector, bool inTransaction);
VehicleTravelDetector *read(const Store &store, long detectorId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace traveldetectors
