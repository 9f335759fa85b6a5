#pragma once

#include "model/VehicleType.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// The catalogue of vehicle types.
namespace vehicletypes {

bool insertVehicleType(const Store &store, const VehicleType &type, bool useTransaction);
bool readVehicleTypes(const Store &store, QHash<long, VehicleType> &types);

void loadAllVehicleTypes(NetLoad &net);
void saveAllVehicleTypes(NetSave &net);

} // namespace vehicletypes
