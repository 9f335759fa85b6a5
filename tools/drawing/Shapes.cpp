#include "tools/drawing/Shapes.h"

#include "model/GeometryJson.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

constexpr double kFarthest = 1e9; // metres; 25 times around the earth

QPointF pointOf(const GeometryPoint &point) {
    return {point.x, point.y};
}

/// Unit vector from `a` to `b`; null when they coincide.
QPointF directionOf(const QPointF &a, const QPointF &b) {
    const QPointF d = b - a;
    const double size = std::hypot(d.x(), d.y());
    return size > 1e-9 ? d / size : QPointF();
}

} // namespace

namespace shapes {

bool isOnPlan(std::initializer_list<double> metres) {
    // Not a number is not less than anything.
    return std::all_of(metres.begin(), metres.end(),
                       [](double value) { return std::abs(value) <= kFarthest; });
}

GeometryLine lineOf(const StoredJson &geometry) {
    return onPlan(geometryjson::points(geometry));
}

GeometryLine onPlan(const GeometryLine &line) {
    const bool isDrawn = std::all_of(line.begin(), line.end(), [](const GeometryPoint &point) {
        return isOnPlan({point.x, point.y, point.z});
    });
    return isDrawn ? line : GeometryLine();
}

void addLine(QPainterPath &path, const GeometryLine &line) {
    if (line.empty())
        return;
    path.moveTo(pointOf(line.front()));
    for (int i = 1; i < line.size(); ++i)
        path.lineTo(pointOf(line[i]));
}

void addArea(QPainterPath &path, const GeometryLine &left, const GeometryLine &right) {
    if (left.empty() || right.empty())
        return;
    addLine(path, left);
    for (auto point = right.rbegin(); point != right.rend(); ++point)
        path.lineTo(pointOf(*point));
    path.closeSubpath();
}

void addArrow(QPainterPath &path, const GeometryLine &line, double beforeEnd, double arrowLength,
              double arrowWidth) {
    double left = beforeEnd;
    for (int i = line.size() - 1; i >= 1; --i) {
        const QPointF a = pointOf(line[i - 1]);
        const QPointF b = pointOf(line[i]);
        const double size = std::hypot(b.x() - a.x(), b.y() - a.y());
        if (size < left) {
            left -= size;
            continue;
        }
        const QPointF along = directionOf(a, b);
        const QPointF across(-along.y(), along.x());
        const QPointF tip = b - along * left;
        const QPointF neck = tip - along * (arrowLength * 0.45);
        const QPointF tail = tip - along * arrowLength;
        const double shaft = arrowWidth * 0.14;
        path.moveTo(tip);
        path.lineTo(neck + across * (arrowWidth / 2));
        path.lineTo(neck + across * shaft);
        path.lineTo(tail + across * shaft);
        path.lineTo(tail - across * shaft);
        path.lineTo(neck - across * shaft);
        path.lineTo(neck - across * (arrowWidth / 2));
        path.closeSubpath();
        return;
    }
}

} // namespace shapes

} // namespace moratools
