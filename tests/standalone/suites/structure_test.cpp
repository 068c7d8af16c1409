#include <functional>

#include "tests/standalone/suites/rich_document.h"

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
        RichSession session(std::move(document));
        const auto& outlines = session.table<AEGP_MaskOutlineSuite3>();
        const AEGP_MaskRefH mask = session.mask(session.layer(child), 0);
        const AEGP_StreamRefH shape = session.maskStream(mask, AEGP_MaskStream_OUTLINE);
        AEGP_StreamValue2 value = session.open(shape);
        A_Boolean open = 0;
        A_long count = -1;
        AEGP_MaskVertex first{}, last{};
        EXPECT_EQ(outlines.AEGP_IsMaskOutlineOpen(value.val.mask, &open), A_Err_NONE);
        EXPECT_EQ(open != 0, !c.outline.closed);
        EXPECT_EQ(outlines.AEGP_GetMaskOutlineNumSegments(value.val.mask, &count), A_Err_NONE);
        EXPECT_EQ(count, c.segments);
        EXPECT_EQ(outlines.AEGP_GetMaskOutlineVertexInfo(value.val.mask, 0, &first), A_Err_NONE);
        EXPECT_EQ(outlines.AEGP_GetMaskOutlineVertexInfo(value.val.mask, count, &last), A_Err_NONE);
        EXPECT_EQ(first.x == last.x && first.y == last.y, c.lastIsFirst);
        EXPECT_NE(outlines.AEGP_GetMaskOutlineVertexInfo(value.val.mask, count + 1, &last), A_Err_NONE);
        EXPECT_NE(outlines.AEGP_GetMaskOutlineVertexInfo(value.val.mask, -1, &last), A_Err_NONE);
        EXPECT_EQ(session.host.balance().maskOutlines, 1);
        session.close(value);
        session.dispose(shape);
        EXPECT_EQ(session.masks().AEGP_DisposeMask(mask), A_Err_NONE);
        session.expectClean();
    }
}

// One layer for each mask, as the plug-in splits them.
void separateMasks(RichSession& session) {
    const AEGP_LayerH source = session.layer(child);
    AEGP_LayerH empty = nullptr;
    ASSERT_EQ(session.layers().AEGP_DuplicateLayer(source, &empty), A_Err_NONE);
    for (A_long mask = 1; mask >= 0; --mask) {
        const char index[] = {static_cast<char>('0' + mask), 0};
        const AEGP_StreamRefH atom = session.below(session.root(empty), {"ADBE Mask Parade", index});
        EXPECT_EQ(session.tree().AEGP_DeleteStream(atom), A_Err_NONE);
        session.dispose(atom);
    }
    for (A_long place = 0; place < 2; ++place) {
        const AEGP_MaskRefH from = session.mask(source, place);
        AEGP_LayerH made = nullptr;
        AEGP_MaskRefH to = nullptr;
        A_long sourceIndex = -1, maskIndex = -1;
        A_Boolean roto = 0;
        EXPECT_EQ(session.layers().AEGP_GetLayerIndex(source, &sourceIndex), A_Err_NONE);
        EXPECT_EQ(session.layers().AEGP_DuplicateLayer(empty, &made), A_Err_NONE);
        EXPECT_EQ(session.layers().AEGP_ReorderLayer(made, sourceIndex), A_Err_NONE);
        EXPECT_EQ(session.masks().AEGP_CreateNewMask(made, &to, &maskIndex), A_Err_NONE);
        EXPECT_EQ(maskIndex, 0);
        EXPECT_EQ(session.masks().AEGP_GetMaskIsRotoBezier(from, &roto), A_Err_NONE);
        EXPECT_EQ(session.masks().AEGP_SetMaskIsRotoBezier(to, roto), A_Err_NONE);
        for (const AEGP_MaskStream stream : {400, 402, 401, 403})
            session.copyValue(session.maskStream(from, stream), session.maskStream(to, stream));
        const char index[] = {static_cast<char>('0' + place), 0};
        const AEGP_StreamRefH atom = session.below(session.root(source), {"ADBE Mask Parade", index});
        EXPECT_EQ(session.layers().AEGP_SetLayerName(made, session.nameOf(atom).c_str()), A_Err_NONE);
        session.dispose(atom);
        EXPECT_EQ(session.masks().AEGP_DisposeMask(from), A_Err_NONE);
        EXPECT_EQ(session.masks().AEGP_DisposeMask(to), A_Err_NONE);
    }
    EXPECT_EQ(session.layers().AEGP_SetLayerFlag(source, AEGP_LayerFlag_VIDEO_ACTIVE, 0), A_Err_NONE);
    EXPECT_EQ(session.layers().AEGP_DeleteLayer(empty), A_Err_NONE);
}

