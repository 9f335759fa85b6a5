#include "model/LaneGeometry.h"
#include "model/Connector.h"
#include "model/GeometryJson.h"
#include "model/Link.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <utility>

// Shapes worked out by hand: x runs to the east, y to the north, and lane 1 is the rightmost.

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<Link> makeLink(const GeometryLine &line, const QList<double> &widths) {
    auto link = std::make_unique<Link>();
    link->linkID = 7;
    link->linkName = QStringLiteral("High Street");
    for (const GeometryPoint &point : line)
        link->mlVertex.append(new Vertex{0, point.x, point.y, point.z});
    for (const double width : widths) {
        link->mlLane.append(new Lane);
        link->mlLane.last()->laneID = 70 + link->mlLane.size();
        link->mlLane.last()->width = width;
    }
    return link;
}

std::unique_ptr<Link> makeRoad(const GeometryLine &line, const QList<double> &widths) {
    auto link = makeLink(line, widths);
    EXPECT_TRUE(updateGeometry(*link));
    return link;
}

GeometryLine centreOf(const Lane *lane) {
    return geometryjson::points(lane->centerLinePointsJson);
}

struct Edges {
    GeometryLine left;
    GeometryLine right;
};
template <class Object>
Edges edgesOf(const Object &object) {
    return {geometryjson::points(object.leftBreakPointsJson),
            geometryjson::points(object.rightBreakPointsJson)};
}

/// All that a shape is made of, to be compared.
QByteArray shapesOf(const Link &link) {
    QByteArray all =
        link.centerLinePointsJson.text() + link.leftBreakPointsJson.text() + link.rightBreakPointsJson.text();
    for (const Lane *lane : link.mlLane) {
        if (lane)
            all += QByteArray::number(lane->serialNumber) + lane->centerLinePointsJson.text() +
                   lane->leftBreakPointsJson.text() + lane->rightBreakPointsJson.text();
    }
    return all;
}

void expectLine(const GeometryLine &line, const GeometryLine &expected) {
    ASSERT_EQ(line.size(), expected.size());
    for (int i = 0; i < line.size(); ++i)
        EXPECT_LT(geometry::distance(line[i], expected[i]), 1e-9)
            << i << ": " << line[i].x << ' ' << line[i].y << ' ' << line[i].z;
}

/// Distance of a point from the straight line through a and b, positive on the left.
double toTheLeft(const GeometryPoint &a, const GeometryPoint &b, const GeometryPoint &point) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return (dx * (point.y - a.y) - dy * (point.x - a.x)) / std::hypot(dx, dy);
}

double fromPoint(const GeometryPoint &point, double x, double y) {
    return std::hypot(point.x - x, point.y - y);
}

} // namespace

TEST(LaneGeometry, LanesLieFromRightToLeftAndShareTheWidth) {
    const auto link = makeLink({{0, 0, 1}, {100, 0, 2}, {200, 0, 5}}, {3, 4});
    link->laneNumber = 9;
    link->laneWidth = 8;
    link->mlLane[0]->serialNumber = 5;
    ASSERT_TRUE(updateGeometry(*link));
    const auto at = [](double y) { return GeometryLine{{0, y, 1}, {100, y, 2}, {200, y, 5}}; };
    expectLine(geometryjson::points(link->centerLinePointsJson), at(0));
    expectLine(edgesOf(*link).left, at(3.5));
    expectLine(edgesOf(*link).right, at(-3.5));
    expectLine(centreOf(link->mlLane[0]), at(-2));
    expectLine(edgesOf(*link->mlLane[0]).left, at(-0.5));
    expectLine(edgesOf(*link->mlLane[0]).right, at(-3.5));
    expectLine(centreOf(link->mlLane[1]), at(1.5));
    expectLine(edgesOf(*link->mlLane[1]).left, at(3.5));
    expectLine(edgesOf(*link->mlLane[1]).right, at(-0.5));
    EXPECT_EQ(link->length, 200) << "in the plane";
    EXPECT_EQ(link->laneNumber, 9);
    EXPECT_EQ(link->laneWidth, 8);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(link->mlLane[i]->serialNumber, i + 1);
        EXPECT_EQ(link->mlLane[i]->linkID, 7);
    }
}

