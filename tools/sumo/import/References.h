#pragma once

#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/reader/SumoCompanions.h"
#include "tools/sumo/routing/TripRouter.h"

namespace moratools {

/// Takes every record out of `companions` whose references lead nowhere, in the network or among the records
/// themselves, or that occurs a second time, and tells `leftOut`. What remains can be followed without a
/// check, except that
/// - a route that cannot be driven stays in its place without edges (and nothing names it),
/// - an empty type stands for SUMO's own default type; those of SUMO's own types that are used are added.
void removeUnresolved(SumoCompanions &companions, const SumoNet &net, LeftOut &leftOut);

/// Takes trips that cannot get where they want to out of `companions` and tells `leftOut`.
void removeUnserved(SumoCompanions &companions, const std::vector<UnservedTrip> &trips, LeftOut &leftOut);

/// "NAME (FILE, line N: REASON)", as a report names a record.
QString named(const SumoCompanions &companions, const QString &name, const SumoSource &source,
              const QString &reason);

} // namespace moratools
