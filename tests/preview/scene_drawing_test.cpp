#include "preview/scene_drawing.h"

#include "preview/overlays.h"
#include "preview/preferred_style.h"
#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

#include <box2d/b2_body.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <tuple>

namespace jostle::test {
namespace {

/// A composition of 1000 by 600 pixels, shown pixel for pixel.
ViewTransform plainView() {
    ViewTransform view{1000, 600, 100, 0, 0, 1000, 600};
    view.fitExactly(0);
    return view;
}

/// One scene and what was last drawn of it.
struct Stage {
    Stage() {
        scene.compWidth = 1000;
        scene.compHeight = 600;
        options.compBounds = false;
    }
    const Drawing& draw(int frame = -1, std::span<const BodySample> samples = {}) {
        if (!isBuilt) {
            clock.restart();
            isBuilt = true;
        }
        sceneDrawing.draw({scene, samples, frame}, options, style, plainView(), drawing);
        return drawing;
    }

    Scene scene = weightlessScene();
    StillLayers layers;
    FreePacer pacer;
    SimulationClock clock{scene, layers, pacer};
    bool isBuilt = false;
    ViewOptions options;
    DrawStyle style;
    SceneDrawing sceneDrawing;
    Drawing drawing;
};

bool hasLine(const DrawList& list, b2Vec2 a, b2Vec2 b) {
    const auto near = [](b2Vec2 p, b2Vec2 q) { return b2Distance(p, q) < 0.01f; };
    return std::any_of(list.lines.begin(), list.lines.end(), [&](const Line& line) {
        return (near(line.from, a) && near(line.to, b)) || (near(line.from, b) && near(line.to, a));
    });
}

// A box of 1 by 0.5 m at (1, -1) m stands at (600, 200) pixels, 100 by 50 of them.
TEST(SceneDrawing, aBoxIsFilledAndOutlinedWhereItStands) {
    Stage stage;
    addBox(stage.scene, {1, -1}, 1, 0.5f).userData->color = {1.0f, 0.6f, 0.2f};
    const DrawList& shapes = stage.draw().shapes;
    ASSERT_EQ(shapes.triangles.size(), 6U);
    EXPECT_EQ(shapes.triangles[0].color, (Rgba{255, 153, 51, 204})); // 0.8 * 255
    EXPECT_EQ(shapes.lines.size(), 4U);
    EXPECT_TRUE(hasLine(shapes, {550, 175}, {650, 175}));
    EXPECT_TRUE(hasLine(shapes, {650, 175}, {650, 225}));
    EXPECT_EQ(shapes.lines[0].color, (Rgba{255, 153, 51, 255}));
    EXPECT_TRUE(stage.drawing.overlays.lines.empty());
}

void beSelectedAndStatic(BodyRecord& body) {
    body.type = BodyType::Static;
    body.userData->selected = true;
}

// 0.8 and 0.15 of 255; the outlines are the preferences' defaults, which stand out from the dark background as they
// are.
const std::tuple<const char*, std::function<void(BodyRecord&)>, int, std::optional<Rgba>> stateCases[] = {
    {"live", [](BodyRecord&) {}, 204, {}},
    {"static", [](BodyRecord& body) { body.type = BodyType::Static; }, 204, Rgba{217, 46, 207, 255}},
    {"led by its layer", [](BodyRecord& body) { body.type = BodyType::Kinematic; }, 204, {}},
    {"dormant", [](BodyRecord& body) { body.type = BodyType::Dormant; }, 38, {}},
    {"dead", [](BodyRecord& body) { body.type = BodyType::Dead; }, 38, {}},
    {"out of time", [](BodyRecord& body) { body.inPoint = 5; }, 38, {}},
    {"selected", [](BodyRecord& body) { body.userData->selected = true; }, 204, Rgba{191, 140, 0, 255}},
    {"selected and static show both", beSelectedAndStatic, 204, Rgba{217, 46, 207, 255}},
    {"attracting", [](BodyRecord& body) { body.magnetismType = 1; }, 204, {}},
    {"repelling", [](BodyRecord& body) { body.magnetismType = 2; }, 204, {}},
};

/// The form of a drawing without its colours: where its lines lie and how wide they are.
using Form = std::multiset<std::tuple<int, int, int, int, float>>;
Form formOf(const Drawing& drawing) {
    Form form;
    for (const DrawList* list : {&drawing.shapes, &drawing.overlays}) {
        for (const Line& line : list->lines) {
            form.insert({static_cast<int>(line.from.x), static_cast<int>(line.from.y), static_cast<int>(line.to.x),
                         static_cast<int>(line.to.y), line.width});
        }
    }
    return form;
}

TEST(SceneDrawing, statesTakeFillsAndHighlightsAndDifferByMoreThanColours) {
    std::set<Form> forms;
    for (const auto& [name, make, fillAlpha, lineColor] : stateCases) {
        SCOPED_TRACE(name);
        Stage stage;
        make(addBox(stage.scene, {0, 0}, 1, 1));
        EXPECT_TRUE(forms.insert(formOf(stage.draw())).second) << "drawn like another state";
        const DrawList& shapes = stage.drawing.shapes;
        ASSERT_FALSE(shapes.triangles.empty());
        EXPECT_EQ(shapes.triangles[0].color.alpha, fillAlpha);
        EXPECT_TRUE(!lineColor || std::any_of(shapes.lines.begin(), shapes.lines.end(),
                                              [&color = *lineColor](const Line& line) { return line.color == color; }));
    }
}

TEST(SceneDrawing, aBodyIsOutOfTimeByTheFrameThatIsDrawn) {
    Stage stage;
    BodyRecord& body = addBox(stage.scene, {0, 0}, 1, 1);
    body.inPoint = 5;
    body.outPoint = 8;
    for (const auto& [frame, alpha] : {std::pair(4, 38), std::pair(5, 204), std::pair(7, 204), std::pair(9, 38)}) {
        SCOPED_TRACE(frame);
        EXPECT_EQ(stage.draw(frame).shapes.triangles[0].color.alpha, alpha);
    }
}

/// A square of 2 m cut into four triangles about its middle.
std::vector<ShapeDef> cutSquare() {
    const b2Vec2 corners[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    std::vector<ShapeDef> pieces;
    for (std::size_t i = 0; i < 4; ++i) {
        pieces.push_back(outlineShape({{0, 0}, corners[i], corners[(i + 1) % 4]}, true));
    }
    return pieces;
}

TEST(SceneDrawing, aMeshHasItsOutlineAloneUnlessAskedFor) {
    Stage stage;
    addBody(stage.scene, {0, 0}, cutSquare());
    EXPECT_EQ(stage.draw().shapes.triangles.size(), 12U);
    EXPECT_EQ(stage.drawing.shapes.lines.size(), 4U);
    EXPECT_FALSE(hasLine(stage.drawing.shapes, {500, 300}, {400, 200}));
    stage.scene.bodies[0].outlines[0].pop_back(); // the left piece
    stage.clock.refresh();
    EXPECT_EQ(stage.draw().shapes.lines.size(), 5U) << "follows the shape after a rebuild";
    EXPECT_TRUE(hasLine(stage.drawing.shapes, {500, 300}, {400, 200}));
    stage.options.mesh = true;
    EXPECT_EQ(stage.draw().shapes.lines.size(), 14U); // three edges of each piece more
    EXPECT_TRUE(hasLine(stage.drawing.shapes, {500, 300}, {600, 200}));
}

TEST(SceneDrawing, samplesStandInForTheWorld) {
    Stage stage;
    addBox(stage.scene, {0, 0}, 2, 1, BodyType::AEmatic).aematicAnchor = {0.5f, 0};
    // A quarter turn at (1, 1) m: 100 pixels wide and 200 high about (600, 400), its anchor 50 below, which is pulled
    // to (800, 200).
    const BodySample sample{{1, 1}, b2_pi / 2, false, {3, -1}};
    const Drawing& drawing = stage.draw(-1, {&sample, 1});
    EXPECT_TRUE(hasLine(drawing.shapes, {550, 300}, {650, 300}));
    EXPECT_TRUE(hasLine(drawing.overlays, {600, 450}, {800, 200}));
    EXPECT_TRUE(hasLine(stage.draw().shapes, {400, 250}, {600, 250}));
}

TEST(SceneDrawing, aMagnetReachesAsFarAsItSays) {
    Stage stage;
    BodyRecord& magnet = addBox(stage.scene, {0, 0}, 0.2f, 0.2f);
    magnet.magnetismType = 1;
    magnet.magnetDistance = 150.0f;
    float farthest = 0.0f;
    for (const Line& line : stage.draw().overlays.lines) {
        farthest = std::max(farthest, b2Distance(line.from, {500, 300}));
    }
    EXPECT_NEAR(farthest, 150.0f, 0.01f);
}

TEST(SceneDrawing, everythingOffLeavesTheCompositionsBounds) {
    Stage stage;
    for (const auto& [name, make, fillAlpha, lineColor] : stateCases) {
        make(addBox(stage.scene, {0, 0}, 1, 1));
    }
    addBox(stage.scene, {0, 0}, 1, 1, BodyType::AEmatic);
    for (const JointType type : {JointType::Distance, JointType::Pivot, JointType::Piston, JointType::Spring}) {
        addJoint(stage.scene, type, 0, 1);
    }
    stage.options.shapes = stage.options.joints = false;
    const DrawList& overlays = stage.draw().overlays;
    EXPECT_TRUE(stage.drawing.shapes.lines.empty() && stage.drawing.shapes.triangles.empty());
    EXPECT_TRUE(overlays.lines.empty() && overlays.points.empty());
    stage.options.compBounds = true;
    stage.draw();
    EXPECT_EQ(overlays.lines.size(), 4U);
    EXPECT_TRUE(hasLine(overlays, {0, 0}, {1000, 0}));
}

TEST(SceneDrawing, jointsHaveTheColourOfTheirKindOrOfTheSelection) {
    const DrawStyle style;
    for (const JointType type : {JointType::Distance, JointType::Pivot, JointType::Piston, JointType::Spring}) {
        for (const bool selected : {false, true}) {
            SCOPED_TRACE(static_cast<int>(type));
            Stage stage;
            addBox(stage.scene, {-1, 0}, 1, 1);
            addBox(stage.scene, {1, 0}, 1, 1);
            addJoint(stage.scene, type, 0, 1).selected = selected;
            const Rgba color = selected ? style.selectedJoint : style.joints.at(static_cast<std::size_t>(type));
            const std::vector<Point>& points = stage.draw().overlays.points;
            EXPECT_TRUE(std::any_of(points.begin(), points.end(), [&](const Point& point) {
                return point.color == readableOn(color, style.background);
            }));
            stage.scene.joints[0].bodyBId = 7; // joins nothing
            EXPECT_TRUE(stage.draw().overlays.points.empty());
        }
    }
}

TEST(SceneDrawing, drawsAWorldWithoutBodiesAndScenesThatGrew) {
    Stage stage;
    EXPECT_TRUE(stage.draw().shapes.lines.empty());
    addBox(stage.scene, {0, 0}, 1, 1); // not in the world yet
    EXPECT_TRUE(stage.draw().shapes.lines.empty());
    stage.clock.refresh();
    EXPECT_EQ(stage.draw().shapes.lines.size(), 4U);
}

TEST(DrawStyle, whatIsReadStandsOutFromAnyBackground) {
    const Rgba dark{38, 38, 38, 255};
    const Rgba light{244, 244, 244, 255};
    EXPECT_EQ(readableOn({255, 255, 0, 255}, dark), (Rgba{255, 255, 0, 255}));
    EXPECT_LT(luminance(readableOn({255, 255, 0, 255}, light)), 0.4f);
    EXPECT_GT(luminance(readableOn({0, 0, 0, 255}, dark)), 0.08f);
    EXPECT_EQ(inkOn(dark), (Rgba{255, 255, 255, 255}));
    EXPECT_EQ(inkOn(light), (Rgba{0, 0, 0, 255}));
}

TEST(DrawStyle, defaultsOfThePreferencesAreItsOwn) {
    DrawStyle style;
    style.selectionHighlight = style.staticHighlight = style.selectedJoint = {};
    style.joints = {};
    style.selectionStrokeWidth = style.jointStrokeWidth = 0;
    applyPreferences(UserPreferences(), style);
    EXPECT_EQ(style, DrawStyle());
}

// From (-1, -0.5) m to (2, 1) m: pixels (400, 250) to (700, 400). With 10 pixels for each metre per second squared
// the arrow of gravity ends 98 pixels below the middle.
TEST(Overlays, theRubberBandIsTheBoxOfItsCornersAndGravityAsLongAsItIsStrong) {
    Stage stage;
    Drawing drawing;
    drawRubberBand(stage.scene, {2, -0.5f}, {-1, 1}, drawing);
    ASSERT_EQ(drawing.overlays.triangles.size(), 6U);
    EXPECT_EQ(drawing.overlays.triangles[0].color, (Rgba{255, 255, 255, 29})); // 0.115 * 255
    EXPECT_TRUE(hasLine(drawing.overlays, {400, 250}, {700, 250}));
    EXPECT_TRUE(hasLine(drawing.overlays, {700, 250}, {700, 400}));
    drawGravityTool(9.8, 90.0, 10.0, DrawStyle(), plainView(), drawing);
    EXPECT_TRUE(hasLine(drawing.view, {500, 300}, {500, 398}));
    EXPECT_TRUE(hasLine(drawing.view, {0, 300}, {1000, 300}));
    EXPECT_TRUE(hasLine(drawing.view, {500, 0}, {500, 600}));
}

// At 20 m/s to the right, 10 of which are a metre of the handle: 200 pixels. After 1 s under 10 m/s^2 downwards the
// body has gone 20 m and fallen 5 m.
TEST(Overlays, aFlightHasItsHandleAndItsParabola) {
    Stage stage;
    addBox(stage.scene, {0, 0}, 1, 1).userData->selected = true;
    stage.draw();
    Drawing still;
    drawVelocityTool(stage.scene, 10.0, stage.style, still);
    ASSERT_FALSE(still.overlays.lines.empty());
    for (const Line& line : still.overlays.lines) {
        EXPECT_EQ(line.to, b2Vec2(500, 300)) << "what nothing moves flies to where it is";
    }
    stage.scene.globals.magnitude = 10;
    stage.scene.bodies[0].linearVelocityMagnitude = 20;
    Drawing drawing;
    drawVelocityTool(stage.scene, 10.0, stage.style, drawing);
    EXPECT_TRUE(hasLine(drawing.overlays, {500, 300}, {700, 300}));
    const std::vector<Line>& lines = drawing.overlays.lines;
    ASSERT_GT(lines.size(), 1599U);
    EXPECT_NEAR(lines[199].to.x, 2500.0f, 0.5f);
    EXPECT_NEAR(lines[199].to.y, 800.0f, 0.5f);
}

} // namespace
} // namespace jostle::test
