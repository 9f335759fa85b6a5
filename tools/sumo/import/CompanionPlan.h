#pragma once

#include "tools/MoraToolsExport.h"
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

/// Plans the import of `companions`, which belong to `net`; the network must outlive the plan. `scenario` says how
/// the simulation runs; its files have been read.
MORATOOLS_EXPORT CompanionPlan planCompanions(const SumoNet &net, SumoCompanions companions,
                                              const SumoScenario &scenario = {});

} // namespace moratools
