#include "geometry/convex_hull.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

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
