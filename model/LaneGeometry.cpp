#include "LaneGeometry.h"

#include "Connector.h"
#include "GeometryJson.h"
#include "GeometryLine.h"
#include "Link.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace {

/// A lane, or a path between two of them.
struct Shape {
    GeometryLine centre;
    GeometryLine left;
    GeometryLine right;

    bool isFinite() const {
        return geometry::isFinite(centre) && geometry::isFinite(left) && geometry::isFinite(right);
    }
};

/// Links, lanes and lane connectors keep a shape alike.
template <class Owner>
void setShape(Owner &owner, const Shape &shape) {
    owner.centerLinePointsJson = geometryjson::fromPoints(shape.centre);
    owner.leftBreakPointsJson = geometryjson::fromPoints(shape.left);
    owner.rightBreakPointsJson = geometryjson::fromPoints(shape.right);
}

/// What lies beside a line from `right` to `left`, both metres to its left.
Shape bandOf(const GeometryLine &line, double right, double left) {
    return {geometry::offset(line, right + (left - right) / 2), geometry::offset(line, left),
            geometry::offset(line, right)};
}

bool isWidth(double width) {
    return std::isfinite(width) && width >= 0;
}

bool refuse(QString *why, const QString &sentence) {
    if (why)
        *why = sentence;
    return false;
}

QString nameOf(const Link &link) {
    return QStringLiteral("link %1 (%2)").arg(QString::number(link.linkID), link.linkName);
}

QString nameOf(const Lane &lane) {
    return QStringLiteral("lane %1 of link %2")
        .arg(QString::number(lane.laneID), QString::number(lane.linkID));
}

/// What keeps a link from having a line and widths; empty when nothing does.
QString obstacleOf(const Link &link) {
    if (link.mlVertex.contains(nullptr))
        return QStringLiteral("a vertex of it is null; take it out");
    if (link.mlLane.contains(nullptr))
        return QStringLiteral("a lane of it is null; take it out");
    for (const Lane *lane : link.mlLane) {
        if (!isWidth(lane->width))
            return QStringLiteral("its lane %1 is %2 m wide; give it a width of 0 or more")
                .arg(QString::number(lane->laneID), QString::number(lane->width));
    }
    if (!isWidth(link.width()))
        return QStringLiteral("it is %1 m wide; give it lanes, or a laneNumber and a laneWidth of 0 or more")
            .arg(QString::number(link.width()));
    return {};
}

GeometryLine lineOf(const Link &link) {
    GeometryLine line;
    line.reserve(link.mlVertex.size());
    for (const Vertex *vertex : link.mlVertex)
        line.append({vertex->x, vertex->y, vertex->z});
    return line;
}

/// The lanes from right to left; they share the width in equal parts on either side of the line.
std::vector<Shape> lanesOf(const Link &link, const GeometryLine &line) {
    std::vector<Shape> lanes;
    double right = -link.width() / 2;
    for (const Lane *lane : link.mlLane) {
        const double left = right + lane->width;
        lanes.push_back(bandOf(line, right, left));
        right = left;
    }
    return lanes;
}

/// The path of a lane connector; none, and why, when it has none.
std::optional<Shape> pathOf(const LaneConnector &path, QString *why) {
    const Lane *from = path.mpStartLane;
    const Lane *to = path.mpEndLane;
    if (!from || !to) {
        refuse(why, QStringLiteral("Lane connector %1 lacks a lane; give it a start and an end.")
                        .arg(QString::number(path.laneConnId)));
        return {};
    }
    const GeometryLine before = geometryjson::points(from->centerLinePointsJson);
    const GeometryLine after = geometryjson::points(to->centerLinePointsJson);
    for (const auto &[lane, line] : {std::pair(from, before), std::pair(to, after)}) {
        if (line.size() < 2 || !isWidth(lane->width)) {
            refuse(why, QStringLiteral("Lane connector %1: %2 has no centre line or a width below 0; call "
                                       "updateGeometry() on its link first.")
                            .arg(QString::number(path.laneConnId), nameOf(*lane)));
            return {};
        }
    }
    const Shape shape{geometry::turn(before, after),
                      geometry::turn(before, after, from->width / 2, to->width / 2),
                      geometry::turn(before, after, -from->width / 2, -to->width / 2)};
    if (!shape.isFinite()) {
        refuse(why, QStringLiteral("Lane connector %1: %2 and %3 are too far from each other.")
                        .arg(QString::number(path.laneConnId), nameOf(*from), nameOf(*to)));
        return {};
    }
    return shape;
}

} // namespace

