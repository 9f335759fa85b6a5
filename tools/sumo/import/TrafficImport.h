#pragma once

#include "tools/kinds/NetworkObjects.h"
#include "tools/sumo/import/CompanionPlan.h"
#include "tools/sumo/import/IdSource.h"

namespace moratools {

/// Makes the objects of `plan` on the roads of `network`, whose links are those of `net`. What the store has
/// of them from the start (vehicle types, the standard composition) is read into `network` as well. Throws
/// `Failure`.
void buildTraffic(const StoreSession &store, const SumoNet &net, const CompanionPlan &plan, IdSource &ids,
                  NetworkObjects &network);

} // namespace moratools
