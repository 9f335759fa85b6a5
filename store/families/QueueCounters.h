#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class VehicleQueueCounter;

/// Queue counters.
namespace queuecounters {

bool insert(const Store &store, const VehicleQueueCounter *counter, bool inTransaction);
/// Never null: a new counter when there is no such row.
VehicleQueueCounter *read(const Store &store, long counterId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace queuecounters