bool updateGeometry(Link &link, QString *why) {
    const QString obstacle = obstacleOf(link);
    if (!obstacle.isEmpty())
        return refuse(why, QStringLiteral("No geometry for %1: %2.").arg(nameOf(link), obstacle));
    const GeometryLine line = lineOf(link);
    const std::vector<Shape> lanes = lanesOf(link, line);
    Shape whole = bandOf(line, -link.width() / 2, link.width() / 2);
    if (!lanes.empty())
        whole = {line, lanes.back().left, lanes.front().right};
    if (!whole.isFinite() || !std::isfinite(geometry::lengthInPlane(line)) ||
        !std::all_of(lanes.begin(), lanes.end(), [](const Shape &shape) { return shape.isFinite(); }))
        return refuse(
            why,
            QStringLiteral("No geometry for %1: a coordinate is no number or too large.").arg(nameOf(link)));
    if (!geometry::hasDirection(line))
        return refuse(why,
                      QStringLiteral("No geometry for %1: it needs two vertices that are not in one place.")
                          .arg(nameOf(link)));
    setShape(link, whole);
    link.calcuLength();
    if (link.mpStartNode)
        link.mpStartNode->mpVertex = link.mlVertex.first();
    if (link.mpEndNode)
        link.mpEndNode->mpVertex = link.mlVertex.last();
    for (int i = 0; i < link.mlLane.size(); ++i) {
        Lane &lane = *link.mlLane.at(i);
        lane.serialNumber = i + 1;
        lane.linkID = link.linkID;
        setShape(lane, lanes[std::size_t(i)]);
    }
    return true;
}

bool curve(LaneConnector &path, QString *why) {
    const std::optional<Shape> shape = pathOf(path, why);
    if (shape)
        setShape(path, *shape);
    return shape.has_value();
}

bool curve(Connector &connector, QString *why) {
    if (connector.mlLaneConnector.isEmpty())
        return refuse(
            why, QStringLiteral("Connector %1 (%2) has no lane connectors; give it one for each movement.")
                     .arg(QString::number(connector.connID), connector.connName));
    std::vector<Shape> paths;
    double length = 0;
    for (const LaneConnector *path : connector.mlLaneConnector) {
        if (!path)
            return refuse(why, QStringLiteral("A lane connector of connector %1 (%2) is null; take it out.")
                                   .arg(QString::number(connector.connID), connector.connName));
        const std::optional<Shape> shape = pathOf(*path, why);
        if (!shape)
            return false;
        paths.push_back(*shape);
        length += geometry::lengthInPlane(shape->centre) / connector.mlLaneConnector.size();
    }
    for (int i = 0; i < connector.mlLaneConnector.size(); ++i)
        setShape(*connector.mlLaneConnector.at(i), paths[std::size_t(i)]);
    connector.length = length;
    updateEdges(connector);
    return true;
}

void updateEdges(Connector &connector) {
    const LaneConnector *rightmost = nullptr;
    const LaneConnector *leftmost = nullptr;
    const auto placeOf = [](const LaneConnector *path) {
        return std::pair(path->mpStartLane->serialNumber, path->mpEndLane->serialNumber);
    };
    for (const LaneConnector *path : qAsConst(connector.mlLaneConnector)) {
        if (!path || !path->mpStartLane || !path->mpEndLane)
            continue;
        if (!rightmost || placeOf(path) < placeOf(rightmost))
            rightmost = path;
        if (!leftmost || placeOf(path) > placeOf(leftmost))
            leftmost = path;
    }
    connector.rightBreakPointsJson = rightmost ? rightmost->rightBreakPointsJson : StoredJson();
    connector.leftBreakPointsJson = leftmost ? leftmost->leftBreakPointsJson : StoredJson();
}
