#pragma once

#include "tools/sumo/import/CompanionPlan.h"

#include <QJsonObject>

struct NetLists;

namespace moratools {

/// What the record of a network keeps, under "sumo", of the files that came with it: "files" as they stood without
/// what was left out, "programmes" of them and of the network's own file, "config" with the options of the
/// simulation, and "demand", the digest of what the traffic of the files became. `network` is what was made of the
/// plan.
QJsonObject keepCompanions(const CompanionPlan &plan, const NetLists &network);

} // namespace moratools