TEST(LaneGeometry, CornersAreMitred) {
    const struct {
        GeometryLine line;
        Edges edges;
    } cases[] = {
        {{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}},
         {{{0, 2, 0}, {8, 2, 0}, {8, 10, 0}}, {{0, -2, 0}, {12, -2, 0}, {12, 10, 0}}}},
        {{{0, 0, 0}, {-10, 0, 0}, {-10, 10, 0}},
         {{{0, -2, 0}, {-12, -2, 0}, {-12, 10, 0}}, {{0, 2, 0}, {-8, 2, 0}, {-8, 10, 0}}}},
        {{{0, 0, 0}, {10, 0, 0}, {10, 10, 4}, {20, 10, 4}},
         {{{0, 2, 0}, {8, 2, 0}, {8, 12, 4}, {20, 12, 4}},
          {{0, -2, 0}, {12, -2, 0}, {12, 8, 4}, {20, 8, 4}}}},
    };
    for (const auto &given : cases) {
        const auto link = makeLink(given.line, {4});
        ASSERT_TRUE(updateGeometry(*link));
        expectLine(centreOf(link->mlLane[0]), given.line);
        for (const Edges &edges : {edgesOf(*link), edgesOf(*link->mlLane[0])}) {
            expectLine(edges.left, given.edges.left);
            expectLine(edges.right, given.edges.right);
        }
    }
}

TEST(LaneGeometry, NeitherSharpCornersNorRepeatedPointsMakeSpikes) {
    const auto link = makeLink({{0, 0, 0}, {0, 0, 0}, {100, 0, 0}, {100, 0, 3}, {0, 0.5, 3}}, {3, 0, 3});
    ASSERT_TRUE(updateGeometry(*link));
    for (const Lane *lane : qAsConst(link->mlLane)) {
        for (const GeometryLine &line : {centreOf(lane), edgesOf(*lane).left, edgesOf(*lane).right}) {
            ASSERT_EQ(line.size(), 5);
            for (const GeometryPoint &point : line)
                EXPECT_LE(fromPoint(point, point.x > 50 ? 100 : 0, 0), 9.6)
                    << "three times the offset of 3 m";
        }
    }
    EXPECT_EQ(edgesOf(*link->mlLane[1]).left, edgesOf(*link->mlLane[1]).right) << "a lane without a width";
}

TEST(LaneGeometry, ALinkWithoutLanesHasEdgesByItsNumberAndWidthOfLanes) {
    const auto link = makeLink({{0, 0, 0}, {0, 50, 0}}, {});
    link->laneNumber = 2;
    link->laneWidth = 3.5;
    ASSERT_TRUE(updateGeometry(*link));
    expectLine(edgesOf(*link).left, {{-3.5, 0, 0}, {-3.5, 50, 0}});
    expectLine(edgesOf(*link).right, {{3.5, 0, 0}, {3.5, 50, 0}});
}

TEST(LaneGeometry, NodesStandAtTheEnds) {
    const auto link = makeLink({{0, 0, 0}, {10, 0, 0}}, {3});
    ASSERT_TRUE(updateGeometry(*link)) << "a link that has no nodes yet";
    link->mpStartNode = new Node{1, {}, link->mlVertex.first()};
    link->mpEndNode = new Node{2, {}, link->mlVertex.last()};
    link->mlVertex.prepend(new Vertex{0, -10, 0, 0});
    delete link->mlVertex.takeLast();
    ASSERT_TRUE(updateGeometry(*link));
    EXPECT_EQ(link->mpStartNode->mpVertex, link->mlVertex.first());
    EXPECT_EQ(link->mpEndNode->mpVertex, link->mlVertex.last());
}

