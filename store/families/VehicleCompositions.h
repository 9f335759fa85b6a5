#pragma once

#include "model/VehicleComposition.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// Compositions of vehicle types and their details.
namespace vehiclecompositions {

bool insertVehicleComposition(const Store &store, const VehicleComposition &composition, bool useTransaction);
bool insertCompositionDetail(const Store &store, const VehicleConsDetail &detail, bool useTransaction);
bool readVehicleCompositions(const Store &store, QHash<long, VehicleComposition> &compositions);
VehicleComposition readVehicleComposition(const Store &store, long consCode);
QList<VehicleConsDetail> readCompositionDetails(const Store &store, long consCode);

/// Reads the catalogue of types and compositions, into the registries as well.
void loadCatalogue(NetLoad &net);
/// Writes the catalogue of types and compositions, each in place of what the network starts with where the
/// contents have any. Compositions that stay consist of the new types, or the save is refused.
void saveCatalogue(NetSave &net);

} // namespace vehiclecompositions
