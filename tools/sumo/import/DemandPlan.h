#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/reader/SumoCompanions.h"

#include <map>

namespace moratools {

/// The vehicles that depart on an edge.
struct PlannedDepartures {
    QString edge;
    /// Vehicles by slice (`kSliceSeconds`) and vehicle type or distribution.
    std::map<int, std::map<QString, int>> vehicles;
};

/// A way on from a decision point.
struct PlannedRoute {
    QString name;
    QStringList edges;
    double weight = 0; ///< over all intervals
};

/// The shares of the routes in a time slice.
struct PlannedShares {
    double begin = 0; ///< seconds
    double end = 0;
    std::map<std::size_t, double> shares; ///< by route; a route that is missing takes no traffic
};

/// Where the traffic of an edge divides.
struct PlannedDecision {
    QString name;
    QString edge;
    std::vector<PlannedRoute> routes;
    std::vector<PlannedShares> intervals; ///< by their ends
};

struct DemandPlan {
    std::vector<PlannedDepartures> departures;
    std::vector<PlannedDecision> decisions;
    qint64 vehicles = 0; ///< that depart
};

/// Adds up the vehicles of `companions`, which resolve, by the edges on which they start, and divides them
/// among the routes that they drive: the shares of an interval add up to 1. A flow with a distribution of
/// routes counts for each with its probability. Turn ratios make decision points of their own, named
/// "EDGE turns", with routes of two edges.
MORATOOLS_EXPORT DemandPlan planDemand(const SumoCompanions &companions, LeftOut &leftOut);

} // namespace moratools
