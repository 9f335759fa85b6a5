#pragma once

#include "model/GeometryLine.h"
#include "tools/checks/Checked.h"

#include <QHash>
#include <QString>

#include <vector>

namespace moratools {

/// The lines of a network's links and lanes, read from their stored forms once. Lines with coordinates that are not
/// finite, and lines of more points than any road is drawn with, are left out and listed.
class RoadLines {
public:
    /// Maps draw a road with 2,000 points at most, as OpenStreetMap allows in a way. Comparing all sides of a line
    /// of many more would take for ever.
    static constexpr int kMostPoints = 2000;

    /// Of the network, which must outlive this.
    explicit RoadLines(const Checked &checked);

    struct OfLink {
        const Link *link;
        GeometryLine line; ///< through its vertices
    };
    struct OfLane {
        const Link *link;
        const Lane *lane;
        GeometryLine centre;
        GeometryLine left;
        GeometryLine right;
    };
    /// A line that is left out.
    struct LeftOut {
        const Link *link;
        const Lane *lane; ///< null for the link's own line
        const char *name; ///< "left edge"
        int points;
        bool isFinite;
    };

    const std::vector<OfLink> &links() const { return mLinks; }
    const std::vector<OfLane> &lanes() const { return mLanes; }
    const std::vector<LeftOut> &leftOut() const { return mLeftOut; }
    /// Those of a lane; null for one that is no link's of the network.
    const OfLane *of(const Lane *lane) const;
    /// The line of a link, empty for one that is not of the network.
    GeometryLine of(const Link *link) const;

private:
    GeometryLine usable(GeometryLine line, const Link &link, const Lane *lane, const char *name);

    std::vector<OfLink> mLinks;
    std::vector<OfLane> mLanes;
    std::vector<LeftOut> mLeftOut;
    QHash<const void *, std::size_t> mPlaces; ///< of links and of lanes, each in its list
};

} // namespace moratools
