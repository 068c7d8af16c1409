// Values, flags and settings that were changed, as they come out in the text.
#include <filesystem>
#include <limits>
#include <tuple>

#include "standalone/lottie/number_text.h"
#include "tests/standalone/lottie/documents.h"
#include "tests/support/own_folder.h"

namespace jostle::standalone {
namespace {

Transform& motionOf(const Composition& c) {
    return c.layers[0]->transform;
}

void changeAll(Composition& c) {
    for (const auto& layer : c.layers) {
        bake(layer->transform.rotation, {0, 1, 5}, {1, 2.5, -3});
        setStatic(layer->transform.scale, 50, 60, 100);
        layer->transform.scale.components = 3;
        layer->changed = layer->motionBlur = true;
        layer->parent = nullptr;
    }
}

TEST(Writer, EverySampleComesBackByteForByteOrAsChanged) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(JOSTLE_TEST_DATA "/lottie")) {
        if (entry.path().extension() != ".json")
            continue;
        SCOPED_TRACE(entry.path().filename());
        const auto markIt = [](Composition& c) { test::markAll(c, false); };
        const std::string text = jostle::test::textOfFile(entry.path());
        EXPECT_EQ(rewritten(text, [](Composition&) {}), text);
        EXPECT_EQ(rewritten(text, markIt), text) << "all read and marked but nothing different";
        const std::string changed = rewritten(text, changeAll);
        EXPECT_NE(changed, text);
        EXPECT_EQ(rewritten(changed, markIt), changed);
        ++count;
    }
    EXPECT_GT(count, 0);
}

TEST(Writer, EditsOfAPosition) {
    constexpr WriterCase<> cases[] = {
        {"baked position of two components, expression and slot go",
         R"({"a":0,"x":"wiggle","k":[1,2],"sid":"s","ix":2})",
         [](Composition& c) {
             bake(motionOf(c).position, {0, 1}, {1, 2, 1.5, 2.0004});
         },
         R"({"a":1,"k":[{"t":0,"s":[1,2],"o":{"x":0,"y":0},"i":{"x":1,"y":1}},)"
         R"({"t":1,"s":[1.5,2]}],"ix":2})"},
        {"a lone key is static", R"({"k":[1,2,3]})",
         [](Composition& c) {
             bake(motionOf(c).position, {4}, {-0.0001, 0.0005, 7});
         },
         R"({"k":[0,0.001,7],"a":0})"},
        {"only the expression is disabled", R"({"x":"time","a":0,"k":[1,2]})",
         [](Composition& c) {
             motionOf(c).position.expressionEnabled = false;
             motionOf(c).position.changed = true;
         },
         R"({"a":0,"k":[1,2]})"},
        {"numbers that are not finite give way to the last that was", R"({"a":0,"k":[1,2]})",
         [](Composition& c) {
             const double nan = std::numeric_limits<double>::quiet_NaN();
             bake(motionOf(c).position, {0, 1}, {3, nan, nan, std::numeric_limits<double>::infinity()});
         },
         R"({"a":1,"k":[{"t":0,"s":[3,0],"o":{"x":0,"y":0},"i":{"x":1,"y":1}},{"t":1,"s":[3,0]}]})"},
        {"several in a row that are not finite, and frames from 1000 on", R"({"a":0,"k":[1,2]})",
         [](Composition& c) {
             const double nan = std::numeric_limits<double>::quiet_NaN();
             bake(motionOf(c).position, {999, 1000, 1001.5}, {nan, -3, 1e6, nan, nan, nan});
         },
         R"({"a":1,"k":[{"t":999,"s":[0,-3],"o":{"x":0,"y":0},"i":{"x":1,"y":1}},)"
         R"({"t":1000,"s":[1000000,-3],"o":{"x":0,"y":0},"i":{"x":1,"y":1}},{"t":1001.5,"s":[1000000,-3]}]})"},
        {"dimensions become one", R"({"s":1,"x":{"k":1},"y":{"k":2}})",
         [](Composition& c) {
             motionOf(c).separated = false;
             setStatic(motionOf(c).position, 1, 2, 3);
         },
         R"({"a":0,"k":[1,2,3]})"},
        {"dimensions stay, their flag as a boolean", R"({"s":1,"x":{"k":1},"y":{"k":2,"x":"y"}})",
         [](Composition& c) {
             bake(motionOf(c).dimensions.own().x, {0, 2}, {0, 1});
             setStatic(motionOf(c).dimensions.own().y, 4);
         },
         R"({"s":true,"x":{"k":[{"t":0,"s":[0],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},)"
         R"({"t":2,"s":[1]}],"a":1},"y":{"k":4,"a":0}})"},
        {"no object", "7", [](Composition& c) { setStatic(motionOf(c).position, 1, 2); }, R"({"a":0,"k":[1,2,0]})"},
        {"doubled members", R"({"k":[9,9],"a":0,"k":[1,2],"sid":"a","sid":"b"})",
         [](Composition& c) { setStatic(motionOf(c).position, 3, 4); }, R"({"k":[9,9],"a":0,"k":[3,4]})"},
        {"keys of the file keep what they are",
         R"({"a":1,"k":[{"t":0,"s":[1,2],"e":[3,4],"o":{"x":0.1234567,"y":0},"i":{"x":0.5,"y":1},"n":"0p1",)"
         R"("to":[5,6],"ti":[-1,0]},{"t":4.5,"s":[3,4],"h":1},{"t":9,"s":[0.33333,0]}]})",
         [](Composition& c) {
             motionOf(c).position.keys.values[0] = 7;
             motionOf(c).position.changed = true;
         },
         R"({"a":1,"k":[{"t":0,"s":[7,2],"o":{"x":0.1234567,"y":0},"i":{"x":0.5,"y":1},"to":[5,6],"ti":[-1,0]},)"
         R"({"t":4.5,"s":[3,4],"h":1},{"t":9,"s":[0.33333,0]}]})"},
    };
    expectRewritten(cases, R"({"ty":4, "ks":{"o":{"k":1e2}, "p":)", R"(,"unknown":[ 1.0 ]},"nm":"\u00e9"})");
}

