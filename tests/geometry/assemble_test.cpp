#include "geometry/assemble.h"

#include "geometry/polygon_tests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

ShapeDef outline(std::vector<b2Vec2> verts, bool closed = true) {
    ShapeDef shape;
    shape.verts = std::move(verts);
    shape.closed = closed;
    return shape;
}

ShapeDef circle() {
    ShapeDef shape = outline({{0, -100}, {100, 0}, {0, 100}, {-100, 0}}, false);
    shape.isCircle = true;
    shape.radius = 1;
    return shape;
}

ShapeDef box() {
    ShapeDef shape = outline({{0, 0}, {200, 0}, {200, 100}, {0, 100}});
    shape.isBox = true;
    return shape;
}

const ShapeDef bent = outline({{0, 0}, {100, 0}, {100, 100}, {50, 10}});
const ShapeDef line = outline({{0, 0}, {100, 0}, {200, 50}}, false);

TEST(Assemble, sortsAndWindsThePieces) {
    const ShapeDef triangle = outline({{0, 0}, {100, 0}, {0, 100}});
    ShapeDef backward = box();
    std::reverse(backward.verts.begin(), backward.verts.end());
    const BodyMesh mesh =
        assemble({circle()}, {box(), backward}, {{triangle, circle()}, {line, box()}}, {{100, 0}, {2, -1}});
    ASSERT_EQ(mesh.shapes.size(), 1u);
    const std::vector<ShapeDef>& pieces = mesh.shapes[0];
    ASSERT_EQ(pieces.size(), 5u);
    EXPECT_TRUE(pieces[0].isCircle);
    EXPECT_TRUE(pieces[1].isBox && pieces[2].isBox);
    EXPECT_FALSE(pieces[3].closed);
    EXPECT_TRUE(pieces[4].closed);
    EXPECT_FALSE(mesh.meshWarning || mesh.triangulationFailed);
    // x' = 2 (x - 100) / 100, y' = -y / 100. Circles and lines are reversed once.
    EXPECT_EQ(pieces[0].verts, (std::vector<b2Vec2>{{-4, 0}, {-2, -1}, {0, 0}, {-2, 1}}));
    EXPECT_EQ(pieces[3].verts, (std::vector<b2Vec2>{{2, -0.5f}, {0, 0}, {-2, 0}}));
    // The first box is not reversed as drawn, so it was turned round, and once more at the end: as drawn. So is the
    // second one, once in all. The mirror leaves boxes and triangles of one direction, whichever they had.
    EXPECT_EQ(pieces[1].verts, (std::vector<b2Vec2>{{-2, 0}, {2, 0}, {2, -1}, {-2, -1}}));
    EXPECT_EQ(pieces[2].verts, pieces[1].verts);
    EXPECT_TRUE(isReversed(pieces[1].verts) && isReversed(pieces[4].verts));
    EXPECT_EQ(pieces[0].radius, 1.0f);
    EXPECT_FALSE(assemble({}, {}, {{outline({{0, 0}, {9, 9}})}}, {}).triangulationFailed) << "a void is no failure";
}

// Anchors and scales are seen where layers become bodies.
TEST(Assemble, bodySpaceKnowsThePixelAspectRatio) {
    EXPECT_EQ(maskBodySpace({10, 20}, 2, {3, 4}).origin, b2Vec2(20, 20));
    EXPECT_EQ(textBodySpace({10, 20}, 2).origin, b2Vec2(20, 20));
}

// A fan of n corners on an arc has n - 2 triangles.
TEST(Assemble, warnsFromSeventySixTrianglesOn) {
    for (const std::size_t triangles : {75u, 76u}) {
        ShapeDef arc = outline({});
        for (std::size_t i = 0; i < triangles + 2; ++i) {
            const float x = static_cast<float>(i);
            arc.verts.emplace_back(x, x * x / 16.0f);
        }
        const BodyMesh mesh = assemble({}, {}, {{arc}}, {});
        EXPECT_EQ(mesh.shapes[0].size(), triangles);
        EXPECT_EQ(mesh.meshWarning, triangles == 76);
    }
}

// `bent` has the hull of its first three corners; they are found from (100, 0) on.
const std::vector<b2Vec2> bentHull = {{100, 0}, {100, 100}, {0, 0}};

TEST(WrapInHulls, readsTheOptionInThreeWays) {
    using Outlines = std::vector<std::vector<std::vector<b2Vec2>>>; // vertices by group and outline
    constexpr auto masks = OutlineSource::Masks, text = OutlineSource::Text, vector = OutlineSource::VectorShapes;
    const ShapeDef far = outline({{300, 0}, {300, 10}}, false);
    const std::vector<b2Vec2> farHull = {{300, 0}, {300, 10}};
    const std::vector<b2Vec2> bothHull = {{300, 0}, {300, 10}, {100, 100}, {0, 0}};
    const ShapeDef ring = circle();
    // The circle's four points and the bent outline's three.
    const std::vector<b2Vec2> ringHull = {{100, 0}, {100, 100}, {0, 100}, {-100, 0}, {0, -100}};
    const std::tuple<const char*, OutlineSource, ShapeDefList, Outlines> cases[] = {
        {"masks: one each, primitives stay", masks, {{bent, far, ring}}, {{bentHull, farHull, ring.verts}}},
        {"text: one for all", text, {{bent}, {far}}, {{bothHull}}},
        {"text of nothing", text, {{}}, {}},
        {"the first is closed", vector, {{bent, far}}, {{bothHull}}},
        {"the first is open, one group", vector, {{far, bent}}, {{far.verts, bent.verts}}},
        {"the first is open, two in the first group", vector, {{far, bent}, {bent}}, {{bothHull}}},
        {"the first is open, one in the first group", vector, {{far}, {bent}}, {{far.verts}, {bent.verts}}},
        {"the first is a box, one group", vector, {{box(), bent}}, {{box().verts, bent.verts}}},
        {"the first is a path, and the circle's points count", vector, {{bent, ring}}, {{ringHull}}},
    };
    for (const auto& [name, source, outlines, expected] : cases) {
        SCOPED_TRACE(name);
        ShapeDefList groups = outlines;
        wrapInHulls(source, groups);
        Outlines got;
        for (const std::vector<ShapeDef>& group : groups) {
            got.emplace_back();
            for (const ShapeDef& shape : group) {
                got.back().push_back(shape.verts);
                EXPECT_EQ(shape.isCircle, shape.radius == 1.0f);
            }
        }
        EXPECT_EQ(got, expected);
    }
}

} // namespace
} // namespace jostle
