#include "standalone/lottie/writer.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

#include "standalone/document/evaluate.h"
#include "standalone/lottie/number_text.h"

namespace jostle::standalone {
namespace {

/// Reads a document, has it changed and writes it.
template<class Change>
std::string rewritten(const std::string& text, const Change& change) {
    const ReadResult read = readLottie(text, "t.json");
    if (!read)
        return read.error;
    change(*read.composition);
    return writeLottie(*read.source, *read.composition);
}

std::string around(const std::string& layer) {
    return R"({"v":"5.7.4","fr":25,"ip":0,"op":100,"w":640,"h":480,"layers":[)" + layer + "]}";
}

void setStatic(Stream& stream, Components value) {
    stream.keys = {};
    stream.value = value;
    stream.changed = true;
}

void bake(Stream& stream, std::vector<double> frames, std::vector<double> values) {
    stream.keys = {std::move(frames), std::move(values), {}};
    stream.hasExpression = stream.expressionEnabled = false;
    stream.changed = true;
}

/// Marks what the text has of a tree as changed, but for what is written in another form than it is read from.
void markAll(TreeNode& node) {
    const bool colour = node.kind == NodeKind::FillColor || node.kind == NodeKind::StrokeColor;
    if (node.own && !colour)
        node.own->changed = !node.source.empty() && !node.hasSeparatedSource;
    if (node.path)
        node.path->changed = !node.source.empty();
    for (const auto& child : node.children)
        markAll(*child);
}

TEST(Writer, EverySampleComesBackByteForByte) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(JOSTLE_TEST_DATA "/lottie")) {
        if (entry.path().extension() != ".json")
            continue;
        SCOPED_TRACE(entry.path().filename());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(rewritten(text, [](Composition&) {}), text);
        const auto readTrees = [](Composition& c) {
            for (const auto& layer : c.layers)
                (void)treeOf(c, *layer);
        };
        EXPECT_EQ(rewritten(text, readTrees), text);
        ++count;

        // All marked but nothing different: still the same, whatever the model holds of it.
        const auto mark = [](Composition& c) {
            for (const auto& layer : c.layers) {
                markAll(treeOf(c, *layer));
                Transform& t = layer->transform;
                for (Stream* s :
                     {&t.anchor, &t.position, &t.positionX, &t.positionY, &t.scale, &t.rotation, &t.opacity})
                    s->changed = !s->source.empty();
                if (t.separated)
                    t.position.changed = t.positionX.changed = t.positionY.changed = false;
            }
            c.changed = true;
        };
        EXPECT_EQ(rewritten(text, mark), text);
    }
    EXPECT_GT(count, 0);
}

// A value of every stream of every layer changed: it is there when the file is read again, and all that lies before
// the first and behind the last property is as it was.
TEST(Writer, ChangesOfSamplesAreReadBack) {
    for (const auto& entry : std::filesystem::directory_iterator(JOSTLE_TEST_DATA "/lottie")) {
        if (entry.path().extension() != ".json")
            continue;
        SCOPED_TRACE(entry.path().filename());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const auto change = [](Composition& c) {
            for (const auto& layer : c.layers) {
                bake(layer->transform.rotation, {0, 1, 5}, {1, 2.5, -3});
                setStatic(layer->transform.scale, {50, 60, 100});
                layer->transform.scale.components = 3;
                layer->changed = layer->motionBlur = true;
                layer->parent = nullptr;
            }
        };
        const std::string changed = rewritten(text, change);
        const ReadResult read = readLottie(changed, "again");
        ASSERT_TRUE(read) << read.error;
        for (const auto& layer : read.composition->layers) {
            EXPECT_EQ(layer->transform.rotation.keys.values, (std::vector<double>{1, 2.5, -3}));
            EXPECT_EQ(layer->transform.scale.value, (Components{50, 60, 100}));
            EXPECT_TRUE(layer->motionBlur);
            EXPECT_EQ(layer->parent, nullptr);
        }
        EXPECT_EQ(rewritten(changed, [](Composition&) {}), changed);
    }
}

