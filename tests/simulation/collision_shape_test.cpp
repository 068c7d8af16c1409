#include "simulation/collision_shape.h"

#include "tests/support/expect_near.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace jostle {
namespace {

std::vector<b2Vec2> verticesOf(const b2PolygonShape& polygon) {
    return {polygon.m_vertices, polygon.m_vertices + polygon.m_count};
}

TEST(CollisionShape, keepsVerticesAndPointsNormalsOutwards) {
    // The last is so narrow that the library would weld it at its usual slop.
    for (const float width : {2.0f, 0.001f}) {
        const std::vector<b2Vec2> square{{0, 0}, {width, 0}, {width, 2}, {0, 2}};
        for (const auto& vertices : {square, std::vector<b2Vec2>(square.rbegin(), square.rend())}) {
            b2PolygonShape polygon;
            ASSERT_TRUE(fillPolygon(vertices, polygon));
            EXPECT_EQ(verticesOf(polygon), square) << "either way round";
            expectNear({polygon.m_normals, polygon.m_normals + 4}, {{0, -1}, {1, 0}, {0, 1}, {-1, 0}}, 0);
            expectNear({polygon.m_centroid}, {{width / 2, 1}}, 1e-6f);
        }
    }
}

TEST(CollisionShape, refusesWhatTheLibraryCannotTake) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::pair<const char*, std::vector<b2Vec2>> cases[] = {
        {"two vertices", {{0, 0}, {1, 0}}},
        {"nine vertices", {{0, 0}, {1, 0}, {2, 1}, {3, 2}, {3, 3}, {2, 4}, {1, 4}, {0, 3}, {-1, 2}}},
        {"a repeated vertex", {{0, 0}, {1, 0}, {1, 0}, {0, 1}}},
        {"all on a line", {{0, 0}, {1, 1}, {2, 2}}},
        {"area below the float epsilon", {{0, 0}, {0.0002f, 0}, {0, 0.0002f}}},
        {"not a number", {{0, 0}, {nan, 0}, {0, 1}}},
        {"infinitely far", {{0, 0}, {std::numeric_limits<float>::infinity(), 0}, {0, 1}}},
        {"too far for masses to be worked out", {{0, 0}, {1.0e9f, 0}, {0, 1}}},
    };
    for (const auto& [name, vertices] : cases) {
        SCOPED_TRACE(name);
        b2PolygonShape polygon;
        EXPECT_FALSE(fillPolygon(vertices, polygon));
        EXPECT_EQ(polygon.m_count, 0);
    }
}

TEST(CollisionShape, scalesAboutAPivotAndKeepsNormalsSquare) {
    const float third = 1.0f / 3.0f;
    const b2Vec2 slant = {3.0f / std::sqrt(13.0f), 2.0f / std::sqrt(13.0f)};
    const b2Vec2 diagonal = {-std::sqrt(0.5f), std::sqrt(0.5f)};
    const std::tuple<b2Vec2, std::vector<b2Vec2>, std::vector<b2Vec2>, b2Vec2> cases[] = {
        // x' = 1 + (x - 1) * 2, y' = 3 y; the long side then runs along (-2, 3), and (3, 2) stands square on it.
        {{2, 3}, {{-1, 0}, {1, 0}, {-1, 3}}, {{0, -1}, slant, {-1, 0}}, {-third, 1}},
        // x' = 2 - x turns the triangle over; the library wants it the other way round then.
        {{-1, 1}, {{2, 1}, {1, 0}, {2, 0}}, {diagonal, {0, -1}, {1, 0}}, {5 * third, third}},
    };
    for (const auto& [ratio, vertices, normals, centroid] : cases) {
        SCOPED_TRACE(ratio.x);
        b2PolygonShape polygon;
        const std::vector<b2Vec2> triangle{{0, 0}, {1, 0}, {0, 1}};
        ASSERT_TRUE(fillPolygon(triangle, polygon));
        scaleShape(polygon, {1, 0}, ratio.x, ratio.y);
        EXPECT_EQ(verticesOf(polygon), vertices);
        expectNear({polygon.m_normals, polygon.m_normals + 3}, normals, 1e-6f);
        expectNear({polygon.m_centroid}, {centroid}, 1e-6f);
    }
    b2CircleShape circle;
    ASSERT_TRUE(fillCircle({1, 0}, 2, circle));
    scaleShape(circle, {0, 0}, -1.5f, 1.0f);
    EXPECT_EQ(circle.m_radius, 3.0f);
}

} // namespace
} // namespace jostle
