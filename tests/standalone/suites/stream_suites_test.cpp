#include "standalone/suites/older_suites.h"
#include "tests/standalone/lottie/documents.h"
#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

constexpr auto leaf = AEGP_StreamGroupingType_LEAF;
constexpr auto named = AEGP_StreamGroupingType_NAMED_GROUP;
constexpr auto indexed = AEGP_StreamGroupingType_INDEXED_GROUP;
constexpr auto noData = AEGP_StreamType_NO_DATA;
constexpr auto oneD = AEGP_StreamType_OneD;
constexpr auto twoD = AEGP_StreamType_TwoD;
constexpr auto outline = AEGP_StreamType_MASK;
constexpr auto color = AEGP_StreamType_COLOR;
constexpr auto spatial = AEGP_StreamType_TwoD_SPATIAL;

TEST(TreeSuite, ShowsPlacesOfEveryKindAsAHostDoes) {
    Session session;
    const auto& tree = session.tree();
    // Layer, path, depth, match name, shown name, grouping, type, and of groups the number of children.
    const std::tuple<LayerIndex, const char*, A_long, const char*, const A_UTF16Char*, AEGP_StreamGroupingType,
                     AEGP_StreamType, A_long>
        cases[] = {
            {child, "", 0, "ADBE AV Layer", u"child", named, noData, 2},
            {holder, "ADBE Mask Parade", 1, "ADBE Mask Parade", u"Masks", indexed, noData, 0},
            {child, "0/1", 2, "ADBE Mask Atom", u"two", named, noData, 4},
            {child, "0/1/0", 3, "ADBE Mask Shape", u"Mask Path", leaf, outline, 0},
            {child, "0/1/1", 3, "ADBE Mask Feather", u"Mask Feather", leaf, twoD, 0},
            {separated, "ADBE Transform Group/ADBE Position_1", 2, "ADBE Position_1", u"Y Position", leaf, oneD, 0},
            {separated, "", 0, "ADBE Vector Layer", u"shape", named, noData, 3},
            {separated, "0/2", 2, "ADBE Vector Shape - Group", u"Path 3", named, noData, 1},
            {separated, "0/0/ADBE Vectors Group", 3, "ADBE Vectors Group", u"Contents", indexed, noData, 2},
            {separated, "0/0/0/1/ADBE Vector Fill Color", 5, "ADBE Vector Fill Color", u"Color", leaf, color, 0},
            {separated, "0/0/0/0/ADBE Vector Rect Position", 5, "ADBE Vector Rect Position", u"Position", leaf, spatial,
             0},
        };
    for (const auto& [layer, path, depth, matchName, shownName, grouping, type, children] : cases) {
        SCOPED_TRACE(std::string(matchName) + " at " + path);
        const AEGP_StreamRefH stream = session.place(layer, path);
        A_char name[AEGP_MAX_STREAM_MATCH_NAME_SIZE];
        EXPECT_EQ(tree.AEGP_GetMatchName(stream, name), A_Err_NONE);
        EXPECT_STREQ(name, matchName);
        EXPECT_EQ(session.nameOf(stream), shownName);
        EXPECT_EQ(got(tree.AEGP_GetStreamGroupingType, stream), grouping);
        EXPECT_EQ(got(session.streams().AEGP_GetStreamType, stream), type);
        EXPECT_EQ(got(tree.AEGP_GetStreamDepth, stream), depth);
        if (grouping != leaf) {
            EXPECT_EQ(got(tree.AEGP_GetNumStreamsInGroup, stream), children);
        }
        const auto [error, parent] = asked(tree.AEGP_GetNewParentStreamRef, session.id(), stream);
        EXPECT_EQ(error == A_Err_NONE, depth > 0);
        if (parent != nullptr) {
            EXPECT_EQ(got(tree.AEGP_GetStreamDepth, parent), depth - 1);
            session.dispose({parent});
        }
        session.dispose({stream});
    }
    const AEGP_StreamRefH root = session.root(session.layer(child));
    EXPECT_EQ(got(tree.AEGP_GetNewStreamRefByMatchname, session.id(), root, "ADBE Root Vectors Group"), nullptr);
    session.expectClean({root});
}

