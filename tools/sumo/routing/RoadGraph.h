#pragma once

#include "tools/sumo/reader/SumoNet.h"

#include <memory>
#include <vector>

namespace moratools {

struct TravelProfile;

/// The edges of a network as vehicles of a profile see them, and the fastest ways between them.
///
/// A way costs what it takes at free flow: on an edge, the length of its fastest lane at that lane's limit
/// times the vehicle's factor, or at the vehicle's own highest speed; over a junction, the same for each edge inside it
/// on the way, and 1.5 s more for one that a vehicle enters by giving way (`weights.minor-penalty` of SUMO's
/// router, whose costs these are). From one edge to another leads a connection between lanes that admit the
/// vehicle, over a junction that does.
class RoadGraph {
public:
    RoadGraph(const SumoNet &net, const TravelProfile &profile);
    ~RoadGraph();

    /// Edges by their places in `SumoNet::edges`.
    using Way = std::vector<int>;
    /// The fastest ways from an edge to others, both ends among them, in the order of `to`; an empty one where
    /// the vehicle cannot go.
    std::vector<Way> ways(int from, const std::vector<int> &to) const;

private:
    struct Graph;

    std::vector<bool> mAdmits;
    std::unique_ptr<Graph> mGraph;
};

} // namespace moratools
