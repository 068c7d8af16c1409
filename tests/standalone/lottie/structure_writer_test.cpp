// Layers, masks and shapes that were moved, copied, added, changed or taken away, as they come out in the text.
#include <algorithm>

#include <gtest/gtest.h>

#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"

namespace jostle::standalone {
namespace {

std::string around(const std::string& layers, const std::string& version = "5.7.4") {
    return R"({"v":")" + version + R"(","fr":25,"ip":0,"op":100,"w":640,"h":480,"layers":[)" + layers + "]}";
}

template<class Change>
std::string rewritten(const std::string& text, const Change& change) {
    const ReadResult read = readLottie(text, "t.json");
    if (!read)
        return read.error;
    change(*read.composition);
    const std::string out = writeLottie(*read.source, *read.composition);
    const ReadResult again = readLottie(out, "again.json");
    return again ? out : again.error;
}

using Layers = std::vector<std::unique_ptr<Layer>>;

int freeId(const Layers& layers) {
    int id = 0;
    for (const auto& layer : layers)
        id = std::max(id, layer->id);
    return id + 1;
}

Layer& duplicate(Layers& layers, std::size_t index) {
    auto copy = copied(*layers[index]);
    copy->id = freeId(layers);
    copy->idInFile = false;
    return **layers.insert(layers.begin() + static_cast<std::ptrdiff_t>(index), std::move(copy));
}

void takeAway(Layers& layers, std::size_t index) {
    for (const auto& layer : layers) {
        if (layer->parent == layers[index].get())
            layer->parent = nullptr;
    }
    layers.erase(layers.begin() + static_cast<std::ptrdiff_t>(index));
}

Layer& addNew(Layers& layers, LayerKind kind, const char* name) {
    auto layer = std::make_unique<Layer>();
    layer->id = freeId(layers);
    layer->kind = kind;
    layer->name = name;
    layer->outFrame = 100;
    for (Stream Transform::*stream : {&Transform::anchor, &Transform::position, &Transform::scale})
        (layer->transform.*stream).components = 3;
    layer->transform.scale.value = {100, 100, 100};
    layer->transform.position.value = {320, 240, 0};
    layer->transform.opacity.value = {kind == LayerKind::Null ? 0.0 : 100.0, 0, 0};
    return **layers.insert(layers.begin(), std::move(layer));
}

void setStatic(Stream& stream, Components value) {
    stream.keys = {};
    stream.value = value;
    stream.hasExpression = stream.expressionEnabled = false;
    stream.changed = true;
}

TEST(StructureWriter, OrderOfLayers) {
    struct Case {
        const char* name;
        const char* before;
        void (*change)(Layers&);
        const char* after;
    };
    constexpr Case cases[] = {
        {"moved, with their bytes and what parts them", R"({"ind":1, "ty":4 } ,  {"ind":2}, null)",
         [](Layers& l) { std::swap(l[0], l[2]); }, R"(null ,  {"ind":2} ,  {"ind":1, "ty":4 })"},
        {"all gone", R"({"ind":1},{"ind":2})", [](Layers& l) { l.clear(); }, ""},
        {"children lose a parent that is gone, others keep what they have",
         R"({"ind":1,"parent":2},{"ind":2},{"ind":3,"parent":9},{"ind":4,"parent":3})",
         [](Layers& l) { takeAway(l, 1); }, R"({"ind":1},{"ind":3,"parent":9},{"ind":4,"parent":3})"},
        {"a copy has a number of its own, a child of its parent still", R"({"ind":1,"parent":2,"x":1.0},{"ind":2})",
         [](Layers& l) { duplicate(l, 0); }, R"({"ind":3,"parent":2,"x":1.0},{"ind":1,"parent":2,"x":1.0},{"ind":2})"},
        {"a copy of a layer without a number", R"({"ty":4})", [](Layers& l) { duplicate(l, 0); },
         R"({"ty":4,"ind":2},{"ty":4})"},
        {"a copy in place of the original, which children have lost", R"({"ind":1},{"ind":2,"parent":1})",
         [](Layers& l) {
             duplicate(l, 0);
             takeAway(l, 1);
         },
         R"({"ind":3},{"ind":2})"},
        {"copies change on their own", R"({"ind":1,"nm":"A","ks":{"r":{"a":0,"k":0}}})",
         [](Layers& l) {
             Layer& copy = duplicate(l, 0);
             setStatic(copy.transform.rotation, {5, 0, 0});
             copy.name = "A \"2\"";
             copy.changed = true;
         },
         R"({"ind":2,"nm":"A \"2\"","ks":{"r":{"a":0,"k":5}}},{"ind":1,"nm":"A","ks":{"r":{"a":0,"k":0}}})"},
        {"a number that a dangling parent happens to name", R"({"ind":1,"parent":2})",
         [](Layers& l) { duplicate(l, 0); }, R"({"ind":2},{"ind":1})"},
        {"a name where there was none", R"({"ind":1})",
         [](Layers& l) {
             l[0]->name = "N";
             l[0]->changed = true;
         },
         R"({"ind":1,"nm":"N"})"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rewritten(around(c.before), [&](Composition& to) { c.change(to.layers); }), around(c.after))
            << c.name;
}

TEST(StructureWriter, TrackMattes) {
    struct Case {
        const char* name;
        const char* before;
        void (*change)(Layers&);
        const char* after;
    };
    constexpr Case cases[] = {
        {"still above: nothing", R"({"ind":1},{"ind":2,"td":1},{"ind":3,"tt":1})", [](Layers& l) { takeAway(l, 0); },
         R"({"ind":2,"td":1},{"ind":3,"tt":1})"},
        {"a copy comes between", R"({"ind":1,"td":1},{"ind":2,"tt":1})", [](Layers& l) { duplicate(l, 1); },
         R"({"ind":1,"td":1},{"ind":3,"tt":1},{"ind":2,"tt":1,"tp":1})"},
        {"the matte has no number yet", R"({"td":1},{"tt":1})", [](Layers& l) { std::swap(l[0], l[1]); },
         R"({"tt":1,"tp":1},{"td":1,"ind":1})"},
        {"the matte is gone", R"({"ind":1,"td":1},{"ind":2,"tt":1},{"ind":3,"tt":2,"tp":1})",
         [](Layers& l) { takeAway(l, 0); }, R"({"ind":2},{"ind":3})"},
        {"a named matte moves", R"({"ind":1,"td":1},{"ind":2,"tt":1,"tp":1})", [](Layers& l) { std::swap(l[0], l[1]); },
         R"({"ind":2,"tt":1,"tp":1},{"ind":1,"td":1})"},
        {"nothing was above, something comes", R"({"ind":1,"tt":1},{"ind":2})",
         [](Layers& l) { std::swap(l[0], l[1]); }, R"({"ind":2},{"ind":1})"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rewritten(around(c.before), [&](Composition& to) { c.change(to.layers); }), around(c.after))
            << c.name;
}

TEST(StructureWriter, NewLayers) {
    const std::string shape =
        R"({"ddd":0,"ind":9,"ty":4,"nm":"S","parent":8,"sr":1,"ks":{"a":{"a":0,"k":[0,0,0]},"p":{"a":0,"k":[320,240,0]},)"
        R"("s":{"a":0,"k":[100,100,100]},"r":{"a":0,"k":0},"o":{"a":0,"k":100}},"ao":0,"shapes":[],"ip":0,"op":100,)"
        R"("st":0,"bm":0})";
    const std::string null =
        R"({"ddd":0,"ind":8,"ty":3,"nm":"N","sr":1,"ks":{"a":{"a":0,"k":[0,0,0]},"p":{"a":0,"k":[320,240,0]},)"
        R"("s":{"a":0,"k":[100,100,100]},"r":{"a":0,"k":0},"o":{"a":0,"k":0}},"ao":0,"ip":0,"op":100,"st":0,"bm":0})";
    const auto change = [](Composition& c) {
        Layer& parent = addNew(c.layers, LayerKind::Null, "N");
        addNew(c.layers, LayerKind::Shape, "S").parent = &parent;
        c.layers[2]->parent = &parent;
        c.layers[2]->changed = true;
    };
    EXPECT_EQ(rewritten(around(R"({"ind":7})"), change), around(shape + "," + null + R"(,{"ind":7,"parent":8})"));

    const std::string laidOut = rewritten("{\n \"fr\": 25, \"w\": 9, \"h\": 9,\n \"layers\": [\n ]\n}\n",
                                          [](Composition& c) { addNew(c.layers, LayerKind::Null, "N"); });
    EXPECT_EQ(
        laidOut,
        "{\n \"fr\": 25, \"w\": 9, \"h\": 9,\n \"layers\": [\n  {\n   \"ddd\": 0,\n   \"ind\": 1,\n"
        "   \"ty\": 3,\n   \"nm\": \"N\",\n   \"sr\": 1,\n   \"ks\": {\n    \"a\": {\"a\": 0, \"k\": [0, 0, 0]},\n"
        "    \"p\": {\"a\": 0, \"k\": [320, 240, 0]},\n    \"s\": {\"a\": 0, \"k\": [100, 100, 100]},\n"
        "    \"r\": {\"a\": 0, \"k\": 0},\n    \"o\": {\"a\": 0, \"k\": 0}\n   },\n   \"ao\": 0,\n"
        "   \"ip\": 0,\n   \"op\": 100,\n   \"st\": 0,\n   \"bm\": 0\n  }\n ]\n}\n");
}

TEST(StructureWriter, RotationThatWasMadeIsAllOfIt) {
    const auto turn = [](Composition& c) {
        Stream& rotation = c.layers[0]->transform.rotation;
        rotation.keys = {{0, 1}, {0, 90}, {}};
        rotation.changed = true;
    };
    const std::string out = rewritten(around(R"({"ao":1,"ks":{}})"), turn);
    EXPECT_NE(out.find(R"("ao":0)"), std::string::npos) << out;
    const auto rest = [](Composition& c) { setStatic(c.layers[0]->transform.rotation, {5, 0, 0}); };
    EXPECT_EQ(rewritten(around(R"({"ao":1})"), rest), around(R"({"ao":1,"ks":{"r":{"a":0,"k":5}}})"));
}

/// Edits of the tree of the only layer.
struct TreeCase {
    const char* name;
    const char* before;
    void (*change)(TreeNode&);
    const char* after;
    const char* version = "5.7.4";
};

void expectEdits(const TreeCase& c) {
    const auto change = [&](Composition& composition) { c.change(treeOf(composition, *composition.layers[0])); };
    EXPECT_EQ(rewritten(around(c.before, c.version), change), around(c.after, c.version)) << c.name;
}

TreeNode& masksOf(TreeNode& root) {
    if (TreeNode* parade = childOf(root, NodeKind::MaskParade))
        return *parade;
    TreeNode& parade = addNode(root, NodeKind::MaskParade);
    std::rotate(root.children.begin(), root.children.end() - 1, root.children.end());
    return parade;
}

TreeNode& addMask(TreeNode& root, const char* name, PathValue outline) {
    TreeNode& parade = masksOf(root);
    parade.listChanged = true;
    TreeNode& mask = addNode(parade, NodeKind::Mask);
    mask.name = name;
    childOf(mask, NodeKind::MaskShape)->path->value = std::move(outline);
    return mask;
}

TEST(StructureWriter, Masks) {
    constexpr TreeCase cases[] = {
        {"the first one", R"({"ty":1})",
         [](TreeNode& root) {
             addMask(root, "M", {{{1, 2, 0.5, 0, -0.5, 0}, {3, 4}}, true});
         },
         R"({"ty":1,"hasMask":true,"masksProperties":[{"inv":false,"mode":"a","pt":{"a":0,"k":{"i":[[0.5,0],[0,0]],)"
         R"("o":[[-0.5,0],[0,0]],"v":[[1,2],[3,4]],"c":true}},"o":{"a":0,"k":100},"x":{"a":0,"k":0},"nm":"M"}]})"},
        {"one more, with feather, in an old file", R"({"hasMask":false,"masksProperties":[{"mode":"n" }]})",
         [](TreeNode& root) {
             TreeNode& mask = addMask(root, "B", {{}, false});
             childOf(mask, NodeKind::MaskFeather)->stream->value = {1, 2, 0};
         },
         R"({"hasMask":true,"masksProperties":[{"mode":"n" },{"inv":false,"mode":"a","pt":{"a":0,"k":{"i":[],"o":[],)"
         R"("v":[],"c":false}},"cl":false,"f":{"a":0,"k":[1,2]},"o":{"a":0,"k":100},"x":{"a":0,"k":0},"nm":"B"}]})",
         "4.4.17"},
        {"the last one goes", R"({"a":1,"hasMask":true,"masksProperties":[{}],"b":2})",
         [](TreeNode& root) {
             masksOf(root).children.clear();
             masksOf(root).listChanged = true;
         },
         R"({"a":1,"b":2})"},
        {"one of two goes, the other has changes",
         R"({"hasMask":true,"masksProperties":[{"nm":"A"}, {"nm":"B","o":{"k":7}}]})",
         [](TreeNode& root) {
             auto& masks = masksOf(root).children;
             masks.erase(masks.begin());
             masksOf(root).listChanged = true;
             setStatic(*childOf(*masks[0], NodeKind::MaskOpacity)->stream, {8, 0, 0});
         },
         R"({"hasMask":true,"masksProperties":[{"nm":"B","o":{"k":8,"a":0}}]})"},
        {"values and name in place", R"({"masksProperties":[{"nm":"A","pt":{"a":1,"k":[],"x":"e"},"cl":false}]})",
         [](TreeNode& root) {
             TreeNode& mask = *masksOf(root).children[0];
             mask.name = "C";
             PathStream& path = *childOf(mask, NodeKind::MaskShape)->path;
             path = {};
             path.value = {{{1.25, 2}}, true};
             path.changed = true;
             setStatic(*childOf(mask, NodeKind::MaskOffset)->stream, {-3, 0, 0});
         },
         R"({"masksProperties":[{"nm":"C","pt":{"a":0,"k":{"i":[[0,0]],"o":[[0,0]],"v":[[1.25,2]],"c":true}},"cl":false,)"
         R"("x":{"a":0,"k":-3}}]})"},
        {"closed beside the path in an old file", R"({"masksProperties":[{"pt":{"k":{}},"cl":false}]})",
         [](TreeNode& root) {
             PathStream& path = *childOf(*masksOf(root).children[0], NodeKind::MaskShape)->path;
             path.value = {{{1, 2}}, true};
             path.changed = true;
         },
         R"({"masksProperties":[{"pt":{"k":{"i":[[0,0]],"o":[[0,0]],"v":[[1,2]],"c":true},"a":0},"cl":true}]})",
         "4.4.17"},
    };
    for (const TreeCase& c : cases)
        expectEdits(c);
}

TreeNode& groupOf(TreeNode& root) {
    return *childOf(root, NodeKind::VectorsRoot)->children[0];
}

/// Makes the position and the anchor of the first group static zero.
void clearGroup(TreeNode& root) {
    TreeNode& transform = *childOf(groupOf(root), NodeKind::GroupTransform);
    for (const NodeKind kind : {NodeKind::GroupAnchor, NodeKind::GroupPosition})
        setStatic(*childOf(transform, kind)->stream, {});
}

TEST(StructureWriter, ValuesOfShapes) {
    constexpr TreeCase cases[] = {
        {"a group's place, with expression and slot",
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"tr","a":{"k":[1,2],"sid":"s","x":"e"},"p":{"k":[3,4,5]}},{"ty":"fl"}]}]})",
         clearGroup,
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"tr","a":{"k":[0,0],"a":0},"p":{"k":[0,0,0],"a":0}},{"ty":"fl"}]}]})"},
        {"properties that are missing", R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"tr"}]}]})",
         [](TreeNode& root) {
             TreeNode& transform = *childOf(groupOf(root), NodeKind::GroupTransform);
             setStatic(*childOf(transform, NodeKind::GroupRotation)->stream, {45, 0, 0});
         },
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"tr","r":{"a":0,"k":45}}]}]})"},
        {"a transform that is missing", R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"fl"}, {"ty":"st"}]}]})",
         clearGroup,
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"fl"}, {"ty":"st"}, {"ty":"tr","a":{"a":0,"k":[0,0]},)"
         R"("p":{"a":0,"k":[0,0]},"s":{"a":0,"k":[100,100]},"sk":{"a":0,"k":0},"sa":{"a":0,"k":0},"r":{"a":0,"k":0},)"
         R"("o":{"a":0,"k":100},"nm":"Transform"}]}]})"},
        {"separated positions are one",
         R"({"ty":4,"shapes":[{"ty":"el","p":{"s":true,"x":{"k":1},"y":{"k":2}},"d":1}]})",
         [](TreeNode& root) { setStatic(*childOf(groupOf(root), NodeKind::EllipsePosition)->stream, {}); },
         R"({"ty":4,"shapes":[{"ty":"el","p":{"a":0,"k":[0,0]},"d":1}]})"},
        {"a type is no property", R"({"ty":4,"shapes":[{"ty":"sr","sy":1}]})",
         [](TreeNode& root) {
             setStatic(*childOf(groupOf(root), NodeKind::StarType)->stream, {2, 0, 0});
         },
         R"({"ty":4,"shapes":[{"ty":"sr","sy":2}]})"},
        {"colours of old files", R"({"ty":4,"shapes":[{"ty":"fl","c":{"a":0,"k":[0,0,0,255]}}]})",
         [](TreeNode& root) {
             setStatic(*childOf(groupOf(root), NodeKind::FillColor)->stream, {1, 0.2, 0});
         },
         R"({"ty":4,"shapes":[{"ty":"fl","c":{"a":0,"k":[255,51,0]}}]})", "4.1.8"},
        {"an outline with keys", R"({"ty":4,"shapes":[{"ty":"sh","ks":{"k":{"v":[]}}}]})",
         [](TreeNode& root) {
             PathStream& path = *childOf(groupOf(root), NodeKind::PathShape)->path;
             path.frames = {0, 5, 9};
             path.values = {{{{1, 2}}, true}, {{{3, 4}}, true}, {{{5, 6}}, true}};
             path.segments.resize(3);
             path.segments[1].hold = true;
             path.changed = true;
         },
         R"({"ty":4,"shapes":[{"ty":"sh","ks":{"k":[{"t":0,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[1,2]],"c":true}],)"
         R"("o":{"x":0.167,"y":0.167},"i":{"x":0.833,"y":0.833}},{"t":5,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[3,4]],)"
         R"("c":true}],"h":1},{"t":9,"s":[{"i":[[0,0]],"o":[[0,0]],"v":[[5,6]],"c":true}]}],"a":1}}]})"},
    };
    for (const TreeCase& c : cases)
        expectEdits(c);
}

