// Layers, masks and shapes that were moved, copied, added, changed or taken away, and what the suites do to motion, as
// it comes out in the text.
#include <algorithm>

#include "standalone/document/evaluate.h"
#include "tests/standalone/lottie/documents.h"

namespace jostle::standalone {
namespace {

using enum NodeKind;
using test::got;
using test::Session;

void deleteLayer(Session& s, A_long index) {
    EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(index)), A_Err_NONE);
}
void deleteFirst(Session& s) {
    deleteLayer(s, 0);
}
void move(Session& s, A_long from, A_long to) {
    const AEGP_LayerH layer = s.layer(from);
    EXPECT_EQ(s.layers().AEGP_ReorderLayer(layer, to), A_Err_NONE);
    EXPECT_EQ(s.layer(got(s.layers().AEGP_GetLayerIndex, layer)), layer);
}
void moveFirstDown(Session& s) {
    move(s, 0, 1);
}
/// Puts a copy of a layer above it.
void duplicate(Session& s, A_long index) {
    (void)got(s.layers().AEGP_DuplicateLayer, s.layer(index));
}
void duplicateFirst(Session& s) {
    duplicate(s, 0);
}
void keyRotation(Session& s, A_long frame, double degrees) {
    const AEGP_StreamRefH rotation = s.stream(s.layer(0), AEGP_LayerStream_ROTATION);
    s.addKeys(rotation, {{frame, degrees}});
    s.dispose({rotation});
}
void separate(Session& s, A_Boolean separated) {
    const AEGP_StreamRefH position = s.stream(s.layer(0), AEGP_LayerStream_POSITION);
    EXPECT_EQ(s.tree().AEGP_SetDimensionsSeparated(position, separated), A_Err_NONE);
    EXPECT_EQ(s.value(position, 5).three_d.x, 50);
    s.dispose({position});
}
/// Takes the expression "time" from a rotation.
void clearExpression(Session& s) {
    const auto& streams = s.streams();
    const AEGP_StreamRefH rotation = s.stream(s.layer(0), AEGP_LayerStream_ROTATION);
    const AEGP_MemHandle text = got(streams.AEGP_GetExpression, 1, rotation);
    EXPECT_STREQ(static_cast<const char*>(got(s.memory().AEGP_LockMemHandle, text)), "time");
    EXPECT_EQ(s.memory().AEGP_UnlockMemHandle(text), A_Err_NONE);
    EXPECT_EQ(s.memory().AEGP_FreeMemHandle(text), A_Err_NONE);
    EXPECT_EQ(streams.AEGP_SetExpression(1, rotation, "time"), A_Err_NONE) << "what it has";
    EXPECT_NE(streams.AEGP_SetExpression(1, rotation, "another"), A_Err_NONE);
    EXPECT_EQ(streams.AEGP_SetExpression(1, rotation, ""), A_Err_NONE);
    EXPECT_NE(streams.AEGP_SetExpressionState(1, rotation, 1), A_Err_NONE) << "there is none any more";
    s.dispose({rotation});
}
void addNull(Session& s) {
    (void)got(s.comps().AEGP_CreateNullInComp, u"N", s.comp(), nullptr);
}