TEST(Structure, MasksBecomeLayersOfTheirOwn) {
    auto document = richDocument();
    document->layers[child]->tree->children[1]->children[1]->rotoBezier = true;
    RichSession session(std::move(document));
    session.undoGroup("separate");
    separateMasks(session);
    session.endGroup();
    const auto& layers = session.host.outcome().layers;
    ASSERT_EQ(layers.size(), 5u);
    const struct {
        const char* name;
        int id; ///< 7 is the greatest of the file and 8 was the empty copy's
        double size;
        bool rotoBezier;
    } expected[] = {{"one", 9, 10, false}, {"two", 10, 20, true}};
    for (std::size_t i = 0; i < 2; ++i) {
        const Layer& layer = *layers[i];
        EXPECT_EQ(layer.name, expected[i].name);
        EXPECT_EQ(layer.id, expected[i].id);
        EXPECT_FALSE(layer.idInFile);
        EXPECT_EQ(layer.parent, layers[4].get()) << "as the source has it";
        const TreeNode& masks = *childOf(*layer.tree, NodeKind::MaskParade);
        EXPECT_TRUE(masks.listChanged);
        ASSERT_EQ(masks.children.size(), 1u);
        EXPECT_EQ(masks.children[0]->rotoBezier, expected[i].rotoBezier);
        EXPECT_EQ(childOf(*masks.children[0], NodeKind::MaskShape)->path->value, square(expected[i].size));
        EXPECT_EQ(childOf(*masks.children[0], NodeKind::MaskOpacity)->stream->value[0], expected[i].size);
    }
    EXPECT_TRUE(layers[2]->hidden) << "the source stays, below";
    EXPECT_EQ(childOf(*layers[2]->tree, NodeKind::MaskParade)->children.size(), 2u);
    session.expectClean();
}

TEST(Structure, GroupsAreCopiedToNewLayers) {
    RichSession session;
    const AEGP_LayerH source = session.layer(separated);
    AEGP_LayerH made = nullptr;
    ASSERT_EQ(session.table<AEGP_CompSuite15>().AEGP_CreateVectorLayerInComp(session.comp(), &made), A_Err_NONE);
    EXPECT_NE(session.command(hostCommandPaste), A_Err_NONE) << "there is nothing to paste";
    session.select(session.root(source));
    EXPECT_NE(session.command(hostCommandCopy), A_Err_NONE) << "a root cannot be copied";
    session.select(session.below(session.root(source), {"0", "1"}));
    EXPECT_EQ(session.command(hostCommandCopy), A_Err_NONE);
    session.select(session.below(session.root(made), {"ADBE Root Vectors Group"}));
    EXPECT_EQ(session.command(hostCommandPaste), A_Err_NONE);
    EXPECT_EQ(session.command(hostCommandPaste), A_Err_NONE) << "as often as one likes";
    session.select(session.root(session.layer(3)));
    EXPECT_NE(session.command(hostCommandPaste), A_Err_NONE) << "a null has no contents";

    const Layer& layer = *session.host.outcome().layers[0];
    EXPECT_EQ(layer.kind, LayerKind::Shape);
    EXPECT_EQ(layer.name, "Shape Layer 1");
    EXPECT_EQ(layer.outFrame, 100);
    EXPECT_EQ(layer.transform.position.value, (Components{160, 120, 0}));
    const TreeNode& contents = *childOf(*layer.tree, NodeKind::VectorsRoot);
    ASSERT_EQ(contents.children.size(), 2u);
    EXPECT_TRUE(contents.listChanged);
    const TreeNode& copy = *contents.children[0];
    EXPECT_EQ(copy.name, "second");
    const TreeNode& original = *childOf(*session.host.outcome().layers[2]->tree, NodeKind::VectorsRoot)->children[1];
    std::string copyText, originalText;
    describe(copy, copyText);
    describe(original, originalText);
    EXPECT_EQ(copyText, originalText);
    EXPECT_NE(childOf(copy, NodeKind::GroupContents)->children[0],
              childOf(original, NodeKind::GroupContents)->children[0]);
    session.expectClean();
}

