#include "tests/standalone/suites/small_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

constexpr double tolerance = 1e-9;

TEST(LayerSuite, MultipliesTheMatricesOfParents) {
    // Scale (2, 1), then a quarter turn clockwise, takes x to (0, 2) and y to (-1, 0). The child's anchor, at (30, 0)
    // in the holder, comes to (0, 60) + (100, 100); its corner lies (-10, -5) from there: (5, -20) more.
    Session session;
    A_Matrix4 matrix{};
    const A_Time start{0, 1};
    ASSERT_EQ(session.table<AEGP_LayerSuite13>().AEGP_GetLayerToWorldXform(session.layer(child), &start, &matrix),
              A_Err_NONE);
    const double expected[4][4] = {{0, 2, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {105, 140, 0, 1}};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(matrix.mat[row][column], expected[row][column], tolerance) << row << ", " << column;
    }
}

struct UnparentCase {
    const char* name;
    double ownRotation, ownScaleX, ownScaleY;
    double rotation, scaleX, scaleY;
};

// The holder's rows are (0, 2), (-1, 0), its determinant 2; the child's anchor ends at (100, 160) as above.
// At 45 degrees, c = sqrt(1/2): rows (-c, 2c), (-c, -2c), so the turn is atan2(2, -1), x sqrt(2.5), y 2 / sqrt(2.5).
constexpr UnparentCase unparentCases[] = {
    {"the parent's own turn and scale", 0, 100, 100, 90, 200, 100},
    {"a mirrored layer stays mirrored in x", 0, -100, 100, 90, -200, 100},
    {"a layer mirrored in y", 0, 100, -50, 90, 200, -50},
    {"turns are counted on, not cut", 720, 100, 100, 810, 200, 100},
    {"a lean is lost, the area is not", 45, 100, 100, 116.56505117707799, 158.11388300841898, 126.49110640673517},
};

TEST(LayerSuite, FoldsTheParentInWhenItIsTakenAway) {
    for (const UnparentCase& c : unparentCases) {
        SCOPED_TRACE(c.name);
        auto document = smallDocument();
        document->layers[child]->transform.rotation.value[0] = c.ownRotation;
        document->layers[child]->transform.scale.value = {c.ownScaleX, c.ownScaleY, 0};
        Session session(std::move(document));
        const auto& layers = session.table<AEGP_LayerSuite13>();
        ASSERT_EQ(layers.AEGP_SetLayerParent(session.layer(child), nullptr), A_Err_NONE);
        AEGP_LayerH parent = session.layer(holder);
        EXPECT_EQ(layers.AEGP_GetLayerParent(session.layer(child), &parent), A_Err_NONE);
        EXPECT_EQ(parent, nullptr);
        const Layer& layer = *session.host.outcome().layers[child];
        EXPECT_NEAR(layer.transform.position.value[0], 100, tolerance);
        EXPECT_NEAR(layer.transform.position.value[1], 160, tolerance);
        EXPECT_NEAR(layer.transform.rotation.value[0], c.rotation, tolerance);
        EXPECT_NEAR(layer.transform.scale.value[0], c.scaleX, tolerance);
        EXPECT_NEAR(layer.transform.scale.value[1], c.scaleY, tolerance);
        EXPECT_TRUE(layer.changed);
    }
}

TEST(LayerSuite, KeepsALayerInPlaceUnderANewParent) {
    Session session;
    const auto& layers = session.table<AEGP_LayerSuite13>();
    const A_Time start{0, 1};
    A_Matrix4 before{}, after{};
    ASSERT_EQ(layers.AEGP_SetLayerParent(session.layer(child), nullptr), A_Err_NONE);
    EXPECT_EQ(session.host.outcome().layers[child]->parentId, noParent);
    ASSERT_EQ(layers.AEGP_GetLayerToWorldXform(session.layer(child), &start, &before), A_Err_NONE);
    ASSERT_EQ(layers.AEGP_SetLayerParent(session.layer(child), session.layer(holder)), A_Err_NONE);
    ASSERT_EQ(layers.AEGP_GetLayerToWorldXform(session.layer(child), &start, &after), A_Err_NONE);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(before.mat[i / 4][i % 4], after.mat[i / 4][i % 4], tolerance) << i;
    EXPECT_NEAR(session.host.outcome().layers[child]->transform.position.value[0], 30, tolerance);
}

