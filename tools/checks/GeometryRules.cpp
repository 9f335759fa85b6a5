#include "model/GeometryJson.h"
#include "tools/checks/Lines.h"
#include "tools/checks/ObjectRules.h"
#include "tools/checks/RoadLines.h"
#include "tools/checks/RuleGroups.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace moratools {

namespace {

// A length is that of the drawing to a few per cent: lanes in a bend, and lines that end before the junction.
// Real networks have lengths of half the drawn one; more is no drawing of that road. Below two metres only
// rounding speaks: networks have roads of 10 cm.
constexpr double kSameLength = 1.2;
constexpr double kFarOffLength = 2.0;
constexpr double kLengthNoise = 2.0; // metres
// Points nearer than this are one: it is a thousandth of what networks are drawn to.
constexpr double kSamePoint = 1e-5; // metres
// The steepest streets rise by a third of their length, stairs by all of it. A step of less than 3 m may be a kerb,
// a ramp that is drawn coarsely, or a wall.
constexpr double kSteepest = 2.0;
constexpr double kStep = 3.0; // metres
// Edges are half the width from the centre line in straight pieces; at corners, where they are mitred, the ends
// of lanes are square.
constexpr double kWidthNoise = 0.1; // metres
// Two copies of a place that were rounded differently.
constexpr double kSamePlace = 0.05; // metres
// A lane may lie beside its link by what a drawing is simplified, not by another carriageway.
constexpr double kBesideLink = 5.0; // metres

double lengthNearest(const GeometryLine &line, double length) {
    const double plane = geometry::lengthInPlane(line);
    const double space = geometry::length(line);
    return std::abs(space - length) < std::abs(plane - length) ? space : plane;
}

QString points(int count) {
    return count == 1 ? QStringLiteral("one point") : QStringLiteral("%1 points").arg(QString::number(count));
}

void findLane(Reporter &reporter, const RoadLines::OfLane &lane, const QString &what,
              const std::optional<QPointF> &place) {
    moratools::findLane(reporter, *lane.lane, *lane.link, what, place);
}

void findLeftOut(Reporter &reporter, const RoadLines::LeftOut &line, const QString &what) {
    const QString name = QLatin1String(line.name);
    if (line.lane)
        reporter.find("Lane", line.lane->laneID,
                      QStringLiteral("the %1 of %2 %3").arg(name, calledLane(*line.lane, *line.link), what));
    else
        reporter.find("Link", line.link->linkID,
                      QStringLiteral("the %1 of %2 %3").arg(name, calledObject(*line.link), what));
}

void checkFinite(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::LeftOut &line : checked.made<RoadLines>().leftOut()) {
        if (!line.isFinite)
            findLeftOut(reporter, line, QStringLiteral("has a coordinate that is no finite number"));
    }
}

void checkSize(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::LeftOut &line : checked.made<RoadLines>().leftOut()) {
        if (line.isFinite)
            findLeftOut(reporter, line,
                        QStringLiteral("has %1, and %2 are the most that are looked at")
                            .arg(points(line.points), QString::number(RoadLines::kMostPoints)));
    }
}

void checkLinkPoints(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        if (link->mlVertex.size() < 2)
            findObject(reporter, *link,
                       link->mlVertex.isEmpty() ? QStringLiteral("has no points")
                                                : QStringLiteral("has only one point"));
    }
}

void checkLanePoints(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        if (lane.centre.size() == 1)
            findLane(reporter, lane, QStringLiteral("has a centre line of one point"),
                     lines::middle(lane.centre));
    }
}

/// Whether there is no such line, rather than one that is left out.
bool lacks(const GeometryLine &line, const StoredJson &stored) {
    return line.isEmpty() && geometryjson::points(stored).isEmpty();
}

