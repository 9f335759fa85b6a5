#pragma once

#include "host/geometry/Polyline.h"

#include <QPainterPath>

/// Parts of a plan as paths, in metres.
namespace shapes {

void addLine(QPainterPath &path, const Polyline &line);
/// The area between two borders that run the same way.
void addArea(QPainterPath &path, const Polyline &left, const Polyline &right);
/// An arrow of the given size along a line's direction, with its tip `beforeEnd` metres before the line's
/// end.
void addArrow(QPainterPath &path, const Polyline &line, double beforeEnd, double arrowLength,
              double arrowWidth);
/// The curve of a lane connector that has no geometry of its own: it leaves along the end of `from` and
/// arrives along the start of `to`.
void addTurn(QPainterPath &path, const Polyline &from, const Polyline &to);

} // namespace shapes
