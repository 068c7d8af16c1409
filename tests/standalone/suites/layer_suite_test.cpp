#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

constexpr double tolerance = 1e-9;

using Pair = std::pair<double, double>;

// The holder's scale (2, 1), then its quarter turn clockwise, take x to (0, 2) and y to (-1, 0): those are its rows,
// and its determinant is 2. The child's anchor, at (30, 0) in it, comes to (0, 60) + (100, 100). At 45 degrees, c =
// sqrt(1/2): rows (-c, 2c), (-c, -2c), so the turn is atan2(2, -1), x sqrt(2.5), y 2 / sqrt(2.5).
TEST(LayerSuite, KeepsALayerInPlaceWithoutAndUnderAParent) {
    // Its rotation and scale before and after.
    const std::tuple<const char*, double, Pair, double, Pair> cases[] = {
        {"the parent's own turn and scale", 0, {100, 100}, 90, {200, 100}},
        {"a mirrored layer stays mirrored in x", 0, {-100, 100}, 90, {-200, 100}},
        {"a layer mirrored in y", 0, {100, -50}, 90, {200, -50}},
        {"turns are counted on, not cut", 720, {100, 100}, 810, {200, 100}},
        {"a lean is lost, the area is not",
         45,
         {100, 100},
         116.56505117707799,
         {158.11388300841898, 126.49110640673517}},
    };
    for (const auto& [name, ownRotation, ownScale, rotation, scale] : cases) {
        SCOPED_TRACE(name);
        ReadResult read = richDocument();
        read.composition->layers[child]->transform.rotation.value[0] = ownRotation;
        read.composition->layers[child]->transform.scale.value = {ownScale.first, ownScale.second, 0};
        Session session(std::move(read));
        const A_Time start{0, 1};
        const AEGP_LayerH handle = session.layer(child);
        const A_Matrix4 before = got(session.layers().AEGP_GetLayerToWorldXform, handle, &start);
        const auto expectInPlace = [&](const char* when) {
            const A_Matrix4 matrix = got(session.layers().AEGP_GetLayerToWorldXform, handle, &start);
            for (int i = 0; i < 16; ++i)
                EXPECT_NEAR(matrix.mat[i / 4][i % 4], before.mat[i / 4][i % 4], tolerance) << when << i;
        };
        ASSERT_EQ(session.layers().AEGP_SetLayerParent(handle, nullptr), A_Err_NONE);
        EXPECT_EQ(got(session.layers().AEGP_GetLayerParent, handle), nullptr);
        const Layer& layer = session.outcome(child);
        EXPECT_EQ(layer.parentId, noParent);
        EXPECT_NEAR(layer.transform.position.value[0], 100, tolerance);
        EXPECT_NEAR(layer.transform.position.value[1], 160, tolerance);
        EXPECT_NEAR(layer.transform.rotation.value[0], rotation, tolerance);
        EXPECT_NEAR(layer.transform.scale.value[0], scale.first, tolerance);
        EXPECT_NEAR(layer.transform.scale.value[1], scale.second, tolerance);
        if (ownRotation == 45)
            continue;
        expectInPlace("without its parent");
        ASSERT_EQ(session.layers().AEGP_SetLayerParent(handle, session.layer(holder)), A_Err_NONE);
        expectInPlace("under it again");
        EXPECT_NEAR(layer.transform.position.value[0], 30, tolerance);
        ASSERT_EQ(session.layers().AEGP_DeleteLayer(session.layer(holder)), A_Err_NONE);
        expectInPlace("with the parent deleted");
        EXPECT_EQ(layer.parent, nullptr);
    }
}

TEST(LayerSuite, LeavesKeyframedStreamsAloneWhenUnparenting) {
    Session session;
    const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
    session.addKeys(rotation, {{0, 0}, {10, 90}});
    ASSERT_EQ(session.layers().AEGP_SetLayerParent(session.layer(child), nullptr), A_Err_NONE);
    EXPECT_EQ(session.outcome(child).transform.rotation.keys.values, (std::vector<double>{0, 90}));
    session.expectClean({rotation});
}

} // namespace
} // namespace jostle::standalone
