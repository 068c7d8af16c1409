#include "host/separation.h"
#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

struct OutlineCase {
    const char* name;
    PathValue outline;
    A_long segments;
    bool lastIsFirst; ///< the vertex whose index is the number of segments
};

const OutlineCase outlineCases[] = {
    {"closed", square(10), 4, true},
    {"open", {square(10).vertices, false}, 3, false},
    {"closed, of one vertex", {{{1, 2}}, true}, 1, true},
    {"open, of one vertex", {{{1, 2}}, false}, 0, true},
};

TEST(MaskSuite, CountsSegmentsOfOpenAndClosedOutlines) {
    for (const OutlineCase& c : outlineCases) {
        SCOPED_TRACE(c.name);
        auto document = richDocument();
        childOf(*document->layers[child]->tree->children[1]->children[0], NodeKind::MaskShape)->path->value = c.outline;
        Session session(std::move(document));
        const auto& outlines = session.outlines();
        const AEGP_StreamRefH shape = session.place(child, "0/0/0");
        AEGP_StreamValue2 value = session.open(shape);
        const AEGP_MaskOutlineValH outline = value.val.mask;
        EXPECT_EQ(got(outlines.AEGP_IsMaskOutlineOpen, outline) != 0, !c.outline.closed);
        EXPECT_EQ(got(outlines.AEGP_GetMaskOutlineNumSegments, outline), c.segments);
        const AEGP_MaskVertex first = got(outlines.AEGP_GetMaskOutlineVertexInfo, outline, 0);
        const AEGP_MaskVertex last = got(outlines.AEGP_GetMaskOutlineVertexInfo, outline, c.segments);
        EXPECT_EQ(first.x == last.x && first.y == last.y, c.lastIsFirst);
        for (const A_long beyond : {-1, c.segments + 1})
            EXPECT_NE(asked(outlines.AEGP_GetMaskOutlineVertexInfo, outline, beyond).first, A_Err_NONE) << beyond;
        EXPECT_EQ(session.host.balance().maskOutlines, 1);
        session.close(value);
        session.expectClean({shape});
    }
}

TEST(Structure, MasksBecomeLayersOfTheirOwn) {
    auto document = richDocument();
    document->layers[child]->tree->children[1]->children[1]->rotoBezier = true;
    Session session(std::move(document));
    session.makeTrees();
    const std::string before = session.document();
    separateLayers({session.host.basic(), session.id()}, std::vector<int>{child}, nullptr, {});
    ASSERT_EQ(session.outcome().layers.size(), 5u);
    const struct {
        const char* name;
        int id; ///< 7 is the greatest of the file and 8 was the empty copy's
        double size;
        bool rotoBezier;
    } expected[] = {{"one", 9, 10, false}, {"two", 10, 20, true}};
    for (std::size_t i = 0; i < 2; ++i) {
        const Layer& layer = session.outcome(i);
        EXPECT_EQ(layer.name, expected[i].name);
        EXPECT_EQ(layer.id, expected[i].id);
        EXPECT_FALSE(layer.idInFile);
        EXPECT_EQ(layer.parent, &session.outcome(4)) << "as the source has it";
        const TreeNode& masks = *childOf(*layer.tree, NodeKind::MaskParade);
        EXPECT_TRUE(masks.listChanged);
        ASSERT_EQ(masks.children.size(), 1u);
        EXPECT_EQ(masks.children[0]->rotoBezier, expected[i].rotoBezier);
        EXPECT_EQ(childOf(*masks.children[0], NodeKind::MaskShape)->path->value, square(expected[i].size));
        EXPECT_EQ(childOf(*masks.children[0], NodeKind::MaskOpacity)->stream->value[0], expected[i].size);
    }
    EXPECT_TRUE(session.outcome(2).hidden) << "the source stays, below";
    EXPECT_EQ(childOf(*session.outcome(2).tree, NodeKind::MaskParade)->children.size(), 2u);
    EXPECT_EQ(session.undo(), A_Err_NONE);
    EXPECT_EQ(session.document(), before);
    session.expectClean();
}

