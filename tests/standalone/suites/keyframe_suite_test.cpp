#include "tests/standalone/suites/small_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

using Keys = std::vector<std::pair<A_long, double>>;

struct BatchCase {
    const char* name;
    Keys present, added;
    std::vector<double> frames, values;
};

const BatchCase batchCases[] = {
    {"in order, into a static stream", {}, {{0, 1}, {4, 2}}, {0, 4}, {1, 2}},
    {"out of order", {}, {{4, 2}, {0, 1}}, {0, 4}, {1, 2}},
    {"the last of two at one frame counts", {}, {{4, 2}, {0, 1}, {4, 3}}, {0, 4}, {1, 3}},
    {"between keys, before and after them",
     {{2, 20}, {6, 60}},
     {{0, 1}, {4, 4}, {8, 8}},
     {0, 2, 4, 6, 8},
     {1, 20, 4, 60, 8}},
    {"a key that stood there is replaced", {{2, 20}, {6, 60}}, {{6, 1}}, {2, 6}, {20, 1}},
};

TEST(KeyframeSuite, MergesABatchByTime) {
    for (const BatchCase& c : batchCases) {
        SCOPED_TRACE(c.name);
        Session session;
        const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
        if (!c.present.empty())
            session.addKeys(rotation, c.present);
        session.addKeys(rotation, c.added);
        const Stream& stream = session.host.outcome().layers[child]->transform.rotation;
        EXPECT_EQ(stream.keys.frames, c.frames);
        EXPECT_EQ(stream.keys.values, c.values);
        EXPECT_TRUE(stream.keys.segments.empty()) << "baked keys need no easing";
        session.dispose(rotation);
    }
}

TEST(KeyframeSuite, StraightensASegmentThatANewKeyCuts) {
    auto document = smallDocument();
    Stream& rotation = document->layers[child]->transform.rotation;
    rotation = keyedStream(0, 10);
    rotation.keys.segments.resize(2);
    rotation.keys.segments[0].linear = false;
    Session session(std::move(document));
    const AEGP_StreamRefH stream = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
    session.addKeys(stream, {{5, 8}});
    ASSERT_EQ(rotation.keys.segments.size(), 3u);
    EXPECT_TRUE(rotation.keys.segments[0].linear);
    session.dispose(stream);
}

TEST(KeyframeSuite, LeavesNothingOfADiscardedBatch) {
    Session session;
    const auto& keyframes = session.table<AEGP_KeyframeSuite4>();
    const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
    AEGP_AddKeyframesInfoH batch = nullptr;
    const A_Time start{0, 1};
    A_long index = -1;
    ASSERT_EQ(keyframes.AEGP_StartAddKeyframes(rotation, &batch), A_Err_NONE);
    EXPECT_EQ(keyframes.AEGP_AddKeyframes(batch, AEGP_LTimeMode_CompTime, &start, &index), A_Err_NONE);
    EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(0, batch), A_Err_NONE);
    EXPECT_NE(keyframes.AEGP_EndAddKeyframes(0, batch), A_Err_NONE) << "it is gone";
    EXPECT_FALSE(session.host.outcome().layers[child]->transform.rotation.changed);
    session.dispose(rotation);
}

TEST(KeyframeSuite, LeavesTheFirstKeysValueWhenAllKeysGo) {
    Session session;
    const auto& keyframes = session.table<AEGP_KeyframeSuite4>();
    const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
    session.addKeys(rotation, {{0, 7}, {5, 8}, {9, 9}});
    for (A_long index = 2; index >= 0; --index)
        EXPECT_EQ(keyframes.AEGP_DeleteKeyframe(rotation, index), A_Err_NONE);
    EXPECT_EQ(session.value(rotation, 5).one_d, 7);
    session.dispose(rotation);
}

TEST(KeyframeSuite, ReachesSeparatedDimensionsThroughTheFollowers) {
    Session session;
    const auto& tree = session.table<AEGP_DynamicStreamSuite5>();
    const auto& keyframes = session.table<AEGP_KeyframeSuite4>();
    const AEGP_StreamRefH leader = session.stream(session.layer(separated), AEGP_LayerStream_POSITION);
    AEGP_StreamRefH x = nullptr;
    A_Boolean answer = 0;
    EXPECT_EQ(tree.AEGP_AreDimensionsSeparated(leader, &answer), A_Err_NONE);
    EXPECT_TRUE(answer);
    ASSERT_EQ(tree.AEGP_GetSeparationFollower(leader, 0, &x), A_Err_NONE);
    // Linear from 0 at frame 0 to 100 at frame 10; y rests at 50.
    const AEGP_ThreeDVal half = session.value(leader, 5).three_d;
    EXPECT_NEAR(half.x, 50, 1e-9);
    EXPECT_NEAR(half.y, 50, 1e-9);
    EXPECT_EQ(session.table<AEGP_StreamSuite9>().AEGP_IsStreamTimevarying(leader, &answer), A_Err_NONE);
    EXPECT_TRUE(answer) << "one of its dimensions varies";
    for (A_long index = 1; index >= 0; --index)
        EXPECT_EQ(keyframes.AEGP_DeleteKeyframe(x, index), A_Err_NONE);
    EXPECT_EQ(session.set(leader, {1, 2, 0}), A_Err_NONE) << "no keys are in the way any more";
    EXPECT_EQ(session.value(leader, 5).three_d.x, 1);
    session.dispose(x);
    session.dispose(leader);
}

