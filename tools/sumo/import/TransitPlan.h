#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

struct PlannedStop {
    SumoStop stop;
    std::vector<const SumoPassengers *> arrivals; ///< of the companions
};

/// A line of public transport: what its vehicles have in common.
struct PlannedLine {
    QString name;
    int route = 0;                  ///< place in `SumoCompanions::routes`
    std::vector<PlannedStop> stops; ///< in driving order
    qint64 runs = 0;
    double firstDeparture = 0;
    double lastDeparture = 0;
};

/// Moves the vehicles and flows of public transport out of `companions` and makes lines of them: those that
/// have an attribute `line`, and those that stop at bus stops. Without the attribute the line is the
/// vehicle's id up to the running number at its end ("bus_11" for "bus_11_0" and "bus_11_1"). A line whose
/// vehicles drive several routes becomes several, with numbered names. Stops off the route are left out.
/// Passengers wait at the first stop of the first line that they take.
MORATOOLS_EXPORT std::vector<PlannedLine> planLines(SumoCompanions &companions, LeftOut &leftOut);

} // namespace moratools
