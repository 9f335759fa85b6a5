#pragma once

#include "model/GeometryLine.h"

#include <QPointF>

#include <optional>

namespace moratools {

/// Lines in the plane, as the checks look at them. All coordinates are finite.
namespace lines {

/// A point beside a line.
struct Nearest {
    double along = 0; ///< metres along the line, in the plane, to the place that is nearest to the point
    double away = 0;  ///< metres from there to the point
};

/// Nothing for a line without points.
std::optional<Nearest> nearest(const GeometryLine &line, double x, double y);

/// Metres from a point to the straight line between two others, which may be one.
double distanceToSide(const GeometryPoint &point, const GeometryPoint &a, const GeometryPoint &b);

/// Distance in the plane.
double distance(const GeometryPoint &a, const GeometryPoint &b);

/// Where two lines cross; touching is no crossing. The cost is that of comparing each side with each.
std::optional<QPointF> crossing(const GeometryLine &a, const GeometryLine &b);

/// Whether `point` lies to the left of the direction that `line` has at its start, or at its end; nothing where the
/// line has none, or the point lies straight on.
std::optional<bool> isLeftOfStart(const GeometryLine &line, const GeometryPoint &point);
std::optional<bool> isLeftOfEnd(const GeometryLine &line, const GeometryPoint &point);

/// The middle of a line's points, for a mark; nothing without any.
std::optional<QPointF> middle(const GeometryLine &line);

inline QPointF place(const GeometryPoint &point) {
    return {point.x, point.y};
}

} // namespace lines

} // namespace moratools
