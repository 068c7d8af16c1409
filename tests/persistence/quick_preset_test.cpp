#include "persistence/quick_preset.h"

#include <gtest/gtest.h>

#include "tests/persistence/loading.h"

namespace jostle {
namespace {

/// Label, index of the colour and width of each column.
std::string columns(const SnapshotStrip& strip) {
    std::string text;
    for (const SnapshotStrip::Item& item : strip.items()) {
        text += item.label() + ":" + std::to_string(item.colorIndex) + ":" + std::to_string(item.columnWidth) + " ";
    }
    return text;
}

TEST(SnapshotStrip, NumbersGrowAndAreNotStored) {
    Loading loading;
    for (int i = 0; i < 3; ++i) {
        loading.strip.add(takeSnapshot(loading.scene), 2);
    }
    const std::size_t second[] = {1};
    loading.strip.remove(second);
    loading.strip.add(takeSnapshot(loading.scene), 2);
    EXPECT_EQ(columns(loading.strip), "#1:1:55 #3:1:55 #4:0:55 ");
    const std::string text = loading.save();
    ASSERT_EQ(loading.load(text), LoadResult::Complete);
    EXPECT_EQ(columns(loading.strip), "#1:0:60 #2:1:60 #3:0:60 ");
    const std::size_t all[] = {0, 1, 2};
    loading.strip.remove(all);
    loading.strip.add({}, 0);
    EXPECT_EQ(columns(loading.strip), "#1:0:55 ");
    ASSERT_EQ(loading.load(bodyFile("")), LoadResult::Complete);
    EXPECT_EQ(columns(loading.strip), "") << "a file without snapshots clears the list";
}

TEST(QuickPreset, AppliesWhatWasTakenAndCanBeUndone) {
    Loading loading;
    Scene& scene = loading.scene;
    scene.globals = {2.5, 4, 20.5, 30.25, 180, true, 2, true};
    scene.preview = {120, 3, -4, {1, 2, 3}, false};
    scene.bodies[0].type = BodyType::Static;
    scene.bodies[1].meshPrecision = 6;
    addJoint(scene, JointType::Pivot, 0, 1).lowerAngle = -30;
    const QuickPreset taken = takeSnapshot(scene);
    const std::string before = loading.save();

    scene.globals = {};
    scene.globals.layerIndex = 1;
    scene.preview = {};
    scene.bodies[0].type = BodyType::Dormant;
    scene.bodies[0].position = {9, 9};
    scene.bodies[1].meshPrecision = 2;
    scene.joints.clear();
    const QuickPreset undo = takeUndoSnapshot(scene);
    EXPECT_EQ(undo.globals.layerIndex, 0) << "gravity was not taken from it";
    const ShapeDefList outlines = scene.bodies[0].outlines;
    const LayerAccess layers{3, [&](std::int32_t index) { loading.refreshed.push_back(index); }};

    applySnapshot(taken, scene, layers);
    EXPECT_EQ(loading.save(), before);
    EXPECT_TRUE(scene.preview.showsJoints);
    EXPECT_EQ(scene.bodies[1].connectedJoints.size(), 1u);
    EXPECT_EQ(scene.bodies[0].outlines.size(), outlines.size()) << "shapes stay the layer's";
    EXPECT_EQ(loading.refreshed, std::vector<std::int32_t>{1});
    applySnapshot(undo, scene, layers);
    EXPECT_EQ(scene.bodies[0].position, b2Vec2(9, 9));
    EXPECT_TRUE(scene.joints.empty() && !scene.globals.takeValueFrom && !scene.globals.layerListEnabled);
}

TEST(QuickPreset, GlobalValuesGoThroughTheSliders) {
    Loading loading;
    QuickPreset preset;
    preset.preview.zoom = 9000;
    // The tolerance, unlike from a file, with its fraction.
    preset.globals = {0.001, 0, 49.75, -1, 400, true, 3, false};
    applySnapshot(preset, loading.scene, {3, {}});
    for (const char* written : {R"(zoom="2000.)", R"(timeDivider="0.010000" tolerance="49.750000" stepsPerFrame="1")",
                                R"(magnitude="0.000000" direction="360.000000" takeValueFrom="0")"})
        EXPECT_NE(loading.save().find(written), std::string::npos) << written << loading.save();
    EXPECT_TRUE(loading.scene.globals.layerListEnabled) << "there is no such layer";
}

TEST(QuickPreset, IsReadOverTheBodiesThatThereAre) {
    Loading loading;
    loading.body(1).density = 8;
    const std::string body = R"(<bodies><body layerID="1" density="3"/><body layerID="7" density="5"/></bodies>)";
    const std::string ends = R"( type="2" bodyAId="0" bodyALayerID="1" )";
    const std::string joints = "<joints><joint" + ends + R"(bodyBId="5" bodyBLayerID="2"/><joint)" + ends +
                               R"(bodyBId="1" bodyBLayerID="2"/></joints>)";
    const std::string presets = R"(<preset><preview zoom="99"/><solver tolerance="7.5" stepsPerFrame="30"/>)"
                                R"(<gravity magnitude="70" takeValueFrom="0" layerIndex="2"/>)" +
                                body + joints + "</preset>" +
                                R"(<preset><preview zoom="98"/><gravity magnitude="70"/></preset><other/><preset/>)";
    ASSERT_EQ(loading.load(bodyFile("", "<presets>" + presets + "</presets>")), LoadResult::Complete);
    ASSERT_EQ(loading.strip.items().size(), 3u);
    const QuickPreset& first = loading.strip.items()[0].preset;
    EXPECT_EQ(first.preview.zoom, 99);
    EXPECT_EQ(first.globals.tolerance, 7);
    EXPECT_EQ(first.globals.stepsPerFrame, 30) << "the sliders come when it is applied";
    EXPECT_EQ(first.globals.magnitude, 70);
    EXPECT_EQ(first.globals.layerIndex, 0) << "read only if gravity is taken from it";
    ASSERT_EQ(first.bodies.size(), 2u);
    EXPECT_EQ(first.bodies[0].density, 3);
    EXPECT_EQ(first.bodies[1].density, 8) << "of a body that the snapshot did not know";
    ASSERT_EQ(first.joints.size(), 1u);
    EXPECT_EQ(first.joints[0].row, 1) << "the one before was dropped";
    const QuickPreset& second = loading.strip.items()[1].preset;
    EXPECT_EQ(second.preview.zoom, 98);
    EXPECT_EQ(second.globals.magnitude, 10) << "behind the section that is missing";
    EXPECT_EQ(loading.strip.items()[2].preset.bodies.size(), 2u);
}

} // namespace
} // namespace jostle
