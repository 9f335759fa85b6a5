#pragma once

#include "tools/sumo/reader/SumoCompanions.h"

#include <tuple>

namespace moratools {

/// What of a vehicle decides on its way: where it may go, and how fast.
struct TravelProfile {
    QString vClass;
    double maxSpeed = 0;    ///< m/s
    double speedFactor = 1; ///< of the speed limit

    friend bool operator<(const TravelProfile &a, const TravelProfile &b) {
        return std::tie(a.vClass, a.maxSpeed, a.speedFactor) < std::tie(b.vClass, b.maxSpeed, b.speedFactor);
    }
};

/// The profile of a type. What it does not say is what SUMO 1.15 takes for its class ("Vehicle Type Parameter
/// Defaults" in its documentation).
TravelProfile travelProfileOf(const SumoVehicleType &type);

} // namespace moratools