TEST(Writer, EditsOfOneProperty) {
    struct Case {
        const char* name;
        const char* before;
        void (*change)(Transform&);
        const char* after;
    };
    const Case cases[] = {
        {"baked position of two components, expression and slot go",
         R"({"a":0,"x":"wiggle","k":[1,2],"sid":"s","ix":2})",
         [](Transform& t) {
             bake(t.position, {0, 1}, {1, 2, 1.5, 2.0004});
         },
         R"({"a":1,"k":[{"t":0,"s":[1,2],"o":{"x":0.167,"y":0.167},"i":{"x":0.833,"y":0.833}},{"t":1,"s":[1.5,2]}],"ix":2})"},
        {"a lone key is static", R"({"k":[1,2,3]})",
         [](Transform& t) {
             bake(t.position, {4}, {-0.0001, 0.0005, 7});
         },
         R"({"k":[0,0.001,7],"a":0})"},
        {"static in place of keys", R"({"a":1,"k":[{"t":0,"s":[1,2]},{"t":9,"s":[3,4]}],"l":2})",
         [](Transform& t) {
             setStatic(t.position, {5.12345, -6, 0});
         },
         R"({"a":0,"k":[5.123,-6],"l":2})"},
        {"only the expression is disabled", R"({"x":"time","a":0,"k":[1,2]})",
         [](Transform& t) {
             t.position.expressionEnabled = false;
             t.position.changed = true;
         },
         R"({"a":0,"k":[1,2]})"},
        {"numbers that are not finite give way to the last that was", R"({"a":0,"k":[1,2]})",
         [](Transform& t) {
             const double nan = std::numeric_limits<double>::quiet_NaN();
             bake(t.position, {0, 1}, {3, nan, nan, std::numeric_limits<double>::infinity()});
         },
         R"({"a":1,"k":[{"t":0,"s":[3,0],"o":{"x":0.167,"y":0.167},"i":{"x":0.833,"y":0.833}},{"t":1,"s":[3,0]}]})"},
        {"dimensions become one", R"({"s":1,"x":{"k":1},"y":{"k":2}})",
         [](Transform& t) {
             t.separated = false;
             setStatic(t.position, {1, 2, 3});
         },
         R"({"a":0,"k":[1,2,3]})"},
        {"dimensions stay, their flag as a boolean", R"({"s":1,"x":{"k":1},"y":{"k":2,"x":"y"}})",
         [](Transform& t) {
             bake(t.positionX, {0, 2}, {0, 1});
             setStatic(t.positionY, {4, 0, 0});
         },
         R"({"s":true,"x":{"k":[{"t":0,"s":[0],"o":{"x":[0.167],"y":[0.167]},"i":{"x":[0.833],"y":[0.833]}},{"t":2,"s":[1]}],"a":1},"y":{"k":4,"a":0}})"},
        {"no object", "7",
         [](Transform& t) {
             setStatic(t.position, {1, 2, 0});
         },
         R"({"a":0,"k":[1,2,0]})"},
        {"doubled members", R"({"k":[9,9],"a":0,"k":[1,2],"sid":"a","sid":"b"})",
         [](Transform& t) {
             setStatic(t.position, {3, 4, 0});
         },
         R"({"k":[9,9],"a":0,"k":[3,4]})"},
        {"keys of the file keep what they are",
         R"({"a":1,"k":[{"t":0,"s":[1,2],"e":[3,4],"o":{"x":0.1234567,"y":0},"i":{"x":0.5,"y":1},"n":"0p1","to":[5,6],"ti":[-1,0]},{"t":4.5,"s":[3,4],"h":1},{"t":9,"s":[0.33333,0]}]})",
         [](Transform& t) {
             t.position.keys.values[0] = 7;
             t.position.changed = true;
         },
         R"({"a":1,"k":[{"t":0,"s":[7,2],"o":{"x":0.1234567,"y":0},"i":{"x":0.5,"y":1},"to":[5,6],"ti":[-1,0]},{"t":4.5,"s":[3,4],"h":1},{"t":9,"s":[0.33333,0]}]})"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto layer = [](const char* position) {
            return around(R"({"ty":4, "ks":{"o":{"k":1e2}, "p":)" + std::string(position) +
                          R"(,"unknown":[ 1.0 ]},"nm":"\u00e9"})");
        };
        const auto change = [&](Composition& composition) { c.change(composition.layers[0]->transform); };
        EXPECT_EQ(rewritten(layer(c.before), change), layer(c.after));
    }
}

TEST(Writer, HandlesByStream) {
    const std::string text = around(R"({"ty":4,"ks":{"s":{"a":0,"k":[1,2,3]},"r":{"a":0,"k":0}}})");
    const std::string out = rewritten(text, [](Composition& c) {
        bake(c.layers[0]->transform.scale, {0, 1}, {1, 2, 3, 4, 5, 6});
        bake(c.layers[0]->transform.rotation, {0, 1}, {0, 720.5});
    });
    const char* scale = R"({"t":0,"s":[1,2,3],"o":{"x":[0.167,0.167,0.167],"y":[0.167,0.167,0.167]},)"
                        R"("i":{"x":[0.833,0.833,0.833],"y":[0.833,0.833,0.833]}},{"t":1,"s":[4,5,6]}])";
    const char* rotation =
        R"({"t":0,"s":[0],"o":{"x":[0.167],"y":[0.167]},"i":{"x":[0.833],"y":[0.833]}},{"t":1,"s":[720.5]}])";
    EXPECT_NE(out.find(scale), std::string::npos) << out;
    EXPECT_NE(out.find(rotation), std::string::npos) << out;
}

TEST(Writer, MembersThatAreMissing) {
    struct Case {
        const char* name;
        const char* before;
        const char* after;
    };
    constexpr Case cases[] = {
        {"no rotation", R"({"ty":4,"ks":{"p":{"k":[1,2]}}})", R"({"ty":4,"ks":{"p":{"k":[1,2]},"r":{"a":0,"k":5}}})"},
        {"empty transform", R"({"ty":4,"ks":{}})", R"({"ty":4,"ks":{"r":{"a":0,"k":5}}})"},
        {"no transform", R"({"ty":4})", R"({"ty":4,"ks":{"r":{"a":0,"k":5}}})"},
        {"empty layer", "{}", R"({"ks":{"r":{"a":0,"k":5}}})"},
        {"3D layer", R"({"ty":4,"ddd":1,"ks":{}})", R"({"ty":4,"ddd":1,"ks":{"rz":{"a":0,"k":5}}})"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto change = [](Composition& composition) {
            setStatic(composition.layers[0]->transform.rotation, {5, 0, 0});
        };
        EXPECT_EQ(rewritten(around(c.before), change), around(c.after));
    }
}

TEST(Writer, FlagsAndParents) {
    const std::string before =
        around(R"({"ty":4,"parent":2,"ao":1,"hd":true},{"ind":2,"parent":5},{"ty":3,"nm":"new parent"})");
    const std::string out = rewritten(before, [](Composition& c) {
        Layer& first = *c.layers[0];
        first.autoOrient = first.hidden = false;
        first.motionBlur = first.changed = true;
        first.parent = nullptr;
        c.layers[1]->parent = c.layers[2].get();
        c.layers[1]->changed = true;
    });
    EXPECT_EQ(
        out, around(R"({"ty":4,"ao":0,"hd":false,"mb":true},{"ind":2,"parent":4},{"ty":3,"nm":"new parent","ind":4})"));
    // Parents that the reader drops, as a ring's or as nobody, go with the first change of the motion; others stay.
    const auto bakeAll = [](Composition& c) {
        for (const auto& layer : c.layers)
            setStatic(layer->transform.rotation, {5, 0, 0});
    };
    EXPECT_EQ(
        rewritten(around(R"({"ind":1,"parent":2},{"ind":2,"parent":1},{"ind":3,"parent":3},{"parent":9})"), bakeAll),
        around(R"({"ind":1,"parent":2,"ks":{"r":{"a":0,"k":5}}},{"ind":2,"ks":{"r":{"a":0,"k":5}}},)"
               R"({"ind":3,"ks":{"r":{"a":0,"k":5}}},{"ks":{"r":{"a":0,"k":5}}})"));
    // The only member taken out; and the first of two.
    const auto unparent = [](Composition& c) {
        c.layers[0]->parent = nullptr;
        c.layers[0]->changed = true;
    };
    EXPECT_EQ(rewritten(around("{ \"parent\":1 }"), unparent), around("{  }"));
    EXPECT_EQ(rewritten(around("{ \"parent\":1 , \"ty\":3 }"), unparent), around("{ \"ty\":3 }"));
}

TEST(Writer, WorkAreaKeepsTheLength) {
    const std::string before = R"({"fr":25,"w":9,"h":9,"nm":"A","ip":0,"op":100.0,"layers":[]})";
    const auto trim = [](Composition& c) {
        c.inFrame = 10;
        c.outFrame = 60;
        Item item = *c.item;
        item.name = "A 2";
        c.item = std::make_shared<const Item>(item);
        c.changed = true;
    };
    const std::string after = rewritten(before, trim);
    EXPECT_EQ(after,
              R"({"fr":25,"w":9,"h":9,"nm":"A 2","ip":10,"op":60,"layers":[],"jostle":{"version":1,"duration":100}})");
    EXPECT_EQ(readLottie(after, "again").composition->durationFrames, 100);
    EXPECT_EQ(rewritten(after, [](Composition& c) { c.changed = true; }), after);
    // A second time the extension is there.
    const std::string extended = R"({"fr":25,"w":9,"h":9,"ip":0,"op":50,"layers":[],"jostle":{"label":1}})";
    const auto shorter = [](Composition& c) {
        c.outFrame = 20;
        c.changed = true;
    };
    EXPECT_EQ(rewritten(extended, shorter),
              R"({"fr":25,"w":9,"h":9,"ip":0,"op":20,"layers":[],"jostle":{"label":1,"duration":50}})");
}

// What ends with the work area needs no length beside it.
TEST(Writer, WorkAreaBeyondTheLength) {
    struct Case {
        const char* name;
        double inFrame, outFrame;
        const char *before, *after;
    };
    constexpr Case cases[] = {
        {"the last part of a frame is shown whole", 0, 41, R"("op":40.5,)", R"("op":41,)"},
        {"starts behind the end", 70, 90, R"("op":50,)", R"("op":90,)"},
        {"beyond a length given", 0, 60, R"("op":20,"jostle":{"duration":50},)",
         R"("op":60,"jostle":{"duration":50},)"},
        {"within a length given", 0, 30, R"("op":20,"jostle":{"duration":50},)",
         R"("op":30,"jostle":{"duration":50},)"},
    };
    for (const Case& c : cases) {
        const auto text = [](double inFrame, const char* members) {
            return "{\"fr\":25,\"w\":9,\"h\":9,\"ip\":" + std::to_string(static_cast<int>(inFrame)) + ',' + members +
                   "\"layers\":[]}";
        };
        const auto change = [&](Composition& composition) {
            composition.inFrame = c.inFrame;
            composition.outFrame = c.outFrame;
            composition.changed = true;
        };
        EXPECT_EQ(rewritten(text(0, c.before), change), text(c.inFrame, c.after)) << c.name;
    }
}

TEST(Writer, NewTextLooksLikeItsSurroundings) {
    std::string before = "{\n  \"fr\": 25, \"w\": 9, \"h\": 9, \"op\": 9,\n  \"layers\": [\n    {\n      \"ty\": 4,\n"
                         "      \"ks\": {\n        \"p\": {\n          \"a\": 0,\n          \"k\": [1, 2]\n        }\n"
                         "      }\n    }\n  ]\n}\n";
    std::string after = before;
    const std::string value = "\"a\": 0,\n          \"k\": [1, 2]\n        }";
    const std::string baked =
        "\"a\": 1,\n          \"k\": [\n"
        "            {\"t\": 0, \"s\": [1, 2], \"o\": {\"x\": 0.167, \"y\": 0.167}, \"i\": {\"x\": 0.833, \"y\": "
        "0.833}},\n"
        "            {\"t\": 1, \"s\": [3, 4]}\n          ]\n        },\n        \"r\": {\"a\": 0, \"k\": 5}";
    after.replace(after.find(value), value.size(), baked);
    const auto change = [](Composition& c) {
        bake(c.layers[0]->transform.position, {0, 1}, {1, 2, 3, 4});
        setStatic(c.layers[0]->transform.rotation, {5, 0, 0});
    };
    EXPECT_EQ(rewritten(before, change), after);

    const auto withReturns = [](const std::string& text) {
        std::string out = "\xEF\xBB\xBF";
        for (const char c : text)
            out += c == '\n' ? std::string("\r\n") : std::string(1, c);
        return out;
    };
    EXPECT_EQ(rewritten(withReturns(before), change), withReturns(after));
}

TEST(Writer, NumbersArePlainDecimals) {
    struct Case {
        double number;
        const char* thousandths;
        const char* shortest;
    };
    constexpr Case cases[] = {
        {0, "0", "0"},
        {-0.0, "0", "0"},
        {-0.0004, "0", "-0.0004"},
        {-0.0005, "-0.001", "-0.0005"},
        {1.05, "1.05", "1.05"},
        {-12.999, "-12.999", "-12.999"},
        {12.9999, "13", "12.9999"},
        {0.1234567, "0.123", "0.1234567"},
        {-540, "-540", "-540"},
        {1e15, "1000000000000000", "1000000000000000"},
        {1e21, "1000000000000000000000", "1000000000000000000000"},
        {1e-7, "0", "0.0000001"},
    };
    for (const Case& c : cases) {
        char room[numberTextRoom];
        EXPECT_EQ(std::string(room, printThousandths(room, c.number)), c.thousandths);
        EXPECT_EQ(std::string(room, printShortest(room, c.number)), c.shortest);
    }
    char room[numberTextRoom];
    EXPECT_EQ(printShortest(room, -std::numeric_limits<double>::max()) - room, 310);
}

} // namespace
} // namespace jostle::standalone
