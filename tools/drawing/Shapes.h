#pragma once

#include "model/GeometryLine.h"
#include "model/StoredJson.h"

#include <QPainterPath>

#include <initializer_list>

namespace moratools {

/// Parts of a plan as paths, in metres.
namespace shapes {

/// Whether numbers that a store holds are places or lengths on a plan, in metres: finite, and no farther than
/// any place is from another, so that sums and squares of them are numbers, too.
bool isOnPlan(std::initializer_list<double> metres);
/// The points of a geometry object; none where one of them is not on a plan.
GeometryLine lineOf(const StoredJson &geometry);
/// The line, or none where one of its points is not on a plan.
GeometryLine onPlan(const GeometryLine &line);

void addLine(QPainterPath &path, const GeometryLine &line);
/// The area between two borders that run the same way.
void addArea(QPainterPath &path, const GeometryLine &left, const GeometryLine &right);
/// An arrow of the given size along a line's direction, with its tip `beforeEnd` metres before the line's
/// end.
void addArrow(QPainterPath &path, const GeometryLine &line, double beforeEnd, double arrowLength,
              double arrowWidth);
} // namespace shapes

} // namespace moratools