TEST(Structure, GroupsAreCopiedToNewLayers) {
    Session session;
    const AEGP_LayerH source = session.layer(separated);
    const AEGP_LayerH made = got(session.comps().AEGP_CreateVectorLayerInComp, session.comp());
    EXPECT_NE(session.command(hostCommandPaste), A_Err_NONE) << "there is nothing to paste";
    EXPECT_NE(session.copy(session.root(source)), A_Err_NONE) << "a root cannot be copied";
    EXPECT_EQ(session.copy(session.below(session.root(source), "0/1")), A_Err_NONE);
    EXPECT_EQ(session.paste(session.below(session.root(made), "ADBE Root Vectors Group")), A_Err_NONE);
    EXPECT_EQ(session.command(hostCommandPaste), A_Err_NONE) << "as often as one likes";
    EXPECT_NE(session.paste(session.root(session.layer(3))), A_Err_NONE) << "a null has no contents";

    const Layer& layer = session.outcome(0);
    EXPECT_EQ(layer.kind, LayerKind::Shape);
    EXPECT_EQ(layer.name, "Shape Layer 1");
    EXPECT_EQ(layer.outFrame, 100);
    EXPECT_EQ(layer.transform.position.value, (Components{160, 120, 0}));
    const TreeNode& contents = *childOf(*layer.tree, NodeKind::VectorsRoot);
    ASSERT_EQ(contents.children.size(), 2u);
    EXPECT_TRUE(contents.listChanged);
    const TreeNode& copy = *contents.children[0];
    EXPECT_EQ(copy.name, "second");
    const TreeNode& original = *childOf(*session.outcome(2).tree, NodeKind::VectorsRoot)->children[1];
    EXPECT_EQ(described(copy), described(original));
    EXPECT_NE(childOf(copy, NodeKind::GroupContents)->children[0],
              childOf(original, NodeKind::GroupContents)->children[0]);
    session.expectClean();
}

TEST(Structure, NullsStandInTheMiddle) {
    Session session;
    const A_Time second{1, 1}, whole{0, 0};
    const struct {
        const A_UTF16Char* name;
        const A_Time* duration;
        const A_UTF16Char* shownName;
        const char* nameInFile;
        double outFrame;
    } cases[] = {
        {nullptr, nullptr, u"Null 1", "Null 1", 100},
        {u"", &whole, u"Null 2", "Null 2", 100},
        {u"\u00FC\U0001F600", &second, u"\u00FC\U0001F600", "\xC3\xBC\xF0\x9F\x98\x80", 25},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.nameInFile);
        const AEGP_LayerH made = got(session.comps().AEGP_CreateNullInComp, c.name, session.comp(), c.duration);
        const Layer& layer = session.outcome(0);
        EXPECT_EQ(layer.name, c.nameInFile);
        EXPECT_EQ(layer.outFrame, c.outFrame);
        EXPECT_EQ(layer.transform.position.value, (Components{160, 120, 0}));
        EXPECT_EQ(layer.transform.opacity.value[0], 0);
        EXPECT_TRUE(got(session.layers().AEGP_GetLayerFlags, made) & AEGP_LayerFlag_NULL_LAYER);
        AEGP_MemHandle name = nullptr;
        EXPECT_EQ(session.layers().AEGP_GetLayerName(1, made, &name, nullptr), A_Err_NONE);
        EXPECT_EQ(session.takeText(name), c.shownName);
    }
    session.expectClean();
}

