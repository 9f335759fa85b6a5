#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class ReduceSpeedArea;

/// Speed reduction areas with their intervals and the speeds of vehicle types.
namespace reducespeedareas {

bool insertReduceSpeedArea(const Store &store, const ReduceSpeedArea *area, bool inTransaction);
ReduceSpeedArea *readReduceSpeedArea(const Store &store, long areaId);
/// True in every case.
bool listReduceSpeedAreaIds(const Store &store, QList<long> &ids);

void loadAllReduceSpeedAreas(NetLoad &net);
void saveAllReduceSpeedAreas(NetSave &net);

} // namespace reducespeedareas
