#include "tools/sumo/routing/RoadGraph.h"

#include "tools/sumo/routing/TravelProfile.h"

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/dijkstra_shortest_paths.hpp>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

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

int indexOf(const QString &lane) {
    return lane.mid(lane.lastIndexOf(QLatin1Char('_')) + 1).toInt();
}

/// How fast an edge can be driven: as its fastest lane, of several the one with the lowest index.
struct Pace {
    double speed = -1;
    double length = 0;
    int index = 0; ///< of the lane

    void take(double laneSpeed, double laneLength, int laneIndex) {
        if (laneSpeed > speed || (laneSpeed == speed && laneIndex < index))
            *this = {laneSpeed, laneLength, laneIndex};
    }
};

/// An edge inside a junction.
struct InternalEdge {
    Pace pace;
    bool givesWay = false;
    VehicleClasses permissions = VehicleClasses::of(QString(), QStringLiteral("all"));
};

QHash<QString, InternalEdge> internalEdgesOf(const SumoNet &net) {
    QHash<QString, InternalEdge> edges;
    for (auto lane = net.internalLanes.cbegin(); lane != net.internalLanes.cend(); ++lane) {
        InternalEdge &edge = edges[edgeOf(lane.key())];
        edge.pace.take(lane->speed, lane->length, indexOf(lane.key()));
        edge.givesWay = edge.givesWay || lane->givesWay;
        edge.permissions = edge.permissions.with(lane->permissions);
    }
    return edges;
}

/// Times of a vehicle.
class Clock {
public:
    explicit Clock(const TravelProfile &profile) : mProfile(profile) {}

    double secondsOn(const Pace &pace) const {
        const double speed = std::min(mProfile.maxSpeed, mProfile.speedFactor * pace.speed);
        // A search goes nowhere by going back in time, whatever a file says of the inside of a junction.
        return speed > 0 ? std::max(0.0, pace.length) / speed : 0;
    }

    /// Along the chain of internal lanes that begins with `via`.
    double secondsOver(const SumoNet &net, const QHash<QString, InternalEdge> &edges, QString via) const {
        double seconds = 0;
        for (int piece = 0; !via.isEmpty() && piece < kLongestChain; ++piece) {
            const InternalEdge edge = edges.value(edgeOf(via));
            seconds += secondsOn(edge.pace) + (edge.givesWay ? kSecondsToGiveWay : 0);
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
        Pace fastest;
        bool admits = false;
        for (const SumoLane &lane : edge.lanes) {
            fastest.take(lane.speed, lane.length, lane.index);
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
    mGraph = std::make_unique<Graph>();
    mGraph->graph = moratools::Graph(boost::edges_are_unsorted_multi_pass, ends.begin(), ends.end(),
                                     arcs.begin(), int(net.edges.size()));
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
    // What is not reached is its own predecessor.
    std::vector<int> before(count);
    std::iota(before.begin(), before.end(), 0);
    std::vector<double> seconds(count, std::numeric_limits<double>::infinity());
    seconds[std::size_t(from)] = 0;
    std::vector<boost::default_color_type> colours(count, boost::white_color);
    const auto &graph = mGraph->graph;
    const auto index = get(boost::vertex_index, graph);
    const auto mapOf = [&index](auto &values) {
        return boost::make_iterator_property_map(values.begin(), index);
    };
    try {
        boost::dijkstra_shortest_paths_no_init(graph, &from, &from + 1, mapOf(before), mapOf(seconds),
                                               get(&Arc::seconds, graph), index, std::less<>(), std::plus<>(),
                                               0.0, Finder(isWanted, wanted), mapOf(colours));
    } catch (const AllFound &) {
    }
    for (std::size_t i = 0; i < to.size(); ++i) {
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
