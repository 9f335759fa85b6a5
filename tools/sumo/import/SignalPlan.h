#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

/// A signal programme under a name that no other one has.
struct PlannedGroup {
    QString name;
    const SumoProgramme *programme; ///< of the network or its companions
    std::vector<std::size_t> cycle; ///< the phases that run again and again, by their places, in their order
    double start = 0;               ///< seconds at which the cycle begins first
};

/// A lane connection and the signal that controls it.
struct PlannedLamp {
    const SumoConnection *connection;
    std::size_t group;
};

struct SignalPlan {
    std::vector<PlannedGroup> groups;
    std::vector<PlannedLamp> lamps;
};

/// The programmes of the network and then of `companions`; those that share an id are named "ID/PROGRAMME". One
/// that has both ids of an earlier one is told to `leftOut`. From its first phase on a programme runs along what
/// each phase says that follows it; of several phases that may follow the first does, and the others are told.
/// The lamp of a controlled lane connection shows the programme of its id that comes last, which is the one
/// that SUMO runs; the others are plans to change to. A connection whose programme does not exist or has no
/// signal for it is told to `leftOut`, but for railways' own signals. The plan leads into both records.
MORATOOLS_EXPORT SignalPlan planSignals(const SumoNet &net, const SumoCompanions &companions,
                                        LeftOut &leftOut);

} // namespace moratools
