#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/import/NetworkMap.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

/// Makes detectors, each by what its kind measures:
/// - A loop (E1) records the vehicles that pass a point: a driving-data collector. (The store's vehicle
///   detectors are loops that serve a signal group, which SUMO's do not.)
/// - An area detector (E2) measures the queue on a stretch: a queue counter at the stretch's end, for queues
///   of the stretch's length. One over several lanes in a row stands on the last of them.
/// - An entry-exit detector (E3) measures travel times: a travel-time detector for each pair of an edge on
///   which it has entries and one on which it has exits, over all lanes.
///
/// Distances count from the start of the lane; they measure from the first second of the day to its last.
void buildDetectors(const SumoCompanions &companions, const NetworkMap &network, IdSource &ids,
                    TrafficObjects &into);

} // namespace moratools
