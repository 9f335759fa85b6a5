#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class BusStation;

/// Bus stations.
namespace busstations {

bool insert(const Store &store, const BusStation *station, bool inTransaction);
BusStation *read(const Store &store, long stationId);
/// The stations whose link exists; true in every case.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace busstations
