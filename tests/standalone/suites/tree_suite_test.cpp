#include "standalone/suites/older_suites.h"
#include "tests/standalone/suites/rich_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

struct PlaceCase {
    const char* name;
    LayerIndex layer;
    std::initializer_list<const char*> path;
    const char* matchName;
    const char16_t* displayName;
    AEGP_StreamGroupingType grouping;
    AEGP_StreamType type;
    A_long children;
};

constexpr auto noData = AEGP_StreamType_NO_DATA;
constexpr auto leaf = AEGP_StreamGroupingType_LEAF;
constexpr auto named = AEGP_StreamGroupingType_NAMED_GROUP;
constexpr auto indexed = AEGP_StreamGroupingType_INDEXED_GROUP;

const PlaceCase placeCases[] = {
    {"root of a solid", child, {}, "ADBE AV Layer", u"child", named, noData, 2},
    {"root of a shape", separated, {}, "ADBE Vector Layer", u"shape", named, noData, 3},
    {"masks come before the transform", child, {"0"}, "ADBE Mask Parade", u"Masks", indexed, noData, 2},
    {"an empty list of masks", holder, {"ADBE Mask Parade"}, "ADBE Mask Parade", u"Masks", indexed, noData, 0},
    {"a mask", child, {"0", "1"}, "ADBE Mask Atom", u"two", named, noData, 4},
    {"its outline", child, {"0", "1", "0"}, "ADBE Mask Shape", u"Mask Path", leaf, AEGP_StreamType_MASK, -1},
    {"its feather", child, {"0", "1", "1"}, "ADBE Mask Feather", u"Mask Feather", leaf, AEGP_StreamType_TwoD, -1},
    {"its opacity", child, {"0", "1", "2"}, "ADBE Mask Opacity", u"Mask Opacity", leaf, AEGP_StreamType_OneD, -1},
    {"its expansion", child, {"0", "1", "3"}, "ADBE Mask Offset", u"Mask Expansion", leaf, AEGP_StreamType_OneD, -1},
    {"contents come first", separated, {"0"}, "ADBE Root Vectors Group", u"Contents", indexed, noData, 3},
    {"a group", separated, {"0", "0"}, "ADBE Vector Group", u"first", named, noData, 2},
    {"an element without a name", separated, {"0", "2"}, "ADBE Vector Shape - Group", u"Path 3", named, noData, 1},
    {"its path", separated, {"0", "2", "0"}, "ADBE Vector Shape", u"Path", leaf, AEGP_StreamType_MASK, -1},
    {"what a group holds",
     separated,
     {"0", "0", "ADBE Vectors Group"},
     "ADBE Vectors Group",
     u"Contents",
     indexed,
     noData,
     2},
    {"a colour",
     separated,
     {"0", "0", "ADBE Vectors Group", "1", "ADBE Vector Fill Color"},
     "ADBE Vector Fill Color",
     u"Color",
     leaf,
     AEGP_StreamType_COLOR,
     -1},
    {"a centre",
     separated,
     {"0", "0", "ADBE Vectors Group", "0", "ADBE Vector Rect Position"},
     "ADBE Vector Rect Position",
     u"Position",
     leaf,
     AEGP_StreamType_TwoD_SPATIAL,
     -1},
    {"the transform has five streams",
     child,
     {"ADBE Transform Group"},
     "ADBE Transform Group",
     u"Transform",
     named,
     noData,
     5},
    {"opacity is the last of them",
     child,
     {"ADBE Transform Group", "4"},
     "ADBE Opacity",
     u"Opacity",
     leaf,
     AEGP_StreamType_OneD,
     -1},
    {"a single dimension",
     separated,
     {"ADBE Transform Group", "ADBE Position_1"},
     "ADBE Position_1",
     u"Y Position",
     leaf,
     AEGP_StreamType_OneD,
     -1},
};

TEST(TreeSuite, ShowsEveryPlaceAsAHostDoes) {
    RichSession session;
    for (const PlaceCase& c : placeCases) {
        SCOPED_TRACE(c.name);
        const AEGP_StreamRefH stream = session.below(session.root(session.layer(c.layer)), c.path);
        A_char matchName[AEGP_MAX_STREAM_MATCH_NAME_SIZE];
        EXPECT_EQ(session.tree().AEGP_GetMatchName(stream, matchName), A_Err_NONE);
        EXPECT_STREQ(matchName, c.matchName);
        EXPECT_EQ(session.nameOf(stream), c.displayName);
        AEGP_StreamGroupingType grouping = AEGP_StreamGroupingType_NONE;
        AEGP_StreamType type = AEGP_StreamType_ARB;
        A_long depth = -1, children = -1;
        EXPECT_EQ(session.tree().AEGP_GetStreamGroupingType(stream, &grouping), A_Err_NONE);
        EXPECT_EQ(grouping, c.grouping);
        EXPECT_EQ(session.streams().AEGP_GetStreamType(stream, &type), A_Err_NONE);
        EXPECT_EQ(type, c.type);
        EXPECT_EQ(session.tree().AEGP_GetStreamDepth(stream, &depth), A_Err_NONE);
        EXPECT_EQ(depth, static_cast<A_long>(c.path.size()));
        if (c.children >= 0) {
            EXPECT_EQ(session.tree().AEGP_GetNumStreamsInGroup(stream, &children), A_Err_NONE);
            EXPECT_EQ(children, c.children);
        }
        AEGP_StreamRefH parent = nullptr;
        EXPECT_EQ(session.tree().AEGP_GetNewParentStreamRef(1, stream, &parent) == A_Err_NONE, depth > 0);
        if (parent != nullptr)
            session.dispose(parent);
        session.dispose(stream);
    }
    session.expectClean();
}

