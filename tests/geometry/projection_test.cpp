#include "geometry/projection.h"

#include <gtest/gtest.h>

namespace jostle {
namespace {

struct ProjectionCase {
    const char* name;
    Matrix4 matrix;
    b2Vec2 point;
    b2Vec2 expected;
};

TEST(Projection, multipliesRowVectors) {
    const ProjectionCase cases[] = {
        {"the identity moves nothing", {}, {3, 4}, {3, 4}},
        {"the last row translates", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {10, 20, 0, 1}}}, {3, 4}, {13, 24}},
        {"a row is where its axis goes", {{{0, 2, 0, 0}, {-2, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, {3, 4}, {-8, 6}},
        // w = 3 * 0.5 + 0.5 = 2
        {"w divides", {{{1, 0, 0, 0.5}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0.5}}}, {3, 4}, {1.5, 2}},
        {"a w of zero divides nothing", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}}}, {3, 4}, {3, 4}},
    };
    for (const ProjectionCase& c : cases) {
        SCOPED_TRACE(c.name);
        const b2Vec2 got = projectPoint(c.point, c.matrix);
        EXPECT_FLOAT_EQ(got.x, c.expected.x);
        EXPECT_FLOAT_EQ(got.y, c.expected.y);
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
