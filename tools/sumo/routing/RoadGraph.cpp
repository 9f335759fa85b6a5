#include "tools/sumo/routing/RoadGraph.h"

#include "tools/sumo/routing/TravelProfile.h"

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/dijkstra_shortest_paths.hpp>

#include <algorithm>

namespace moratools {

namespace {

// SUMO's router counts this for a way over a junction on which a vehicle gives way.
constexpr double kSecondsToGiveWay = 1.5;
// Real chains of edges in a junction have two or three pieces; a longer one runs in a circle.
constexpr int kLongestChain = 64;

struct Arc {
    double seconds = 0;
};
using Graph = boost::compressed_sparse_row_graph<boost::directedS, boost::no_property, Arc,
                                                 boost::no_property, int, int>;

/// The edge of a lane's id.
QString edgeOf(const QString &lane) {
    return lane.left(lane.lastIndexOf(QLatin1Char('_')));
}

/// An edge inside a junction: a vehicle takes the fastest of its lanes for the edge.
struct InternalEdge {
    double speed = -1;
    double length = 0;
    bool givesWay = false;
    VehicleClasses permissions = VehicleClasses::of(QString(), QStringLiteral("all"));
};

template <class EdgeRecord, class LaneRecord>
void takeFastest(EdgeRecord &edge, const LaneRecord &lane) {
    if (lane.speed > edge.speed) {
        edge.speed = lane.speed;
        edge.length = lane.length;
    }
}

QHash<QString, InternalEdge> internalEdgesOf(const SumoNet &net) {
    QHash<QString, InternalEdge> edges;
    for (auto lane = net.internalLanes.cbegin(); lane != net.internalLanes.cend(); ++lane) {
        InternalEdge &edge = edges[edgeOf(lane.key())];
        takeFastest(edge, *lane);
        edge.givesWay = edge.givesWay || lane->givesWay;
        edge.permissions = edge.permissions.with(lane->permissions);
    }
    return edges;
}

/// Times of a vehicle.
class Clock {
public:
    explicit Clock(const TravelProfile &profile) : mProfile(profile) {}

    template <class EdgeRecord>
    double secondsOn(const EdgeRecord &edge) const {
        const double speed = std::min(mProfile.maxSpeed, mProfile.speedFactor * edge.speed);
        return speed > 0 ? edge.length / speed : 0;
    }

    /// Along the chain of internal lanes that begins with `via`.
    double secondsOver(const SumoNet &net, const QHash<QString, InternalEdge> &edges, QString via) const {
        double seconds = 0;
        for (int piece = 0; !via.isEmpty() && piece < kLongestChain; ++piece) {
            const InternalEdge edge = edges.value(edgeOf(via));
            seconds += secondsOn(edge) + (edge.givesWay ? kSecondsToGiveWay : 0);
            via = net.internalLanes.value(via).via;
        }
        return seconds;
    }

private:
    const TravelProfile &mProfile;
};

/// Ends a search when all that it is for has been found.
struct AllFound {};

class Finder : public boost::default_dijkstra_visitor {
public:
    Finder(std::vector<char> &isWanted, int wanted) : mIsWanted(isWanted), mWanted(wanted) {}

    void examine_vertex(int edge, const Graph &) {
        if (mIsWanted[std::size_t(edge)] && --mWanted == 0)
            throw AllFound();
    }

private:
    std::vector<char> &mIsWanted;
    int mWanted;
};

} // namespace

struct RoadGraph::Graph {
    moratools::Graph graph;
};

RoadGraph::RoadGraph(const SumoNet &net, const TravelProfile &profile) {
    const VehicleClasses self = VehicleClasses::ofOne(profile.vClass);
    const Clock clock(profile);
    std::vector<double> secondsOn;
    for (const SumoEdge &edge : net.edges) {
        InternalEdge fastest;
        bool admits = false;
        for (const SumoLane &lane : edge.lanes) {
            takeFastest(fastest, lane);
            admits = admits || lane.permissions.admitsAnyOf(self);
        }
        mAdmits.push_back(admits);
        secondsOn.push_back(clock.secondsOn(fastest));
    }
    const QHash<QString, InternalEdge> inside = internalEdgesOf(net);
    std::vector<std::pair<int, int>> ends;
    std::vector<Arc> arcs;
    for (const SumoConnection &connection : net.connections) {
        const int from = net.edgeIndex.value(connection.from);
        const int to = net.edgeIndex.value(connection.to);
        const auto admits = [&](int edge, int lane) {
            return net.edges[std::size_t(edge)].lanes[std::size_t(lane)].permissions.admitsAnyOf(self);
        };
        const auto via = inside.constFind(edgeOf(connection.via));
        if (!admits(from, connection.fromLane) || !admits(to, connection.toLane) ||
            (via != inside.constEnd() && !via->permissions.admitsAnyOf(self)))
            continue;
        ends.emplace_back(from, to);
        arcs.push_back({secondsOn[std::size_t(from)] + clock.secondsOver(net, inside, connection.via)});
    }
    mGraph.reset(new Graph{{boost::edges_are_unsorted_multi_pass, ends.begin(), ends.end(), arcs.begin(),
                            int(net.edges.size())}});
}

RoadGraph::~RoadGraph() = default;

std::vector<RoadGraph::Way> RoadGraph::ways(int from, const std::vector<int> &to) const {
    std::vector<Way> ways(to.size());
    const std::size_t count = mAdmits.size();
    if (!mAdmits[std::size_t(from)])
        return ways;
    std::vector<char> isWanted(count, 0);
    int wanted = 0;
    for (const int edge : to) {
        wanted += isWanted[std::size_t(edge)] ? 0 : 1;
        isWanted[std::size_t(edge)] = 1;
    }
    std::vector<int> before(count);
    std::vector<double> seconds(count);
    const auto &graph = mGraph->graph;
    const auto index = get(boost::vertex_index, graph);
    try {
        boost::dijkstra_shortest_paths(
            graph, from,
            boost::weight_map(get(&Arc::seconds, graph))
                .predecessor_map(boost::make_iterator_property_map(before.begin(), index))
                .distance_map(boost::make_iterator_property_map(seconds.begin(), index))
                .visitor(Finder(isWanted, wanted)));
    } catch (const AllFound &) {
    }
    for (std::size_t i = 0; i < to.size(); ++i) {
        // What was not reached is its own predecessor.
        if (to[i] != from && before[std::size_t(to[i])] == to[i])
            continue;
        for (int edge = to[i]; edge != from; edge = before[std::size_t(edge)])
            ways[i].push_back(edge);
        ways[i].push_back(from);
        std::reverse(ways[i].begin(), ways[i].end());
    }
    return ways;
}

} // namespace moratools
