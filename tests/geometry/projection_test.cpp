#include "geometry/projection.h"

#include "tests/support/expect_near.h"

#include <gtest/gtest.h>

#include <tuple>

namespace jostle {
namespace {

// The last column tells where (3, 4) goes.
TEST(Projection, multipliesRowVectors) {
    const std::tuple<const char*, Matrix4, b2Vec2> cases[] = {
        {"the identity moves nothing", {}, {3, 4}},
        {"the last row translates", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {10, 20, 0, 1}}}, {13, 24}},
        {"a row is where its axis goes", {{{0, 2, 0, 0}, {-2, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, {-8, 6}},
        // w = 3 * 0.5 + 0.5 = 2
        {"w divides", {{{1, 0, 0, 0.5}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0.5}}}, {1.5, 2}},
        {"a w of zero divides nothing", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}}}, {3, 4}},
    };
    for (const auto& [name, matrix, expected] : cases) {
        SCOPED_TRACE(name);
        expectNear({projectPoint({3, 4}, matrix)}, {expected}, 0);
    }
}

TEST(Projection, bodySpaceIsMetresFromTheCentre) {
    EXPECT_EQ(toBodyX(960.0f, 1920), 0.0f);
    EXPECT_EQ(toBodyX(1060.0f, 1920), 1.0f);
    EXPECT_EQ(toBodyY(50.5f, 101), 0.0f) << "an odd height has its centre at half a pixel";
    EXPECT_EQ(toWorld({250.0f, -100.0f}), b2Vec2(2.5f, -1.0f));
}

} // namespace
} // namespace jostle
