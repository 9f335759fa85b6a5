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
/// Writes the catalogue of types and compositions, each in place of what the network starts with where the
/// contents have any. Compositions that stay consist of the new types, or the save is refused.
void saveCatalogue(NetSave &net);

} // namespace vehiclecompositions