void restAllAt5(Composition& c) {
    for (const auto& layer : c.layers)
        setStatic(layer->transform.rotation, 5);
}

void unparentFirst(Composition& c) {
    c.layers[0]->parent = nullptr;
    c.layers[0]->changed = true;
}

TEST(Writer, EditsOfLayers) {
    constexpr WriterCase<> cases[] = {
        {"handles for each component of a scale, one for a rotation",
         R"({"ty":4,"ks":{"s":{"a":0,"k":[1,2,3]},"r":{"a":0,"k":0}}})",
         [](Composition& c) {
             bake(motionOf(c).scale, {0, 1}, {1, 2, 3, 4, 5, 6});
             bake(motionOf(c).rotation, {0, 1}, {0, 720.5});
         },
         R"({"ty":4,"ks":{"s":{"a":1,"k":[{"t":0,"s":[1,2,3],"o":{"x":[0,0,0],"y":[0,0,0]},)"
         R"("i":{"x":[1,1,1],"y":[1,1,1]}},{"t":1,"s":[4,5,6]}]},"r":{"a":1,"k":[{"t":0,)"
         R"("s":[0],"o":{"x":[0],"y":[0]},"i":{"x":[1],"y":[1]}},{"t":1,"s":[720.5]}]}}})"},
        {"no rotation", R"({"ks":{"p":{"k":[1,2]}}})", restAllAt5, R"({"ks":{"p":{"k":[1,2]},"r":{"a":0,"k":5}}})"},
        {"no transform", R"({"ty":4})", restAllAt5, R"({"ty":4,"ks":{"r":{"a":0,"k":5}}})"},
        {"empty layer", "{}", restAllAt5, R"({"ks":{"r":{"a":0,"k":5}}})"},
        {"3D layer", R"({"ty":4,"ddd":1,"ks":{}})", restAllAt5, R"({"ty":4,"ddd":1,"ks":{"rz":{"a":0,"k":5}}})"},
        {"a layer that was turned no longer turns with its way", R"({"ao":1,"ks":{"r":{"a":0,"k":0}}})",
         [](Composition& c) {
             bake(motionOf(c).rotation, {0, 1}, {0, 90});
         },
         R"({"ao":0,"ks":{"r":{"a":1,"k":[{"t":0,"s":[0],"o":{"x":[0],"y":[0]},)"
         R"("i":{"x":[1],"y":[1]}},{"t":1,"s":[90]}]}}})"},
        {"one at rest still does", R"({"ao":1})", restAllAt5, R"({"ao":1,"ks":{"r":{"a":0,"k":5}}})"},
        {"flags, a parent that is gone and one without a number",
         R"({"ty":4,"parent":2,"ao":1,"hd":true},{"ind":2,"parent":5},{"ty":3,"nm":"new parent"})",
         [](Composition& c) {
             c.layers[0]->autoOrient = c.layers[0]->hidden = false;
             c.layers[0]->motionBlur = true;
             unparentFirst(c);
             c.layers[1]->parent = c.layers[2].get();
             c.layers[1]->changed = true;
         },
         R"({"ty":4,"ao":0,"hd":false,"mb":true},{"ind":2,"parent":4},{"ty":3,"nm":"new parent","ind":4})"},
        {"parents that are a ring's or nobody go with the first change of the motion, others stay",
         R"({"ind":1,"parent":2},{"ind":2,"parent":1},{"ind":3,"parent":3},{"parent":9})", restAllAt5,
         R"({"ind":1,"parent":2,"ks":{"r":{"a":0,"k":5}}},{"ind":2,"ks":{"r":{"a":0,"k":5}}},)"
         R"({"ind":3,"ks":{"r":{"a":0,"k":5}}},{"ks":{"r":{"a":0,"k":5}}})"},
        {"the only member goes", R"({ "parent":1 })", unparentFirst, R"({  })"},
        {"the first of two goes", R"({ "parent":1 , "ty":3 })", unparentFirst, R"({ "ty":3 })"},
    };
    expectRewritten(cases);
}