TEST(LaneGeometry, EveryLaneKeepsItsDistanceAndTouchesItsNeighbour) {
    std::mt19937 random(16);
    std::uniform_real_distribution<double> turn(-1.2, 1.2);
    std::uniform_real_distribution<double> side(30, 60);
    std::uniform_real_distribution<double> width(2, 5);
    for (int run = 0; run < 200; ++run) {
        GeometryLine line{{0, 0, 0}};
        double angle = turn(random);
        for (int i = 0; i < 6; ++i) {
            const double step = side(random);
            line.append(
                {line.last().x + step * std::cos(angle), line.last().y + step * std::sin(angle), double(i)});
            angle += turn(random);
        }
        QList<double> widths;
        for (int i = 0; i <= run % 4; ++i)
            widths.append(width(random));
        const auto link = makeLink(line, widths);
        ASSERT_TRUE(updateGeometry(*link));
        double right = -link->width() / 2;
        for (int lane = 0; lane < widths.size(); ++lane) {
            const Edges edges = edgesOf(*link->mlLane[lane]);
            const struct {
                GeometryLine line;
                double distance;
            } parts[] = {{edges.right, right},
                         {centreOf(link->mlLane[lane]), right + widths[lane] / 2},
                         {edges.left, right + widths[lane]}};
            for (const auto &part : parts) {
                for (int i = 1; i < line.size(); ++i) {
                    ASSERT_NEAR(toTheLeft(line[i - 1], line[i], part.line[i - 1]), part.distance, 1e-9)
                        << run;
                    ASSERT_NEAR(toTheLeft(line[i - 1], line[i], part.line[i]), part.distance, 1e-9) << run;
                    ASSERT_EQ(part.line[i].z, line[i].z);
                }
            }
            if (lane > 0) {
                ASSERT_EQ(edges.right, edgesOf(*link->mlLane[lane - 1]).left);
            }
            right += widths[lane];
        }
        ASSERT_EQ(edgesOf(*link).left, edgesOf(*link->mlLane.last()).left);
        ASSERT_EQ(edgesOf(*link).right, edgesOf(*link->mlLane.first()).right);
    }
}

TEST(LaneGeometry, WhatHasNoShapeIsRefusedAndStaysAsItWas) {
    const struct {
        const char *why;
        std::function<void(Link &)> spoil;
    } cases[] = {
        {"two vertices", [](Link &link) { link.mlVertex.deleteAll(); }},
        {"two vertices", [](Link &link) { delete link.mlVertex.takeLast(); }},
        {"two vertices", [](Link &link) { link.mlVertex[1]->x = 1e-7; }},
        {"a vertex of it is null", [](Link &link) { link.mlVertex.append(nullptr); }},
        {"a lane of it is null", [](Link &link) { link.mlLane.prepend(nullptr); }},
        {"its lane 72 is -3 m wide", [](Link &link) { link.mlLane[1]->width = -3; }},
        {"its lane 71 is nan m wide", [](Link &link) { link.mlLane[0]->width = kNaN; }},
        {"no number", [](Link &link) { link.mlVertex[0]->z = kNaN; }},
        {"too large", [](Link &link) { link.mlVertex[1]->x = -std::numeric_limits<double>::infinity(); }},
        {"too large", [](Link &link) { (link.mlVertex[0]->x = -1.7e308, link.mlVertex[1]->x = 1.7e308); }},
        {"it is inf m wide", [](Link &link) { link.mlLane[0]->width = link.mlLane[1]->width = 1.7e308; }},
        {"it is -2 m wide",
         [](Link &link) {
             link.mlLane.deleteAll();
             link.laneNumber = -1;
             link.laneWidth = 2;
         }},
    };
    for (const auto &given : cases) {
        SCOPED_TRACE(given.why);
        const auto link = makeLink({{0, 0, 0}, {100, 0, 0}}, {3, 4});
        link->length = 12;
        link->mlLane[0]->serialNumber = 3;
        given.spoil(*link);
        const QByteArray before = shapesOf(*link);
        QString why;
        EXPECT_FALSE(updateGeometry(*link, &why));
        EXPECT_TRUE(why.contains(QLatin1String(given.why))) << why.toStdString();
        EXPECT_TRUE(why.contains(QLatin1String("link 7 (High Street)"))) << why.toStdString();
        EXPECT_EQ(link->length, 12);
        EXPECT_EQ(shapesOf(*link), before);
        EXPECT_FALSE(updateGeometry(*link)) << "also for who does not ask why";
    }
}

