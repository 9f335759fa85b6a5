#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/reports/Progress.h"
#include "tools/sumo/import/CompanionPlan.h"
#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

/// What to call the network of a file: "city" for "some/where/city.net.xml.gz".
MORATOOLS_EXPORT QString networkNameOf(const QString &path);

/// Throws `Failure` when the store, which may be open for reading only, has no place for a new network
/// called `name`: the name is taken, or the store holds one network and has it.
MORATOOLS_EXPORT void requirePlaceFor(const StoreSession &store, const QString &name);

/// Writes a SUMO network and what `plan` says of its companions into the store as a new network called
/// `name`, with the dictionaries that a network starts with, in one transaction: on a failure (`Failure`) the
/// store is as it was. The new network becomes the current one. A store of one network takes it only
/// while it has no links, and keeps the record of its network where it has one.
MORATOOLS_EXPORT NetworkObjects importNetwork(const StoreSession &store, const SumoNet &net,
                                              const CompanionPlan &plan, const QString &name,
                                              const Progress &progress = {});

} // namespace moratools
