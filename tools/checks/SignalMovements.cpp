#include "tools/checks/SignalMovements.h"

#include "model/GeometryJson.h"
#include "model/Words.h"
#include "tools/checks/Checked.h"

#include <algorithm>
#include <utility>

namespace moratools {

namespace {

GeometryLine centreOf(const Lane &lane) {
    return geometryjson::points(lane.centerLinePointsJson);
}

/// Twice the area of the triangle, positive where c lies left of the way from a to b.
double side(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool piecesCross(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &c,
                 const GeometryPoint &d) {
    return side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0;
}

/// Seconds of a cycle, from and to, in which a phase is green.
std::vector<std::pair<long, long>> greensOf(const SignalPhase &phase) {
    std::vector<std::pair<long, long>> greens;
    long at = 0;
    for (const Online::ColorInterval &step : phase.mlColor) {
        const long end = at + std::max(0, step.interval);
        if (Words::Green.names(step.color) && end > at)
            greens.emplace_back(at, end);
        at = end;
    }
    return greens;
}

} // namespace

SignalMovements::SignalMovements(const Checked &checked) {
    const NetworkObjects &network = checked.network();
    for (const auto &link : network.links) {
        for (const Lane *lane : link->mlLane)
            mLanes.insert(lane->laneID, lane);
    }
    for (const auto &connector : network.connectors) {
        for (const LaneConnector *way : connector->mlLaneConnector) {
            if (way->mpStartLane && way->mpEndLane)
                mWays[way->mpStartLane->laneID].insert(way->mpEndLane->laneID, way);
        }
    }
    for (const auto &group : network.traffic.signalGroups) {
        for (const SignalPhase *phase : group->mlPhase)
            mGroups.insert(phase, group.get());
    }
    for (const auto &lamp : network.traffic.signalLamps) {
        mLamps[lamp->laneID].push_back(lamp.get());
        if (const SignalGroup *group = groupOf(*lamp))
            mLampsOfGroup[group].push_back(lamp.get());
    }
}

const SignalGroup *SignalMovements::groupOf(const SignalLamp &lamp) const {
    return mGroups.value(lamp.mpPhase.data());
}

const LaneConnector *SignalMovements::wayOf(const SignalLamp &lamp) const {
    const auto ways = mWays.constFind(lamp.laneID);
    return ways != mWays.cend() ? ways->value(lamp.toLaneID) : nullptr;
}

GeometryLine lineOf(const LaneConnector &way) {
    const GeometryLine drawn = geometryjson::points(way.centerLinePointsJson);
    return drawn.size() > 1 ? drawn : geometry::turn(centreOf(*way.mpStartLane), centreOf(*way.mpEndLane));
}

bool cross(const GeometryLine &a, const GeometryLine &b) {
    for (int i = 1; i < a.size(); ++i) {
        for (int k = 1; k < b.size(); ++k) {
            if (piecesCross(a[i - 1], a[i], b[k - 1], b[k]))
                return true;
        }
    }
    return false;
}

bool isGreenAtOnceAfter(const SignalPhase &next, const SignalPhase &phase, long cycle) {
    if (cycle <= 0)
        return false;
    using Greens = std::vector<std::pair<long, long>>;
    const auto begins = [](const Greens &greens, long moment) {
        return std::any_of(greens.begin(), greens.end(),
                           [moment](const auto &green) { return green.first == moment; });
    };
    const auto ends = [cycle](const Greens &greens, long moment) {
        return std::any_of(greens.begin(), greens.end(),
                           [cycle, moment](const auto &green) { return green.second % cycle == moment; });
    };
    const Greens greens = greensOf(phase);
    const Greens others = greensOf(next);
    // One green may follow another one, in both.
    return std::any_of(others.begin(), others.end(), [&](const auto &green) {
        return !ends(others, green.first) && ends(greens, green.first) && !begins(greens, green.first);
    });
}

bool areGreenTogether(const SignalPhase &a, const SignalPhase &b) {
    const auto others = greensOf(b);
    for (const auto &green : greensOf(a)) {
        const bool overlaps = std::any_of(others.begin(), others.end(), [&green](const auto &other) {
            return green.first < other.second && other.first < green.second;
        });
        if (overlaps)
            return true;
    }
    return false;
}

} // namespace moratools
