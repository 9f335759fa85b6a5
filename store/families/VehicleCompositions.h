#pragma once

#include "model/VehicleComposition.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Compositions of vehicle types and their details.
namespace vehiclecompositions {

bool insert(const Store &store, const VehicleComposition &composition, bool useTransaction);
bool insertDetail(const Store &store, const VehicleConsDetail &detail, bool useTransaction);
bool readAll(const Store &store, QHash<long, VehicleComposition> &compositions);
VehicleComposition read(const Store &store, long consCode);
QList<VehicleConsDetail> readDetails(const Store &store, long consCode);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace vehiclecompositions