TEST(Structure, NullsStandInTheMiddle) {
    RichSession session;
    const auto& comps = session.table<AEGP_CompSuite15>();
    const A_Time second{1, 1}, whole{0, 0};
    const struct {
        const A_UTF16Char* name;
        const A_Time* duration;
        const char* expectedName;
        double outFrame;
    } cases[] = {
        {nullptr, nullptr, "Null 1", 100},
        {u"", &whole, "Null 2", 100},
        {u"Schwerpunkt \u00FC\U0001F600", &second, "Schwerpunkt \xC3\xBC\xF0\x9F\x98\x80", 25},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expectedName);
        AEGP_LayerH made = nullptr;
        ASSERT_EQ(comps.AEGP_CreateNullInComp(c.name, session.comp(), c.duration, &made), A_Err_NONE);
        const Layer& layer = *session.host.outcome().layers[0];
        EXPECT_EQ(layer.name, c.expectedName);
        EXPECT_EQ(layer.outFrame, c.outFrame);
        EXPECT_EQ(layer.transform.position.value, (Components{160, 120, 0}));
        EXPECT_EQ(layer.transform.opacity.value[0], 0);
        AEGP_LayerFlags flags = 0;
        EXPECT_EQ(session.layers().AEGP_GetLayerFlags(made, &flags), A_Err_NONE);
        EXPECT_TRUE(flags & AEGP_LayerFlag_NULL_LAYER);
        AEGP_MemHandle name = nullptr;
        EXPECT_EQ(session.layers().AEGP_GetLayerName(1, made, &name, nullptr), A_Err_NONE);
        EXPECT_EQ(session.takeText(name), c.name == nullptr || *c.name == 0
                                              ? (c.outFrame == 100 && layer.id == 8 ? u"Null 1" : u"Null 2")
                                              : std::u16string(c.name));
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
        RichSession session;
        const AEGP_LayerH moved = session.layer(c.from);
        const bool exists = c.to >= AEGP_REORDER_LAYER_TO_END && c.to < 3;
        EXPECT_EQ(session.layers().AEGP_ReorderLayer(moved, c.to) == A_Err_NONE, exists);
        std::string order;
        for (const auto& layer : session.host.outcome().layers)
            order += layer->name.front();
        EXPECT_EQ(order, c.order);
        EXPECT_EQ(session.host.outcome().changed, order != "csh");
        A_long index = -1;
        EXPECT_EQ(session.layers().AEGP_GetLayerIndex(moved, &index), A_Err_NONE);
        EXPECT_EQ(session.layer(index), moved);
    }
}

TEST(Structure, DeletingALayerLeavesItsChildrenInPlace) {
    RichSession session;
    const AEGP_LayerH gone = session.layer(holder);
    const AEGP_LayerH kept = session.layer(child);
    const A_Time start{0, 1};
    A_Matrix4 before{}, after{};
    EXPECT_EQ(session.layers().AEGP_GetLayerToWorldXform(kept, &start, &before), A_Err_NONE);
    const AEGP_StreamRefH stream = session.stream(gone, AEGP_LayerStream_SCALE);
    EXPECT_EQ(session.layers().AEGP_DeleteLayer(gone), A_Err_NONE);
    EXPECT_EQ(session.layers().AEGP_GetLayerToWorldXform(kept, &start, &after), A_Err_NONE);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(before.mat[i / 4][i % 4], after.mat[i / 4][i % 4], 1e-9) << i;
    EXPECT_EQ(session.host.outcome().layers[child]->parent, nullptr);
    AEGP_LayerFlags flags = 0;
    EXPECT_NE(session.layers().AEGP_GetLayerFlags(gone, &flags), A_Err_NONE);
    EXPECT_NE(session.layers().AEGP_DeleteLayer(gone), A_Err_NONE);
    AEGP_LayerH copy = nullptr;
    EXPECT_EQ(session.layers().AEGP_DuplicateLayer(kept, &copy), A_Err_NONE);
    EXPECT_EQ(session.host.outcome().layers[0]->id, 8) << "7 was the deleted layer's";
    session.dispose(stream);
    session.expectClean();
}

struct UndoCase {
    const char* name;
    std::function<void(RichSession&)> change;
};

