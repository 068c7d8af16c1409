#include "geometry/projection.h"

#include "tests/support/expect_near.h"

#include <gtest/gtest.h>

namespace jostle {
namespace {

// That rows are multiplied by matrices as hosts have them is seen where layers become bodies.
TEST(Projection, dividesByWUnlessItIsZero) {
    // Of (3, 4): w = 3 * 0.5 + 0.5 = 2.
    expectNear({projectPoint({3, 4}, {{{1, 0, 0, 0.5}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0.5}}})}, {{1.5, 2}}, 0);
    expectNear({projectPoint({3, 4}, {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}}})}, {{3, 4}}, 0);
}

TEST(Projection, bodySpaceIsMetresFromTheCentre) {
    EXPECT_EQ(toBodyX(1060.0f, 1920), 1.0f);
    EXPECT_EQ(toBodyY(50.5f, 101), 0.0f) << "an odd height has its centre at half a pixel";
    EXPECT_EQ(toWorld({250.0f, -100.0f}), b2Vec2(2.5f, -1.0f));
}

} // namespace
} // namespace jostle