TEST(StructureWriter, LayersAndTheirMattes) {
    constexpr WriterCase<Session> cases[] = {
        {"moved, with their bytes and what parts them", R"({"ind":1, "ty":4 } ,  {"ind":2}, null)",
         [](Session& s) {
             move(s, 1, 1);
             move(s, 0, AEGP_REORDER_LAYER_TO_END);
             move(s, 1, 0);
         },
         R"(null ,  {"ind":2} ,  {"ind":1, "ty":4 })"},
        {"all gone", R"({"ind":1},{"ind":2})",
         [](Session& s) {
             deleteFirst(s);
             deleteFirst(s);
         },
         ""},
        {"children lose a parent that is gone, others keep what they have",
         R"({"ind":1,"parent":2},{"ind":2},{"ind":3,"parent":9},{"ind":4,"parent":3})",
         [](Session& s) { deleteLayer(s, 1); }, R"({"ind":1},{"ind":3,"parent":9},{"ind":4,"parent":3})"},
        {"a copy has a number of its own, a child of its parent still", R"({"ind":1,"parent":2,"x":1.0},{"ind":2})",
         duplicateFirst, R"({"ind":3,"parent":2,"x":1.0},{"ind":1,"parent":2,"x":1.0},{"ind":2})"},
        {"a copy of a layer without a number", R"({"ty":4})", duplicateFirst, R"({"ty":4,"ind":2},{"ty":4})"},
        {"a copy in place of the original, which children have lost", R"({"ind":1},{"ind":2,"parent":1})",
         [](Session& s) {
             duplicateFirst(s);
             deleteLayer(s, 1);
         },
         R"({"ind":3},{"ind":2})"},
        {"a number that a dangling parent happens to name", R"({"ind":1,"parent":2})", duplicateFirst,
         R"({"ind":2},{"ind":1})"},
        {"the number of a layer that is gone is not given again", R"({"ind":1},{"ind":2})",
         [](Session& s) {
             deleteLayer(s, 1);
             duplicateFirst(s);
         },
         R"({"ind":3},{"ind":1})"},
        {"flags are turned over", R"({"ind":1,"mb":true,"ao":1})",
         [](Session& s) {
             for (const auto flag :
                  {AEGP_LayerFlag_VIDEO_ACTIVE, AEGP_LayerFlag_MOTION_BLUR, AEGP_LayerFlag_AUTO_ORIENT_ROTATION}) {
                 for (const A_Boolean value : {A_Boolean{1}, A_Boolean{0}}) {
                     EXPECT_TRUE(got(s.layers().AEGP_GetLayerFlags, s.layer(0)) & flag);
                     EXPECT_EQ(s.layers().AEGP_SetLayerFlag(s.layer(0), flag, value), A_Err_NONE);
                 }
                 EXPECT_FALSE(got(s.layers().AEGP_GetLayerFlags, s.layer(0)) & flag);
             }
         },
         R"({"ind":1,"mb":false,"ao":0,"hd":true})"},
        {"a name where there was none", R"({"ind":1})",
         [](Session& s) { EXPECT_EQ(s.layers().AEGP_SetLayerName(s.layer(0), u"N"), A_Err_NONE); },
         R"({"ind":1,"nm":"N"})"},
        {"a matte that is still above", R"({"ind":1},{"ind":2,"td":1},{"ind":3,"tt":1})", deleteFirst,
         R"({"ind":2,"td":1},{"ind":3,"tt":1})"},
        {"a copy comes below the matte", R"({"ind":1,"td":1},{"ind":2,"tt":1})", [](Session& s) { duplicate(s, 1); },
         R"({"ind":1,"td":1},{"ind":3,"tt":1},{"ind":2,"tt":1,"tp":1})"},
        {"the matte has no number yet", R"({"td":1},{"tt":1})", moveFirstDown, R"({"tt":1,"tp":1},{"td":1,"ind":1})"},
        {"the matte is gone", R"({"ind":1,"td":1},{"ind":2,"tt":1},{"ind":3,"tt":2,"tp":1})", deleteFirst,
         R"({"ind":2},{"ind":3})"},
        {"a named matte moves", R"({"ind":1,"td":1},{"ind":2,"tt":1,"tp":1})", moveFirstDown,
         R"({"ind":2,"tt":1,"tp":1},{"ind":1,"td":1})"},
        {"no matte was above, something comes", R"({"ind":1,"tt":1},{"ind":2})", moveFirstDown,
         R"({"ind":2},{"ind":1})"},
    };
    expectRewritten(cases);
}