void checkLaneShape(const Checked &checked, Reporter &reporter) {
    const auto &lanes = checked.made<RoadLines>().lanes();
    const auto hasShape = [](const RoadLines::OfLane &lane) {
        return lane.lane->centerLinePointsJson.hasText() && !lane.centre.isEmpty();
    };
    // Older stores keep no shapes of lanes at all: hosts make them from the link.
    if (std::none_of(lanes.begin(), lanes.end(), hasShape))
        return;
    for (const RoadLines::OfLane &lane : lanes) {
        if (lacks(lane.centre, lane.lane->centerLinePointsJson) ||
            lacks(lane.left, lane.lane->leftBreakPointsJson) ||
            lacks(lane.right, lane.lane->rightBreakPointsJson))
            findLane(reporter, lane, QStringLiteral("has no centre line or no edges, while others have"),
                     lines::middle(checked.made<RoadLines>().of(lane.link)));
    }
}

/// Where a line has a point twice in a row; -1 for nowhere.
int repeatedPoint(const GeometryLine &line) {
    for (int i = 0; i + 1 < line.size(); ++i) {
        if (geometry::distance(line[i], line[i + 1]) < kSamePoint)
            return i;
    }
    return -1;
}

void checkRepeatedInLinks(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLink &link : checked.made<RoadLines>().links()) {
        const int at = repeatedPoint(link.line);
        if (at >= 0)
            findObject(reporter, *link.link,
                       QStringLiteral("has its point %1 twice").arg(QString::number(at + 1)),
                       lines::place(link.line[at]));
    }
}

void checkRepeatedInLanes(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        const int at = repeatedPoint(lane.centre);
        if (at >= 0)
            findLane(reporter, lane,
                     QStringLiteral("has point %1 of its centre line twice").arg(QString::number(at + 1)),
                     lines::place(lane.centre[at]));
    }
}

void checkLength(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLink &link : checked.made<RoadLines>().links()) {
        if (!isPositive(link.link->length))
            findObject(reporter, *link.link,
                       QStringLiteral("has a length of %1 m").arg(shown(link.link->length)),
                       lines::middle(link.line));
    }
}

/// Finds the links whose length is off what is drawn by a factor from `from` up to, not including, `to`.
void checkLengths(const Checked &checked, Reporter &reporter, double from, double to) {
    for (const RoadLines::OfLink &link : checked.made<RoadLines>().links()) {
        const double length = link.link->length;
        if (!isPositive(length) || link.line.size() < 2)
            continue;
        const double drawn = lengthNearest(link.line, length);
        const double factor = std::max(length, drawn) / std::max(std::min(length, drawn), kSamePoint);
        if (std::abs(length - drawn) > kLengthNoise && factor >= from && factor < to)
            findObject(reporter, *link.link,
                       QStringLiteral("has a length of %1 m and is drawn %2 m long")
                           .arg(shown(length), shown(drawn)),
                       lines::middle(link.line));
    }
}

void checkLengthFarOff(const Checked &checked, Reporter &reporter) {
    checkLengths(checked, reporter, kFarOffLength, HUGE_VAL);
}

void checkLengthOff(const Checked &checked, Reporter &reporter) {
    checkLengths(checked, reporter, kSameLength, kFarOffLength);
}

void checkHeights(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLink &link : checked.made<RoadLines>().links()) {
        for (int i = 0; i + 1 < link.line.size(); ++i) {
            const double away = lines::distance(link.line[i], link.line[i + 1]);
            const double step = std::abs(link.line[i + 1].z - link.line[i].z);
            if (step <= kStep || step <= kSteepest * away)
                continue;
            findObject(reporter, *link.link,
                       QStringLiteral("goes from a height of %1 m to %2 m within %3 m")
                           .arg(shown(link.line[i].z), shown(link.line[i + 1].z), shown(away)),
                       lines::place(link.line[i]));
            break;
        }
    }
}

void checkCentreLine(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLink &link : checked.made<RoadLines>().links()) {
        const GeometryLine kept = geometryjson::points(link.link->centerLinePointsJson);
        if (kept.isEmpty() || link.line.size() < 2)
            continue;
        const bool isSame =
            kept.size() == link.line.size() && std::equal(kept.begin(), kept.end(), link.line.begin(),
                                                          [](const GeometryPoint &a, const GeometryPoint &b) {
                                                              return lines::distance(a, b) <= kSamePlace;
                                                          });
        if (!isSame)
            findObject(
                reporter, *link.link,
                QStringLiteral("has a centre line of %1 that is not that through its vertices, which are %2")
                    .arg(points(kept.size()), QString::number(link.line.size())),
                lines::middle(link.line));
    }
}

