#pragma once

#include "tools/MoraToolsExport.h"

#include <vector>

namespace moratools {

/// A point of a network in metres; z is the height.
struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

inline bool operator==(const Point3 &a, const Point3 &b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
inline bool operator!=(const Point3 &a, const Point3 &b) {
    return !(a == b);
}

using Polyline = std::vector<Point3>;

namespace geometry {

/// Distance of two points in space, in metres.
MORATOOLS_EXPORT double distance(const Point3 &a, const Point3 &b);

/// Length of the line in space, in metres; 0 for fewer than two points.
MORATOOLS_EXPORT double length(const Polyline &line);

/// The line moved sideways in the plane by `offset` metres, to the left of its direction when positive;
/// heights stay. The result has one point for each point of `line`: corners are mitred, and a mitre reaches
/// at most `mitreLimit` times the offset from its corner, so that a hairpin makes no spike. Repeated points
/// move together. A line without any extent in the plane has no side and comes back as it is.
MORATOOLS_EXPORT Polyline offset(const Polyline &line, double offset, double mitreLimit = 3.0);

/// The line halfway between two lines of equally many points.
MORATOOLS_EXPORT Polyline midway(const Polyline &a, const Polyline &b);

/// The point at `share` of the line's length, 0 to 1. The line has a point at least.
MORATOOLS_EXPORT Point3 pointAt(const Polyline &line, double share);

/// Adds `piece` to the end of `line`; a first point equal to the line's last one is not repeated.
MORATOOLS_EXPORT void append(Polyline &line, const Polyline &piece);

} // namespace geometry

} // namespace moratools