// What ends with the work area needs no length beside it.
TEST(Writer, WorkAreaKeepsTheLength) {
    // The work area's frames, the composition's length, and the members before and after.
    constexpr std::tuple<const char*, A_long, A_long, double, const char*, const char*> cases[] = {
        {"a length is given from now on", 10, 60, 100, R"("ip":0,"op":100.0,"layers":[])",
         R"("ip":10,"op":60,"layers":[],"jostle":{"version":1,"duration":100})"},
        {"the extension is there", 0, 20, 50, R"("ip":0,"op":50,"layers":[],"jostle":{"label":1})",
         R"("ip":0,"op":20,"layers":[],"jostle":{"label":1,"duration":50})"},
        {"the last part of a frame is shown whole", 0, 41, 41, R"("ip":0,"op":40.5,"layers":[])",
         R"("ip":0,"op":41,"layers":[])"},
        {"starts behind the end", 70, 90, 90, R"("ip":0,"op":50,"layers":[])", R"("ip":70,"op":90,"layers":[])"},
        {"beyond a length given", 0, 60, 60, R"("ip":0,"op":20,"jostle":{"duration":50},"layers":[])",
         R"("ip":0,"op":60,"jostle":{"duration":50},"layers":[])"},
        {"within a length given", 0, 30, 50, R"("ip":0,"op":20,"jostle":{"duration":50},"layers":[])",
         R"("ip":0,"op":30,"jostle":{"duration":50},"layers":[])"},
    };
    for (const auto& [name, inFrame, outFrame, length, given, expected] : cases) {
        SCOPED_TRACE(name);
        const std::string front = R"({"fr":25,"w":9,"h":9,)";
        const std::string out = rewritten(front + given + "}", [from = inFrame, to = outFrame](test::Session& s) {
            const A_Time start{from, 25}, time{to - from, 25};
            EXPECT_EQ(s.comps().AEGP_SetCompWorkAreaStartAndDuration(s.comp(), &start, &time), A_Err_NONE);
        });
        EXPECT_EQ(out, front + expected + "}");
        EXPECT_EQ(readLottie(out, "again").composition->durationFrames, length);
        EXPECT_EQ(rewritten(out, [](Composition& composition) { composition.changed = true; }), out);
    }
}

TEST(Writer, NewTextLooksLikeItsSurroundings) {
    const std::string front =
        "{\n  \"fr\": 25, \"w\": 9, \"h\": 9, \"op\": 9,\n  \"layers\": [\n    {\n      \"ty\": 4,\n"
        "      \"ks\": {\n        \"p\": {\n          ";
    const std::string before = front + "\"a\": 0,\n          \"k\": [1, 2]\n        }\n      }\n    }\n  ]\n}\n";
    const std::string after =
        front + "\"a\": 1,\n          \"k\": [\n"
                "            {\"t\": 0, \"s\": [1, 2], \"o\": {\"x\": 0, \"y\": 0}, \"i\": {\"x\": 1, \"y\": 1}},\n"
                "            {\"t\": 1, \"s\": [3, 4]}\n          ]\n        },\n        \"r\": {\"a\": 0, \"k\": 5}\n"
                "      }\n    }\n  ]\n}\n";
    const auto change = [](Composition& c) {
        bake(motionOf(c).position, {0, 1}, {1, 2, 3, 4});
        setStatic(motionOf(c).rotation, 5);
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
    // To the thousandth, and as short as it can be.
    constexpr std::tuple<double, const char*, const char*> cases[] = {
        {0, "0", "0"},
        {-0.0, "0", "0"},
        {-0.0004, "0", "-0.0004"},
        {-0.0005, "-0.001", "-0.0005"},
        {1.05, "1.05", "1.05"},
        {12.9999, "13", "12.9999"},
        {999.9996, "1000", "999.9996"},
        {-1007.05, "-1007.05", "-1007.05"},
        {999999.9984, "999999.998", "999999.9984"},
        {999999.9996, "1000000", "999999.9996"},
        {-12345678.5, "-12345678.5", "-12345678.5"},
        {1e15, "1000000000000000", "1000000000000000"},
        {1e21, "1000000000000000000000", "1000000000000000000000"},
        {1e-7, "0", "0.0000001"},
    };
    char room[numberTextRoom];
    for (const auto& [number, thousandths, shortest] : cases) {
        EXPECT_EQ(std::string(room, printThousandths(room, number)), thousandths);
        EXPECT_EQ(std::string(room, printShortest(room, number)), shortest);
    }
    EXPECT_EQ(printShortest(room, -std::numeric_limits<double>::max()) - room, 310);
}

} // namespace
} // namespace jostle::standalone
