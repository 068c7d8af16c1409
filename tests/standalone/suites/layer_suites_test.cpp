#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

TEST(MaskSuite, CountsSegmentsOfOpenAndClosedOutlines) {
    // With the number of segments, and whether the vertex of that index is the first.
    const std::tuple<const char*, PathValue, A_long, bool> cases[] = {
        {"closed", square(10), 4, true},
        {"open", {square(10).vertices, false}, 3, false},
        {"closed, of one vertex", {{{1, 2}}, true}, 1, true},
        {"open, of one vertex", {{{1, 2}}, false}, 0, true},
    };
    for (const auto& [name, path, segments, lastIsFirst] : cases) {
        SCOPED_TRACE(name);
        ReadResult read = richDocument();
        childOf(*treeOf(*read.composition, *read.composition->layers[child]).children[0]->children[0],
                NodeKind::MaskShape)
            ->path->value = path;
        Session session(std::move(read));
        const auto& outlines = session.outlines();
        const AEGP_StreamRefH shape = session.place(child, "0/0/0");
        AEGP_StreamValue2 value = session.open(shape);
        const AEGP_MaskOutlineValH outline = value.val.mask;
        EXPECT_EQ(got(outlines.AEGP_IsMaskOutlineOpen, outline) != 0, !path.closed);
        EXPECT_EQ(got(outlines.AEGP_GetMaskOutlineNumSegments, outline), segments);
        const AEGP_MaskVertex first = got(outlines.AEGP_GetMaskOutlineVertexInfo, outline, 0);
        const AEGP_MaskVertex last = got(outlines.AEGP_GetMaskOutlineVertexInfo, outline, segments);
        EXPECT_EQ(first.x == last.x && first.y == last.y, lastIsFirst);
        for (const A_long beyond : {-1, segments + 1})
            EXPECT_NE(asked(outlines.AEGP_GetMaskOutlineVertexInfo, outline, beyond).first, A_Err_NONE) << beyond;
        EXPECT_EQ(session.host.balance().maskOutlines, 1);
        session.dispose({shape});
        session.close(value); // in this order too: it outlives the reference it was read through
        session.expectClean();
    }
}

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
        {"a lean is lost, the area is not", 45, {100, 100}, 116.5650511771, {158.1138830084, 126.4911064067}},
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

TEST(LayerSuite, NullsHaveTheirNamesAndLengths) {
    Session session;
    const A_Time second{1, 1}, whole{0, 0};
    const std::tuple<const A_UTF16Char*, const A_Time*, const A_UTF16Char*, const char*, double> cases[] = {
        {nullptr, nullptr, u"Null 1", "Null 1", 100},
        {u"", &whole, u"Null 2", "Null 2", 100},
        {u"\u00FC\U0001F600", &second, u"\u00FC\U0001F600", "\xC3\xBC\xF0\x9F\x98\x80", 25},
    };
    for (const auto& [name, duration, shownName, nameInFile, outFrame] : cases) {
        SCOPED_TRACE(nameInFile);
        const AEGP_LayerH made = got(session.comps().AEGP_CreateNullInComp, name, session.comp(), duration);
        EXPECT_EQ(session.outcome(0).name, nameInFile);
        EXPECT_EQ(session.outcome(0).outFrame, outFrame);
        EXPECT_TRUE(got(session.layers().AEGP_GetLayerFlags, made) & AEGP_LayerFlag_NULL_LAYER);
        const AEGP_StreamRefH root = session.root(made);
        EXPECT_EQ(session.nameOf(root), shownName);
        session.dispose({root});
    }
    session.expectClean();
}

A_Err deleted(Session& s, LayerIndex layer) {
    return s.layers().AEGP_DeleteLayer(s.layer(layer));
}
A_Err named(Session& s, LayerIndex layer, const A_UTF16Char* name) {
    return s.layers().AEGP_SetLayerName(s.layer(layer), name);
}

// For more, which come back in the text at least, see the writer's tests.
const std::pair<const char*, A_Err (*)(Session&)> undoCases[] = {
    {"deleting all layers, parents first",
     [](Session& s) -> A_Err { return deleted(s, holder) || deleted(s, separated) || deleted(s, child); }},
    {"deleting a layer after changing it",
     [](Session& s) -> A_Err { return named(s, child, u"other") || deleted(s, child); }},
    {"a deleted group after a change inside",
     [](Session& s) {
         const AEGP_StreamRefH centre = s.place(separated, "0/0/0/0/ADBE Vector Rect Position");
         EXPECT_EQ(s.set(centre, {0, 0, 0}), A_Err_NONE);
         s.remove(s.place(separated, "0/0"));
         return s.streams().AEGP_DisposeStream(centre);
     }},
    {"an outline",
     [](Session& s) {
         const AEGP_StreamRefH from = s.place(child, "0/0/0"), to = s.place(child, "0/1/0");
         AEGP_StreamValue2 value = s.open(from);
         EXPECT_EQ(s.streams().AEGP_SetStreamValue(s.id(), to, &value), A_Err_NONE);
         s.close(value);
         s.dispose({from, to});
         return A_Err_NONE;
     }},
    {"a pasted mask",
     [](Session& s) -> A_Err { return s.copy(s.place(child, "0/0")) || s.paste(s.root(s.layer(holder))); }},
};

TEST(Undo, TakesBackEveryChangeOfStructure) {
    for (const auto& [name, change] : undoCases) {
        SCOPED_TRACE(name);
        Session session;
        session.inGroup([&] { EXPECT_EQ(named(session, separated, u"renamed"), A_Err_NONE); });
        const AEGP_LayerH bottom = session.layer(holder);
        const std::string before = session.document();
        EXPECT_EQ(session.utility().AEGP_StartUndoGroup("change"), A_Err_NONE);
        EXPECT_EQ(change(session), A_Err_NONE);
        EXPECT_NE(session.undo(), A_Err_NONE) << "not while a group is open";
        EXPECT_EQ(session.utility().AEGP_EndUndoGroup(), A_Err_NONE);
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

TEST(Undo, TakesADuplicateAwayThatIsApartFromItsOriginal) {
    Session session;
    AEGP_CompH copy = nullptr;
    session.inGroup([&] { copy = got(session.comps().AEGP_DuplicateComp, session.comp()); });
    EXPECT_EQ(session.outcome().item->name, "Scene 2");
    EXPECT_EQ(session.outcome(child).parent, &session.outcome(holder)) << "its own, not the original's";
    const AEGP_StreamRefH rotation = session.stream(session.layer(child, copy), AEGP_LayerStream_ROTATION);
    session.inGroup([&] { session.addKeys(rotation, {{0, 1}, {4, 2}}); });
    ASSERT_EQ(session.undo(), A_Err_NONE);
    EXPECT_TRUE(session.host.duplicated()) << "made by the group before";
    EXPECT_FALSE(session.outcome(child).transform.rotation.changed);
    ASSERT_EQ(session.undo(), A_Err_NONE);
    EXPECT_FALSE(session.host.duplicated());
    EXPECT_NE(asked(session.layers().AEGP_GetCompNumLayers, copy).first, A_Err_NONE) << "the duplicate is gone";
    EXPECT_NE(asked(session.keyframes().AEGP_GetStreamNumKFs, rotation).first, A_Err_NONE);
    session.dispose({rotation}); // still has to come back
    EXPECT_EQ(session.host.balance().streams, 0);
}

} // namespace
} // namespace jostle::standalone
