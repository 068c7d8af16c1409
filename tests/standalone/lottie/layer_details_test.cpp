#include "standalone/lottie/layer_details_reader.h"

#include <tuple>

#include "standalone/document/evaluate.h"
#include "tests/standalone/lottie/documents.h"

namespace jostle::standalone {
namespace {

using enum NodeKind;

ReadResult layersOf(const std::string& layers, const std::string& more = R"("v":"5.7.4",)") {
    return readLottie(documentOf(layers, more), "t.json");
}

ReadResult shapesOf(const std::string& shapes, const std::string& more = R"("v":"5.7.4",)") {
    return layersOf(R"({"ty":4,"shapes":)" + shapes + "}", more);
}

const TreeNode& firstTree(const ReadResult& read) {
    return firstTree(*read.composition);
}

/// An element of the first layer's shapes.
TreeNode& shapeAt(const ReadResult& read, std::size_t index = 0) {
    return *firstTree(read).children[0]->children[index];
}

const Stream& streamAt(TreeNode& element, NodeKind kind) {
    return *nodeAt(element, kind).stream;
}

/// Names and kinds of a tree in short, to compare at a glance: elements by their type, lists in brackets.
std::string outlineOf(const TreeNode& node) {
    std::string out = *factsOf(node).member ? factsOf(node).member : "?";
    if (node.kind == OtherElement)
        out = '<' + *node.matchName + '>';
    if (factsOf(node).grouping != Grouping::Indexed && node.kind != Group)
        return out;
    out += '[';
    for (const auto& child : node.children)
        out += (out.back() == '[' ? "" : " ") + outlineOf(*child);
    return out + ']';
}

TEST(LayerDetails, TreesInTheOrderOfTheFile) {
    // What hangs on the root, but for the transform, which always comes last.
    constexpr std::tuple<const char*, const char*, const char*> cases[] = {
        {"missing list", R"({"ty":4})", "shapes[] "},
        {"no list", R"({"ty":4,"shapes":null})", "shapes[] "},
        {"shapes of a solid", R"({"ty":1,"shapes":[{"ty":"rc"}]})", ""},
        {"masks come after shapes", R"({"ty":4,"masksProperties":[{},2]})", "shapes[] masksProperties[?] "},
        {"no layer", "null", ""},
        {"elements outside any group", R"({"ty":4,"shapes":[{"ty":"rc"},{"ty":"fl"}]})", "shapes[rc fl] "},
        {"the transform comes last wherever it stands",
         R"({"ty":4,"shapes":[{"ty":"gr","it":[{"ty":"tr"},{"ty":"el"},{"ty":"gr","it":[{"ty":"sh"}]}]}]})",
         "shapes[gr[it[el gr[it[sh] tr]] tr]] "},
        {"group without contents", R"({"ty":4,"shapes":[{"ty":"gr"},{"ty":"gr","it":7}]})",
         "shapes[gr[it[] tr] gr[it[] tr]] "},
        {"unknown elements by their match name",
         R"({"ty":4,"shapes":[{"ty":"zz9","mn":"ADBE New"},{"ty":"tr","mn":"x"},{"mn":"Y"}]})",
         "shapes[<ADBE New> <> <Y>] "},
        {"what is no object is passed over", R"({"ty":4,"shapes":[1,null,{"ty":"sr"},[]]})", "shapes[sr] "},
        {"all that is known",
         R"({"ty":4,"shapes":[{"ty":"st"},{"ty":"gf"},{"ty":"gs"},{"ty":"tm"},{"ty":"rp"},{"ty":"mm"},{"ty":"rd"},
             {"ty":"op"},{"ty":"pb"},{"ty":"zz"},{"ty":"tw"}]})",
         "shapes[st gf gs tm rp mm rd op pb zz tw] "},
    };
    for (const auto& [name, layer, expected] : cases) {
        const ReadResult read = layersOf(layer);
        std::string outline;
        for (const TreeNode* child : firstTree(read).children)
            outline += child->kind == MaskParade && child->children.empty() ? "" : outlineOf(*child) + " ";
        EXPECT_EQ(outline, std::string(expected) + "ks ") << name;
    }
}

