#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class BusLine;

/// Bus lines with their roads, their stops and the passengers who arrive there.
namespace buslines {

bool insertBusLine(const Store &store, const BusLine *line, bool inTransaction);
BusLine *readBusLine(const Store &store, long lineId);
/// True in every case.
bool listBusLineIds(const Store &store, QList<long> &ids);

void loadAllBusLines(NetLoad &net);
void saveAllBusLines(NetSave &net);

} // namespace buslines