TEST(TreeSuite, CarriesColoursAndOutlinesInTheirOwnForms) {
    RichSession session;
    const AEGP_LayerH shape = session.layer(separated);
    const AEGP_StreamRefH color =
        session.below(session.root(shape), {"0", "1", "ADBE Vectors Group", "1", "ADBE Vector Fill Color"});
    AEGP_StreamValue2 value = session.open(color);
    EXPECT_EQ(value.val.color.alphaF, 1);
    EXPECT_EQ(value.val.color.redF, 1);
    value.val.color = {1, 0.25, 0.5, 0.75};
    EXPECT_EQ(session.streams().AEGP_SetStreamValue(1, color, &value), A_Err_NONE);
    session.close(value);
    EXPECT_EQ(session.value(color, 0).color.greenF, 0.5);
    EXPECT_EQ(session.value(color, 0).color.blueF, 0.75);
    session.dispose(color);

    // An outline read from one place and set at another is a copy.
    const AEGP_LayerH masked = session.layer(child);
    session.copyValue(session.below(session.root(masked), {"0", "0", "ADBE Mask Shape"}),
                      session.below(session.root(shape), {"0", "2", "ADBE Vector Shape"}));
    const Layer& layer = *session.host.outcome().layers[separated];
    const TreeNode& path = *childOf(*layer.tree->children[0]->children[2], NodeKind::PathShape);
    EXPECT_EQ(path.path->value, square(10));
    EXPECT_TRUE(path.path->changed);
    session.expectClean();
}

TEST(TreeSuite, BatchesOutlinesAsItDoesNumbers) {
    RichSession session;
    const auto& keyframes = session.table<AEGP_KeyframeSuite4>();
    const AEGP_StreamRefH shape = session.below(session.root(session.layer(child)), {"0", "0", "ADBE Mask Shape"});
    const AEGP_StreamRefH other = session.below(session.root(session.layer(child)), {"0", "1", "ADBE Mask Shape"});
    AEGP_StreamValue2 value = session.open(other);
    AEGP_AddKeyframesInfoH batch = nullptr;
    ASSERT_EQ(keyframes.AEGP_StartAddKeyframes(shape, &batch), A_Err_NONE);
    for (const A_long frame : {8, 2}) { // the second stays at the present value
        const A_Time time{frame, 25};
        A_long index = -1;
        EXPECT_EQ(keyframes.AEGP_AddKeyframes(batch, AEGP_LTimeMode_CompTime, &time, &index), A_Err_NONE);
        if (frame == 8) {
            EXPECT_EQ(keyframes.AEGP_SetAddKeyframe(batch, index, &value), A_Err_NONE);
        }
    }
    EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
    const PathStream& path =
        *childOf(*session.host.outcome().layers[child]->tree->children[0]->children[0], NodeKind::MaskShape)->path;
    EXPECT_EQ(path.frames, (std::vector<double>{2, 8}));
    EXPECT_EQ(path.values, (std::vector<PathValue>{square(10), square(20)}));
    A_Boolean varies = 0;
    EXPECT_EQ(session.streams().AEGP_IsStreamTimevarying(shape, &varies), A_Err_NONE);
    EXPECT_TRUE(varies);
    for (A_long index = 1; index >= 0; --index)
        EXPECT_EQ(keyframes.AEGP_DeleteKeyframe(shape, index), A_Err_NONE);
    EXPECT_EQ(path.value, square(10)) << "the first key's value stays";
    session.close(value);
    session.dispose(shape);
    session.dispose(other);
    session.expectClean();
}

