#include "geometry/outline.h"

#include "geometry/convex_hull.h"
#include "geometry/point_set.h"
#include "geometry/polygon_tests.h"

#include "tests/support/expect_near.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

/// From (0, 0) to (9, 0) with both handles 8 down: y = 8 * 3 t (1 - t), x = 9 (3 t^2 - 2 t^3). At t = 1/2 (4.5, 6); at
/// t = 1/3 x = 9 * 7/27 and y = 24 * 2/9.
ShapeDef arch(bool closed) {
    return {{{0, 0}, {9, 0}}, {{0, 0}, {0, 8}}, {{0, 8}, {0, 0}}, closed};
}

TEST(Flatten, emitsOnePointPerSubdivisionOfACurve) {
    const ShapeDef square{{{0, 0}, {5, 0}, {5, 5}, {0, 5}}, {}, {}, true};
    ShapeDef bent = square;
    bent.inTangents = bent.outTangents = {{0.5f, -0.5f}, {0.4f, 0}, {0, 0.4f}, {0.5f, 0.5f}};
    ShapeDef repeating = square;
    repeating.verts.insert(repeating.verts.begin() + 1, b2Vec2(0.00005f, 0));
    const ShapeDef point{{{3, 4}}, {}, {}};
    // A closed one: its lone segment leads from the vertex back to it.
    const ShapeDef blob{{{3, 4}}, {{6, 0}}, {{0, 8}}, true};
    const float third = 9.0f * 7.0f / 27.0f;
    const std::vector<b2Vec2> thirds = {{0, 0}, {third, 48.0f / 9}, {9 - third, 48.0f / 9}, {9, 0}};
    // Control points (3, 4), (3, 12), (9, 4), (3, 4); at t = 1/3 the inner two weigh 4/9 and 2/9, at 2/3 the reverse.
    const std::vector<b2Vec2> round = {{3, 4}, {3 + 12.0f / 9, 4 + 32.0f / 9}, {3 + 24.0f / 9, 4 + 16.0f / 9}};
    const std::tuple<const char*, ShapeDef, int, std::vector<b2Vec2>> cases[] = {
        {"precision 0 does nothing, and keeps repeats", repeating, 2, repeating.verts},
        {"a lone segment has one more: 3 become 4 and thirds", arch(false), 3, thirds},
        {"closed, the straight way back emits its start", arch(true), 3, {{0, 0}, {4.5f, 6}, {9, 0}}},
        {"handles of half a pixel are no curve", bent, 5, square.verts},
        {"repeats go, the first stays", repeating, 3, square.verts},
        {"an open vertex has no segment", point, 3, {}},
        {"a precision of none emits no curves", arch(true), std::numeric_limits<int>::min(), {{9, 0}}},
        {"a closed vertex is a lone segment", blob, 3, round},
    };
    for (const auto& [name, before, subdivisions, expected] : cases) {
        SCOPED_TRACE(name);
        ShapeDef shape = before;
        flatten(shape, subdivisions);
        expectNear(shape.verts, expected);
        EXPECT_EQ(shape.inTangents, before.inTangents) << "only the vertices are replaced";
    }
    ShapeDef shape = arch(true);
    flatten(shape, std::numeric_limits<int>::max());
    EXPECT_LE(shape.verts.size(), 1001u);
}

TEST(PointSet, agreesWithTheScanWhenPointsAreMany) {
    PointSet set;
    std::vector<b2Vec2> scanned;
    for (int i = 0; i < 3000; ++i) {
        // Multiples of 0.00007 on a coarse lattice: about every second one has a neighbour within 0.0001.
        const b2Vec2 point = {static_cast<float>(i * 7919 % 61) * 0.00007f - 0.002f, static_cast<float>(i % 50)};
        if (!containsPoint(point, scanned)) {
            scanned.push_back(point);
        }
        set.insert(point);
        ASSERT_EQ(set.points(), scanned);
    }
}

