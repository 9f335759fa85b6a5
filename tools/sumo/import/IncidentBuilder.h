#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/DemandBuilder.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/import/NetworkMap.h"
#include "tools/sumo/import/Obstacles.h"

namespace moratools {

/// Makes speed reduction areas of variable speed signs. A speed of an area holds in all of its intervals, so
/// a sign becomes an area for each lane and speed that it shows, with the times at which it shows it; each is
/// as long as the lane and slows down the types that the sign names, or all. Speeds are km/h. The last speed
/// lasts until the end of the day.
void buildSpeedAreas(const SumoCompanions &companions, const DemandBuilder &demand, const NetworkMap &network,
                     IdSource &ids, TrafficObjects &into);

/// Makes zones: of a closed edge or lane a road-work zone over its whole length, of a standing obstacle an
/// accident zone. What several rerouters close is one zone.
void buildZones(const SumoCompanions &companions, const std::vector<Obstacle> &obstacles,
                const NetworkMap &network, IdSource &ids, TrafficObjects &into);

} // namespace moratools
