#pragma once

#include "model/VehicleType.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

/// The code of the standard catalogue's type that comes nearest to a SUMO vehicle class: cars for what is
/// not listed.
long standardTypeOf(const QString &vClass);

/// `type` with the code `code`, its missing figures taken from `standard`.
VehicleType vehicleTypeOf(const SumoVehicleType &type, const VehicleType &standard, long code);

} // namespace moratools
