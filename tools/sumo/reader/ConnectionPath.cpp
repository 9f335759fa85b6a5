#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

namespace {

// Real chains have two or three pieces; a longer one runs in a circle.
constexpr int kLongestChain = 64;

} // namespace

GeometryLine connectionPath(const SumoNet &net, const SumoConnection &connection) {
    GeometryLine path;
    QString via = connection.via;
    for (int piece = 0; !via.isEmpty() && piece < kLongestChain; ++piece) {
        const auto lane = net.internalLanes.constFind(via);
        if (lane == net.internalLanes.constEnd())
            break;
        geometry::append(path, lane->shape);
        via = lane->via;
    }
    if (path.size() >= 2)
        return path;
    const GeometryLine &from = net.edge(connection.from)->lanes[std::size_t(connection.fromLane)].shape;
    const GeometryLine &to = net.edge(connection.to)->lanes[std::size_t(connection.toLane)].shape;
    return {from.back(), to.front()};
}

} // namespace moratools
