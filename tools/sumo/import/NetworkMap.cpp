#include "tools/sumo/import/NetworkMap.h"

#include <algorithm>

namespace moratools {

double LanePlace::along(double position) const {
    return std::clamp(position < 0 ? source->length + position : position, 0.0, source->length);
}

GeometryPoint LanePlace::pointAt(double along) const {
    return geometry::pointAt(source->shape, source->length > 0 ? along / source->length : 0);
}

NetworkMap::NetworkMap(const SumoNet &net, const std::vector<std::unique_ptr<Link>> &links)
    : mNet(net), mLinks(links) {
    for (const SumoEdge &edge : net.edges) {
        for (const SumoLane &source : edge.lanes)
            mLanes.insert(source.id, lane(edge.id, source.index));
    }
}

QList<Link *> NetworkMap::links(const QStringList &edges) const {
    QList<Link *> links;
    for (const QString &edge : edges)
        links.append(link(edge));
    return links;
}

LanePlace NetworkMap::lane(const QString &edge, int index) const {
    const SumoEdge &source = *mNet.edge(edge);
    Link *owner = link(edge);
    // Lanes of a link are numbered from the right, those of an edge from the kerb.
    const int place = mNet.leftHand ? owner->mlLane.size() - 1 - index : index;
    return {owner, owner->mlLane.at(place), &source.lanes[std::size_t(index)]};
}

} // namespace moratools
