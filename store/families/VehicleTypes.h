#pragma once

#include "model/VehicleType.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// The catalogue of vehicle types.
namespace vehicletypes {

bool insert(const Store &store, const VehicleType &type, bool useTransaction);
bool readAll(const Store &store, QHash<long, VehicleType> &types);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace vehicletypes
