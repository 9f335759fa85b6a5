#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class BusLine;

/// Bus lines with their roads, their stops and the passengers who arrive there.
namespace buslines {

bool insert(const Store &store, const BusLine *line, bool inTransaction);
BusLine *read(const Store &store, long lineId);
/// True in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace buslines