TEST(TreeSuite, CarriesColoursInTheirOwnForm) {
    Session session;
    const AEGP_StreamRefH fill = session.place(separated, "0/1/ADBE Vectors Group/1/ADBE Vector Fill Color");
    AEGP_StreamValue2 value = session.open(fill);
    EXPECT_EQ(value.val.color.alphaF, 1);
    EXPECT_EQ(value.val.color.redF, 1);
    value.val.color = {1, 0.25, 0.5, 0.75};
    EXPECT_EQ(session.streams().AEGP_SetStreamValue(1, fill, &value), A_Err_NONE);
    session.close(value);
    EXPECT_EQ(session.value(fill, 0).color.greenF, 0.5);
    EXPECT_EQ(session.value(fill, 0).color.blueF, 0.75);
    session.expectClean({fill});
}

TEST(KeyframeSuite, MergesABatchByTimeUnlessItIsDiscarded) {
    using Numbers = std::vector<double>;
    // Keys that are there, those of the batch, and what comes of them.
    const std::tuple<const char*, Keys, Keys, Numbers, Numbers> cases[] = {
        {"in order, into a static stream", {}, {{0, 1}, {4, 2}}, {0, 4}, {1, 2}},
        {"the last of two at one frame counts", {}, {{4, 2}, {0, 1}, {4, 3}}, {0, 4}, {1, 3}},
        {"between keys, before and after them",
         {{2, 20}, {6, 60}},
         {{0, 1}, {4, 4}, {8, 8}},
         {0, 2, 4, 6, 8},
         {1, 20, 4, 60, 8}},
        {"a key that stood there is replaced", {{2, 20}, {6, 60}}, {{6, 1}}, {2, 6}, {20, 1}},
    };
    for (const auto& [name, present, added, frames, values] : cases) {
        SCOPED_TRACE(name);
        Session session;
        const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, present);
        const AEGP_AddKeyframesInfoH discarded = got(session.keyframes().AEGP_StartAddKeyframes, rotation);
        session.addKey(discarded, 1);
        EXPECT_EQ(session.keyframes().AEGP_EndAddKeyframes(0, discarded), A_Err_NONE);
        session.addKeys(rotation, added);
        const Stream& stream = session.outcome(child).transform.rotation;
        EXPECT_EQ(stream.keys.frames, frames);
        EXPECT_EQ(stream.keys.values, values);
        EXPECT_TRUE(stream.keys.segments.empty()) << "baked keys need no easing";
        session.deleteKeys(rotation, static_cast<A_long>(frames.size()));
        EXPECT_EQ(session.value(rotation, 5).one_d, values.front()) << "the first key's value stays";
        session.expectClean({rotation});
    }
}

// What is known of a stream when a batch's first key is added may not hold for the next one.
TEST(KeyframeSuite, ABatchSeesWhatBecomesOfItsStream) {
    {
        Session session;
        const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, {{0, 10}, {20, 30}});
        session.inGroup([&] { session.deleteKeys(rotation, 2); });
        const AEGP_AddKeyframesInfoH batch = got(session.keyframes().AEGP_StartAddKeyframes, rotation);
        (void)session.addKey(batch, 5); // while it rests at 10
        EXPECT_EQ(session.undo(), A_Err_NONE);
        for (const A_long frame : {8, 10, 12}) // on the way from 10 to 30, by 1 in each frame
            (void)session.addKey(batch, frame);
        EXPECT_EQ(session.keyframes().AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
        const KeyTrack& keys = session.outcome(child).transform.rotation.keys;
        EXPECT_EQ(keys.frames, (std::vector<double>{0, 5, 8, 10, 12, 20}));
        EXPECT_EQ(keys.values, (std::vector<double>{10, 10, 18, 20, 22, 30}));
        session.expectClean({rotation});
    }
    for (const bool isDeleted : {true, false}) {
        SCOPED_TRACE(isDeleted ? "the layer is deleted" : "the stream is disposed of");
        Session session;
        const auto& keyframes = session.keyframes();
        const AEGP_StreamRefH rotation = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
        AEGP_StreamValue2 value = session.open(rotation);
        const AEGP_AddKeyframesInfoH batch = got(keyframes.AEGP_StartAddKeyframes, rotation);
        for (const A_long frame : {1, 2, 3}) // so that there is room for another one
            (void)session.addKey(batch, frame);
        if (isDeleted)
            EXPECT_EQ(session.layers().AEGP_DeleteLayer(session.layer(child)), A_Err_NONE);
        else
            session.dispose({rotation});
        for (int attempt = 0; attempt < 2; ++attempt) {
            const A_Time time{9, 25};
            EXPECT_EQ(keyframes.AEGP_SetAddKeyframe(batch, 0, &value), A_Err_PARAMETER);
            EXPECT_EQ(asked(keyframes.AEGP_AddKeyframes, batch, AEGP_LTimeMode_CompTime, &time).first, A_Err_PARAMETER);
        }
        EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(1, batch), A_Err_PARAMETER);
    }
}