TEST(LaneGeometry, APathGoesStraightWhereTheLanesDo) {
    const auto from = makeRoad({{0, 0, 0}, {10, 0, 2}}, {3});
    const auto to = makeRoad({{30, 0, 6}, {40, 0, 7}}, {4});
    Connector connector(5, from.get(), to.get());
    LaneConnector path(&connector, from->mlLane[0], to->mlLane[0]);
    ASSERT_TRUE(curve(path));
    expectLine(geometryjson::points(path.centerLinePointsJson), {{10, 0, 2}, {30, 0, 6}});
    expectLine(edgesOf(path).left, {{10, 1.5, 2}, {30, 2, 6}});
    expectLine(edgesOf(path).right, {{10, -1.5, 2}, {30, -2, 6}});
}

TEST(LaneGeometry, ATurnIsNearlyAnArc) {
    const auto from = makeRoad({{-20, 0, 0}, {0, 0, 0}}, {3});
    // To the left by a right angle around (0, 10), and by two around (0, 2).
    const auto left = makeRoad({{10, 10, 7}, {10, 30, 7}}, {3});
    const auto back = makeRoad({{0, 4, 0}, {-20, 4, 0}}, {3});
    const struct {
        const Link &to;
        double radius;
        double length;
    } cases[] = {{*left, 10, 15.708}, {*back, 2, 6.283}};
    for (const auto &given : cases) {
        LaneConnector path(nullptr, from->mlLane[0], given.to.mlLane[0]);
        ASSERT_TRUE(curve(path));
        const GeometryLine line = geometryjson::points(path.centerLinePointsJson);
        expectLine({line.first(), line.last()}, {{0, 0, 0}, centreOf(given.to.mlLane[0]).first()});
        EXPECT_NEAR(geometry::lengthInPlane(line), given.length, 0.02 * given.length);
        const Edges edges = edgesOf(path);
        ASSERT_EQ(edges.left.size(), line.size());
        ASSERT_EQ(edges.right.size(), line.size());
        // A cubic is at most 0.03 % off a quarter of a circle, and 2 % off a half.
        const double off = given.radius == 2 ? 0.04 : 0.003;
        for (int i = 0; i < line.size(); ++i) {
            EXPECT_NEAR(fromPoint(line[i], 0, given.radius), given.radius, off);
            EXPECT_NEAR(fromPoint(edges.left[i], 0, given.radius), given.radius - 1.5, off);
            EXPECT_NEAR(fromPoint(edges.right[i], 0, given.radius), given.radius + 1.5, off);
            EXPECT_NEAR(line[i].z, line.last().z * i / (line.size() - 1), 1e-9);
            if (i > 0) {
                EXPECT_LT(given.radius -
                              fromPoint(geometry::midway({line[i - 1]}, {line[i]})[0], 0, given.radius),
                          off + 0.02)
                    << "pieces are short";
            }
        }
        // What is beside the path goes on from what is beside the lanes.
        expectLine({edges.left.first(), edges.right.first()}, {{0, 1.5, 0}, {0, -1.5, 0}});
        expectLine({edges.left.last(), edges.right.last()},
                   {edgesOf(*given.to.mlLane[0]).left.first(), edgesOf(*given.to.mlLane[0]).right.first()});
    }
}

TEST(LaneGeometry, ALaneChangeGoesOver) {
    const auto from = makeRoad({{-5, 0, 0}, {0, 0, 0}}, {3});
    const auto to = makeRoad({{30, 3, 0}, {40, 3, 0}}, {3});
    LaneConnector path(nullptr, from->mlLane[0], to->mlLane[0]);
    ASSERT_TRUE(curve(path));
    const GeometryLine line = geometryjson::points(path.centerLinePointsJson);
    ASSERT_GE(line.size(), 5);
    for (int i = 1; i < line.size(); ++i) {
        EXPECT_GT(line[i].x, line[i - 1].x);
        EXPECT_GT(line[i].y, line[i - 1].y);
        // Halfway along it is halfway over.
        const GeometryPoint mirrored = line[line.size() - 1 - i];
        EXPECT_NEAR(line[i].x + mirrored.x, 30, 1e-9);
        EXPECT_NEAR(line[i].y + mirrored.y, 3, 1e-9);
    }
}