// Their values are looked at where they become bodies.
TEST(LayerDetails, ADimensionIsNoExpression) {
    const ReadResult read =
        shapesOf(R"([{"ty":"rc","p":{"s":true,"x":{"k":7},"y":{"k":8}},"r":{"k":45,"x":"wiggle"}}])");
    const LayerDetails& details = *read.composition->details;
    EXPECT_EQ(details.expressionAt(nodeAt(shapeAt(read), RectangleRoundness).source), "wiggle");
    EXPECT_EQ(details.expressionAt(nodeAt(shapeAt(read), RectanglePosition).source), "");
    EXPECT_EQ(details.expressionAt({}), "");
}

// Where both dimensions have keys at the same frames each keeps its easing; else whole frames are what they were.
TEST(LayerDetails, SeparatedPositionsBecomeOne) {
    const std::string eased = R"({"t":0,"s":[0],"o":{"x":[0.5],"y":[0]},"i":{"x":[0.5],"y":[1]}})";
    for (const char* last : {"20", "15"}) {
        const std::string x = R"({"k":[)" + eased + R"(,{"t":20,"s":[100]}]})";
        const std::string y = R"({"k":[{"t":0,"s":[8],"h":0},{"t":)" + std::string(last) + R"(,"s":[28]}]})";
        const ReadResult whole = shapesOf(R"([{"ty":"el","p":{"s":true,"x":)" + x + ",\"y\":" + y + "}}]");
        const ReadResult parts = shapesOf(R"([{"ty":"st","o":)" + x + ",\"w\":" + y + "}]");
        const Stream& merged = streamAt(shapeAt(whole), EllipsePosition);
        const Stream &first = streamAt(shapeAt(parts), StrokeOpacity), &second = streamAt(shapeAt(parts), StrokeWidth);
        for (const double frame : {-1.0, 0.0, 3.0, 10.0, 15.0, 17.0, 20.0, 30.0}) {
            const Components expected{valueAt(first, frame)[0], valueAt(second, frame)[0], 0};
            EXPECT_EQ(valueAt(merged, frame), expected) << last << " at " << frame;
        }
    }
}

TEST(LayerDetails, Outlines) {
    const std::string keys = R"("ks":{"k":[{"t":0,"s":[{"v":[[0,0],[10,0]],"c":true}]},)"
                             R"({"t":10,"s":[{"v":[[4,0],[10,8]]}]},{"t":20}]})";
    const std::string hold = R"("ks":{"k":[{"t":0,"s":[{"v":[[1,1]]}],"h":1},{"t":10,"s":[{"v":[[9,9]]}]}]})";
    const std::string counts = R"("ks":{"k":[{"t":0,"s":[{"v":[[1,1]]}]},{"t":10,"s":[{"v":[]}]}]})";
    const std::string leap = R"("ks":{"k":[{"t":0,"s":[{"v":[[0,0]]}]},{"t":10,"s":[{"v":[[2,0]]}]},)"
                             R"({"t":10,"s":[{"v":[[9,9]]}]},{"t":20,"s":[{"v":[[9,9]]}]}]})";
    const char* const beside = R"("closed":false,"ks":{"k":{"v":[[1,2]],"c":true}})";
    const char* const square = R"("ks":{"k":{"v":[[1,2],[3,4]],"i":[[5,6]],"o":[[7,8],[9,10]],"c":true}})";
    // Members of the element and of the document, the outline, and the frame that it is for.
    const std::tuple<const char*, std::string, const char*, PathValue, double> cases[] = {
        {"tangents short of the vertices", square, "", {{{1, 2, 5, 6, 7, 8}, {3, 4, 0, 0, 9, 10}}, true}, 5},
        {"absolute tangents", square, R"("__complete":true,)", {{{1, 2, 4, 4, 6, 6}, {3, 4, 0, 0, 6, 6}}, true}, 5},
        {"open unless told", R"("ks":{"k":{"v":[[1,2]]}})", "", {{{1, 2}}, false}, 5},
        {"old: beside the path", beside, R"("v":"4.4.17",)", {{{1, 2}}}, 5},
        {"later: within the path", beside, R"("v":"4.4.18",)", {{{1, 2}}, true}, 5},
        {"no vertices", R"("ks":{"k":{"v":[],"c":true}})", "", {{}, true}, 5},
        {"entries that are none", R"("ks":{"k":{"v":[null,[1],["a","b"]]}})", "", {{{0, 0}, {1, 0}, {0, 0}}}, 5},
        {"no path", R"("ks":{"k":3})", "", {}, 5},
        {"a vertex too far away", R"("ks":{"k":{"v":[[1e300,-1e999]]}})", "", {{{1e15, -1e15}}}, 5},
        {"half way between keys, closed as the first", keys, "", {{{2, 0}, {10, 4}}, true}, 5},
        {"held", hold, "", {{{1, 1}}}, 5},
        {"different counts hold the first", counts, "", {{{1, 1}}}, 5},
        {"before two keys at one frame", leap, "", {{{1, 0}}}, 5},
        {"at the frame of two keys the later counts", leap, "", {{{9, 9}}}, 10},
        {"before the first key", leap, "", {{{0, 0}}}, -1},
        {"from a slot", R"("ks":{"sid":"s"})", R"("slots":{"s":{"p":{"k":{"v":[[6,7]]}}}},)", {{{6, 7}}}, 5},
    };
    for (const auto& [name, members, more, outline, frame] : cases) {
        SCOPED_TRACE(name);
        const ReadResult read = shapesOf(R"([{"ty":"sh",)" + members + "}]", more);
        ASSERT_TRUE(read) << read.error;
        EXPECT_EQ(valueAt(*shapeAt(read).children[0]->path, frame), outline);
    }
}