TEST(StructureWriter, MotionOfLayers) {
    constexpr WriterCase<Session> cases[] = {
        {"a segment that a new key cuts is straight",
         R"({"ks":{"r":{"a":1,"k":[{"t":0,"s":[0],"o":{"x":[0.5],"y":[0]},"i":{"x":[0.5],"y":[1]}},{"t":9,"s":[1]}]}}})",
         [](Session& s) { keyRotation(s, 5, 8); },
         R"({"ks":{"r":{"a":1,"k":[{"t":0,"s":[0],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},)"
         R"({"t":5,"s":[8],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},{"t":9,"s":[1]}]}}})"},
        {"an expression goes", R"({"ks":{"r":{"x":"time","a":0,"k":1}}})", clearExpression,
         R"({"ks":{"r":{"a":0,"k":1}}})"},
        {"keys stay where the parent's scale is taken over",
         R"({"ind":1,"parent":2,"ks":{"r":{"k":[{"t":0,"s":[0]},{"t":9,"s":[1]}]}}},{"ind":2,"ks":{"s":{"k":[50,50]}}})",
         [](Session& s) { deleteLayer(s, 1); },
         R"({"ind":1,"ks":{"r":{"k":[{"t":0,"s":[0]},{"t":9,"s":[1]}]},"s":{"a":0,"k":[50,50,100]}}})"},
        // In 10 frames x runs from 0 to 100, while y rests at 50.
        {"dimensions become one",
         R"({"ks":{"p":{"s":true,"x":{"a":1,"k":[{"t":0,"s":[0]},{"t":10,"s":[100]}]},"y":{"a":0,"k":50}}}})",
         [](Session& s) { separate(s, 0); },
         R"({"ks":{"p":{"a":1,"k":[{"t":0,"s":[0,50],"o":{"x":0,"y":0},"i":{"x":1,"y":1}},{"t":10,"s":[100,50]}]}}})"},
        {"one becomes two", R"({"ks":{"p":{"a":1,"k":[{"t":0,"s":[0,50]},{"t":10,"s":[100,50]}]}}})",
         [](Session& s) { separate(s, 1); },
         R"({"ks":{"p":{"s":true,"x":{"a":1,"k":[{"t":0,"s":[0],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},)"
         R"({"t":10,"s":[100]}]},"y":{"a":1,"k":[{"t":0,"s":[50],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},)"
         R"({"t":10,"s":[50]}]}}}})"},
    };
    expectRewritten(cases);
}

