#include "model/GeometryLine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// Distance of a point from the straight line through a and b, positive on the left.
double sideDistance(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &p) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return (dx * (p.y - a.y) - dy * (p.x - a.x)) / std::hypot(dx, dy);
}

} // namespace

TEST(GeometryLine, OffsetKeepsItsDistanceFromBothSidesOfEveryModerateCorner) {
    const GeometryLine line{{0, 0, 1}, {10, 0, 2}, {14, 3, 3}, {14, 20, 4}, {7, 24, 5}};
    for (const double distance : {1.6, -1.6}) {
        const GeometryLine moved = geometry::offset(line, distance);
        ASSERT_EQ(moved.size(), line.size());
        for (int i = 1; i < line.size(); ++i) {
            EXPECT_NEAR(sideDistance(line[i - 1], line[i], moved[i - 1]), distance, 1e-12) << i;
            EXPECT_NEAR(sideDistance(line[i - 1], line[i], moved[i]), distance, 1e-12) << i;
            EXPECT_EQ(moved[i].z, line[i].z);
        }
    }
}

TEST(GeometryLine, OffsetOfAStraightLineIsExact) {
    const GeometryLine moved = geometry::offset({{0, 0, 0}, {5, 0, 0}, {9, 0, 7}}, 1.6);
    EXPECT_EQ(moved, (GeometryLine{{0, 1.6, 0}, {5, 1.6, 0}, {9, 1.6, 7}}));
}

TEST(GeometryLine, OffsetOfRepeatedPointsMovesThemTogether) {
    const GeometryLine line{{0, 0, 0},     {0, 0, 0},   {10, 0, 0}, {10, 0, 0},
                            {10, 1e-9, 0}, {10, 10, 0}, {10, 10, 0}};
    const GeometryLine moved = geometry::offset(line, 2);
    const GeometryLine plain = geometry::offset({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, 2);
    const int corner[] = {0, 0, 1, 1, 1, 2, 2};
    ASSERT_EQ(moved.size(), line.size());
    for (int i = 0; i < line.size(); ++i)
        EXPECT_NEAR(geometry::distance(moved[i], plain[corner[i]]), 0, 1e-8) << i;
}

TEST(GeometryLine, MitreOfASharpCornerIsLimited) {
    const GeometryLine hairpin{{0, 0, 0}, {100, 0, 0}, {0, 0.5, 0}};
    const GeometryLine reversal{{0, 0, 0}, {100, 0, 0}, {0, 0, 0}};
    for (const GeometryLine &line : {hairpin, reversal}) {
        for (const double distance : {1.6, -1.6}) {
            for (const GeometryPoint &point : geometry::offset(line, distance)) {
                ASSERT_TRUE(std::isfinite(point.x) && std::isfinite(point.y));
                EXPECT_LE(std::hypot(point.x - (point.x > 50 ? 100 : 0), point.y), 3 * 1.6 + 0.51);
            }
        }
    }
}

TEST(GeometryLine, LinesWithoutExtentStayAsTheyAre) {
    const GeometryLine point{{3, 4, 5}};
    const GeometryLine vertical{{3, 4, 5}, {3, 4, 9}};
    EXPECT_EQ(geometry::offset({}, 1), GeometryLine());
    EXPECT_EQ(geometry::offset(point, 1), point);
    EXPECT_EQ(geometry::offset(vertical, 1), vertical);
    EXPECT_EQ(geometry::length(point), 0);
    EXPECT_EQ(geometry::length(vertical), 4);
}

TEST(GeometryLine, ResultsHaveNoNegativeZero) {
    for (const GeometryPoint &point : geometry::offset({{0, -2, 0}, {-10, -2, 0}}, -2))
        EXPECT_FALSE(std::signbit(point.y) && point.y == 0);
}

TEST(GeometryLine, AppendDropsTheJointOnly) {
    GeometryLine line;
    geometry::append(line, {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}});
    geometry::append(line, {{1, 0, 0}, {2, 0, 0}});
    geometry::append(line, {{2, 0, 1}, {3, 0, 1}});
    EXPECT_EQ(line, (GeometryLine{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 0, 1}, {3, 0, 1}}));
    EXPECT_DOUBLE_EQ(geometry::length({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}}), 17);
}

TEST(GeometryLine, TurnWithoutADirectionGoesStraight) {
    const GeometryLine from{{0, 0, 0}};
    const GeometryLine to{{10, 0, 4}, {10, 0, 4}};
    EXPECT_EQ(geometry::turn(from, to, 1, 2), (GeometryLine{{0, 1, 0}, {10, 2, 4}}));
    EXPECT_EQ(geometry::turn({}, to), GeometryLine());
    EXPECT_EQ(geometry::turn(from, {}), GeometryLine());
}
