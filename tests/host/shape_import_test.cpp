#include <gtest/gtest.h>

#include "tests/host/imported.h"

namespace jostle {

namespace {

const std::string plainRect = rect("[40,20]", "[0,0]");
const std::string corner = "[0,0],[30,0],[0,30]"; // its centroid is (10, 10)

struct ShapeCase {
    const char* name;
    std::string elements;
    Stance stance;
    const char* pieces;
    b2Vec2 position;    // metres from the centre, where the layer's origin is
    b2Vec2 least, most; // corners of the body's box around that, metres; not asked for if both are 0
    float degrees;
};

void expectCase(const ShapeCase& c) {
    SCOPED_TRACE(c.name);
    Imported imported(shapeLayer(c.elements, c.stance));
    ASSERT_EQ(imported.scene.bodyCount(), 1);
    const BodyRecord& body = imported.body();
    EXPECT_EQ(imported.report.layers[0].origin, BodyOrigin::VectorShapes);
    EXPECT_TRUE(imported.messages.texts.empty());
    EXPECT_TRUE(body.isShapeLayer);
    EXPECT_FALSE(body.isBox);
    EXPECT_EQ(piecesText(body), c.pieces);
    expectPoint(body.position, c.position.x, c.position.y);
    expectPoint(body.importPosition, c.position.x, c.position.y);
    EXPECT_NEAR(radiansToDegrees(body.angle), c.degrees, 1e-4f);
    if (c.most.LengthSquared() > 0) {
        const auto [least, most] = extentOf(body);
        expectPoint(least, c.least.x, c.least.y);
        expectPoint(most, c.most.x, c.most.y);
    }
}

TEST(ShapeImport, PlacesElementsByTheSumOfTheirGroups) {
    const char* const box = "0 circles, 1 boxes, 0 lines, 0 triangles";
    const char* const circle = "1 circles, 0 boxes, 0 lines, 0 triangles";
    const std::string place = R"(,"a":{"k":[5,5]},"p":{"k":[20,5]})";
    const ShapeCase cases[] = {
        {"a rectangle", group(plainRect), {}, box, {0, 0}, {-0.2f, -0.1f}, {0.2f, 0.1f}, 0},
        {"at the top, outside of groups", plainRect, {}, box, {0, 0}, {-0.2f, -0.1f}, {0.2f, 0.1f}, 0},
        {"position less anchor: (20, 5) + (10, 0) - (5, 5)",
         group(rect("[40,20]", "[10,0]"), place),
         {},
         box,
         {0.25f, 0},
         {-0.2f, -0.1f},
         {0.2f, 0.1f},
         0},
        {"a group's scale stretches size and offset",
         group(rect("[40,20]", "[10,0]"), R"(,"s":{"k":[200,50]})"),
         {},
         box,
         {0.2f, 0},
         {-0.4f, -0.05f},
         {0.4f, 0.05f},
         0},
        {"rotations add, and an outer one does not swing the inner offset",
         group(group(plainRect, R"(,"p":{"k":[0,20]})"), R"(,"p":{"k":[10,0]},"r":{"k":90})"),
         {},
         box,
         {0.1f, 0.2f},
         {-0.1f, -0.2f},
         {0.1f, 0.2f},
         0},
        {"a group's rotation turns an element about the group's position: (30, 0) turns to (0, 30)",
         group(rect("[40,20]", "[30,0]"), R"(,"r":{"k":90})"),
         {},
         box,
         {0, 0.3f},
         {-0.1f, -0.2f},
         {0.1f, 0.2f},
         0},
        {"an unevenly scaled layer",
         group(plainRect),
         {.scale = "[200,50]"},
         box,
         {0, 0},
         {-0.4f, -0.05f},
         {0.4f, 0.05f},
         0},
        {"a turned layer turns its body, not the outline",
         group(rect("[40,20]", "[30,0]")),
         {.rotation = "90"},
         box,
         {0, 0.3f},
         {-0.2f, -0.1f},
         {0.2f, 0.1f},
         90},
        {"an ellipse of equal diameters", group(ellipse("[40,40]", "[10,0]")), {}, circle, {0.1f, 0}, {}, {}, 0},
        {"on an unevenly scaled layer: 12 corners",
         group(ellipse("[40,40]", "[0,0]")),
         {.scale = "[100,200]"},
         "0 circles, 0 boxes, 0 lines, 10 triangles",
         {0, 0},
         {-0.2f, -0.4f},
         {0.2f, 0.4f},
         0},
        {"rounded corners: 4 of 3 points, 4 of 1",
         group(rect("[40,20]", "[0,0]", "5")),
         {},
         "0 circles, 0 boxes, 0 lines, 14 triangles",
         {0, 0},
         {-0.2f, -0.1f},
         {0.2f, 0.1f},
         0},
        {"a star: 5 outer and 5 inner points",
         group(R"({"ty":"sr","sy":1,"p":{"k":[0,0]},"pt":{"k":5},"r":{"k":0},"or":{"k":40},"os":{"k":0},)"
               R"("ir":{"k":20},"is":{"k":0}})"),
         {},
         "0 circles, 0 boxes, 0 lines, 8 triangles",
         {0, 0},
         {},
         {},
         0},
        {"a polygon of 6.9 points has 6, and no inner ones",
         group(R"({"ty":"sr","sy":2,"p":{"k":[0,0]},"pt":{"k":6.9},"r":{"k":0},"or":{"k":40},"os":{"k":0}})"),
         {},
         "0 circles, 0 boxes, 0 lines, 4 triangles",
         {0, 0},
         {},
         {},
         0},
        {"a path has its origin in its centroid",
         group(path(outlineText(corner))),
         {},
         "0 circles, 0 boxes, 0 lines, 1 triangles",
         {0.1f, 0.1f},
         {-0.1f, -0.1f},
         {0.2f, 0.2f},
         0},
        {"a path has the layer's rotation in its vertices: (0, 0), (0, 30), (-30, 0)",
         group(path(outlineText(corner))),
         {.rotation = "90"},
         "0 circles, 0 boxes, 0 lines, 1 triangles",
         {-0.1f, 0.1f},
         {-0.2f, -0.1f},
         {0.1f, 0.2f},
         0},
        {"and its scale",
         group(path(outlineText(corner))),
         {.scale = "[200,100]"},
         "0 circles, 0 boxes, 0 lines, 1 triangles",
         {0.2f, 0.1f},
         {-0.2f, -0.1f},
         {0.4f, 0.2f},
         0},
        {"an open path has its origin in the mean of its points",
         group(path(outlineText(corner, false))),
         {},
         "0 circles, 0 boxes, 1 lines, 0 triangles",
         {0.1f, 0.1f},
         {-0.1f, -0.1f},
         {0.2f, 0.2f},
         0},
        {"hidden elements count",
         R"({"ty":"gr","hd":true,"it":[)" + plainRect + R"(,{"ty":"tr"}]})",
         {},
         box,
         {0, 0},
         {-0.2f, -0.1f},
         {0.2f, 0.1f},
         0},
        {"a layer at scale 0", group(plainRect), {.scale = "[0,0]"}, box, {0, 0}, {}, {}, 0},
    };
    for (const ShapeCase& c : cases)
        expectCase(c);
}

TEST(ShapeImport, TheLastElementReadGivesOriginAndScaling) {
    const std::string left = rect("[40,20]", "[-50,0]");
    const std::string right = ellipse("[20,20]", "[50,0]");
    const char* const both = "1 circles, 1 boxes, 0 lines, 0 triangles";
    const ShapeCase cases[] = {
        {"the circle last: the rectangle from -70 to -30, less 50",
         group(joined({left, right})),
         {},
         both,
         {0.5f, 0},
         {-1.2f, -0.1f},
         {0.1f, 0.1f},
         0},
        {"the rectangle last, in a group of its own",
         joined({group(right), group(left)}),
         {},
         both,
         {-0.5f, 0},
         {-0.2f, -0.1f},
         {1.1f, 0.1f},
         0},
        // The rectangle of 40 by 20 pixels at (0, 0), less the centroid at (20, 20), without the layer's scale.
        {"a path last: nothing is scaled once more",
         joined({group(plainRect), group(path(outlineText(corner)))}),
         {.scale = "[200,200]"},
         "0 circles, 1 boxes, 0 lines, 1 triangles",
         {0.2f, 0.2f},
         {-0.4f, -0.3f},
         {0.4f, 0.4f},
         0},
    };
    for (const ShapeCase& c : cases)
        expectCase(c);
    { // one host at a time
        Imported pathLast(shapeLayer(joined({group(plainRect), group(path(outlineText(corner)))}), {.rotation = "30"}));
        EXPECT_TRUE(pathLast.body().isPath);
        EXPECT_EQ(pathLast.body().angle, 0);
        expectPoint(pathLast.body().layerAnchor, 10, 10);
    }
    Imported rectLast(shapeLayer(joined({group(path(outlineText(corner))), group(plainRect)}), {.rotation = "30"}));
    EXPECT_FALSE(rectLast.body().isPath);
    EXPECT_NEAR(radiansToDegrees(rectLast.body().angle), 30, 1e-4f);
    expectPoint(rectLast.body().layerAnchor, 0, 0);
}

TEST(ShapeImport, TheLastFillOrStrokeInOrderGivesTheColour) {
    const std::string red = stroke("[1,0,0,1]");
    const std::string green = fill("[0,1,0,1]");
    struct Case {
        const char* name;
        std::string elements;
        Rgb color;
    };
    const Case cases[] = {
        {"a fill after a stroke", group(joined({plainRect, red, green})), {0, 1, 0}},
        {"a stroke after a fill", group(joined({plainRect, green, red})), {1, 0, 0}},
        {"in a later group", joined({group(joined({plainRect, green})), group(joined({plainRect, red}))}), {1, 0, 0}},
        {"none", group(plainRect), {1, 1, 1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Stance labelled;
        labelled.more = R"(,"cl":"x")";
        Imported imported(shapeLayer(c.elements));
        EXPECT_EQ(imported.body().userData->color, c.color);
        EXPECT_DOUBLE_EQ(imported.body().importColor.red, 0.5);
    }
}

TEST(ShapeImport, ALayerWithoutOutlinesBecomesASquareAndSaysSo) {
    const std::string nothing = group(fill("[1,0,0,1]"), R"(,"p":{"k":[9,9]})");
    Imported imported(joined({shapeLayer(group(plainRect)),
                              shapeLayer(nothing, {.anchor = "[3,4]", .scale = "[200,200]", .rotation = "40"})}));
    ASSERT_EQ(imported.scene.bodyCount(), 2);
    EXPECT_EQ(imported.messages.texts,
              std::vector<std::string>{"An error occurred when retrieving geometry of layer 2. "
                                       "This layer will be represented as a simple box."});
    const BodyRecord& body = imported.body(1);
    EXPECT_EQ(imported.report.layers[1].origin, BodyOrigin::Fallback);
    EXPECT_TRUE(body.isBox);
    EXPECT_FALSE(body.isShapeLayer);
    const auto [least, most] = extentOf(body);
    expectPoint(least, 0, 0);
    expectPoint(most, 1, 1);
    expectPoint(body.position, 0, 0);
    EXPECT_EQ(body.angle, 0);
    expectPoint(body.layerAnchor, 3, 4);
    expectPoint(body.layerScale, 1, 1);
    EXPECT_EQ(body.userData->color, (Rgb{1, 1, 1}));
}

TEST(ShapeImport, TheHullWrapsTheOutlinesAndLeavesPrimitives) {
    // A corner and a rectangle whose hull, from (0, 0) over (30, 0) to (0, 30), the rectangle does not leave.
    const std::string elements = joined({group(path(outlineText(corner))), group(rect("[4,4]", "[5,5]"))});
    Imported imported(shapeLayer(elements));
    imported.body().useConvexHull = true;
    ASSERT_TRUE(refreshBody(imported.hosted.context(), imported.scene, 0).has_value());
    EXPECT_EQ(piecesText(imported.body()), "0 circles, 1 boxes, 0 lines, 1 triangles");
    EXPECT_NEAR(areaOf(imported.body()), 0.045 + 0.0016, 1e-6);
}

/// A document of one text layer. Its one glyph, "o", is a square of 50 pixels above the line with a hole of 30 in it,
/// at a font size of 100.
std::unique_ptr<Document> textDocument(const std::string& text, const Stance& stance = {}) {
    const std::string glyph = R"({"ch":"o","size":1,"style":"Regular","w":60,"fFamily":"F","data":{"shapes":[)" +
                              group(joined({path(outlineText("[0,0],[50,0],[50,-50],[0,-50]")),
                                            path(outlineText("[10,-10],[40,-10],[40,-40],[10,-40]"))})) +
                              "]}}";
    const std::string document = R"("ty":5,"nm":"text","t":{"a":[],"d":{"k":[{"t":0,"s":{"t":")" + text +
                                 R"(","f":"F-Regular","s":100,"j":0,"tr":0,"lh":120,"ls":0,"fc":[0,0,0]}}]}})";
    return lottieDocument(layerText(document, stance), R"(,"chars":[)" + glyph +
                                                           R"(],"fonts":{"list":[{"fName":"F-Regular","fFamily":"F",)"
                                                           R"("fStyle":"Regular","ascent":75}]})");
}