TEST(TreeSuite, ReadsAndClearsExpressions) {
    auto document = richDocument();
    Stream& rotation = document->layers[child]->transform.rotation;
    rotation.hasExpression = rotation.expressionEnabled = true;
    rotation.source = {7, 9};
    RichSession session(std::move(document));
    const AEGP_StreamRefH stream = session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
    AEGP_MemHandle text = nullptr;
    void* content = nullptr;
    const auto& memory = session.table<AEGP_MemorySuite1>();
    ASSERT_EQ(session.streams().AEGP_GetExpression(1, stream, &text), A_Err_NONE);
    ASSERT_EQ(memory.AEGP_LockMemHandle(text, &content), A_Err_NONE);
    EXPECT_STREQ(static_cast<const char*>(content), "expression at 7");
    EXPECT_EQ(memory.AEGP_UnlockMemHandle(text), A_Err_NONE);
    EXPECT_EQ(memory.AEGP_FreeMemHandle(text), A_Err_NONE);
    EXPECT_EQ(session.streams().AEGP_SetExpression(1, stream, "expression at 7"), A_Err_NONE) << "what it has";
    EXPECT_NE(session.streams().AEGP_SetExpression(1, stream, "another"), A_Err_NONE);
    EXPECT_TRUE(rotation.expressionEnabled);
    EXPECT_EQ(session.streams().AEGP_SetExpression(1, stream, ""), A_Err_NONE);
    EXPECT_FALSE(rotation.hasExpression);
    EXPECT_TRUE(rotation.changed);
    EXPECT_NE(session.streams().AEGP_SetExpressionState(1, stream, 1), A_Err_NONE) << "there is none any more";
    session.dispose(stream);
    session.expectClean();
}

TEST(TreeSuite, SeparatesAndJoinsDimensions) {
    RichSession session;
    const AEGP_StreamRefH position = session.stream(session.layer(separated), AEGP_LayerStream_POSITION);
    Transform& transform = session.host.outcome().layers[separated]->transform;
    const std::string before = session.document();
    session.undoGroup("join");
    // x runs from 0 to 100 in 10 frames, y rests at 50.
    EXPECT_EQ(session.tree().AEGP_SetDimensionsSeparated(position, 0), A_Err_NONE);
    session.endGroup();
    EXPECT_EQ(transform.position.keys.frames, (std::vector<double>{0, 10}));
    EXPECT_EQ(transform.position.keys.values, (std::vector<double>{0, 50, 100, 50}));
    session.undoGroup("separate");
    EXPECT_EQ(session.tree().AEGP_SetDimensionsSeparated(position, 1), A_Err_NONE);
    session.endGroup();
    EXPECT_EQ(transform.positionY.keys.values, (std::vector<double>{50, 50}));
    EXPECT_NEAR(session.value(position, 5).three_d.x, 50, 1e-9);
    EXPECT_EQ(session.undo(), A_Err_NONE);
    EXPECT_FALSE(transform.separated);
    EXPECT_EQ(session.undo(), A_Err_NONE);
    EXPECT_EQ(session.document(), before);
    session.dispose(position);
    session.expectClean();
}

TEST(TextLayerSuite, TakesTheTurnOutOfGlyphs) {
    // Twice as wide about the anchor, which stands at (100, 100): vertex 3 to the right of it comes to (106, 100), its
    // handles 2 to the left, and 2 right and 2 down. The turn of the layer must not show.
    for (const double turn : {0.0, 90.0, -30.0, 400.0}) {
        SCOPED_TRACE(turn);
        auto document = richDocument();
        Layer& layer = *document->layers[child];
        layer.kind = LayerKind::Text;
        layer.parent = nullptr;
        layer.transform.position = staticStream(2, 100, 100);
        layer.transform.scale = staticStream(2, 200, 100);
        layer.transform.rotation = staticStream(1, turn);
        RichSession session(std::move(document));
        const auto& texts = session.table<AEGP_TextLayerSuite1>();
        const auto& paths = session.table<PF_PathDataSuite1>();
        const A_Time start{0, 1};
        AEGP_TextOutlinesH outlines = nullptr;
        PF_PathOutlinePtr glyph = nullptr;
        A_long count = 0;
        PF_Boolean open = 1;
        PF_PathVertex v{};
        EXPECT_EQ(texts.AEGP_GetNewTextOutlines(session.layer(child), &start, &outlines), A_Err_NONE);
        EXPECT_EQ(texts.AEGP_GetNumTextOutlines(outlines, &count), A_Err_NONE);
        EXPECT_EQ(count, 2);
        EXPECT_EQ(texts.AEGP_GetIndexedTextOutline(outlines, 0, &glyph), A_Err_NONE);
        EXPECT_NE(texts.AEGP_GetIndexedTextOutline(outlines, 2, &glyph), A_Err_NONE);
        EXPECT_EQ(paths.PF_PathIsOpen(nullptr, glyph, &open), A_Err_NONE);
        EXPECT_FALSE(open);
        EXPECT_EQ(paths.PF_PathNumSegments(nullptr, glyph, &count), A_Err_NONE);
        EXPECT_EQ(count, 3);
        EXPECT_EQ(paths.PF_PathVertexInfo(nullptr, glyph, 3, &v), A_Err_NONE) << "the first again";
        EXPECT_NE(paths.PF_PathVertexInfo(nullptr, glyph, 4, &v), A_Err_NONE);
        const double got[] = {v.x, v.y, v.tan_in_x, v.tan_in_y, v.tan_out_x, v.tan_out_y};
        constexpr double expected[] = {106, 100, 104, 100, 108, 102};
        for (int i = 0; i < 6; ++i)
            EXPECT_NEAR(got[i], expected[i], 1e-9) << i;
        EXPECT_EQ(session.host.balance().textOutlines, 1);
        EXPECT_EQ(texts.AEGP_DisposeTextOutlines(outlines), A_Err_NONE);
        outlines = nullptr;
        EXPECT_EQ(texts.AEGP_GetNewTextOutlines(session.layer(child), &start, &outlines), A_Err_NONE);
        EXPECT_EQ(texts.AEGP_DisposeTextOutlines(outlines), A_Err_NONE);
        EXPECT_EQ(session.host.reports(), (std::vector<std::string>{"Some Font was replaced"})) << "told once";
        EXPECT_EQ(texts.AEGP_GetNewTextOutlines(session.layer(holder), &start, &outlines), A_Err_NONE);
        EXPECT_EQ(outlines, nullptr) << "a null has no text";
        session.expectClean();
    }
}

