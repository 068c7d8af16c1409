#include "geometry/polygon_tests.h"

#include "geometry/convex_hull.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

TEST(PolygonTests, segmentsCrossOnlyBetweenTheirEnds) {
    const std::tuple<const char*, b2Vec2, b2Vec2, b2Vec2, b2Vec2, bool> cases[] = {
        {"plain crossing", {0, 0}, {2, 2}, {0, 2}, {2, 0}, true},
        {"a shared end is no hit", {0, 0}, {1, 0}, {1, 0}, {1, 1}, false},
        {"an end on the other is no hit", {0, 0}, {2, 0}, {1, 0}, {1, 1}, false},
        {"lines cross, segments do not", {0, 0}, {1, 0}, {2, -1}, {2, 1}, false},
        // den = 0.009 * 0.009 + 0.009 * 0.009 = 0.000162, and 0.0000512 with 0.005
        {"a small crossing", {0, 0}, {0.009f, 0.009f}, {0, 0.009f}, {0.009f, 0}, true},
        {"one so small that it counts as parallel", {0, 0}, {0.005f, 0.005f}, {0, 0.005f}, {0.005f, 0}, false},
    };
    for (const auto& [name, a, b, c, d, crosses] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(segmentsIntersect(a, b, c, d), crosses);
        EXPECT_EQ(segmentsIntersect(c, d, a, b), crosses);
    }
}

TEST(PolygonTests, outlinesCrossThemselvesAndTurn) {
    const std::tuple<const char*, std::vector<b2Vec2>, bool, bool> cases[] = {
        {"two points turn nowhere", {{0, 0}, {1, 0}}, false, false},
        {"from x toward y", {{0, 0}, {4, 0}, {4, 4}, {0, 4}}, false, false},
        {"from y toward x", {{0, 0}, {0, 1}, {1, 0}}, false, true},
        {"a line has no turns", {{0, 0}, {1, 0}, {2, 0}}, false, false},
        {"the dent, other way round", {{0, 4}, {1, 1}, {4, 0}, {0, 0}}, false, true},
        // Turns by hand: at (4, 4) and (4, 0) toward -z, at (0, 4) and (0, 0) toward +z; a draw.
        {"a bow tie", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, true, false},
        {"the closing edge crosses too", {{0, 0}, {4, 0}, {4, 4}, {2, -1}}, true, false},
        {"edges that overlap are parallel", {{0, 0}, {4, 0}, {2, 0}, {2, 4}}, false, false},
    };
    for (const auto& [name, verts, crosses, reversed] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(isSelfIntersecting(verts), crosses);
        EXPECT_EQ(isReversed(verts), reversed);
    }
}

TEST(PolygonTests, pointsOnTheBorderFallToOneSide) {
    const std::vector<b2Vec2> square = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    const std::tuple<const char*, b2Vec2, bool> cases[] = {
        {"the middle", {2, 2}, true},      {"left of it", {-1, 2}, false},  {"right of it", {5, 2}, false},
        {"left edge", {0, 2}, false},      {"right edge", {4, 2}, true},    {"edge of small y", {2, 0}, false},
        {"edge of large y", {2, 4}, true}, {"first corner", {0, 0}, false}, {"opposite corner", {4, 4}, true},
    };
    for (const auto& [name, point, inside] : cases) {
        EXPECT_EQ(pointInPolygon(point, square), inside) << name;
    }
}

// A step from p takes j over the best if cross(best - p, j - p) is negative. From (4, 0) with best (0, 4) and j (4, 4):
// (-4, 4) x (0, 4) = -16, so (4, 4) is next: from the start toward positive y.
TEST(ConvexHull, startsAtTheRightAndTurnsTowardPositiveY) {
    const std::tuple<const char*, std::vector<b2Vec2>, std::vector<b2Vec2>> cases[] = {
        {"none", {}, {}},
        {"one point, three times", {{1, 2}, {1, 2}, {1, 2}}, {{1, 2}}},
        {"of two rightmost the one of small y is first; inner points and those on edges are left out",
         {{2, 2}, {0, 0}, {4, 4}, {2, 0}, {4, 0}, {4, 2}, {0, 4}, {0, 2}},
         {{4, 0}, {4, 4}, {0, 4}, {0, 0}}},
        {"repeats of all corners", {{4, 0}, {4, 0}, {0, 3}, {0, 3}, {0, 0}, {0, 0}}, {{4, 0}, {0, 3}, {0, 0}}},
        {"points on a line: there and back", {{1, 0}, {3, 0}, {2, 0}, {0, 0}}, {{3, 0}, {0, 0}}},
    };
    for (const auto& [name, points, hull] : cases) {
        EXPECT_EQ(convexHull(points), hull) << name;
    }
    std::vector<b2Vec2> circle; // there is no limit of corners
    for (int i = 0; i < 100; ++i) {
        const float angle = 0.0628318f * static_cast<float>(i);
        circle.emplace_back(1000.0f * std::cos(angle), 1000.0f * std::sin(angle));
    }
    EXPECT_EQ(convexHull(circle).size(), 100u);
}

} // namespace
} // namespace jostle
