#include "GeometryLine.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// A point or a direction in the plane.
struct PlaneVector {
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

bool directionBetween(const GeometryPoint &from, const GeometryPoint &to, PlaneVector &direction) {
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
bool cornerDirections(const GeometryLine &line, QVector<PlaneVector> &in, QVector<PlaneVector> &out) {
    QVector<int> corner;       // first points of the runs of repeated points
    QVector<PlaneVector> side; // side[k] leads from corner k to corner k + 1
    QVector<int> cornerOf(line.size());
    for (int i = 0; i < line.size(); ++i) {
        PlaneVector direction;
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
    in.resize(line.size());
    out.resize(line.size());
    for (int i = 0; i < line.size(); ++i) {
        const int k = cornerOf[i];
        in[i] = side[k == 0 ? 0 : k - 1];
        out[i] = side[std::min(k, side.size() - 1)];
    }
    return true;
}

/// The direction in which a line starts.
bool directionAtStart(const GeometryLine &line, PlaneVector &direction) {
    return std::any_of(line.cbegin(), line.cend(), [&](const GeometryPoint &point) {
        return directionBetween(line.front(), point, direction);
    });
}

/// The direction in which a line ends.
bool directionAtEnd(const GeometryLine &line, PlaneVector &direction) {
    return std::any_of(line.crbegin(), line.crend(), [&](const GeometryPoint &point) {
        return directionBetween(point, line.back(), direction);
    });
}

/// A cubic Bezier curve in the plane that goes from one point and direction to another.
class TurnCurve {
public:
    TurnCurve(const GeometryPoint &start, const PlaneVector &out, const GeometryPoint &end,
              const PlaneVector &in)
        : mOut(out), mIn(in) {
        // cos(a / 2) of the angle a between the directions; rounding may leave their product a trifle below -1.
        const double cosHalf = std::sqrt(std::max(0.0, (1 + out.x * in.x + out.y * in.y) / 2));
        const double reach = std::hypot(end.x - start.x, end.y - start.y) * 2 / (3 * (1 + cosHalf));
        mControl[0] = {start.x, start.y};
        mControl[1] = {start.x + out.x * reach, start.y + out.y * reach};
        mControl[2] = {end.x - in.x * reach, end.y - in.y * reach};
        mControl[3] = {end.x, end.y};
    }

    int pieces() const {
        constexpr double tolerance = 0.02; // metres
        constexpr double most = 64;
        double bend = 0;
        for (std::size_t i = 0; i < 2; ++i)
            bend = std::max(bend, std::hypot(mControl[i + 2].x - 2 * mControl[i + 1].x + mControl[i].x,
                                             mControl[i + 2].y - 2 * mControl[i + 1].y + mControl[i].y));
        // In this order what is no number gives 1.
        return int(std::min(most, std::max(1.0, std::ceil(std::sqrt(0.75 * bend / tolerance)))));
    }

    PlaneVector at(double t) const {
        const double s = 1 - t;
        return sum({s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t});
    }

    /// At the ends exactly that of the lines, so that what lies beside the curve meets what lies beside these.
    PlaneVector directionAt(double t) const {
        if (t <= 0)
            return mOut;
        if (t >= 1)
            return mIn;
        const double s = 1 - t;
        const PlaneVector slope = sum({-s * s, s * s - 2 * s * t, 2 * s * t - t * t, t * t});
        const double size = std::hypot(slope.x, slope.y);
        return size > kShortestSide ? PlaneVector{slope.x / size, slope.y / size} : mOut;
    }

private:
    PlaneVector sum(const std::array<double, 4> &weights) const {
        PlaneVector point;
        for (std::size_t i = 0; i < 4; ++i) {
            point.x += weights[i] * mControl[i].x;
            point.y += weights[i] * mControl[i].y;
        }
        return point;
    }

    PlaneVector mOut;
    PlaneVector mIn;
    std::array<PlaneVector, 4> mControl;
};

} // namespace

namespace geometry {

double distance(const GeometryPoint &a, const GeometryPoint &b) {
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

double length(const GeometryLine &line) {
    double sum = 0;
    for (int i = 1; i < line.size(); ++i)
        sum += distance(line[i - 1], line[i]);
    return sum;
}

double lengthInPlane(const GeometryLine &line) {
    double sum = 0;
    for (int i = 1; i < line.size(); ++i)
        sum += std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y);
    return sum;
}

bool isFinite(const GeometryLine &line) {
    return std::all_of(line.cbegin(), line.cend(), [](const GeometryPoint &point) {
        return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    });
}

bool hasDirection(const GeometryLine &line) {
    PlaneVector direction;
    return directionAtStart(line, direction);
}

GeometryLine offset(const GeometryLine &line, double offset, double mitreLimit) {
    QVector<PlaneVector> in;
    QVector<PlaneVector> out;
    if (!cornerDirections(line, in, out))
        return line;
    GeometryLine moved(line);
    for (int i = 0; i < line.size(); ++i) {
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

GeometryLine turn(const GeometryLine &from, const GeometryLine &to, double offsetAtStart,
                  double offsetAtEnd) {
    if (from.empty() || to.empty())
        return {};
    const GeometryPoint &start = from.back();
    const GeometryPoint &end = to.front();
    PlaneVector straight{1, 0};
    directionBetween(start, end, straight);
    PlaneVector out = straight;
    PlaneVector in = straight;
    directionAtEnd(from, out);
    directionAtStart(to, in);
    const TurnCurve curve(start, out, end, in);
    const int pieces = curve.pieces();
    GeometryLine line;
    line.reserve(pieces + 1);
    for (int i = 0; i <= pieces; ++i) {
        const double t = double(i) / pieces;
        const PlaneVector at = curve.at(t);
        const PlaneVector along = curve.directionAt(t);
        const double offset = (1 - t) * offsetAtStart + t * offsetAtEnd;
        line.append({withoutNegativeZero(at.x - offset * along.y),
                     withoutNegativeZero(at.y + offset * along.x),
                     withoutNegativeZero((1 - t) * start.z + t * end.z)});
    }
    return line;
}

GeometryLine midway(const GeometryLine &a, const GeometryLine &b) {
    GeometryLine middle(std::min(a.size(), b.size()));
    for (int i = 0; i < middle.size(); ++i)
        middle[i] = {a[i].x + (b[i].x - a[i].x) / 2, a[i].y + (b[i].y - a[i].y) / 2,
                     a[i].z + (b[i].z - a[i].z) / 2};
    return middle;
}

GeometryPoint pointAt(const GeometryLine &line, double share) {
    double left = share * length(line);
    for (int i = 0; i + 1 < line.size(); ++i) {
        const GeometryPoint &a = line[i];
        const GeometryPoint &b = line[i + 1];
        const double step = distance(a, b);
        if (left < step) {
            const double t = std::max(left, 0.0) / step;
            return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
        }
        left -= step;
    }
    return line.back();
}

void append(GeometryLine &line, const GeometryLine &piece) {
    const bool joins = !line.empty() && !piece.empty() && piece.front() == line.back();
    line += joins ? piece.mid(1) : piece;
}

} // namespace geometry
