#include <cmath>
#include <functional>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/host/imported.h"
#include "tests/support/expect_near.h"

namespace jostle {

namespace {

TEST(LayerImport, TellsWhyALayerIsNoBody) {
    const auto plain = [](DocumentLayer&) {};
    const std::tuple<const char*, LayerKind, std::function<void(DocumentLayer&)>, LayerOutcome> cases[] = {
        {"a solid", LayerKind::Solid, plain, LayerOutcome::Body},
        {"a precomposition", LayerKind::Precomposition, plain, LayerOutcome::Body},
        {"a camera", LayerKind::Camera, plain, LayerOutcome::Camera},
        {"a light", LayerKind::Light, plain, LayerOutcome::Light},
        {"a null", LayerKind::Null, plain, LayerOutcome::Null},
        {"an adjustment layer", LayerKind::Solid, [](auto& l) { l.adjustment = true; }, LayerOutcome::Adjustment},
        {"a guide", LayerKind::Solid, [](auto& l) { l.guide = true; }, LayerOutcome::Guide},
        {"switched off", LayerKind::Solid, [](auto& l) { l.hidden = true; }, LayerOutcome::Hidden},
        {"a matte", LayerKind::Solid, [](auto& l) { l.matteSource = true; }, LayerOutcome::Hidden},
        {"3D", LayerKind::Solid, [](auto& l) { l.threeD = true; }, LayerOutcome::ThreeD},
        {"a null before it is hidden", LayerKind::Null, [](auto& l) { l.hidden = true; }, LayerOutcome::Null},
        {"sound", LayerKind::Audio, [](auto& l) { l.item = std::make_shared<standalone::Item>(); },
         LayerOutcome::NoPicture},
        {"a solid without a size", LayerKind::Solid, [](auto& l) { l.item = std::make_shared<standalone::Item>(); },
         LayerOutcome::NoPicture},
    };
    for (const auto& [name, kind, change, outcome] : cases) {
        SCOPED_TRACE(name);
        auto document = emptyDocument();
        change(addLayer(*document, kind));
        addLayer(*document).name = "below";
        const Imported imported(std::move(document));
        ASSERT_EQ(imported.report.layers.size(), 2u);
        const bool isBody = outcome == LayerOutcome::Body;
        EXPECT_EQ(imported.report.layers[0].outcome, outcome);
        EXPECT_EQ(imported.report.layers[0].bodyIndex, isBody ? 0 : -1);
        // Layers that are no bodies keep their places among the layers, and have none among the bodies.
        EXPECT_EQ(imported.scene.layerIndices,
                  isBody ? (std::vector<std::int32_t>{0, 1}) : std::vector<std::int32_t>{1});
        EXPECT_EQ(imported.scene.bodies.back().name, "below");
        EXPECT_EQ(imported.scene.bodies.back().number, isBody ? 2 : 1);
    }
}

// Expected numbers by hand. The composition's centre is (100, 50). Corners are scale * (corner - (10, 5)) / 100 for
// the corners (0, 0) and (40, 20), whatever the rotation.
TEST(LayerImport, PlacesTheOutlineOfTheBounds) {
    using Change = std::function<void(Document&, DocumentLayer&)>;
    const auto scaledTo = [](double x, double y, double degrees = 0) -> Change {
        return [=](Document&, DocumentLayer& layer) {
            layer.transform.scale.value = {x, y, 100};
            layer.transform.rotation.value = {degrees, 0, 0};
        };
    };
    const Change child = [&](Document& document, DocumentLayer& layer) {
        DocumentLayer& parent = addNull(document);
        scaledTo(200, 100, 90)(document, parent);
        layer.transform.position.value = {30, 0, 0};
        setParent(layer, parent);
    };
    const Extent plain = from(-10, -5, 30, 15);
    const b2Vec2 one(1, 1);
    const std::tuple<const char*, Change, b2Vec2, Extent, float, b2Vec2> cases[] = {
        {"as it is", scaledTo(100, 100), at(50, 10), plain, 0, one},
        {"scaled and turned", scaledTo(200, 50, 90), at(50, 10), from(-20, -2.5f, 60, 7.5f), 90, b2Vec2(2, 0.5f)},
        {"under a turned and stretched parent: (30, 0) doubles to (60, 0), turns to (0, 60), lands at (100, 110)",
         child, at(0, 60), from(-20, -5, 60, 15), 90, b2Vec2(2, 1)},
        {"a flip keeps the size", scaledTo(100, -100), at(50, 10), plain, 0, one},
        {"nothing is left of a layer at scale 0 but a thousandth", scaledTo(0, 0), at(50, 10),
         from(-0.01f, -0.005f, 0.03f, 0.015f), 0, b2Vec2(0.001f, 0.001f)},
        {"wide pixels: x doubles, and so does the width of the composition",
         [](auto& document, auto&) { document.pixelAspect = 2; }, at(100, 10), plain, 0, one},
        {"no number: as if nothing were transformed", scaledTo(std::nan(""), 100), at(-90, -45), plain, 0, one},
    };
    for (const auto& [name, change, position, extent, degrees, scale] : cases) {
        SCOPED_TRACE(name);
        auto document = emptyDocument();
        change(*document, addLayer(*document));
        Imported imported(std::move(document));
        ASSERT_EQ(imported.scene.bodyCount(), 1);
        const BodyRecord& body = imported.body();
        expectPlace(body, position, extent, degrees);
        expectPoint(body.layerScale, scale);
        expectPoint(body.layerAnchor, {10, 5});
        expectNear(body.outlines.at(0).at(0).verts,
                   {at(extent.left, extent.top), at(extent.right, extent.top), at(extent.right, extent.bottom),
                    at(extent.left, extent.bottom)},
                   1e-5f);
        EXPECT_TRUE(body.isBox);
        EXPECT_EQ(imported.report.layers[0].numbersReplaced,
                  std::isnan(imported.hosted.layer(0).transform.scale.value[0]));
    }
}

TEST(LayerImport, CutsSpansToWholeFrames) {
    // The rate of frames, the layer's span, and the body's in-point and out-point.
    const std::tuple<const char*, double, double, double, int, int, bool> cases[] = {
        {"the whole composition never ends", 25, 0, 100, 0, 100000, false},
        {"beyond it", 25, -20, 130, -20, 100000, false},
        {"parts of frames are cut", 25, 10.5, 50.75, 10, 50, true},
        {"and towards zero", 25, -0.5, 50, 0, 50, true},
        {"a rate that no time hits exactly", 29.9700012207031, 61.0000024845809, 99, 61, 99, true},
        {"from farther back than an int counts", 25, -2.2e9, 50, -1000000000, 50, false},
        {"just below a whole frame", 23.9759979248047, 33, 99.99989, 33, 100000, false},
    };
    for (const auto& [name, frameRate, inFrame, outFrame, inPoint, outPoint, isShort] : cases) {
        SCOPED_TRACE(name);
        auto document = emptyDocument(frameRate);
        DocumentLayer& layer = addLayer(*document);
        layer.inFrame = inFrame;
        layer.outFrame = outFrame;
        const Imported imported(std::move(document));
        const Scene& scene = imported.scene;
        EXPECT_EQ(scene.compFrames, 100);
        EXPECT_EQ(scene.bodies.at(0).inPoint, inPoint);
        EXPECT_EQ(scene.bodies.at(0).outPoint, outPoint);
        EXPECT_EQ(scene.hasShortLayers, isShort);
    }
}

TEST(LayerImport, ReadsTheCompositionAndColours) {
    auto document = emptyDocument(30);
    document->pixelAspect = 1.5;
    DocumentLayer& solid = addLayer(*document);
    solid.label = 9;
    solid.id = 77;
    addLayer(*document, LayerKind::Image);
    const Imported imported(std::move(document));
    const Scene& scene = imported.scene;
    EXPECT_EQ(scene.compWidth, 300);
    EXPECT_EQ(scene.compHeight, 100);
    EXPECT_DOUBLE_EQ(scene.frameDurationSeconds(), 1.0 / 30);
    ASSERT_EQ(scene.bodyCount(), 2);
    EXPECT_EQ(scene.bodies[0].layerID, 77);
    EXPECT_EQ(scene.bodies[0].name, "source 1");
    EXPECT_DOUBLE_EQ(scene.bodies[0].color.green, 0.5); // the solid's
    EXPECT_DOUBLE_EQ(scene.bodies[0].importColor.green, 164.0 / 255);
    EXPECT_EQ(scene.bodies[0].userData->color, (Rgb{0.25f, 0.5f, 0.75f}));
    EXPECT_DOUBLE_EQ(scene.bodies[1].color.green, 1.0); // white
    EXPECT_DOUBLE_EQ(scene.bodies[1].importColor.green, 0.5);
    EXPECT_EQ(scene.bodies[1].userData->labelColor, (Rgb{0.5f, 0.5f, 0.5f}));
}

TEST(LayerImport, AsksTheParentButNotTheGrandparentForRotation) {
    for (const std::size_t turning : {0u, 1u, 2u}) { // the layer, its parent, its grandparent
        SCOPED_TRACE(turning);
        ParentedDocument made;
        setParent(made.parent, addNull(*made.document));
        animate(made.document->layers[turning]->transform.rotation, {}, 50, {90, 0, 0});
        EXPECT_EQ(Imported(std::move(made.document)).scene.bodies.at(0).rotationAnimated, turning < 2);
    }
}

} // namespace

} // namespace jostle