TEST(StructureWriter, NewLayersAndGroups) {
    constexpr WriterCase<Session> cases[] = {
        {"two of them, one the parent of the other and of an old one", R"({"ind":7})",
         [](Session& s) {
             addNull(s);
             (void)got(s.comps().AEGP_CreateVectorLayerInComp, s.comp());
             for (const A_long child : {0, 2})
                 EXPECT_EQ(s.layers().AEGP_SetLayerParent(s.layer(child), s.layer(1)), A_Err_NONE);
         },
         R"({"ddd":0,"ind":9,"ty":4,"nm":"Shape Layer 1","parent":8,"sr":1,"ks":{"a":{"a":0,"k":[0,0,0]},)"
         R"("p":{"a":0,"k":[0,0,0]},"s":{"a":0,"k":[100,100,100]},"r":{"a":0,"k":0},"o":{"a":0,"k":100}},"ao":0,)"
         R"("shapes":[],"ip":0,"op":100,"st":0,"bm":0},)"
         R"({"ddd":0,"ind":8,"ty":3,"nm":"N","sr":1,"ks":{"a":{"a":0,"k":[0,0,0]},)"
         R"("p":{"a":0,"k":[320,240,0]},"s":{"a":0,"k":[100,100,100]},"r":{"a":0,"k":0},"o":{"a":0,"k":0}},"ao":0,)"
         R"("ip":0,"op":100,"st":0,"bm":0},{"ind":7,"parent":8,"ks":{"p":{"a":0,"k":[-320,-240,0]}}})"},
        {"a copied group where there was no list", R"({"ty":4},{"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"el" }]}]})",
         [](Session& s) {
             EXPECT_EQ(s.copy(s.place(1, "0/0")), A_Err_NONE);
             EXPECT_EQ(s.paste(s.place(0, "0")), A_Err_NONE);
             EXPECT_EQ(s.command(hostCommandPaste), A_Err_NONE) << "as often as one likes";
             const AEGP_StreamRefH centre = s.place(0, "0/1/ADBE Vectors Group/0/ADBE Vector Ellipse Position");
             EXPECT_EQ(s.set(centre, {1, 2, 0}), A_Err_NONE) << "of one copy alone";
         },
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"el" }]},{"ty":"gr","it":[{"ty":"el","p":{"a":0,"k":[1,2]} }]}]},)"
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"el" }]}]})"},
    };
    expectRewritten(cases);
    EXPECT_EQ(
        rewritten("{\n \"fr\": 25, \"w\": 640, \"h\": 480, \"op\": 100,\n \"layers\": [\n ]\n}\n", addNull),
        "{\n \"fr\": 25, \"w\": 640, \"h\": 480, \"op\": 100,\n \"layers\": [\n  {\n   \"ddd\": 0,\n   \"ind\": 1,\n"
        "   \"ty\": 3,\n   \"nm\": \"N\",\n   \"sr\": 1,\n   \"ks\": {\n    \"a\": {\"a\": 0, \"k\": [0, 0, 0]},\n"
        "    \"p\": {\"a\": 0, \"k\": [320, 240, 0]},\n    \"s\": {\"a\": 0, \"k\": [100, 100, 100]},\n"
        "    \"r\": {\"a\": 0, \"k\": 0},\n    \"o\": {\"a\": 0, \"k\": 0}\n   },\n   \"ao\": 0,\n"
        "   \"ip\": 0,\n   \"op\": 100,\n   \"st\": 0,\n   \"bm\": 0\n  }\n ]\n}\n");
}

/// The masks of the first layer, which are about to change as a list.
TreeNode& maskList(Composition& c) {
    TreeNode& parade = nodeAt(firstTree(c), MaskParade);
    parade.listChanged = true;
    return parade;
}

TreeNode& addMask(Composition& c, const char* name) {
    TreeNode& mask = addNode(maskList(c), Mask);
    mask.name.own() = name;
    return mask;
}

/// Gives a path one closed outline with a single vertex.
void setOutline(TreeNode& node, double x, double y) {
    *node.path = {};
    node.path->value = {{{x, y}}, true};
    node.path->changed = true;
}

