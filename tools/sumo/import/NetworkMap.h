#pragma once

#include "model/Link.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QHash>

#include <memory>
#include <vector>

namespace moratools {

/// A lane of a SUMO network and what it became in the store.
struct LanePlace {
    Link *link;
    Lane *lane;
    const SumoLane *source;

    /// Metres from the start of the lane. A negative position counts from the lane's end; one beyond the lane
    /// is moved to the nearer end.
    double along(double position) const;
    /// The point there. The drawn line may be longer or shorter than the lane, so shares of the length count.
    GeometryPoint pointAt(double along) const;
};

/// From the ids of a SUMO network to the objects made of it.
class NetworkMap {
public:
    /// `links` are those of the network's edges, in their order; both must outlive the map.
    NetworkMap(const SumoNet &net, const std::vector<std::unique_ptr<Link>> &links);

    /// The link of an edge that exists.
    Link *link(const QString &edge) const { return mLinks[std::size_t(mNet.edgeIndex.value(edge))].get(); }
    QList<Link *> links(const QStringList &edges) const;
    /// The lane of an id that exists.
    LanePlace lane(const QString &id) const { return mLanes.value(id); }
    LanePlace lane(const QString &edge, int index) const;

private:
    const SumoNet &mNet;
    const std::vector<std::unique_ptr<Link>> &mLinks;
    QHash<QString, LanePlace> mLanes;
};

} // namespace moratools
