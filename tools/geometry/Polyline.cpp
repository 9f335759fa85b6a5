#include "tools/geometry/Polyline.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

struct Direction {
    double x = 0;
    double y = 0;
};

/// Sides shorter than this have no usable direction: coordinates of networks are written in centimetres or,
/// at best, micrometres.
constexpr double kShortestSide = 1e-6;

/// A negative zero would not survive a text form that reads "-0" as an integer.
double withoutNegativeZero(double value) {
    return value + 0.0;
}

bool directionBetween(const Point3 &from, const Point3 &to, Direction &direction) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double size = std::hypot(dx, dy);
    if (!(size > kShortestSide))
        return false;
    direction = {dx / size, dy / size};
    return true;
}

/// Directions into and out of each point. Points that repeat their neighbour share its corner, so both
/// directions skip over them; the ends of the line have one direction only.
bool cornerDirections(const Polyline &line, std::vector<Direction> &in, std::vector<Direction> &out) {
    const std::size_t n = line.size();
    in.resize(n);
    out.resize(n);
    std::vector<std::size_t> corner; // first points of the runs of repeated points
    std::vector<Direction> side;     // side[k] leads from corner k to corner k + 1
    std::vector<std::size_t> cornerOf(n, 0);
    for (std::size_t i = 0; i < n; ++i) {
        Direction direction;
        if (corner.empty()) {
            corner.push_back(i);
        } else if (directionBetween(line[corner.back()], line[i], direction)) {
            corner.push_back(i);
            side.push_back(direction);
        }
        cornerOf[i] = corner.size() - 1;
    }
    if (side.empty())
        return false;
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t k = cornerOf[i];
        in[i] = side[k == 0 ? 0 : k - 1];
        out[i] = side[std::min(k, side.size() - 1)];
    }
    return true;
}

} // namespace

namespace geometry {

double distance(const Point3 &a, const Point3 &b) {
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

double length(const Polyline &line) {
    double sum = 0;
    for (std::size_t i = 1; i < line.size(); ++i)
        sum += distance(line[i - 1], line[i]);
    return sum;
}

Polyline offset(const Polyline &line, double offset, double mitreLimit) {
    std::vector<Direction> in;
    std::vector<Direction> out;
    if (!cornerDirections(line, in, out))
        return line;
    Polyline moved(line);
    for (std::size_t i = 0; i < line.size(); ++i) {
        // The mitre is the sum of both normals divided by 1 + cos of the turn; the left normal of (x, y) is
        // (-y, x).
        const double nx = -(in[i].y + out[i].y);
        const double ny = in[i].x + out[i].x;
        const double cosPlusOne = 1.0 + in[i].x * out[i].x + in[i].y * out[i].y;
        const double reach = std::hypot(nx, ny); // 2 cos(turn / 2)
        double mx = -in[i].y;
        double my = in[i].x;
        if (reach > kShortestSide) {
            const double mitre = std::min(reach / cosPlusOne, mitreLimit);
            mx = nx / reach * mitre;
            my = ny / reach * mitre;
        }
        moved[i].x = withoutNegativeZero(line[i].x + offset * mx);
        moved[i].y = withoutNegativeZero(line[i].y + offset * my);
    }
    return moved;
}

Polyline midway(const Polyline &a, const Polyline &b) {
    Polyline middle(std::min(a.size(), b.size()));
    for (std::size_t i = 0; i < middle.size(); ++i)
        middle[i] = {a[i].x + (b[i].x - a[i].x) / 2, a[i].y + (b[i].y - a[i].y) / 2,
                     a[i].z + (b[i].z - a[i].z) / 2};
    return middle;
}

Point3 pointAt(const Polyline &line, double share) {
    double left = share * length(line);
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const Point3 &a = line[i];
        const Point3 &b = line[i + 1];
        const double step = distance(a, b);
        if (left < step) {
            const double t = std::max(left, 0.0) / step;
            return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
        }
        left -= step;
    }
    return line.back();
}

void append(Polyline &line, const Polyline &piece) {
    auto first = piece.begin();
    if (!line.empty() && first != piece.end() && *first == line.back())
        ++first;
    line.insert(line.end(), first, piece.end());
}

} // namespace geometry

} // namespace moratools