TEST(StructureWriter, ListsOfShapes) {
    constexpr TreeCase cases[] = {
        {"an inner group taken away, its neighbour changed",
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"gr"}, {"ty":"rc","p":{"k":[1,2]}}, {"ty":"tr"}]}]})",
         [](TreeNode& root) {
             TreeNode& contents = *childOf(groupOf(root), NodeKind::GroupContents);
             contents.children.erase(contents.children.begin());
             contents.listChanged = true;
             setStatic(*childOf(*contents.children[0], NodeKind::RectanglePosition)->stream, {});
         },
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"rc","p":{"k":[0,0],"a":0}}, {"ty":"tr"}]}]})"},
        {"all taken away", R"({"ty":4,"shapes":[{"ty":"rc"}]})",
         [](TreeNode& root) {
             root.children[0]->children.clear();
             root.children[0]->listChanged = true;
         },
         R"({"ty":4,"shapes":[]})"},
        {"a new group", R"({"ty":4})",
         [](TreeNode& root) {
             TreeNode& group = addNode(*root.children[0], NodeKind::Group);
             group.name = "G";
             TreeNode& ellipse = addNode(*childOf(group, NodeKind::GroupContents), NodeKind::Ellipse);
             childOf(ellipse, NodeKind::EllipseSize)->stream->value = {5, 6, 0};
             auto& transform = childOf(group, NodeKind::GroupTransform)->children;
             transform.erase(transform.begin() + 1, transform.end());
         },
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"el","s":{"a":0,"k":[5,6]},"p":{"a":0,"k":[0,0]},)"
         R"("nm":"Ellipse Path"},{"ty":"tr","a":{"a":0,"k":[0,0]},"nm":"Transform"}],"nm":"G"}]})"},
    };
    for (const TreeCase& c : cases)
        expectEdits(c);
}