TEST(KeyframeSuite, CountsAValueThatIsTheSameAsNoChange) {
    Session session;
    const AEGP_StreamRefH position = session.stream(session.layer(child), AEGP_LayerStream_POSITION);
    const Stream& stream = session.host.outcome().layers[child]->transform.position;
    EXPECT_EQ(session.set(position, {30, 0, 0}), A_Err_NONE);
    EXPECT_FALSE(stream.changed);
    EXPECT_EQ(session.set(position, {30, 1, 0}), A_Err_NONE);
    EXPECT_TRUE(stream.changed);
    session.dispose(position);
}

TEST(Undo, TakesBackExactlyTheLastGroup) {
    Session session;
    const auto& comps = session.table<AEGP_CompSuite15>();
    const auto& layers = session.table<AEGP_LayerSuite13>();
    AEGP_CompH copy = nullptr;
    session.undoGroup("duplicate");
    ASSERT_EQ(comps.AEGP_DuplicateComp(session.comp(), &copy), A_Err_NONE);
    session.endGroup();
    const AEGP_LayerH layer = session.layer(child, copy);
    const AEGP_StreamRefH rotation = session.stream(layer, AEGP_LayerStream_ROTATION);
    const A_Time start{10, 25}, length{11, 25};

    session.undoGroup("export");
    EXPECT_NE(session.utility().AEGP_StartUndoGroup("inner"), A_Err_NONE) << "groups do not nest";
    session.addKeys(rotation, {{0, 1}, {4, 2}});
    EXPECT_EQ(layers.AEGP_SetLayerParent(layer, nullptr), A_Err_NONE);
    EXPECT_EQ(layers.AEGP_SetLayerFlag(layer, AEGP_LayerFlag_MOTION_BLUR, 1), A_Err_NONE);
    EXPECT_EQ(comps.AEGP_SetCompWorkAreaStartAndDuration(copy, &start, &length), A_Err_NONE);
    EXPECT_EQ(session.host.outcome().outFrame, 21); // 10 + 11, exclusive
    EXPECT_EQ(session.host.outcome().durationFrames, 100);
    EXPECT_NE(session.undo(), A_Err_NONE) << "not while a group is open";
    session.endGroup();

    ASSERT_EQ(session.undo(), A_Err_NONE);
    ASSERT_TRUE(session.host.duplicated()) << "made by the group before";
    const Composition& outcome = session.host.outcome();
    EXPECT_EQ(outcome.item->name, "Scene 2");
    EXPECT_EQ(outcome.outFrame, 100);
    EXPECT_EQ(outcome.layers[child]->parent, outcome.layers[holder].get());
    EXPECT_FALSE(outcome.layers[child]->motionBlur);
    EXPECT_FALSE(outcome.layers[child]->changed);
    EXPECT_TRUE(outcome.layers[child]->transform.rotation.keys.empty());
    EXPECT_EQ(outcome.layers[child]->transform.position.value[0], 30);

    ASSERT_EQ(session.undo(), A_Err_NONE);
    EXPECT_FALSE(session.host.duplicated());
    A_long count = 0;
    EXPECT_NE(layers.AEGP_GetCompNumLayers(copy, &count), A_Err_NONE) << "the duplicate is gone";
    EXPECT_NE(session.table<AEGP_KeyframeSuite4>().AEGP_GetStreamNumKFs(rotation, &count), A_Err_NONE);
    session.dispose(rotation); // still has to come back
    EXPECT_EQ(session.host.balance().streams, 0);
}

TEST(Undo, LeavesTheOriginalUntouchedByItsDuplicate) {
    auto document = smallDocument();
    const Composition& original = *document;
    Session session(std::move(document));
    AEGP_CompH copy = nullptr;
    ASSERT_EQ(session.table<AEGP_CompSuite15>().AEGP_DuplicateComp(session.comp(), &copy), A_Err_NONE);
    const AEGP_StreamRefH rotation = session.stream(session.layer(child, copy), AEGP_LayerStream_ROTATION);
    session.addKeys(rotation, {{0, 1}, {4, 2}});
    session.dispose(rotation);
    EXPECT_TRUE(original.layers[child]->transform.rotation.keys.empty());
    EXPECT_FALSE(session.host.outcome().layers[child]->transform.rotation.keys.empty());
}

} // namespace
} // namespace jostle::standalone
