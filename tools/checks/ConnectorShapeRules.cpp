#include "model/GeometryJson.h"
#include "tools/checks/Lines.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RoadLines.h"
#include "tools/checks/RuleGroups.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace moratools {

namespace {

// Half of a usual lane: what ends farther away ends on another lane or on none.
constexpr double kOffLane = 1.5; // metres
// The largest junctions of real networks are crossed in less than 100 m.
constexpr double kAcrossJunction = 200; // metres
// As for links: the steepest ramps and stairs, and steps that are walls.
constexpr double kSteepest = 2.0;
constexpr double kStep = 3.0; // metres

/// The place where a path or the middle of several paths begins and ends.
struct Ends {
    GeometryPoint start;
    GeometryPoint end;
};

/// What the paths of a connector leave and enter: the line across the lanes, from edge to edge.
struct Mouth {
    GeometryPoint left;
    GeometryPoint right;
};

std::optional<Mouth> mouth(const RoadLines::OfLane *right, const RoadLines::OfLane *left, bool atEnd) {
    if (!right || !left || right->right.isEmpty() || left->left.isEmpty())
        return std::nullopt;
    return atEnd ? Mouth{left->left.last(), right->right.last()}
                 : Mouth{left->left.first(), right->right.first()};
}

/// Metres from a place to a mouth; 0 where there is none.
double away(const GeometryPoint &place, const std::optional<Mouth> &mouth) {
    return mouth ? lines::distanceToSide(place, mouth->left, mouth->right) : 0;
}

GeometryPoint between(const GeometryPoint &a, const GeometryPoint &b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2};
}

std::optional<Ends> endsOf(const GeometryLine &line) {
    return line.size() < 2 || !geometry::isFinite(line) ? std::nullopt
                                                        : std::optional<Ends>({line.first(), line.last()});
}

/// How the edges of a connector begin and end, in the middle between them.
std::optional<Ends> endsOfEdges(const Connector &connector) {
    const auto left = endsOf(geometryjson::points(connector.leftBreakPointsJson));
    const auto right = endsOf(geometryjson::points(connector.rightBreakPointsJson));
    if (!left || !right)
        return std::nullopt;
    return Ends{between(left->start, right->start), between(left->end, right->end)};
}

bool isFartherRight(const LaneConnector *a, const LaneConnector *b) {
    const auto place = [](const LaneConnector &path) {
        return std::make_tuple(path.mpStartLane->serialNumber, path.mpEndLane->serialNumber);
    };
    return place(*a) < place(*b);
}

void report(Reporter &reporter, const Connector &connector, const Ends &ends,
            const std::optional<Mouth> &start, const std::optional<Mouth> &end) {
    const double awayAtStart = away(ends.start, start);
    const double awayAtEnd = away(ends.end, end);
    if (awayAtStart > kOffLane)
        findObject(reporter, connector,
                   QStringLiteral("begins %1 m from the end of its lanes").arg(shown(awayAtStart)),
                   lines::place(ends.start));
    else if (awayAtEnd > kOffLane)
        findObject(reporter, connector,
                   QStringLiteral("ends %1 m from the start of its lanes").arg(shown(awayAtEnd)),
                   lines::place(ends.end));
}

/// The paths where the store keeps them, else the edges, which are those of the outermost paths.
void checkEnds(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const auto &connector : checked.network().connectors) {
        const auto &paths = connector->mlLaneConnector;
        bool hasPaths = false;
        for (const LaneConnector *path : paths) {
            const auto ends = endsOf(geometryjson::points(path->centerLinePointsJson));
            if (!ends)
                continue;
            hasPaths = true;
            const RoadLines::OfLane *from = roads.of(path->mpStartLane);
            const RoadLines::OfLane *to = roads.of(path->mpEndLane);
            report(reporter, *connector, *ends, mouth(from, from, true), mouth(to, to, false));
        }
        const auto ends = hasPaths || paths.isEmpty() ? std::nullopt : endsOfEdges(*connector);
        if (!ends)
            continue;
        const auto outermost = std::minmax_element(paths.begin(), paths.end(), isFartherRight);
        const LaneConnector &right = **outermost.first;
        const LaneConnector &left = **outermost.second;
        report(reporter, *connector, *ends,
               mouth(roads.of(right.mpStartLane), roads.of(left.mpStartLane), true),
               mouth(roads.of(right.mpEndLane), roads.of(left.mpEndLane), false));
    }
}

