#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/import/NetworkMap.h"
#include "tools/sumo/import/TransitPlan.h"

namespace moratools {

/// Makes bus stations and bus lines. A station stands at the middle of its stop. A line departs from its
/// first run to its last one at their mean distance, rounded down; a single run leaves the standard distance.
/// Persons who wait for a line are arrivals at its stop.
void buildTransit(const std::vector<PlannedLine> &lines, const SumoCompanions &companions,
                  const NetworkMap &network, IdSource &ids, TrafficObjects &into);

} // namespace moratools