TEST(Structure, ReordersLayers) {
    const struct {
        const char* name;
        A_long from, to;
        const char* order; ///< first letters
    } cases[] = {
        {"down", 0, 1, "sch"},
        {"up", 2, 0, "hcs"},
        {"to the end", 0, AEGP_REORDER_LAYER_TO_END, "shc"},
        {"to where it is", 1, 1, "csh"},
        {"beyond the last", 1, 3, "csh"},
        {"before the first", 1, -2, "csh"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Session session;
        const AEGP_LayerH moved = session.layer(c.from);
        const bool exists = c.to >= AEGP_REORDER_LAYER_TO_END && c.to < 3;
        EXPECT_EQ(session.layers().AEGP_ReorderLayer(moved, c.to) == A_Err_NONE, exists);
        std::string order;
        for (const auto& layer : session.outcome().layers)
            order += layer->name.front();
        EXPECT_EQ(order, c.order);
        EXPECT_EQ(session.outcome().changed, order != "csh");
        EXPECT_EQ(session.layer(got(session.layers().AEGP_GetLayerIndex, moved)), moved);
    }
}

TEST(Structure, TheNumberOfADeletedLayerIsNotGivenAgain) {
    Session session;
    const AEGP_StreamRefH stream = session.stream(session.layer(holder), AEGP_LayerStream_SCALE);
    EXPECT_EQ(session.layers().AEGP_DeleteLayer(session.layer(holder)), A_Err_NONE);
    (void)got(session.layers().AEGP_DuplicateLayer, session.layer(child));
    EXPECT_EQ(session.outcome(0).id, 8) << "7 was the deleted layer's";
    session.expectClean({stream}); // its stream still has to come back
}

struct UndoCase {
    const char* name;
    A_Err (*change)(Session&);
};

const UndoCase undoCases[] = {
    {"a new null", [](Session& s) { return asked(s.comps().AEGP_CreateNullInComp, u"x", s.comp(), nullptr).first; }},
    {"deleting a parent", [](Session& s) { return s.layers().AEGP_DeleteLayer(s.layer(holder)); }},
    {"deleting all layers",
     [](Session& s) {
         EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(holder)), A_Err_NONE);
         EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(separated)), A_Err_NONE);
         return s.layers().AEGP_DeleteLayer(s.layer(child));
     }},
    {"deleting a layer after changing it",
     [](Session& s) {
         EXPECT_EQ(s.layers().AEGP_SetLayerName(s.layer(child), u"other"), A_Err_NONE);
         return s.layers().AEGP_DeleteLayer(s.layer(child));
     }},
    {"a new order", [](Session& s) { return s.layers().AEGP_ReorderLayer(s.layer(0), -1); }},
    {"a name", [](Session& s) { return s.layers().AEGP_SetLayerName(s.layer(0), u"other"); }},
    {"a deleted mask",
     [](Session& s) {
         s.remove(s.place(child, "0/0"));
         return A_Err_NONE;
     }},
    {"a deleted group after a change inside",
     [](Session& s) {
         const AEGP_StreamRefH centre = s.place(separated, "0/0/0/0/ADBE Vector Rect Position");
         EXPECT_EQ(s.set(centre, {0, 0, 0}), A_Err_NONE);
         s.remove(s.place(separated, "0/0"));
         return s.streams().AEGP_DisposeStream(centre);
     }},
    {"an outline",
     [](Session& s) {
         s.copyValue(s.place(child, "0/0/0"), s.place(child, "0/1/0"));
         return A_Err_NONE;
     }},
    {"a pasted mask",
     [](Session& s) {
         EXPECT_EQ(s.copy(s.place(child, "0/0")), A_Err_NONE);
         return s.paste(s.root(s.layer(holder)));
     }},
};

TEST(Undo, TakesBackEveryChangeOfStructure) {
    for (const UndoCase& c : undoCases) {
        SCOPED_TRACE(c.name);
        Session session;
        session.inGroup(
            [&] { EXPECT_EQ(session.layers().AEGP_SetLayerName(session.layer(separated), u"renamed"), A_Err_NONE); });
        session.makeTrees();
        const AEGP_LayerH bottom = session.layer(holder);
        const std::string before = session.document();
        session.inGroup([&] { EXPECT_EQ(c.change(session), A_Err_NONE); });
        EXPECT_NE(session.document(), before);
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(session.document(), before);
        EXPECT_EQ(session.layer(holder), bottom) << "handles lead where they led";
        session.dispose({session.stream(bottom, AEGP_LayerStream_SCALE)});
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(session.outcome(separated).name, "shape") << "the group before is still to be had";
        session.expectClean();
    }
}

} // namespace
} // namespace jostle::standalone
