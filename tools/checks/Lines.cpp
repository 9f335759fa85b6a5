#include "tools/checks/Lines.h"

#include <algorithm>
#include <cmath>

namespace moratools::lines {

namespace {

// Points that are nearer give no direction: networks are drawn to the centimetre.
constexpr double kShortestSide = 1e-3;

/// Twice the area of a triangle, positive when `c` lies to the left of the way from `a` to `b`.
double area(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// What share of the side from `a` to `b` leads to the place that is nearest to a point.
double shareOf(const GeometryPoint &a, const GeometryPoint &b, double x, double y) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    return square > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / square, 0.0, 1.0) : 0;
}

double awayFrom(const GeometryPoint &a, const GeometryPoint &b, double share, double x, double y) {
    return std::hypot(a.x + share * (b.x - a.x) - x, a.y + share * (b.y - a.y) - y);
}

bool overlap(double a, double b, double c, double d) {
    return std::max(a, b) >= std::min(c, d) && std::max(c, d) >= std::min(a, b);
}

bool sidesCross(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &c,
                const GeometryPoint &d) {
    return overlap(a.x, b.x, c.x, d.x) && overlap(a.y, b.y, c.y, d.y) && area(a, b, c) * area(a, b, d) < 0 &&
           area(c, d, a) * area(c, d, b) < 0;
}

std::optional<bool> isLeft(const GeometryPoint &from, const GeometryPoint &to, const GeometryPoint &point) {
    const double side = area(from, to, point);
    return side == 0 ? std::nullopt : std::optional<bool>(side > 0);
}

} // namespace

double distance(const GeometryPoint &a, const GeometryPoint &b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

std::optional<Nearest> nearest(const GeometryLine &line, double x, double y) {
    if (line.isEmpty())
        return std::nullopt;
    Nearest found{0, std::hypot(line[0].x - x, line[0].y - y)};
    double passed = 0;
    for (int i = 0; i + 1 < line.size(); ++i) {
        const double share = shareOf(line[i], line[i + 1], x, y);
        const double away = awayFrom(line[i], line[i + 1], share, x, y);
        const double length = distance(line[i], line[i + 1]);
        if (away < found.away)
            found = {passed + share * length, away};
        passed += length;
    }
    return found;
}

double distanceToSide(const GeometryPoint &point, const GeometryPoint &a, const GeometryPoint &b) {
    return awayFrom(a, b, shareOf(a, b, point.x, point.y), point.x, point.y);
}

std::optional<QPointF> crossing(const GeometryLine &a, const GeometryLine &b) {
    for (int i = 0; i + 1 < a.size(); ++i) {
        for (int k = 0; k + 1 < b.size(); ++k) {
            if (sidesCross(a[i], a[i + 1], b[k], b[k + 1]))
                return place(a[i]);
        }
    }
    return std::nullopt;
}

std::optional<bool> isLeftOfStart(const GeometryLine &line, const GeometryPoint &point) {
    const auto second = std::find_if(line.begin(), line.end(), [&](const GeometryPoint &other) {
        return distance(line.front(), other) > kShortestSide;
    });
    return second == line.end() ? std::nullopt : isLeft(line.front(), *second, point);
}

std::optional<bool> isLeftOfEnd(const GeometryLine &line, const GeometryPoint &point) {
    const auto before = std::find_if(line.rbegin(), line.rend(), [&](const GeometryPoint &other) {
        return distance(line.back(), other) > kShortestSide;
    });
    return before == line.rend() ? std::nullopt : isLeft(*before, line.back(), point);
}

std::optional<QPointF> middle(const GeometryLine &line) {
    return line.isEmpty() ? std::nullopt : std::optional<QPointF>(place(line[line.size() / 2]));
}

} // namespace moratools::lines