// As a separation does it: a new shape layer takes a group of another one, cleared of its place.
TEST(StructureWriter, GroupsPastedIntoOtherLayers) {
    const std::string group =
        R"({"ty":"gr", "nm":"G","it":[{"ty":"fl","c":{"k":[1e0,0,0]}},{"ty":"tr","p":{"a":0,"k":[9,9]}}]})";
    std::string cleared = group;
    cleared.replace(cleared.find("[9,9]"), 5, "[0,0]");
    const std::string before = R"({"ind":1,"ty":4,"shapes":[)" + group + "]}";
    const std::string out = rewritten(around(before), [](Composition& c) {
        const TreeNode& from = groupOf(treeOf(c, *c.layers[0]));
        Layer& layer = addNew(c.layers, LayerKind::Shape, "G");
        TreeNode& list = *childOf(treeOf(c, layer), NodeKind::VectorsRoot);
        list.children.push_back(copied(from, &list));
        list.listChanged = true;
        TreeNode& transform = *childOf(*list.children[0], NodeKind::GroupTransform);
        setStatic(*childOf(transform, NodeKind::GroupPosition)->stream, {});
    });
    EXPECT_NE(out.find(R"("shapes":[)" + cleared + R"(],"ip":0)"), std::string::npos) << out;
    EXPECT_NE(out.find(before), std::string::npos) << "the original stays as it is";
}

} // namespace
} // namespace jostle::standalone