const UndoCase undoCases[] = {
    {"separating masks", separateMasks},
    {"a new null",
     [](auto& s) {
         AEGP_LayerH made = nullptr;
         EXPECT_EQ(s.template table<AEGP_CompSuite15>().AEGP_CreateNullInComp(u"x", s.comp(), nullptr, &made),
                   A_Err_NONE);
     }},
    {"deleting a parent", [](auto& s) { EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(holder)), A_Err_NONE); }},
    {"deleting all layers",
     [](auto& s) {
         for (A_long index = layerCount - 1; index >= 0; --index)
             EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(index)), A_Err_NONE);
     }},
    {"deleting a layer after changing it",
     [](auto& s) {
         EXPECT_EQ(s.layers().AEGP_SetLayerName(s.layer(child), u"other"), A_Err_NONE);
         EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(child)), A_Err_NONE);
     }},
    {"a new order", [](auto& s) { EXPECT_EQ(s.layers().AEGP_ReorderLayer(s.layer(0), -1), A_Err_NONE); }},
    {"a name", [](auto& s) { EXPECT_EQ(s.layers().AEGP_SetLayerName(s.layer(0), u"other"), A_Err_NONE); }},
    {"a deleted mask",
     [](auto& s) {
         const AEGP_StreamRefH mask = s.below(s.root(s.layer(child)), {"0", "0"});
         EXPECT_EQ(s.tree().AEGP_DeleteStream(mask), A_Err_NONE);
         s.dispose(mask);
     }},
    {"a deleted group after a change inside",
     [](auto& s) {
         const AEGP_StreamRefH group = s.below(s.root(s.layer(separated)), {"0", "0"});
         const AEGP_StreamRefH centre =
             s.below(s.root(s.layer(separated)), {"0", "0", "0", "0", "ADBE Vector Rect Position"});
         EXPECT_EQ(s.set(centre, {0, 0, 0}), A_Err_NONE);
         EXPECT_EQ(s.tree().AEGP_DeleteStream(group), A_Err_NONE);
         s.dispose(centre);
         s.dispose(group);
     }},
    {"an outline",
     [](auto& s) {
         s.copyValue(s.below(s.root(s.layer(child)), {"0", "0", "0"}),
                     s.below(s.root(s.layer(child)), {"0", "1", "0"}));
     }},
    {"a pasted mask",
     [](auto& s) {
         s.select(s.below(s.root(s.layer(child)), {"0", "0"}));
         EXPECT_EQ(s.command(hostCommandCopy), A_Err_NONE);
         s.select(s.root(s.layer(holder)));
         EXPECT_EQ(s.command(hostCommandPaste), A_Err_NONE);
     }},
};

TEST(Undo, TakesBackEveryChangeOfStructure) {
    for (const UndoCase& c : undoCases) {
        SCOPED_TRACE(c.name);
        RichSession session;
        session.undoGroup("earlier");
        EXPECT_EQ(session.layers().AEGP_SetLayerName(session.layer(separated), u"renamed"), A_Err_NONE);
        session.endGroup();
        for (A_long index = 0; index < layerCount; ++index)
            session.dispose(session.root(session.layer(index))); // trees are made when they are asked for
        const AEGP_LayerH bottom = session.layer(holder);
        const std::string before = session.document();
        session.undoGroup("change");
        c.change(session);
        session.endGroup();
        EXPECT_NE(session.document(), before);
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(session.document(), before);
        EXPECT_EQ(session.layer(holder), bottom) << "handles lead where they led";
        session.dispose(session.stream(bottom, AEGP_LayerStream_SCALE));
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(session.host.outcome().layers[separated]->name, "shape") << "the group before is still to be had";
        session.expectClean();
    }
}

TEST(Selection, ForgetsWhatIsDeleted) {
    RichSession session;
    session.select(session.below(session.root(session.layer(child)), {"0", "0"}));
    const AEGP_StreamRefH mask = session.below(session.root(session.layer(child)), {"0", "0"});
    EXPECT_EQ(session.tree().AEGP_DeleteStream(mask), A_Err_NONE);
    session.dispose(mask);
    AEGP_Collection2H selection = nullptr;
    A_u_long count = 9;
    const auto& collections = session.table<AEGP_CollectionSuite2>();
    ASSERT_EQ(session.table<AEGP_CompSuite15>().AEGP_GetNewCollectionFromCompSelection(1, session.comp(), &selection),
              A_Err_NONE);
    EXPECT_EQ(collections.AEGP_GetCollectionNumItems(selection, &count), A_Err_NONE);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(collections.AEGP_DisposeCollection(selection), A_Err_NONE);
    session.expectClean();
}

} // namespace
} // namespace jostle::standalone