void checkWidth(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        if (!isPositive(lane.lane->width))
            findLane(reporter, lane, QStringLiteral("has a width of %1 m").arg(shown(lane.lane->width)),
                     lines::middle(lane.centre));
    }
}

void checkWidthOfEdges(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        if (lane.left.isEmpty() || lane.right.isEmpty() || !isPositive(lane.lane->width) ||
            !geometry::hasDirection(lane.centre))
            continue;
        const double drawn = lines::distance(lane.left.first(), lane.right.first());
        if (std::abs(drawn - lane.lane->width) > kWidthNoise * std::max(1.0, lane.lane->width))
            findLane(reporter, lane,
                     QStringLiteral("has a width of %1 m and edges that begin %2 m apart")
                         .arg(shown(lane.lane->width), shown(drawn)),
                     lines::place(lane.left.first()));
    }
}

void checkCrossing(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        if (const auto place = lines::crossing(lane.left, lane.right))
            findLane(reporter, lane, QStringLiteral("has a left edge that crosses its right edge"), *place);
    }
}

/// Whether an end of a centre line lies between those of the edges, with each on its side.
bool encloses(const GeometryPoint &centre, const GeometryPoint &left, const GeometryPoint &right,
              const std::optional<bool> &leftIsLeft, const std::optional<bool> &rightIsLeft) {
    return leftIsLeft.value_or(true) && !rightIsLeft.value_or(false) &&
           lines::distanceToSide(centre, left, right) <=
               kSamePlace + kWidthNoise * lines::distance(left, right);
}

void checkEnclosing(const Checked &checked, Reporter &reporter) {
    for (const RoadLines::OfLane &lane : checked.made<RoadLines>().lanes()) {
        if (lane.left.isEmpty() || lane.right.isEmpty() || lane.centre.size() < 2)
            continue;
        const auto find = [&](const char *end, const GeometryPoint &place) {
            findLane(reporter, lane,
                     QStringLiteral("does not lie between its left edge and its right edge at its %1")
                         .arg(QLatin1String(end)),
                     lines::place(place));
        };
        const GeometryLine &centre = lane.centre;
        if (!encloses(centre.first(), lane.left.first(), lane.right.first(),
                      lines::isLeftOfStart(centre, lane.left.first()),
                      lines::isLeftOfStart(centre, lane.right.first())))
            find("start", centre.first());
        else if (!encloses(centre.last(), lane.left.last(), lane.right.last(),
                           lines::isLeftOfEnd(centre, lane.left.last()),
                           lines::isLeftOfEnd(centre, lane.right.last())))
            find("end", centre.last());
    }
}

void checkBesideLink(const Checked &checked, Reporter &reporter) {
    const RoadLines &roads = checked.made<RoadLines>();
    for (const RoadLines::OfLane &lane : roads.lanes()) {
        const GeometryLine link = roads.of(lane.link);
        if (lane.centre.isEmpty() || link.size() < 2)
            continue;
        const double most = lane.link->width() / 2 + kBesideLink;
        const GeometryPoint &start = lane.centre.first();
        const GeometryPoint &end = lane.centre.last();
        const double away =
            std::max(lines::nearest(link, start.x, start.y)->away, lines::nearest(link, end.x, end.y)->away);
        if (away > most)
            findLane(reporter, lane, QStringLiteral("begins or ends %1 m from its link").arg(shown(away)),
                     lines::middle(lane.centre));
    }
}

void checkEdgesOfLink(const Checked &checked, Reporter &reporter) {
    for (const auto &link : checked.network().links) {
        if (link->mlLane.isEmpty() ||
            (link->leftBreakPointsJson.holdsNothing() && link->rightBreakPointsJson.holdsNothing()))
            continue;
        if (link->leftBreakPointsJson != link->mlLane.last()->leftBreakPointsJson ||
            link->rightBreakPointsJson != link->mlLane.first()->rightBreakPointsJson)
            findObject(reporter, *link, QStringLiteral("has edges that are not those of its outermost lanes"),
                       lines::middle(checked.made<RoadLines>().of(link.get())));
    }
}

} // namespace

