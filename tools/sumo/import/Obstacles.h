#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

/// A vehicle that stands on a lane and drives nowhere: how SUMO's users put an accident into a network.
struct Obstacle {
    QString name;
    QString lane;
    double startPos = 0;
    double endPos = 0;
};

/// Moves the vehicles whose only edge is the one on which they stop out of `companions`.
MORATOOLS_EXPORT std::vector<Obstacle> takeObstacles(SumoCompanions &companions, const SumoNet &net);

} // namespace moratools