TEST(StructureWriter, Masks) {
    constexpr WriterCase<> cases[] = {
        {"the first one", R"({"ty":1})",
         [](Composition& c) {
             nodeAt(addMask(c, "M"), MaskShape).path->value = {{{1, 2, 0.5, 0, -0.5, 0}, {3, 4}}, true};
         },
         R"({"ty":1,"hasMask":true,"masksProperties":[{"inv":false,"mode":"a","pt":{"a":0,"k":{"i":[[0.5,0],[0,0]],)"
         R"("o":[[-0.5,0],[0,0]],"v":[[1,2],[3,4]],"c":true}},"o":{"a":0,"k":100},"x":{"a":0,"k":0},"nm":"M"}]})"},
        {"one more, with feather, in an old file", R"({"hasMask":false,"masksProperties":[{"mode":"n" }]})",
         [](Composition& c) { setStatic(*nodeAt(addMask(c, "B"), MaskFeather).stream, 1, 2); },
         R"({"hasMask":true,"masksProperties":[{"mode":"n" },{"inv":false,"mode":"a","pt":{"a":0,"k":{"i":[],"o":[],)"
         R"("v":[],"c":false}},"cl":false,"f":{"a":0,"k":[1,2]},"o":{"a":0,"k":100},"x":{"a":0,"k":0},"nm":"B"}]})",
         "4.4.17"},
        {"the last one goes", R"({"a":1,"hasMask":true,"masksProperties":[{}],"b":2})",
         [](Composition& c) { maskList(c).children.list().clear(); }, R"({"a":1,"b":2})"},
        {"values and name in place", R"({"masksProperties":[{"nm":"A","pt":{"a":1,"k":[],"x":"e"},"cl":false}]})",
         [](Composition& c) {
             TreeNode& mask = *nodeAt(firstTree(c), MaskParade).children[0];
             mask.name.own() = "C";
             setOutline(nodeAt(mask, MaskShape), 1.25, 2);
             setStatic(*nodeAt(mask, MaskOffset).stream, -3);
         },
         R"({"masksProperties":[{"nm":"C","pt":{"a":0,"k":{"i":[[0,0]],"o":[[0,0]],"v":[[1.25,2]],"c":true}},)"
         R"("cl":false,"x":{"a":0,"k":-3}}]})"},
        {"closed beside the path in an old file", R"({"masksProperties":[{"pt":{"k":{}},"cl":false}]})",
         [](Composition& c) { setOutline(nodeAt(*nodeAt(firstTree(c), MaskParade).children[0], MaskShape), 1, 2); },
         R"({"masksProperties":[{"pt":{"k":{"i":[[0,0]],"o":[[0,0]],"v":[[1,2]],"c":true},"a":0},"cl":true}]})",
         "4.4.17"},
    };
    expectRewritten(cases);
}

/// The first shape of the first layer.
TreeNode& firstShape(const Composition& c) {
    return *nodeAt(firstTree(c), VectorsRoot).children[0];
}

/// Makes the position and the anchor of the first group static zero.
void clearGroup(Composition& c) {
    for (const NodeKind kind : {GroupAnchor, GroupPosition})
        setStatic(*nodeAt(firstShape(c), GroupTransform, kind).stream, 0);
}