/// Calls a function by the slot at which an older version publishes it.
template<class Suite, class... Parameters>
A_Err callAt(std::size_t slot, RichSession& session, Parameters... parameters) {
    return reinterpret_cast<A_Err (*)(Parameters...)>(session.table<Suite>().slots[slot])(parameters...);
}

TEST(OlderSuites, NameThingsInBuffersThatTheyDoNotOverrun) {
    auto document = richDocument();
    document->layers[child]->name = std::string(30, 'n') + "\xC3\xA9"; // with the last character 32 bytes, and no end
    RichSession session(std::move(document));
    A_char name[33];
    A_char source[AEGP_MAX_LAYER_NAME_SIZE];
    name[32] = 'x';
    EXPECT_EQ(callAt<AEGP_LayerSuite11>(7, session, session.layer(child), &name[0], &source[0]), A_Err_NONE);
    EXPECT_EQ(std::string(name), std::string(30, 'n'));
    EXPECT_EQ(name[32], 'x');
    EXPECT_STREQ(source, "Solid");
    EXPECT_EQ(callAt<AEGP_LayerSuite11>(40, session, session.layer(child), "short"), A_Err_NONE);
    EXPECT_EQ(session.host.outcome().layers[child]->name, "short");
    AEGP_ItemH item = nullptr;
    EXPECT_EQ(callAt<AEGP_ItemSuite11>(2, session, &item), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_ItemSuite11>(7, session, item, &name[0]), A_Err_NONE);
    EXPECT_STREQ(name, "Scene");
    AEGP_CompH comp = nullptr;
    AEGP_LayerH made = nullptr;
    const A_Time length{4, 25};
    EXPECT_EQ(callAt<AEGP_CompSuite11>(0, session, item, &comp), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_CompSuite11>(23, session, "centre", comp, &length, &made), A_Err_NONE);
    EXPECT_EQ(session.host.outcome().layers[0]->name, "centre");
    A_Time frame{};
    EXPECT_EQ(callAt<AEGP_CompSuite11>(28, session, comp, &frame), A_Err_NONE);
    EXPECT_EQ(frame.scale, 25u * static_cast<A_u_long>(frame.value));
    AEGP_StreamRefH root = nullptr, transform = nullptr;
    A_char matchName[AEGP_MAX_STREAM_MATCH_NAME_SIZE];
    EXPECT_EQ(callAt<AEGP_DynamicStreamSuite2>(0, session, session.id(), made, &root), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_DynamicStreamSuite2>(7, session, session.id(), root, "ADBE Transform Group", &transform),
              A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_DynamicStreamSuite3>(14, session, transform, &matchName[0]), A_Err_NONE);
    EXPECT_STREQ(matchName, "ADBE Transform Group");
    EXPECT_EQ(callAt<AEGP_StreamSuite7>(8, session, root, A_Boolean{0}, &name[0]), A_Err_NONE);
    EXPECT_STREQ(name, "centre");
    EXPECT_EQ(callAt<AEGP_StreamSuite8>(7, session, root), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_StreamSuite8>(7, session, transform), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_UtilitySuite7>(5, session, "older"), A_Err_NONE);
    EXPECT_EQ(callAt<AEGP_UtilitySuite7>(6, session), A_Err_NONE);
    session.expectClean();
}

} // namespace
} // namespace jostle::standalone
