#pragma once

#include "MoraStoreExport.h"

#include <QVector>

/// A point of a line in the units of a Vertex, metres: plane coordinates, x to the east and y to the north, and the
/// height z.
struct GeometryPoint {
    double x = 0;
    double y = 0;
    double z = 0;
};
Q_DECLARE_TYPEINFO(GeometryPoint, Q_PRIMITIVE_TYPE);

inline bool operator==(const GeometryPoint &a, const GeometryPoint &b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
inline bool operator!=(const GeometryPoint &a, const GeometryPoint &b) {
    return !(a == b);
}

/// The points of a line, from its start to its end.
using GeometryLine = QVector<GeometryPoint>;

/// Lines in the plane and in space. Lengths are metres.
namespace geometry {

/// Distance of two points in space.
MORASTORE_EXPORT double distance(const GeometryPoint &a, const GeometryPoint &b);

/// Length of the line in space; 0 for fewer than two points.
MORASTORE_EXPORT double length(const GeometryLine &line);
/// Length of the line in the plane, without its heights.
MORASTORE_EXPORT double lengthInPlane(const GeometryLine &line);

/// Whether all coordinates are finite.
MORASTORE_EXPORT bool isFinite(const GeometryLine &line);

/// Whether the line leads anywhere in the plane: a point is more than a thousandth of a millimetre from its first.
MORASTORE_EXPORT bool hasDirection(const GeometryLine &line);

/// The line moved sideways in the plane by `offset` metres, to the left of its direction when positive;
/// heights stay. The result has one point for each point of `line`: corners are mitred, and a mitre reaches
/// at most `mitreLimit` times the offset from its corner, so that a hairpin makes no spike. Repeated points
/// move together. A line without a direction has no side and comes back as it is.
///
/// With the directions d into and e out of a corner and the left normal n(x, y) = (-y, x), the corner moves by
/// offset (n(d) + n(e)) / (1 + d e), which is offset / cos(half the turn) long. Inside a bend that is tighter
/// than the offset the line runs backwards for a piece.
MORASTORE_EXPORT GeometryLine offset(const GeometryLine &line, double offset, double mitreLimit = 3.0);

/// The curve that leaves the end of `from` in the direction of its last side, and arrives at the start of `to`
/// in the direction of its first; moved sideways, to the left when positive, by what goes evenly from
/// `offsetAtStart` to `offsetAtEnd`. A line that has no direction in the plane counts as one that leads straight
/// to the other; an empty one gives no curve.
///
/// A cubic Bézier curve in the plane. Its inner control points lie on the two directions, at the distance
/// c 2 / (3 (1 + cos(a / 2))) from the ends, where c is the distance of the ends and a the angle between the
/// directions: that is 4/3 tan(a / 4) of the radius, the usual approximation of an arc, where the two lines are
/// tangents of one circle, and a straight line where they lie on one. As many points are taken, evenly by the
/// parameter, as keep the line within 2 cm of the curve, 65 at most: Wang's bound for cubics,
/// sqrt(3/4 m / tolerance) pieces with the largest second difference m of the control points. Heights go evenly
/// from one end to the other.
MORASTORE_EXPORT GeometryLine turn(const GeometryLine &from, const GeometryLine &to, double offsetAtStart = 0,
                                   double offsetAtEnd = 0);

/// The line halfway between two lines of equally many points.
MORASTORE_EXPORT GeometryLine midway(const GeometryLine &a, const GeometryLine &b);

/// The point at `share` of the line's length, 0 to 1. The line has a point at least.
MORASTORE_EXPORT GeometryPoint pointAt(const GeometryLine &line, double share);

/// Adds `piece` to the end of `line`; a first point equal to the line's last one is not repeated.
MORASTORE_EXPORT void append(GeometryLine &line, const GeometryLine &piece);

} // namespace geometry
