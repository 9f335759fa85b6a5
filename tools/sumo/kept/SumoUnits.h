#pragma once

namespace moratools {

/// Speeds are metres per second in SUMO's files and kilometres per hour in a store.
constexpr double kKmhPerMs = 3.6;

/// The width in metres of a lane that says none ("Networks" in SUMO's documentation).
constexpr double kUsualLaneWidth = 3.2;

} // namespace moratools