TEST(KeyframeSuite, ReachesSeparatedDimensionsThroughTheFollowers) {
    Session session;
    const AEGP_StreamRefH leader = session.stream(session.layer(separated), AEGP_LayerStream_POSITION);
    EXPECT_TRUE(got(session.tree().AEGP_AreDimensionsSeparated, leader));
    const AEGP_StreamRefH x = got(session.tree().AEGP_GetSeparationFollower, leader, A_short{0});
    EXPECT_TRUE(got(session.streams().AEGP_IsStreamTimevarying, leader)) << "one of its dimensions varies";
    session.deleteKeys(x, 2);
    EXPECT_EQ(session.set(leader, {1, 2, 0}), A_Err_NONE) << "no keys are in the way any more";
    EXPECT_EQ(session.value(leader, 5).three_d.x, 1);
    session.expectClean({x, leader});
}

TEST(KeyframeSuite, BatchesOutlinesAsItDoesNumbers) {
    Session session;
    const auto& keyframes = session.keyframes();
    const AEGP_StreamRefH shape = session.place(child, "0/0/ADBE Mask Shape");
    const AEGP_StreamRefH other = session.place(child, "0/1/ADBE Mask Shape");
    AEGP_StreamValue2 value = session.open(other);
    const AEGP_AddKeyframesInfoH batch = got(keyframes.AEGP_StartAddKeyframes, shape);
    EXPECT_EQ(keyframes.AEGP_SetAddKeyframe(batch, session.addKey(batch, 8), &value), A_Err_NONE);
    (void)session.addKey(batch, 2); // stays at the present value
    EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
    const PathStream& path =
        *childOf(*session.outcome(child).tree->children[0]->children[0], NodeKind::MaskShape)->path;
    EXPECT_EQ(path.frames, (std::vector<double>{2, 8}));
    EXPECT_EQ(path.values, (std::vector<PathValue>{square(10), square(20)}));
    EXPECT_TRUE(got(session.streams().AEGP_IsStreamTimevarying, shape));
    session.deleteKeys(shape, 2);
    EXPECT_EQ(path.value, square(10)) << "the first key's value stays";
    session.close(value);
    session.expectClean({shape, other});
}

// Twice as wide about the anchor, which stands at (100, 100): vertex 3 to the right of it comes to (106, 100), its
// handles 2 to the left, and 2 right and 2 down. The turn of the layer must not show.
TEST(TextLayerSuite, TakesTheTurnOutOfGlyphs) {
    const char* const glyphs =
        R"("fonts":{"list":[{"fName":"F","fFamily":"F","fStyle":"S"}]},"chars":[{"ch":"A","fFamily":"F","style":"S",)"
        R"("w":9,"data":{"shapes":[{"ty":"gr","it":[{"ty":"sh","ks":{"k":{"c":true,"v":[[13,5],[10,9],[10,5]],)"
        R"("i":[[-1,0]],"o":[[1,2]]}}}]}]}}],)";
    const char* const text = R"({"ty":5,"t":{"d":{"k":[{"t":0,"s":{"t":"A","s":100,"f":"F"}}]}},)"
                             R"("ks":{"a":{"k":[10,5]},"p":{"k":[100,100]},"s":{"k":[200,100]},"r":{"k":)";
    for (const char* turn : {"0", "90", "-30", "400"}) {
        SCOPED_TRACE(turn);
        Session session(readLottie(documentOf(std::string(text) + turn + R"(}}},{"ty":3})", glyphs), "a.json"));
        const auto& texts = session.table<AEGP_TextLayerSuite1>();
        const auto& paths = session.table<PF_PathDataSuite1>();
        const A_Time start{0, 1};
        const AEGP_TextOutlinesH outlines = got(texts.AEGP_GetNewTextOutlines, session.layer(0), &start);
        EXPECT_NE(asked(texts.AEGP_GetIndexedTextOutline, outlines, 1).first, A_Err_NONE);
        const PF_PathOutlinePtr glyph = got(texts.AEGP_GetIndexedTextOutline, outlines, 0);
        EXPECT_NE(asked(paths.PF_PathVertexInfo, nullptr, glyph, 4).first, A_Err_NONE);
        const PF_PathVertex v = got(paths.PF_PathVertexInfo, nullptr, glyph, 3); // the first again
        const double seen[] = {v.x, v.y, v.tan_in_x, v.tan_in_y, v.tan_out_x, v.tan_out_y};
        constexpr double expected[] = {106, 100, 104, 100, 108, 102};
        for (int i = 0; i < 6; ++i)
            EXPECT_NEAR(seen[i], expected[i], 1e-9) << i;
        EXPECT_EQ(texts.AEGP_DisposeTextOutlines(outlines), A_Err_NONE);
        EXPECT_EQ(got(texts.AEGP_GetNewTextOutlines, session.layer(1), &start), nullptr) << "a null has no text";
        session.expectClean();
    }
}

