#pragma once

#include <box2d/b2_math.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace jostle {

/// Expects the same number of points, each within the tolerance in x and in y.
inline void expectNear(const std::vector<b2Vec2>& got, const std::vector<b2Vec2>& expected, float tolerance = 1e-4f) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_NEAR(got[i].x, expected[i].x, tolerance) << "vertex " << i;
        EXPECT_NEAR(got[i].y, expected[i].y, tolerance) << "vertex " << i;
    }
}

} // namespace jostle