std::vector<Rule> geometryRules() {
    return {
        {"line.not-finite", "geometry", Severity::Error, Scope::Objects,
         "A line has a coordinate that is no finite number.",
         "Draw the line anew; nothing can be measured along it.", checkFinite},
        {"line.too-many-points", "geometry", Severity::Warning, Scope::Objects,
         "A line has more than 2,000 points, so that programs get slow; the other checks of lines pass over it.",
         "Simplify the line.", checkSize},
        {"link.too-few-points", "geometry", Severity::Error, Scope::Objects,
         "A link has fewer than two points, so it leads nowhere.",
         "Give it the points of its start and of its end, or remove it.", checkLinkPoints},
        {"lane.too-few-points", "geometry", Severity::Error, Scope::Objects,
         "The centre line of a lane is a single point.",
         "Make the shapes of the link's lanes anew (updateGeometry()).", checkLanePoints},
        {"lane.without-shape", "geometry", Severity::Warning, Scope::Objects,
         "A lane lacks its centre line or an edge, in a store that keeps those of other lanes.",
         "Make the shapes of the link's lanes anew (updateGeometry()).", checkLaneShape},
        {"link.repeated-point", "geometry", Severity::Warning, Scope::Objects,
         "A link has the same point twice in a row.", "Take one of the two out.", checkRepeatedInLinks},
        {"lane.repeated-point", "geometry", Severity::Warning, Scope::Objects,
         "The centre line of a lane has the same point twice in a row.", "Take one of the two out.",
         checkRepeatedInLanes},
        {"link.length-not-positive", "geometry", Severity::Error, Scope::Objects,
         "The length of a link is not above 0.", "Set the length of its line (calcuLength()).", checkLength},
        {"link.length-far-off", "geometry", Severity::Error, Scope::Objects,
         "The length of a link is less than half of what is drawn or more than twice that, and off by more than 2 m.",
         "Set the length of its line, or draw the line that has that length.", checkLengthFarOff},
        {"link.length-off", "geometry", Severity::Warning, Scope::Objects,
         "The length of a link differs from what is drawn by more than a fifth and by more than 2 m.",
         "Set the length of its line, or draw the line that has that length.", checkLengthOff},
        {"link.height-jumps", "geometry", Severity::Error, Scope::Objects,
         "A link rises or falls by more than twice the way that it goes, and by more than 3 m.",
         "Mend the height of the point.", checkHeights},
        {"link.centre-line-differs", "geometry", Severity::Warning, Scope::Objects,
         "The centre line that a link keeps is not the line through its vertices.",
         "Make the shape of the link anew (updateGeometry()).", checkCentreLine},
        {"link.edges-differ", "geometry", Severity::Warning, Scope::Objects,
         "The edges that a link keeps are not those of its outermost lanes.",
         "Make the shape of the link anew (updateGeometry()).", checkEdgesOfLink},
        {"lane.width-not-positive", "geometry", Severity::Error, Scope::Objects,
         "The width of a lane is not above 0.", "Set the width of the lane.", checkWidth},
        {"lane.width-off-edges", "geometry", Severity::Warning, Scope::Objects,
         "The edges of a lane begin farther apart than the lane is wide, or nearer, by more than a tenth.",
         "Set the width, or make the shapes of the link's lanes anew (updateGeometry()).", checkWidthOfEdges},
        {"lane.edges-cross", "geometry", Severity::Error, Scope::Objects,
         "The left edge of a lane crosses its right edge.",
         "Straighten the line, which most often turns back upon itself, and make the shapes anew.",
         checkCrossing},
        {"lane.edges-do-not-enclose", "geometry", Severity::Error, Scope::Objects,
         "A lane does not lie between its edges, or these have changed sides.",
         "Make the shapes of the link's lanes anew (updateGeometry()).", checkEnclosing},
        {"lane.off-link", "geometry", Severity::Warning, Scope::Objects,
         "A lane begins or ends more than 5 m beside its link.",
         "Draw the lane or the link where it belongs.", checkBesideLink},
    };
}

} // namespace moratools