/// Calls a function by the slot at which an older version publishes it.
template<class Suite, class... Parameters>
void callAt(std::size_t slot, Session& session, Parameters... parameters) {
    const auto call = reinterpret_cast<A_Err (*)(Parameters...)>(session.table<Suite>().slots[slot]);
    EXPECT_EQ(call(parameters...), A_Err_NONE) << Suite::suiteName << ' ' << slot;
}

/// What such a call gives at its last parameter.
template<class Suite, class Answer, class... Parameters>
Answer gotAt(std::size_t slot, Session& session, Parameters... parameters) {
    Answer answer{};
    callAt<Suite>(slot, session, parameters..., &answer);
    return answer;
}

TEST(OlderSuites, HaveTheirOwnSlotsAndDoNotOverrunBuffersOfNames) {
    ReadResult read = richDocument();
    read.composition->layers[child]->name =
        std::string(30, 'n') + "\xC3\xA9"; // with the last character 32 bytes, and no end
    Session session(std::move(read));
    A_char name[33];
    A_char source[AEGP_MAX_LAYER_NAME_SIZE];
    name[32] = 'x';
    callAt<AEGP_LayerSuite11>(7, session, session.layer(child), &name[0], &source[0]);
    EXPECT_EQ(std::string(name), std::string(30, 'n'));
    EXPECT_EQ(name[32], 'x');
    EXPECT_STREQ(source, "Solid");
    callAt<AEGP_LayerSuite11>(40, session, session.layer(child), "short");
    EXPECT_EQ(session.outcome(child).name, "short");
    const auto item = gotAt<AEGP_ItemSuite11, AEGP_ItemH>(2, session);
    callAt<AEGP_ItemSuite11>(7, session, item, &name[0]);
    EXPECT_STREQ(name, "Scene");
    const A_Time none{0, 0};
    const auto comp = gotAt<AEGP_CompSuite11, AEGP_CompH>(0, session, item);
    EXPECT_EQ((gotAt<AEGP_CompSuite11, A_Time>(28, session, comp).scale), 25u) << "behind calls that were added later";
    const auto made = gotAt<AEGP_CompSuite11, AEGP_LayerH>(23, session, "centre", comp, &none);
    EXPECT_EQ(session.outcome(0).name, "centre");
    const auto root = gotAt<AEGP_DynamicStreamSuite2, AEGP_StreamRefH>(0, session, session.id(), made);
    callAt<AEGP_StreamSuite7>(8, session, root, A_Boolean{0}, &name[0]);
    EXPECT_STREQ(name, "centre");
    callAt<AEGP_DynamicStreamSuite3>(14, session, root, &name[0]);
    EXPECT_STREQ(name, "ADBE AV Layer");
    callAt<AEGP_StreamSuite8>(7, session, root);
    callAt<AEGP_UtilitySuite7>(5, session, "older");
    callAt<AEGP_UtilitySuite7>(6, session);
    session.expectClean();
}

} // namespace
} // namespace jostle::standalone