TEST(LayerSuite, LeavesKeyframedStreamsAloneWhenUnparenting) {
    auto document = smallDocument();
    Layer& layer = *document->layers[child];
    layer.transform.rotation = keyedStream(0, 90);
    Session session(std::move(document));
    ASSERT_EQ(session.table<AEGP_LayerSuite13>().AEGP_SetLayerParent(session.layer(child), nullptr), A_Err_NONE);
    EXPECT_EQ(layer.transform.rotation.keys.values, (std::vector<double>{0, 90}));
    EXPECT_FALSE(layer.transform.rotation.changed);
}

struct StateCase {
    const char* name;
    LayerKind kind;
    bool hidden, matteSource;
    AEGP_ObjectType type;
    AEGP_LayerFlags flags;
};

constexpr StateCase stateCases[] = {
    {"a solid", LayerKind::Solid, false, false, AEGP_ObjectType_AV, 1},
    {"switched off", LayerKind::Solid, true, false, AEGP_ObjectType_AV, 0},
    {"a matte's source is off", LayerKind::Solid, false, true, AEGP_ObjectType_AV, 0},
    {"null", LayerKind::Null, false, false, AEGP_ObjectType_AV, 0x10001},
    {"guide", LayerKind::Guide, false, false, AEGP_ObjectType_AV, 0x40001},
    {"adjustment", LayerKind::Adjustment, false, false, AEGP_ObjectType_AV, 0x201},
    {"camera", LayerKind::Camera, false, false, AEGP_ObjectType_CAMERA, 1},
    {"light", LayerKind::Light, false, false, AEGP_ObjectType_LIGHT, 1},
    {"text", LayerKind::Text, false, false, AEGP_ObjectType_TEXT, 1},
    {"shape", LayerKind::Shape, false, false, AEGP_ObjectType_VECTOR, 1},
};

TEST(LayerSuite, TellsKindsAndFlags) {
    for (const StateCase& c : stateCases) {
        SCOPED_TRACE(c.name);
        auto document = smallDocument();
        Layer& layer = *document->layers[child];
        layer.kind = c.kind;
        layer.hidden = c.hidden;
        layer.matteSource = c.matteSource;
        Session session(std::move(document));
        AEGP_ObjectType type = AEGP_ObjectType_NONE;
        AEGP_LayerFlags flags = 0;
        const auto& layers = session.table<AEGP_LayerSuite13>();
        EXPECT_EQ(layers.AEGP_GetLayerObjectType(session.layer(child), &type), A_Err_NONE);
        EXPECT_EQ(layers.AEGP_GetLayerFlags(session.layer(child), &flags), A_Err_NONE);
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(flags, c.flags);
    }
}

TEST(LayerSuite, SetsTheFlagsThatAFileHolds) {
    struct Case {
        AEGP_LayerFlags flag;
        bool Layer::*member;
        bool whenOn; ///< the member's value
    };
    constexpr Case cases[] = {
        {AEGP_LayerFlag_VIDEO_ACTIVE, &Layer::hidden, false},
        {AEGP_LayerFlag_MOTION_BLUR, &Layer::motionBlur, true},
        {AEGP_LayerFlag_AUTO_ORIENT_ROTATION, &Layer::autoOrient, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flag);
        auto document = smallDocument();
        Layer& layer = *document->layers[child];
        layer.*c.member = c.whenOn;
        Session session(std::move(document));
        const auto& layers = session.table<AEGP_LayerSuite13>();
        EXPECT_EQ(layers.AEGP_SetLayerFlag(session.layer(child), c.flag, 1), A_Err_NONE);
        EXPECT_FALSE(layer.changed) << "it is on";
        session.undoGroup("off");
        EXPECT_EQ(layers.AEGP_SetLayerFlag(session.layer(child), c.flag, 0), A_Err_NONE);
        session.endGroup();
        EXPECT_EQ(layer.*c.member, !c.whenOn);
        EXPECT_TRUE(layer.changed);
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(layer.*c.member, c.whenOn);
        EXPECT_FALSE(layer.changed);
    }
    Session session;
    EXPECT_NE(session.table<AEGP_LayerSuite13>().AEGP_SetLayerFlag(session.layer(child), AEGP_LayerFlag_GUIDE_LAYER, 1),
              A_Err_NONE);
    EXPECT_EQ(session.host.reports().size(), 1u);
}

} // namespace
} // namespace jostle::standalone
