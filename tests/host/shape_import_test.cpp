#include <tuple>

#include <gtest/gtest.h>

#include "tests/host/imported.h"

namespace jostle {

namespace {

const std::string plainRect = rect("[40,20]", "[0,0]");

struct ShapeCase {
    const char* name;
    std::string elements;
    const char* pieces;
    b2Vec2 position; // metres from the centre, where the layer's origin is
    Extent extent;
    Stance stance = {};
    float degrees = 0;
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
    EXPECT_TRUE(body.isPath || body.layerAnchor == b2Vec2(0, 0));
    EXPECT_EQ(piecesText(body), c.pieces);
    expectPlace(body, c.position, c.extent, c.degrees);
    if (std::string(c.pieces) == "1 circles") {
        EXPECT_NEAR(body.outlines[0][0].radius, (c.extent.right - c.extent.left) / 200, 1e-5f);
    }
}

TEST(ShapeImport, PlacesElementsByTheSumOfTheirGroups) {
    const std::string place = R"(,"a":{"k":[5,5]},"p":{"k":[20,5]})";
    const std::string star = R"({"ty":"sr","sy":1,"p":{"k":[0,0]},"pt":{"k":5},"r":{"k":0},"or":{"k":40},)"
                             R"("os":{"k":0},"ir":{"k":20},"is":{"k":0}})";
    const std::string polygon =
        R"({"ty":"sr","sy":2,"p":{"k":[0,0]},"pt":{"k":6.9},"r":{"k":0},"or":{"k":40},"os":{"k":0}})";
    const std::string lyingEllipse =
        R"({"v":[[50,0],[0,25],[50,50],[100,25]],"i":[[27.614,0],[0,-13.807],[-27.614,0],[0,13.807]],)"
        R"("o":[[-27.614,0],[0,13.807],[27.614,0],[0,-13.807]],"c":true})";
    const std::string hidden = R"({"ty":"gr","hd":true,"it":[)" + plainRect + R"(,{"ty":"tr"}]})";
    const Extent plain = from(-20, -10, 20, 10);
    const Extent upright = from(-10, -20, 10, 20);
    const ShapeCase cases[] = {
        {"a rectangle", group(plainRect), "1 boxes", at(0, 0), plain},
        {"at the top, outside of groups", plainRect, "1 boxes", at(0, 0), plain},
        {"position less anchor: (20, 5) + (10, 0) - (5, 5)", group(rect("[40,20]", "[10,0]"), place), "1 boxes",
         at(25, 0), plain},
        {"a group's scale stretches size and offset", group(rect("[40,20]", "[10,0]"), R"(,"s":{"k":[200,50]})"),
         "1 boxes", at(20, 0), from(-40, -5, 40, 5)},
        {"rotations add, and an outer one does not swing the inner offset",
         group(group(plainRect, R"(,"p":{"k":[0,20]})"), R"(,"p":{"k":[10,0]},"r":{"k":90})"), "1 boxes", at(10, 20),
         upright},
        {"a group's rotation turns an element about the group's position: (30, 0) turns to (0, 30)",
         group(rect("[40,20]", "[30,0]"), R"(,"r":{"k":90})"), "1 boxes", at(0, 30), upright},
        {"an unevenly scaled layer", group(plainRect), "1 boxes", at(0, 0), from(-40, -5, 40, 5), scaled("[200,50]")},
        {"a turned layer turns its body, not the outline", group(rect("[40,20]", "[30,0]")), "1 boxes", at(0, 30),
         plain, turned("90"), 90},
        {"an ellipse of equal diameters", group(ellipse("[40,40]", "[10,0]")), "1 circles", at(10, 0),
         from(-20, -20, 20, 20)},
        {"on an unevenly scaled layer: 12 corners", group(ellipse("[40,40]", "[0,0]")), "10 triangles", at(0, 0),
         from(-20, -40, 20, 40), scaled("[100,200]")},
        {"rounded corners: 4 of 3 points, 4 of 1", group(rect("[40,20]", "[0,0]", "5")), "14 triangles", at(0, 0),
         plain},
        // Its points are at 40 pixels, 72 degrees apart from the top on, as in 40 sin 72 and 40 cos 36.
        {"a star: 5 outer and 5 inner points", group(star), "8 triangles", at(0, 0),
         from(-38.0423f, -40, 38.0423f, 32.3607f)},
        {"a polygon of 6.9 points has 6, and no inner ones", group(polygon), "4 triangles", at(0, 0),
         from(-34.641f, -40, 34.641f, 40)},
        {"a path has its origin in its centroid", group(corner), "1 triangles", at(10, 10), from(-10, -10, 20, 20)},
        {"a path has the layer's rotation in its vertices: (0, 0), (0, 30), (-30, 0)", group(corner), "1 triangles",
         at(-10, 10), from(-20, -10, 10, 20), turned("90")},
        {"an open path has its origin in the mean of its points",
         group(path(outlineText("[0,0],[30,0],[0,30]", false))), "1 lines", at(10, 10), from(-10, -10, 20, 20)},
        {"a path like the host's circle", group(path(hostCircle)), "1 circles", at(50, 50), from(-50, -50, 50, 50)},
        {"in a group that is scaled by a trifle", group(path(hostCircle), R"(,"s":{"k":[100.001,100]})"),
         "10 triangles", at(50, 50), from(-50, -50, 50, 50)},
        {"an ellipse that an unevenly scaled layer makes round", group(path(lyingEllipse)), "10 triangles", at(50, 50),
         from(-50, -50, 50, 50), scaled("[100,200]")},
        {"a path like a rectangle on such a layer", group(path(outlineText("[0,0],[30,0],[30,20],[0,20]"))), "1 boxes",
         at(15, 20), from(-15, -20, 15, 20), scaled("[100,200]")},
        {"hidden elements count", hidden, "1 boxes", at(0, 0), plain},
        {"a layer at scale 0", group(plainRect), "1 boxes", at(0, 0), from(-0.02f, -0.01f, 0.02f, 0.01f),
         scaled("[0,0]")},
    };
    for (const ShapeCase& c : cases)
        expectCase(c);
}

TEST(ShapeImport, TheLastElementReadGivesOriginAndScaling) {
    const std::string left = rect("[40,20]", "[-50,0]");
    const std::string right = ellipse("[20,20]", "[50,0]");
    const ShapeCase cases[] = {
        {"the circle last: the rectangle from -70 to -30, less 50", group(joined({left, right})), "1 circles 1 boxes",
         at(50, 0), from(-120, -10, 10, 10)},
        {"the rectangle last, in a group of its own", joined({group(right), group(left)}), "1 circles 1 boxes",
         at(-50, 0), from(-20, -10, 110, 10)},
        // The rectangle of 40 by 20 pixels at (0, 0), less the centroid at (20, 20), without the layer's scale.
        {"a path last: nothing is scaled once more", joined({group(plainRect), group(corner)}), "1 boxes 1 triangles",
         at(20, 20), from(-40, -30, 40, 40), scaled("[200,200]")},
        // The path has the turn in its vertices: (0, 0), (26, 15), (-15, 26).
        {"a path first: the body is turned", joined({group(corner), group(plainRect)}), "1 boxes 1 triangles", at(0, 0),
         from(-20, -10, 25.98076f, 25.98076f), turned("30"), 30},
    };
    for (const ShapeCase& c : cases)
        expectCase(c);
}

TEST(ShapeImport, TheLastFillOrStrokeInOrderGivesTheColour) {
    const std::string red = stroke("[1,0,0,1]");
    const std::string green = fill("[0,1,0,1]");
    const std::tuple<const char*, std::string, Rgb> cases[] = {
        {"a fill after a stroke", group(joined({plainRect, red, green})), {0, 1, 0}},
        {"a stroke after a fill", group(joined({plainRect, green, red})), {1, 0, 0}},
        {"in a later group", joined({group(joined({plainRect, green})), group(joined({plainRect, red}))}), {1, 0, 0}},
        {"none", group(plainRect), {1, 1, 1}},
    };
    for (const auto& [name, elements, color] : cases) {
        SCOPED_TRACE(name);
        Imported imported(shapeLayer(elements));
        EXPECT_EQ(imported.body().userData->color, color);
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
    expectPlace(body, {0, 0}, {0, 0, 100, 100});
    expectPoint(body.layerAnchor, {3, 4});
    expectPoint(body.layerScale, {1, 1});
    EXPECT_EQ(body.userData->color, (Rgb{1, 1, 1}));
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
    const Stance aboutTen{.anchor = "[10,0]", .scale = "[200,100]"};
    // The text, its pieces, their square metres, the box around them, how the layer stands, and the angle of the body.
    const std::tuple<const char*, const char*, const char*, double, Extent, Stance, float> cases[] = {
        {"a letter", "o", "8 triangles", 0.16, from(0, -50, 50, 0), {}, 0},
        {"two letters, 60 apart", "oo", "16 triangles", 0.32, from(0, -50, 110, 0), {}, 0},
        {"scaled, about the anchor", "o", "8 triangles", 0.32, from(-20, -50, 80, 0), aboutTen, 0},
        {"turned: the body is, not the outline", "o", "8 triangles", 0.16, from(0, -50, 50, 0), turned("90"), 90},
        {"nothing", "", "", 0, from(1e11f, 1e11f, -1e11f, -1e11f), {}, 0},
    };
    for (const auto& [name, text, pieces, area, extent, stance, degrees] : cases) {
        SCOPED_TRACE(name);
        Imported imported(textDocument(text, stance));
        ASSERT_EQ(imported.scene.bodyCount(), 1);
        const BodyRecord& body = imported.body();
        EXPECT_EQ(imported.report.layers[0].origin, BodyOrigin::Text);
        EXPECT_EQ(piecesText(body), pieces);
        EXPECT_NEAR(areaOf(body), area, 1e-5);
        expectPlace(body, {0, 0}, extent, degrees);
        EXPECT_EQ(body.userData->color, (Rgb{1, 1, 1}));
        EXPECT_TRUE(imported.messages.texts.empty());
    }
}

// The hull of a corner, from (0, 0) over (30, 0) to (0, 30), and a rectangle that does not leave it; and of two
// letters.
TEST(ShapeImport, TheHullWrapsTheOutlinesOrAllLettersAndLeavesPrimitives) {
    const std::string shapes = shapeLayer(joined({group(corner), group(rect("[4,4]", "[5,5]"))}));
    for (const bool ofText : {false, true}) {
        Imported imported(ofText ? textDocument("oo") : lottieDocument(shapes));
        imported.body().useConvexHull = true;
        ASSERT_TRUE(imported.refresh());
        EXPECT_NEAR(areaOf(imported.body()), ofText ? 1.1 * 0.5 : 0.045 + 0.0016, 1e-6);
        EXPECT_EQ(piecesText(imported.body()), ofText ? "2 triangles" : "1 boxes 1 triangles");
    }
}

} // namespace

} // namespace jostle
