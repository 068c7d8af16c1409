#include "geometry/primitives.h"

#include "geometry/projection.h"
#include "tests/support/expect_near.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

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

TEST(MakeRect, clampsTheRoundness) {
    EXPECT_TRUE(makeRect({{40, 20}, {20, 10}, std::nanf("")}, {}, {}, 2).shape.isBox) << "no number, so sharp";
    // Exactly half the short side stays; of more a sliver of 0.002 is kept.
    for (const auto& [roundness, r] : {std::pair{10.0f, 10.0f}, {10.1f, 9.999f}}) {
        SCOPED_TRACE(roundness);
        const ShapeDef shape = makeRect({{40, 20}, {20, 10}, roundness}, {}, {}, 2).shape;
        const float k = r * 0.5522847498f;
        const float x = 40 - r;
        const float y = 20 - r;
        expectNear(shape.verts, {{r, 0}, {x, 0}, {40, r}, {40, y}, {x, 20}, {r, 20}, {0, y}, {0, r}});
        expectNear(shape.inTangents, {{-k, 0}, {0, 0}, {0, -k}, {0, 0}, {k, 0}, {0, 0}, {0, k}, {0, 0}});
        expectNear(shape.outTangents, {{0, 0}, {k, 0}, {0, 0}, {0, k}, {0, 0}, {-k, 0}, {0, 0}, {0, -k}});
    }
}

// The groups: anchor (5, 0), position (100, 50), scale (2, 3), turned by 90 degrees. The place (15, 1) is
// (100 + 2 (15 - 5), 50 + 3 * 1) = (120, 53); about the pivot (100, 50) a quarter turn takes (20, 3) to (-3, 20):
// (97, 70). Times the aspect ratio of 2 that is (194, 70).
TEST(Primitives, multiplyTheirPlaceByThePixelAspectRatioUnlessTheyAreStars) {
    const AccumulatedTransform groups{{5, 0}, {100, 50}, {2, 3}, 90};
    LayerFrame layer;
    layer.pixelAspectRatio = 2;
    expectNear({makeRect({{10, 4}, {15, 1}, 0}, groups, layer, 4).shapePos}, {{194, 70}});
    expectNear({makeEllipse({{10, 4}, {15, 1}}, groups, layer, 4).shapePos}, {{194, 70}});
    expectNear({makeStar({2, 4, {15, 1}, 0, 10, 0, 0, 0}, groups, layer, 4).shapePos}, {{97, 70}});
}

TEST(MakeEllipse, isACircleIfItsDiametersDifferByLessThanAThousandth) {
    LayerFrame layer;
    layer.scale = {3, 3};
    for (const float height : {200.0005f, 200.002f}) {
        const ShapeDef shape = makeEllipse({{200, height}, {0, 0}}, {}, layer, 2).shape;
        EXPECT_EQ(shape.isCircle, height < 200.001f);
        EXPECT_EQ(shape.radius, shape.isCircle ? 3.0f : 0.0f) << "metres of the layer";
        expectNear({shape.verts[0], shape.verts[1]}, {{0, -height / 2}, {100, 0}});
        expectNear({shape.inTangents[0], shape.outTangents[0]}, {{-55.228475f, 0}, {55.228475f, 0}});
    }
}

TEST(MakeStar, hasItsTurnAndNotMorePointsThanMakeSense) {
    expectNear(makeStar({2, 4, {1, 2}, 90, 10, 0, 0, 0}, {}, {}, 4).shape.verts, {{11, 2}, {1, 12}, {-9, 2}, {1, -8}});
    for (const auto& [count, points] : {std::pair{std::nan(""), 0u}, {1e30, 10000u}}) {
        EXPECT_EQ(makeStar({2, count, {0, 0}, 0, 10, 5, 50, 0}, {}, {}, 2).shape.verts.size(), points) << count;
    }
}

