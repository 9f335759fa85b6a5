#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleTravelDetector;

/// Travel-time detectors.
namespace traveldetectors {

bool insertTravelDetector(const Store &store, const VehicleTravelDetector *detector, bool inTransaction);
VehicleTravelDetector *readTravelDetector(const Store &store, long detectorId);
/// True in every case.
bool listTravelDetectorIds(const Store &store, QList<long> &ids);

void loadAllTravelDetectors(NetLoad &net);
void saveAllTravelDetectors(NetSave &net);

} // namespace traveldetectors
