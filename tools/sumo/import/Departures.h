#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/SumoCompanions.h"

#include <map>

namespace moratools {

/// Times of departures are put into slices of a quarter of an hour; slice n lasts from n * 900 s to the next.
/// In a store times are whole seconds counted from 1, so it covers the seconds n * 900 + 1 to (n + 1) * 900.
constexpr int kSliceSeconds = 900;

/// How many vehicles depart: 1 for a vehicle, all of a flow's.
MORATOOLS_EXPORT int departuresOf(const SumoVehicle &vehicle);
/// The same by slice. A flow's vehicles follow each other at equal distances from its begin on.
MORATOOLS_EXPORT std::map<int, int> departuresBySlice(const SumoVehicle &vehicle);
/// The times of the first and the last departure of a vehicle or a flow that has any.
MORATOOLS_EXPORT std::pair<double, double> spanOfDepartures(const SumoVehicle &vehicle);

} // namespace moratools