/// A host's circle of radius 50 about (100, 100): top, left, bottom, right, with the table's handles.
ShapeDef hostCircle() {
    const float k = 50.0f * 0.5522848f;
    return {{{100, 50}, {50, 100}, {100, 150}, {150, 100}},
            {{k, 0}, {0, -k}, {-k, 0}, {0, k}},
            {{-k, 0}, {0, k}, {k, 0}, {0, -k}},
            true};
}

// One that starts at another vertex, or runs the other way: MaskImport.MakesPrimitivesOfASingleMaskOnly.
TEST(MatchesCircle, allowsAHundredthOfAPixel) {
    const std::tuple<const char*, void (*)(ShapeDef&), bool, float> cases[] = {
        {"a handle off by less than 0.01", [](ShapeDef& s) { s.inTangents[2].y = 0.0099f; }, true, 50},
        {"a handle off by more", [](ShapeDef& s) { s.inTangents[2].y = 0.0101f; }, false, 50},
        {"diameters that differ by 0.02", [](ShapeDef& s) { s.verts[1].x -= 0.02f; }, false, -1},
    };
    for (const auto& [name, change, matches, expectedRadius] : cases) {
        SCOPED_TRACE(name);
        ShapeDef shape = hostCircle();
        change(shape);
        float radius = -1.0f;
        EXPECT_EQ(matchesCircle(shape, radius), matches);
        EXPECT_EQ(radius, expectedRadius);
    }
}

TEST(MatchesBox, isOneSided) {
    const float h = 20.0f;
    const std::tuple<const char*, std::vector<b2Vec2>, bool> cases[] = {
        {"first edge toward negative y", {{0, h}, {0, 0}, {30, 0}, {30, h}}, false},
        // slope = rise / 0.001: 9998 for 9.998 pixels, 10000 for 10
        {"an upright edge of 9.998 pixels", {{0, 0}, {5, 0}, {5, 9.998f}, {0, 9.998f}}, false},
        {"an upright edge of 10 pixels", {{0, 0}, {5, 0}, {5, 10}, {0, 10}}, true},
        {"turned by 45 degrees, small", {{0, 0}, {3, 3}, {0, 6}, {-3, 3}}, true},
        {"a parallelogram", {{0, 0}, {30, 0}, {40, h}, {10, h}}, false},
        {"diagonals whose middles differ", {{0, 0}, {30, 0}, {30, h}, {0, h + 0.1f}}, false},
    };
    for (const auto& [name, verts, matches] : cases) {
        SCOPED_TRACE(name);
        ShapeDef shape;
        shape.verts = verts;
        EXPECT_EQ(matchesBox(shape), matches);
        shape.inTangents.assign(4, {0.001f, -0.001f});
        EXPECT_EQ(matchesBox(shape), matches) << "with handles of exactly the tolerance";
        shape.inTangents[3].x = 0.0011f;
        EXPECT_FALSE(matchesBox(shape)) << "with a handle beyond it";
    }
}

TEST(ShapeCentroid, dependsOnTheKindOfOutline) {
    const std::tuple<const char*, std::vector<b2Vec2>, bool, b2Vec2> cases[] = {
        {"two points, closed or not", {{0, 0}, {4, 2}}, false, {2, 1}},
        {"an open one has the mean of its points", {{0, 0}, {4, 0}, {5, 3}}, true, {3, 1}},
        // 4 by 2 and on it 2 by 2: (8 * (2, 1) + 4 * (1, 3)) / 12
        {"an L, by area", {{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, 4}, {0, 4}}, false, {5.0f / 3, 5.0f / 3}},
        {"a small one far away", {{3000.25f, 3000.5f}, {3004.5f, 3002}, {2999, 3005}}, false, {3001.25f, 3002.5f}},
        {"no area", {{0, 0}, {3, 0}, {6, 0}}, false, {3, 0}},
        {"nothing", {}, false, {0, 0}},
    };
    for (const auto& [name, verts, open, expected] : cases) {
        SCOPED_TRACE(name);
        expectNear({shapeCentroid(verts, open)}, {expected});
    }
}

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
