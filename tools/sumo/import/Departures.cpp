#include "tools/sumo/import/Departures.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// A flow of n vehicles an hour departs n times in an hour, whatever the division leaves in the last digits.
constexpr double kRounding = 1e-9;

double periodOf(const SumoVehicle &flow) {
    return flow.period > 0 ? flow.period : (flow.end - flow.begin) / flow.number;
}

/// Departures of a flow before `time`.
int departuresBefore(const SumoVehicle &flow, double time, int all) {
    if (time <= flow.begin)
        return 0;
    const double period = periodOf(flow);
    return period > 0 ? int(std::min<double>(all, std::ceil((time - flow.begin) / period - kRounding))) : all;
}

} // namespace

int departuresOf(const SumoVehicle &vehicle) {
    if (!vehicle.isFlow)
        return 1;
    if (vehicle.period <= 0)
        return vehicle.number;
    const double fitting = std::ceil((vehicle.end - vehicle.begin) / vehicle.period - kRounding);
    return vehicle.number < 0 ? int(fitting) : int(std::min<double>(vehicle.number, fitting));
}

std::map<int, int> departuresBySlice(const SumoVehicle &vehicle) {
    if (!vehicle.isFlow)
        return {{int(vehicle.depart / kSliceSeconds), 1}};
    std::map<int, int> counts;
    const int all = departuresOf(vehicle);
    int before = 0;
    for (int slice = int(vehicle.begin / kSliceSeconds); before < all; ++slice) {
        const int until = departuresBefore(vehicle, (slice + 1.0) * kSliceSeconds, all);
        if (until > before)
            counts[slice] = until - before;
        before = until;
    }
    return counts;
}

std::pair<double, double> spanOfDepartures(const SumoVehicle &vehicle) {
    if (!vehicle.isFlow)
        return {vehicle.depart, vehicle.depart};
    return {vehicle.begin, vehicle.begin + (departuresOf(vehicle) - 1) * periodOf(vehicle)};
}

} // namespace moratools