// Half of the radius 10 times 40 % is 2, along the line between the neighbours: from (-10, 0) to (10, 0) at the top.
TEST(MakeStar, roundsAlongTheNeighboursOfTheSameKind) {
    const ShapeDef polygon = makeStar({2, 4, {0, 0}, 0, 10, 0, 40, 0}, {}, {}, 2).shape;
    expectNear(polygon.outTangents, {{2, 0}, {0, 2}, {-2, 0}, {0, -2}});
    expectNear(polygon.inTangents, {{-2, 0}, {0, -2}, {2, 0}, {0, 2}});
    // A star of four with inner roundness alone: inner points lie on the diagonals, the neighbours of the first of
    // them, at -45 degrees, at -135 and 45, so that its handle runs along (1, 1).
    const ShapeDef star = makeStar({1, 4, {0, 0}, 0, 10, 4, 0, 50}, {}, {}, 2).shape;
    const float h = std::sqrt(0.5f); // length 4 / 2 * 50 % = 1
    expectNear({star.outTangents[0], star.outTangents[1]}, {{0, 0}, {h, h}});
}

FreePath pathOf(const std::vector<b2Vec2>& positions, bool closed) {
    FreePath path;
    for (const b2Vec2 position : positions) {
        path.vertices.push_back({position, {0, 0}, {0, 0}});
    }
    path.closed = closed;
    path.segmentCount = static_cast<int>(positions.size()) - (closed ? 0 : 1);
    return path;
}

TEST(MakeFreePath, closesByItsOwnRule) {
    FreePath short3 = pathOf({{0, 0}, {9, 0}, {9, 5}, {0, 7}}, false);
    short3.segmentCount = 2;
    const std::tuple<const char*, FreePath, std::vector<b2Vec2>> cases[] = {
        {"open reads one vertex more than segments", short3, {{0, 0}, {9, 0}, {9, 5}}},
        {"a last repeat takes another along", pathOf({{0, 0}, {9, 0}, {9, 5}, {0, 0}}, true), {{0, 0}, {9, 0}}},
        {"so it does in an open path", pathOf({{0, 0}, {9, 0}, {9, 5}, {0, 0}}, false), {{0, 0}, {9, 0}}},
        {"off by 5e-5 it goes alone", pathOf({{0, 0}, {9, 0}, {0, 7}, {5e-5f, 0}}, true), {{0, 0}, {9, 0}, {0, 7}}},
        {"a repeat within is dropped", pathOf({{0, 0}, {9, 0}, {9, 0}, {0, 7}}, true), {{0, 0}, {9, 0}, {0, 7}}},
        {"no segments", pathOf({{5, 5}}, false), {}},
        {"one closed vertex is its own repeat", pathOf({{5, 5}}, true), {}},
    };
    for (const auto& [name, path, verts] : cases) {
        SCOPED_TRACE(name);
        const PlacedPath got = makeFreePath(path, {}, {}, 4);
        expectNear(got.placed.shape.verts, verts);
        expectNear(got.raw.verts, verts);
    }
}

// Anchor (10, 0), position (50, 20), scale (2, 4): (10, 0), (40, 0), (10, 30) become (50, 20), (110, 20), (50, 140),
// with the aspect ratio 1/2 in x (25, 20), (55, 20), (25, 140). The groups' rotation is told, but moves nothing;
// handles take the layer's angle: (1, 0) times 2 times the layer's 3, turned by 90 degrees, is (0, 6).
TEST(MakeFreePath, takesEachAngleWhereItBelongs) {
    FreePath path = pathOf({{10, 0}, {40, 0}, {10, 30}}, true);
    path.vertices[0].outHandle = {1, 0};
    const AccumulatedTransform groups{{10, 0}, {50, 20}, {2, 4}, 180};
    LayerFrame layer;
    layer.pixelAspectRatio = 0.5f;
    layer.scale = {3, 1};
    layer.angle = 1.57079633f;
    const PlacedPath got = makeFreePath(path, groups, layer, 2);
    expectNear(got.placed.shape.verts, {{25, 20}, {55, 20}, {25, 140}});
    expectNear({got.placed.shape.outTangents[0], got.raw.outTangents[0]}, {{0, 6}, {1, 0}});
    expectNear({got.placed.shapePos}, {{35, 60}}); // thirds of the sums
    expectNear({got.anchor}, {{2 * 20, 4 * 10}});  // of the raw outline, scaled
    EXPECT_FLOAT_EQ(got.placed.shapeAngle, 3.1415927f);
}

} // namespace
} // namespace jostle