/// Calls `use` with each path and the points that it leads from and to, where its lanes have some.
template <class Use>
void forEachGap(const Checked &checked, const Use &use) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const auto &connector : checked.network().connectors) {
        for (const LaneConnector *path : connector->mlLaneConnector) {
            const RoadLines::OfLane *from = roads.of(path->mpStartLane);
            const RoadLines::OfLane *to = roads.of(path->mpEndLane);
            if (from && to && !from->centre.isEmpty() && !to->centre.isEmpty() &&
                use(*connector, from->centre.last(), to->centre.first()))
                break;
        }
    }
}

void checkGap(const Checked &checked, Reporter &reporter) {
    forEachGap(checked, [&](const Connector &connector, const GeometryPoint &from, const GeometryPoint &to) {
        const double gap = lines::distance(from, to);
        if (gap <= kAcrossJunction)
            return false;
        findObject(reporter, connector, QStringLiteral("joins lanes that are %1 m apart").arg(shown(gap)),
                   lines::place(from));
        return true;
    });
}

void checkHeights(const Checked &checked, Reporter &reporter) {
    forEachGap(checked, [&](const Connector &connector, const GeometryPoint &from, const GeometryPoint &to) {
        const double step = std::abs(to.z - from.z);
        if (step <= kStep || step <= kSteepest * lines::distance(from, to))
            return false;
        findObject(reporter, connector,
                   QStringLiteral("leads from a height of %1 m to %2 m within %3 m")
                       .arg(shown(from.z), shown(to.z), shown(lines::distance(from, to))),
                   lines::place(from));
        return true;
    });
}

void checkLength(const Checked &checked, Reporter &reporter) {
    for (const auto &connector : checked.network().connectors) {
        if (!isAmount(connector->length))
            findObject(reporter, *connector,
                       QStringLiteral("has a length of %1 m").arg(shown(connector->length)));
    }
}

void checkExtent(const Checked &checked, Reporter &reporter) {
    for (const auto &connector : checked.network().connectors) {
        if (connector->length == 0)
            findObject(reporter, *connector, QStringLiteral("has no length"),
                       placeOf(*connector->mpStartLink));
    }
}

} // namespace

std::vector<Rule> connectorShapeRules() {
    return {
        {"connector.ends-off-lanes", "geometry", Severity::Error, Scope::Objects,
         "A connector begins more than 1.5 m from the end of its first lanes, or ends so far from the start of its second ones.",
         "Make the connector's shape anew (curve()).", checkEnds},
        {"connector.joins-distant-lanes", "geometry", Severity::Warning, Scope::Objects,
         "A connector joins lanes that are more than 200 m apart.",
         "Join roads that meet, or draw a road between them.", checkGap},
        {"connector.height-jumps", "geometry", Severity::Error, Scope::Objects,
         "The lanes that a connector joins differ in height by more than twice the way between them, and by more "
         "than 3 m.",
         "Mend the heights of the links' ends; roads one above the other are not to be joined.",
         checkHeights},
        {"connector.length-negative", "geometry", Severity::Error, Scope::Objects,
         "The length of a connector is below 0 or no finite number.",
         "Make the connector's shape anew (curve()).", checkLength},
        {"connector.without-length", "geometry", Severity::Note, Scope::Objects,
         "The lanes that a connector joins touch, so that it has no length and edges that are one point each.",
         "Nothing for a simulation; a drawing may make links end before their junction.", checkExtent},
    };
}

} // namespace moratools
