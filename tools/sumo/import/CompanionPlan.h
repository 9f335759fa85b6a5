#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/sumo/import/DemandPlan.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/import/Obstacles.h"
#include "tools/sumo/import/SignalPlan.h"
#include "tools/sumo/import/TransitPlan.h"
#include "tools/sumo/reader/ScenarioReader.h"

#include <memory>

namespace moratools {

/// What a network and its companion files will become, settled before the store is touched: every reference
/// in it leads somewhere.
struct CompanionPlan {
    std::shared_ptr<const SumoCompanions> companions; ///< the others lead into it and into the network
    SumoScenario scenario;                            ///< how the simulation runs
    SignalPlan signalPlan;
    std::vector<PlannedLine> lines;
    std::vector<Obstacle> obstacles;
    DemandPlan demand;
    LeftOut leftOut;
};

/// What becomes of trips and flows that know where they go and not how.
enum class Trips {
    Depart, ///< they depart, and whoever reads the store decides
    Routed, ///< they drive the fastest way at free flow (routeTrips()); those that have none are left out
};

/// Plans the import of `companions`, which belong to `net`; the network must outlive the plan. `scenario` says how
/// the simulation runs; its files have been read. `routing` hears of the search for ways.
MORATOOLS_EXPORT CompanionPlan planCompanions(const SumoNet &net, SumoCompanions companions,
                                              const SumoScenario &scenario = {}, Trips trips = Trips::Depart,
                                              const Progress &routing = {});

} // namespace moratools