TEST(StructureWriter, Shapes) {
    constexpr WriterCase<> cases[] = {
        {"a group's place, with expression and slot",
         R"({"ty":"gr","it":[{"ty":"tr","a":{"k":[1,2],"sid":"s","x":"e"},"p":{"k":[3,4,5]}},{"ty":"fl"}]})",
         clearGroup, R"({"ty":"gr","it":[{"ty":"tr","a":{"k":[0,0],"a":0},"p":{"k":[0,0,0],"a":0}},{"ty":"fl"}]})"},
        {"properties that are missing", R"({"ty":"gr","it":[{"ty":"tr"}]})",
         [](Composition& c) { setStatic(*nodeAt(firstShape(c), GroupTransform, GroupRotation).stream, 45); },
         R"({"ty":"gr","it":[{"ty":"tr","r":{"a":0,"k":45}}]})"},
        {"a transform that is missing", R"({"ty":"gr","it":[{"ty":"fl"}, {"ty":"st"}]})", clearGroup,
         R"({"ty":"gr","it":[{"ty":"fl"}, {"ty":"st"}, {"ty":"tr","a":{"a":0,"k":[0,0]},)"
         R"("p":{"a":0,"k":[0,0]},"s":{"a":0,"k":[100,100]},"sk":{"a":0,"k":0},"sa":{"a":0,"k":0},"r":{"a":0,"k":0},)"
         R"("o":{"a":0,"k":100},"nm":"Transform"}]})"},
        {"separated positions are one", R"({"ty":"el","p":{"s":true,"x":{"k":1},"y":{"k":2}},"d":1})",
         [](Composition& c) { setStatic(*nodeAt(firstShape(c), EllipsePosition).stream, 0); },
         R"({"ty":"el","p":{"a":0,"k":[0,0]},"d":1})"},
        {"a type is no property", R"({"ty":"sr","sy":1})",
         [](Composition& c) { setStatic(*nodeAt(firstShape(c), StarType).stream, 2); }, R"({"ty":"sr","sy":2})"},
        {"colours of old files", R"({"ty":"fl","c":{"a":0,"k":[0,0,0,255]}})",
         [](Composition& c) { setStatic(*nodeAt(firstShape(c), FillColor).stream, 1, 0.2); },
         R"({"ty":"fl","c":{"a":0,"k":[255,51,0]}})", "4.1.8"},
        {"an outline with keys", R"({"ty":"sh","ks":{"k":{"v":[]}}})",
         [](Composition& c) {
             PathStream& path = *nodeAt(firstShape(c), PathShape).path;
             path.frames = {0, 5, 9};
             path.values = {{{{1, 2}}, true}, {{{3, 4}}, true}, {{{5, 6}}, true}};
             path.segments.resize(3);
             path.segments[1].hold = true;
             path.changed = true;
         },
         R"({"ty":"sh","ks":{"k":[{"t":0,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[1,2]],"c":true}],)"
         R"("o":{"x":0,"y":0},"i":{"x":1,"y":1}},{"t":5,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[3,4]],)"
         R"("c":true}],"h":1},{"t":9,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[5,6]],"c":true}]}],"a":1}})"},
        {"an inner group taken away, its neighbour changed",
         R"({"ty":"gr","it":[{"ty":"gr"}, {"ty":"rc","p":{"k":[1,2]}}, {"ty":"tr"}]})",
         [](Composition& c) {
             TreeNode& contents = nodeAt(firstShape(c), GroupContents);
             contents.children.list().erase(contents.children.list().begin());
             contents.listChanged = true;
             setStatic(*nodeAt(*contents.children[0], RectanglePosition).stream, 0);
         },
         R"({"ty":"gr","it":[{"ty":"rc","p":{"k":[0,0],"a":0}}, {"ty":"tr"}]})"},
    };
    expectRewritten(cases, R"({"ty":4,"shapes":[)", "]}");
}

TEST(StructureWriter, AValueStillLeapsWhereKeysAreAdded) {
    const std::string text = rewritten(documentOf(R"({"ks":{"r":{"a":1,"k":[{"t":0,"s":[0]},{"t":10,"s":[50]},)"
                                                  R"({"t":10,"s":[100]},{"t":20,"s":[0]}]}}})"),
                                       [](Session& s) { keyRotation(s, 40, 7); });
    const Stream rotation = readLottie(text, "again.json").composition->layers[0]->transform.rotation;
    const std::pair<double, double> expected[] = {
        {5, 25}, {10, 100}, {15, 50}, {30, 3.5}}; // at 5 half of the way to 50
    for (const auto& [frame, angle] : expected)
        EXPECT_EQ(valueAt(rotation, frame)[0], angle) << frame << text;
}

TEST(StructureWriter, NothingIsPastedTooDeepToBeReadAgain) {
    std::string groups = R"({"ty":"el"})";
    for (int i = 0; i < 60; ++i)
        groups = R"({"ty":"gr","it":[)" + groups + "]}";
    const std::string text = rewritten(documentOf(R"({"ty":4,"shapes":[)" + groups + "]}"), [](Session& s) {
        EXPECT_EQ(s.copy(s.place(0, "0/0")), A_Err_NONE);
        AEGP_StreamRefH innermost = s.place(0, "0/0");
        for (int i = 1; i < 60; ++i)
            innermost = s.below(innermost, "ADBE Vectors Group/0");
        EXPECT_NE(s.paste(innermost), A_Err_NONE) << "120 groups";
        EXPECT_EQ(s.paste(s.place(0, "0/0")), A_Err_NONE) << "61 groups";
    });
    EXPECT_EQ(text.front(), '{') << "read again: " << text;
}

} // namespace
} // namespace jostle::standalone
