#pragma once

#include "tools/sumo/export/ExportedSignals.h"

namespace moratools {

/// The roads of a network in SUMO's plain form, of which netconvert makes a network: what there is, without lanes cut off
/// at junctions and without the insides of these.
struct PlainNet {
    std::vector<KeptElement> nodes;
    std::vector<KeptElement> edges; ///< in the order of the exported links
    std::vector<KeptElement> roundabouts;
    std::vector<KeptElement> connections;
    std::vector<KeptElement> programmes;
    std::vector<KeptElement> controlled; ///< connections with their place in a programme
    std::vector<KeptElement> types;
    std::vector<KeptElement> location; ///< one or none
};

PlainNet plainNet(const ExportedRoads &roads, const ExportedSignals &controls, LeftOut &leftOut);

/// Has an edge say its length where netconvert would make another one of its line.
void setLength(KeptElement &edge, const Link &link);

/// Writes PREFIX.nod.xml, .edg.xml, .con.xml, .tll.xml and .typ.xml. Throws `Failure`.
void writePlainNet(const PlainNet &net, const QString &prefix);

} // namespace moratools
