#pragma once

#include "tools/sumo/export/ExportedSignals.h"

namespace moratools {

/// What SUMO's plain form says of the ways over junctions.
struct ConnectionElements {
    /// `<connection>`s with the lanes that they join; one without an end for each edge from which nothing leads on, so that
    /// nobody guesses; `<prohibition>`s and `<crossing>`s.
    std::vector<KeptElement> connections;
    /// `<connection>`s with the letter of the signal that they go by.
    std::vector<KeptElement> controlled;
    /// By junction: the signal that controls it, or the first of several.
    QHash<const ExportedJunction *, QString> signalOf;
    /// Where an import found a connection under a signal.
    QSet<const ExportedJunction *> hadSignal;
    /// By signal: the highest index that a crossing or a connection has, for signals that crossings have, too.
    QHash<QString, int> lastIndexWithCrossings;
};

/// Ways between lanes that are not exported are left out.
ConnectionElements connectionElements(const ExportedRoads &roads, const ExportedSignals &controls,
                                      LeftOut &leftOut);

} // namespace moratools
