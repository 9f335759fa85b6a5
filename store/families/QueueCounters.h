#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleQueueCounter;

/// Queue counters.
namespace queuecounters {

bool insertQueueCounter(const Store &store, const VehicleQueueCounter *counter, bool inTransaction);
/// Never null: a new counter when there is no such row.
VehicleQueueCounter *readQueueCounter(const Store &store, long counterId);
/// True in every case.
bool listQueueCounterIds(const Store &store, QList<long> &ids);

void loadAllQueueCounters(NetLoad &net);
void saveAllQueueCounters(NetSave &net);

} // namespace queuecounters
