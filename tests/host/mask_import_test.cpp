#include <tuple>

#include <gtest/gtest.h>

#include "tests/host/imported.h"

namespace jostle {

namespace {

const std::string rightRectangle = "[90,10],[10,10],[10,60],[90,60]"; // as the host draws it; 80 by 50

std::string maskOf(const std::string& outline) {
    return mask(outlineText(outline));
}

// A circle with two points on each curve is a polygon of 12: 4 corners at 50, and the points of a quarter at a third
// and two thirds, so that its area is not that of a circle. Where it is meshed the area is left out, as 0.
TEST(MaskImport, MakesPrimitivesOfASingleMaskOnly) {
    const std::string circle = mask(hostCircle);
    const std::string otherStart =
        R"({"v":[[0,50],[50,100],[100,50],[50,0]],"i":[[0,-27.614],[-27.614,0],[0,27.614],[27.614,0]],)"
        R"("o":[[0,27.614],[27.614,0],[0,-27.614],[-27.614,0]],"c":true})";
    const std::string off =
        R"({"mode":"n","inv":true,"pt":{"k":)" + outlineText(rightRectangle) + R"(},"o":{"k":0},"x":{"k":30}})";
    const Stance plain;
    // The pieces, and square metres of boxes and triangles; by hand.
    const std::tuple<const char*, std::string, const char*, double, Stance> cases[] = {
        {"the host's circle", circle, "1 circles", 0, plain},
        {"the same from another vertex on", mask(otherStart), "10 triangles", 0, plain},
        {"a circle of two masks", joined({circle, maskOf("[200,0],[300,0],[300,100]")}), "11 triangles", 0, plain},
        {"a circle on an evenly scaled layer", circle, "1 circles", 0, scaled("[50,50]")},
        {"a circle on an unevenly scaled layer", circle, "10 triangles", 0, scaled("[50,100]")},
        {"a rectangle", maskOf(rightRectangle), "1 boxes", 0.4, plain},
        {"whatever the mode, inversion, opacity and expansion", off, "1 boxes", 0.4, plain},
        {"on an unevenly scaled layer: still a box", maskOf(rightRectangle), "1 boxes", 0.8, scaled("[200,100]")},
        {"a rectangle whose first edge runs down", maskOf("[10,10],[10,60],[90,60],[90,10]"), "1 boxes", 0.4, plain},
        {"a rectangle whose second edge runs up", maskOf("[10,60],[90,60],[90,10],[10,10]"), "2 triangles", 0.4, plain},
        {"a rectangle of 5 by 5 pixels", maskOf("[5,0],[0,0],[0,5],[5,5]"), "2 triangles", 0.0025, plain},
        {"a rectangle, a vertex twice", maskOf("[90,10],[10,10],[10,10],[10,60],[90,60]"), "1 boxes", 0.4, plain},
        {"a rectangle within another is a hole of it",
         joined({maskOf("[0,0],[100,0],[100,100],[0,100]"), maskOf("[20,20],[80,20],[80,80],[20,80]")}), "8 triangles",
         0.64, plain},
        {"an open mask", mask(outlineText("[0,0],[50,0],[50,50]", false)), "1 lines", 0, plain},
        {"no vertices beside a rectangle: two masks", joined({maskOf(""), maskOf(rightRectangle)}), "2 triangles", 0.4,
         plain},
        {"a mask without vertices", maskOf(""), "", 0, plain},
    };
    for (const auto& [name, masks, pieces, area, stance] : cases) {
        SCOPED_TRACE(name);
        Imported imported(solidLayer(masks, stance));
        ASSERT_EQ(imported.scene.bodyCount(), 1);
        EXPECT_EQ(imported.report.layers[0].origin, BodyOrigin::Masks);
        EXPECT_EQ(piecesText(imported.body()), pieces);
        EXPECT_FALSE(imported.body().isBox) << "its first piece need not be all of it";
        if (area > 0) {
            EXPECT_NEAR(areaOf(imported.body()) / area, 1.0, 1e-4);
        }
    }
}

// Corners of the rectangle from (10, 10) to (90, 60), less the anchor (30, 20), times the scale.
TEST(MaskImport, MeasuresFromTheAnchorAndScalesTheOutline) {
    Imported imported(
        solidLayer(maskOf(rightRectangle),
                   {.anchor = "[30,20]", .position = "[120,80]", .scale = "[200,-100]", .rotation = "30"}));
    const BodyRecord& body = imported.body();
    expectPlace(body, {0.2f, 0.3f}, {-40, -10, 120, 40}, 30);
    expectPoint(body.layerAnchor, {30, 20});
    expectPoint(body.layerScale, {2, 1});
    EXPECT_DOUBLE_EQ(body.color.red, 1.0) << "the solid's";
    EXPECT_NEAR(body.color.green, 128.0 / 255, 1e-9);
    EXPECT_DOUBLE_EQ(body.importColor.red, 0.5) << "no label";
}

TEST(MaskImport, TakesTheCircleOfAScaledChildWhereItStands) {
    // The null doubles, the layer halves again in both axes.
    Imported imported(joined(
        {solidLayer(mask(hostCircle), {.position = "[10,0]", .scale = "[50,50]", .more = R"(,"ind":1,"parent":2)"}),
         layerText(R"("ty":3,"ind":2)", {.scale = "[400,400]"})}));
    const BodyRecord& body = imported.body();
    const ShapeDef& circle = body.outlines.at(0).at(0);
    expectPoint(body.layerScale, {2, 2});
    EXPECT_NEAR(circle.radius, 1.0f, 1e-5f);
    expectPoint(0.25f * (circle.verts[0] + circle.verts[1] + circle.verts[2] + circle.verts[3]), {1, 1});
    expectPoint(body.position, {0.4f, 0});
}

TEST(MaskImport, AMaskOverridesWhatTheLayerShows) {
    Imported imported(shapeLayer(group(ellipse("[80,80]", "[0,0]")),
                                 {.more = R"(,"masksProperties":[)" + maskOf(rightRectangle) + "]"}));
    EXPECT_EQ(imported.report.layers[0].origin, BodyOrigin::Masks);
    EXPECT_EQ(piecesText(imported.body()), "1 boxes");
    EXPECT_FALSE(imported.body().isShapeLayer);
}

TEST(MaskImport, RefreshTakesTheBodysPrecisionAndHull) {
    const std::string hook = "[0,0],[100,0],[100,100],[80,100],[80,20],[0,20]"; // 100 x 20 and 20 x 80
    Imported imported(joined({solidLayer(mask(hostCircle), scaled("[100,50]")), solidLayer(maskOf(hook))}));
    imported.body(0).meshPrecision = 4;
    imported.body(1).useConvexHull = true;
    imported.body(1).position = {7, 8};
    imported.body(1).angle = 1;
    imported.body(1).density = 3;
    for (const int index : {0, 1})
        ASSERT_TRUE(imported.refresh(index));
    // Four curves of five points each.
    EXPECT_EQ(piecesOf(imported.body(0)).triangles, 18);
    // The hull cuts off the triangle between (0, 20) and (80, 100).
    EXPECT_NEAR(areaOf(imported.body(1)), 1.0 - 0.32, 1e-5);
    expectPoint(imported.body(1).position, {7, 8});
    EXPECT_EQ(imported.body(1).angle, 1);
    EXPECT_EQ(imported.body(1).density, 3);
    EXPECT_FALSE(imported.refresh(2));
    imported.scene.layerIndices[0] = 9;
    EXPECT_FALSE(imported.refresh(0)) << "a layer that is gone";
}

TEST(MaskImport, TellsWhichBodiesCrossThemselves) {
    const std::string bow = maskOf("[0,0],[100,100],[100,0],[0,100]");
    Imported imported(joined({solidLayer(bow), solidLayer(maskOf(rightRectangle)), solidLayer(bow)}));
    EXPECT_EQ(imported.messages.texts, std::vector<std::string>{"Self-intersecting shapes are not supported.\n\n"
                                                                "Triangulation failed for the following bodies:\n"
                                                                "Body #1 (solid)  Body #3 (solid)  "});
}

} // namespace

} // namespace jostle