TEST(LayerDetails, Masks) {
    const ReadResult read = layersOf(
        R"({"ty":1,"masksProperties":[{"nm":"M","mode":"n","cl":false,"pt":{"k":{"v":[[1,2]],"c":true}},
            "o":{"k":50},"x":{"k":3}},{"cl":true,"f":{"k":[4,5]}}]})",
        R"("v":"4.0.0",)");
    const auto& masks = firstTree(read).children[0]->children;
    ASSERT_EQ(masks.size(), 2u);
    EXPECT_EQ(*masks[0]->name, "M");
    EXPECT_FALSE(nodeAt(*masks[0], MaskShape).path->value.closed) << "beside the path in this version";
    EXPECT_EQ(streamAt(*masks[0], MaskOpacity).value[0], 50);
    EXPECT_EQ(streamAt(*masks[0], MaskOffset).value[0], 3);
    EXPECT_EQ(streamAt(*masks[0], MaskFeather).value, Components{});
    EXPECT_EQ(streamAt(*masks[1], MaskOpacity).value[0], 100);
    EXPECT_EQ(streamAt(*masks[1], MaskFeather).value, (Components{4, 5, 0}));
}

TEST(LayerDetails, ColoursOfOldVersions) {
    const std::string shapes =
        R"([{"ty":"fl","c":{"k":[{"t":0,"s":[255,51,0,255],"e":[0,0,0,255]},{"t":10}]}},{"ty":"st","c":{"k":[51,0,0,255]}}])";
    for (const auto& [version, factor] : {std::pair{"4.1.8", 1 / 255.0}, {"4.1.9", 1.0}, {"old", 1.0}}) {
        SCOPED_TRACE(version);
        const ReadResult read = shapesOf(shapes, "\"v\":\"" + std::string(version) + "\",");
        const Stream& fill = streamAt(shapeAt(read), FillColor);
        EXPECT_EQ(valueAt(fill, 0), (Components{255 * factor, 51 * factor, 0}));
        EXPECT_NEAR(valueAt(fill, 5)[0], 127.5 * factor, 1e-9);
        EXPECT_EQ(streamAt(shapeAt(read, 1), StrokeColor).value[0], 51 * factor);
    }
}

} // namespace
} // namespace jostle::standalone