TEST(LaneGeometry, APathBetweenLanesThatTouchHasNoLength) {
    const auto from = makeRoad({{0, 0, 0}, {10, 0, 0}}, {3});
    const auto to = makeRoad({{10, 0, 0}, {10, 10, 0}}, {3});
    LaneConnector path(nullptr, from->mlLane[0], to->mlLane[0]);
    ASSERT_TRUE(curve(path));
    expectLine(geometryjson::points(path.centerLinePointsJson), {{10, 0, 0}, {10, 0, 0}});
    expectLine(edgesOf(path).left, {{10, 1.5, 0}, {8.5, 0, 0}});
}

TEST(LaneGeometry, AConnectorHasTheOuterEdgesAndTheMeanLengthOfItsPaths) {
    const auto from = makeRoad({{0, 0, 0}, {10, 0, 0}}, {3, 3});
    const auto to = makeRoad({{30, 0, 0}, {40, 0, 9}}, {3, 3});
    Connector connector(5, from.get(), to.get());
    connector.connName = QStringLiteral("over");
    QString why;
    EXPECT_FALSE(curve(connector, &why));
    EXPECT_EQ(why.toStdString(), "Connector 5 (over) has no lane connectors; give it one for each movement.");
    // The left lane goes to both, the right one to the right; written in no order.
    for (const auto &[start, end] : {std::pair(1, 1), std::pair(0, 0), std::pair(1, 0)})
        connector.mlLaneConnector.append(new LaneConnector(&connector, from->mlLane[start], to->mlLane[end]));
    ASSERT_TRUE(curve(connector));
    expectLine(edgesOf(connector).left, {{10, 3, 0}, {30, 3, 0}});
    expectLine(edgesOf(connector).right, {{10, -3, 0}, {30, -3, 0}});
    const double across =
        geometry::lengthInPlane(geometryjson::points(connector.mlLaneConnector[2]->centerLinePointsJson));
    EXPECT_GT(across, 20.2);
    EXPECT_NEAR(connector.length, (20 + 20 + across) / 3, 1e-9);

    // Both from the left lane: the one to the left lane is the left one.
    delete connector.mlLaneConnector.takeAt(1);
    std::reverse(connector.mlLaneConnector.begin(), connector.mlLaneConnector.end());
    ASSERT_TRUE(curve(connector));
    EXPECT_EQ(edgesOf(connector).left.last().y, 3);
    EXPECT_EQ(edgesOf(connector).right.last().y, -3);

    // One that has no path leaves the others as they are.
    connector.length = 1;
    connector.mlLaneConnector[0]->centerLinePointsJson = QJsonObject();
    connector.mlLaneConnector.append(new LaneConnector(&connector, from->mlLane[0], nullptr));
    EXPECT_FALSE(curve(connector, &why));
    EXPECT_TRUE(why.contains(QLatin1String("lacks a lane; give it a start and an end.")))
        << why.toStdString();
    EXPECT_EQ(connector.length, 1);
    EXPECT_TRUE(connector.mlLaneConnector[0]->centerLinePointsJson.isEmpty());
    // Nor does one whose lane has no shape yet, or a wrong one.
    const auto bare = makeLink({{0, 0, 0}, {10, 0, 0}}, {3});
    connector.mlLaneConnector.last()->mpEndLane = bare->mlLane[0];
    EXPECT_FALSE(curve(connector, &why));
    EXPECT_TRUE(why.contains(QLatin1String("call updateGeometry() on its link first."))) << why.toStdString();
    bare->mlLane[0]->centerLinePointsJson = geometryjson::fromPoints({{0, 0, 0}, {1.7e308, 1.7e308, 0}});
    bare->mlLane[0]->width = 1.7e308;
    connector.mlLaneConnector.last()->mpStartLane = bare->mlLane[0];
    EXPECT_FALSE(curve(connector, &why));
    EXPECT_TRUE(why.contains(QLatin1String("too far from each other."))) << why.toStdString();
    EXPECT_EQ(connector.length, 1);
}
