#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/sumo/reader/SumoCompanions.h"

#include <vector>

namespace moratools {

/// A trip or flow that cannot get where it wants to.
struct UnservedTrip {
    std::size_t vehicle = 0; ///< place in `SumoCompanions::vehicles`
    QString reason;
};

/// Gives each trip and flow that says from which edge to which one it goes, and has no route, the fastest way
/// at free flow (RoadGraph), past the edges that it wants to drive on (`via`, else the edges of its stops). The references of
/// `companions` resolve. Vehicles of a distribution of types go the way of its most frequent one.
/// @return those for which there is none, in ascending order; they stay as they are.
MORATOOLS_EXPORT std::vector<UnservedTrip> routeTrips(const SumoNet &net, SumoCompanions &companions,
                                                      const Progress &progress = {});

} // namespace moratools
