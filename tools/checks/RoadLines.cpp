#include "tools/checks/RoadLines.h"

#include "model/GeometryJson.h"

#include <utility>

namespace moratools {

RoadLines::RoadLines(const Checked &checked) {
    const NetworkObjects &network = checked.network();
    mLinks.reserve(network.links.size());
    for (const auto &link : network.links) {
        GeometryLine line;
        line.reserve(link->mlVertex.size());
        for (const Vertex *vertex : link->mlVertex)
            line.append({vertex->x, vertex->y, vertex->z});
        mPlaces.insert(link.get(), mLinks.size());
        mLinks.push_back({link.get(), usable(std::move(line), *link, nullptr, "line")});
        for (const Lane *lane : link->mlLane) {
            const auto read = [&](const StoredJson &stored, const char *name) {
                return usable(geometryjson::points(stored), *link, lane, name);
            };
            mPlaces.insert(lane, mLanes.size());
            mLanes.push_back({link.get(), lane, read(lane->centerLinePointsJson, "centre line"),
                              read(lane->leftBreakPointsJson, "left edge"),
                              read(lane->rightBreakPointsJson, "right edge")});
        }
    }
}

GeometryLine RoadLines::usable(GeometryLine line, const Link &link, const Lane *lane, const char *name) {
    const bool isFinite = geometry::isFinite(line);
    if (isFinite && line.size() <= kMostPoints)
        return line;
    mLeftOut.push_back({&link, lane, name, line.size(), isFinite});
    return {};
}

const RoadLines::OfLane *RoadLines::of(const Lane *lane) const {
    const auto place = mPlaces.constFind(lane);
    return place == mPlaces.constEnd() ? nullptr : &mLanes[*place];
}

GeometryLine RoadLines::of(const Link *link) const {
    const auto place = mPlaces.constFind(link);
    return place == mPlaces.constEnd() ? GeometryLine() : mLinks[*place].line;
}

} // namespace moratools