TEST(TextImport, EachGlyphJoinsTheMeshAndKeepsItsHoles) {
    struct Case {
        const char* name;
        const char* text;
        Stance stance;
        const char* pieces;
        double area;        // square metres
        b2Vec2 least, most; // metres
        float degrees;
    };
    const char* const one = "0 circles, 0 boxes, 0 lines, 8 triangles";
    const Case cases[] = {
        {"a letter", "o", {}, one, 0.16, {0, -0.5f}, {0.5f, 0}, 0},
        {"two letters, 60 apart",
         "oo",
         {},
         "0 circles, 0 boxes, 0 lines, 16 triangles",
         0.32,
         {0, -0.5f},
         {1.1f, 0},
         0},
        {"scaled, about the anchor",
         "o",
         {.anchor = "[10,0]", .scale = "[200,100]"},
         one,
         0.32,
         {-0.2f, -0.5f},
         {0.8f, 0},
         0},
        {"turned: the body is, not the outline", "o", {.rotation = "90"}, one, 0.16, {0, -0.5f}, {0.5f, 0}, 90},
        {"nothing", "", {}, "0 circles, 0 boxes, 0 lines, 0 triangles", 0, {1e9f, 1e9f}, {-1e9f, -1e9f}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Imported imported(textDocument(c.text, c.stance));
        ASSERT_EQ(imported.scene.bodyCount(), 1);
        const BodyRecord& body = imported.body();
        EXPECT_EQ(imported.report.layers[0].origin, BodyOrigin::Text);
        EXPECT_EQ(piecesText(body), c.pieces);
        EXPECT_NEAR(areaOf(body), c.area, 1e-5);
        const auto [least, most] = extentOf(body);
        expectPoint(least, c.least.x, c.least.y);
        expectPoint(most, c.most.x, c.most.y);
        expectPoint(body.position, 0, 0);
        EXPECT_NEAR(radiansToDegrees(body.angle), c.degrees, 1e-4f);
        EXPECT_EQ(body.userData->color, (Rgb{1, 1, 1}));
        EXPECT_TRUE(imported.messages.texts.empty());
    }
}

TEST(TextImport, TheHullIsOneAroundAllLetters) {
    Imported imported(textDocument("oo"));
    imported.body().useConvexHull = true;
    ASSERT_TRUE(refreshBody(imported.hosted.context(), imported.scene, 0).has_value());
    EXPECT_NEAR(areaOf(imported.body()), 1.1 * 0.5, 1e-5);
}

} // namespace

} // namespace jostle
