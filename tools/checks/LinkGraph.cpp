#include "tools/checks/LinkGraph.h"

// Before the graphs, whose own functions of the same name would hide those that it calls.
#include <boost/property_map/property_map.hpp>

#include <boost/pending/disjoint_sets.hpp>

#include <boost/graph/breadth_first_search.hpp>
#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/pending/queue.hpp>

#include <algorithm>
#include <utility>

namespace moratools {

namespace {

using Graph = boost::compressed_sparse_row_graph<boost::directedS, boost::no_property, boost::no_property,
                                                 boost::no_property, int, int>;
using Ends = std::vector<std::pair<int, int>>;

/// For each link the number of its part, by the joints between them.
std::vector<int> partsBy(const Ends &joints, int links) {
    boost::disjoint_sets_with_storage<> sets{std::size_t(links)};
    for (const auto &joint : joints)
        sets.union_set(joint.first, joint.second);
    std::vector<int> parts(std::size_t(links), 0);
    for (int i = 0; i < links; ++i)
        parts[std::size_t(i)] = int(sets.find_set(i));
    return parts;
}

Ends turned(Ends joints) {
    for (auto &joint : joints)
        std::swap(joint.first, joint.second);
    return joints;
}

} // namespace

struct LinkGraph::Graphs {
    Graphs(const Ends &joints, int links)
        : forwards(of(joints, links)), backwards(of(turned(joints), links)) {}

    static Graph of(const Ends &joints, int links) {
        return {boost::edges_are_unsorted_multi_pass, joints.begin(), joints.end(), links};
    }

    Graph forwards;
    Graph backwards;
};

LinkGraph::LinkGraph(const Checked &checked) {
    const NetworkObjects &network = checked.network();
    mEntered.assign(network.links.size(), 0);
    mLeft.assign(network.links.size(), 0);
    for (const auto &link : network.links) {
        mPlaces.insert(link.get(), mPlaces.size());
        mLinkOf.insert(link->linkID, link.get());
    }
    Ends joints;
    joints.reserve(network.connectors.size());
    for (const auto &connector : network.connectors) {
        mConnectorOf.insert(connector->connID, connector.get());
        for (const LaneConnector *path : connector->mlLaneConnector) {
            mLeftLanes.insert(path->mpStartLane);
            mEnteredLanes.insert(path->mpEndLane);
        }
        const int from = placeOf(connector->mpStartLink);
        const int to = placeOf(connector->mpEndLink);
        if (from < 0 || to < 0)
            continue;
        mLeft[std::size_t(from)] = 1;
        mEntered[std::size_t(to)] = 1;
        mPairs.insert({connector->mpStartLink, connector->mpEndLink});
        joints.emplace_back(from, to);
    }
    const int links = int(network.links.size());
    mParts = partsBy(joints, links);
    mGraphs = std::make_unique<Graphs>(joints, links);
}

LinkGraph::~LinkGraph() = default;

std::vector<char> LinkGraph::reachedFrom(const std::vector<int> &links, Direction direction) const {
    const Graph &graph = direction == Direction::Forwards ? mGraphs->forwards : mGraphs->backwards;
    std::vector<boost::default_color_type> colours(num_vertices(graph), boost::white_color);
    boost::queue<int> next;
    boost::breadth_first_visit(
        graph, links.begin(), links.end(), next, boost::default_bfs_visitor(),
        boost::make_iterator_property_map(colours.begin(), get(boost::vertex_index, graph)));
    std::vector<char> reached(colours.size(), 0);
    std::transform(colours.begin(), colours.end(), reached.begin(),
                   [](boost::default_color_type colour) { return colour != boost::white_color; });
    return reached;
}

} // namespace moratools
