#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class ReduceSpeedArea;

/// Speed reduction areas with their intervals and the speeds of vehicle types.
namespace reducespeedareas {

bool insert(const Store &store, const ReduceSpeedArea *area, bool inTransaction);
ReduceSpeedArea *read(const Store &store, long areaId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace reducespeedareas
