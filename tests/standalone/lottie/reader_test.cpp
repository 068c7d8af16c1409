#include "standalone/lottie/reader.h"

#include <algorithm>
#include <tuple>

#include "standalone/document/evaluate.h"
#include "standalone/document/printable.h"
#include "standalone/lottie/assets.h"
#include "tests/standalone/lottie/documents.h"

namespace jostle::standalone {
namespace {

/// The transform of a document's only layer.
Transform transformOf(const std::string& ks, const std::string& more = "") {
    const ReadResult result = readLottie(documentOf("{\"ty\":4,\"ks\":" + ks + "}", more), "t.json");
    return result ? result.composition->layers[0]->transform : Transform{};
}

/// As many entries of a list.
std::string times(const std::string& entry, std::size_t count) {
    std::string list = entry;
    for (std::size_t i = 1; i < count; ++i)
        list += "," + entry;
    return list;
}

TEST(Reader, Settings) {
    const ReadResult read = readLottie(
        R"({"fr":29.9700012207031,"ip":48.0000019550801,"op":120.00000488770,"w":640,"h":480.0,"nm":"Caf\u00e9","layers":[],
            "jostle":{"version":1,"duration":240,"pixelAspect":[4,3],"background":[1,0.5,0]}})",
        "a.json");
    ASSERT_TRUE(read) << read.error;
    const Composition& c = *read.composition;
    EXPECT_EQ(c.item->name, "Caf\xC3\xA9");
    EXPECT_EQ(c.item->width, 640);
    EXPECT_EQ(c.item->height, 480);
    EXPECT_EQ(c.inFrame, 48);
    EXPECT_EQ(c.outFrame, 120);
    EXPECT_EQ(c.durationFrames, 240);
    EXPECT_NEAR(c.pixelAspect, 4.0 / 3, 1e-15);
    EXPECT_EQ(c.background.green, 0.5);
}

TEST(Reader, LayersAndWhatTheyShow) {
    const char* assets = R"("assets":[{"id":"pic","w":32,"h":16,"p":"a.png"},
        {"id":"pre","nm":"Inner","layers":[{"ty":2,"refId":"pic"}]},{"id":"loop","layers":[{"ty":0,"refId":"loop"}]}],)";
    const ReadResult read = readLottie(documentOf(R"(
        {"ty":1,"nm":"floor","ind":7,"sw":300,"sh":20,"sc":"#FF0000","ip":2,"op":50.5,"st":-3,"sr":0,"hd":true,"mb":true},
        {"ty":2,"ind":7,"refId":"pic","parent":7,"hd":1,"td":1,"ao":1},
        {"ty":0,"refId":"pre","w":50,"h":60,"tt":1,"masksProperties":[{},{"pt":{}},3]},
        {"ty":0,"refId":"loop","w":50,"h":60,"tt":1,"tp":7},
        {"ty":3.0,"ind":3.0,"jostle":{"label":9,"guide":true}},
        {"ty":5},{"ty":99,"op":"x","ip":-1e12},null,{"parent":8},{"parent":5})",
                                                  assets),
                                       "a.json");
    ASSERT_TRUE(read) << read.error;
    const auto& layers = read.composition->layers;
    ASSERT_EQ(layers.size(), 10u) << "every entry counts in the order";
    EXPECT_EQ(layers[0]->outFrame, 50.5);
    EXPECT_EQ(layers[0]->stretch, 1);
    EXPECT_TRUE(layers[0]->hidden && layers[0]->motionBlur);
    EXPECT_EQ(layers[1]->id, 8) << "7 was taken";
    EXPECT_FALSE(layers[1]->idInFile);
    EXPECT_EQ(layers[1]->parent, layers[0].get());
    EXPECT_FALSE(layers[1]->hidden) << "only true hides";
    EXPECT_TRUE(layers[1]->matteSource && layers[1]->autoOrient);
    EXPECT_EQ(layers[1]->item->width, 32);
    EXPECT_EQ(layers[2]->item->name, "Inner");
    EXPECT_EQ(layers[2]->item->height, 60);
    EXPECT_FALSE(layers[2]->masksSource.empty());
    EXPECT_TRUE(layers[2]->usesMatteAbove);
    EXPECT_EQ(layers[3]->item->width, 0) << "contains itself";
    EXPECT_FALSE(layers[3]->usesMatteAbove);
    EXPECT_EQ(layers[4]->id, 3);
    EXPECT_EQ(layers[4]->item->width, 100) << "of a null";
    EXPECT_EQ(layers[4]->label, 9);
    EXPECT_TRUE(layers[4]->guide);
    EXPECT_EQ(layers[5]->item, nullptr);
    EXPECT_EQ(layers[6]->outFrame, 100) << "the composition's end";
    EXPECT_EQ(layers[6]->inFrame, -1e9) << "as far away as a frame can be";
    EXPECT_EQ(layers[7]->transform.scale.value, (Components{100, 100, 100}));
    EXPECT_EQ(layers[8]->parent, nullptr) << "8 was given to a layer by the reader, not by the file";
    EXPECT_EQ(layers[9]->parent, nullptr) << "nobody has 5";
}

TEST(Reader, ParentsAreFoundAndRingsAreCut) {
    // Identifiers with those of the parents, and at which places the parents stand; -1 for none.
    const std::pair<const char*, std::vector<std::ptrdiff_t>> cases[] = {
        // Before and after the child, of one number the first; 77 is nobody, 0 a number like others.
        {R"({"ind":1,"parent":2},{"ind":2},{"ind":3,"parent":1},{"ind":1},{"ind":4,"parent":77},{"ind":0},{"parent":0})",
         {1, -1, 0, -1, -1, -1, 5}},
        {R"({"ind":1,"parent":1})", {-1}},
        // Of the ring that the first hangs on, the link of the last goes.
        {R"({"ind":1,"parent":3},{"ind":2,"parent":3},{"ind":3,"parent":4},{"ind":4,"parent":2})", {2, 2, 3, -1}},
    };
    for (const auto& [text, expected] : cases) {
        const ReadResult read = readLottie(documentOf(text), "a.json");
        const auto& layers = read.composition->layers;
        std::vector<std::ptrdiff_t> places;
        for (const auto& layer : layers) {
            const auto at =
                std::find_if(layers.begin(), layers.end(), [&](const auto& it) { return it.get() == layer->parent; });
            places.push_back(at == layers.end() ? -1 : at - layers.begin());
        }
        EXPECT_EQ(places, expected) << text;
    }
}

TEST(Reader, SolidColours) {
    EXPECT_EQ(colourFromHex("#0f8").blue, 8 / 15.0);
    EXPECT_EQ(colourFromHex("#00FF0080").green, 1);
    EXPECT_EQ(colourFromHex("#00FF0080").red, 0);
    for (const char* broken : {"", "#", "#12", "red", "#gg0000", "#-10000"})
        EXPECT_EQ(colourFromHex(broken).red, 1) << broken;
}

TEST(Reader, StaticProperties) {
    constexpr std::tuple<const char*, const char*, int, Components> cases[] = {
        {"two components", R"({"k":[1,2]})", 2, {1, 2, 0}},
        {"three components", R"({"k":[1,2,3]})", 3, {1, 2, 3}},
        {"four: the rest is dropped", R"({"k":[1,2,3,4]})", 3, {1, 2, 3}},
        {"an exporter's index", R"({"k":[-1.5,2],"ix":21})", 2, {-1.5, 2, 0}},
        {"the text goes on behind it", R"({"k":[1,2],"ix":2,"k":[3,4]})", 2, {3, 4, 0}},
        {"a bare number", R"({"k":5})", 2, {5, 0, 0}},
        {"a number and a string", R"({"k":[1,"2"]})", 3, {0, 0, 0}},
        {"an empty array", R"({"k":[]})", 3, {0, 0, 0}},
        {"strings", R"({"k":["1","2"]})", 3, {0, 0, 0}},
        {"no value", R"({"a":0})", 3, {0, 0, 0}},
        {"no keys", R"({"a":1,"k":[]})", 3, {0, 0, 0}},
        {"a says animated, k is not", R"({"a":1,"k":[1,2]})", 2, {1, 2, 0}},
        {"from a slot", R"({"k":[1,2],"sid":"where"})", 2, {8, 9, 0}},
        {"from a slot that is missing", R"({"k":[1,2],"sid":"nowhere"})", 2, {1, 2, 0}},
    };
    for (const auto& [name, position, components, value] : cases) {
        // The most frequent spelling, which has a way of its own, and another one.
        for (const char* beginning : {R"({"a":0,)", R"({ "a" : 0, )"}) {
            SCOPED_TRACE(std::string(name) + beginning);
            const Transform transform = transformOf(std::string(R"({"s":{"a":0,"k":[50,60]},"r":{"k":[45,1]},"p":)") +
                                                        beginning + (position + 1) + "}",
                                                    R"("slots":{"where":{"p":{"k":[8,9]}}},)");
            EXPECT_EQ(transform.position.components, components);
            EXPECT_EQ(transform.position.value, value);
            EXPECT_TRUE(transform.position.keys.empty());
            EXPECT_EQ(transform.scale.value, (Components{50, 60, 0}));
            EXPECT_EQ(transform.rotation.value, (Components{45, 0, 0}));
        }
    }
}

TEST(Reader, Keyframes) {
    using Numbers = std::vector<double>;
    const std::tuple<const char*, const char*, Numbers, Numbers> cases[] = {
        {"new files", R"([{"t":0,"s":[1]},{"t":10,"s":[2]}])", {0, 10}, {1, 2}},
        {"old files end with a bare time",
         R"([{"t":0,"s":[1],"e":[2]},{"t":10,"s":[2],"e":[5]},{"t":20}])",
         {0, 10, 20},
         {1, 2, 5}},
        {"the last key without a value, held before", R"([{"t":0,"s":[1],"e":[2],"h":1},{"t":9}])", {0, 9}, {1, 1}},
        {"the next key's value wins over the end", R"([{"t":0,"s":[1],"e":[7]},{"t":9,"s":[2]}])", {0, 9}, {1, 2}},
        {"out of order", R"([{"t":9,"s":[2]},{"t":-1.5,"s":[1]}])", {-1.5, 9}, {1, 2}},
        {"at one time the later counts", R"([{"t":0,"s":[1]},{"t":9,"s":[2]},{"t":9,"s":[3]}])", {0, 9}, {1, 3}},
        {"whole frames are snapped", R"([{"t":0,"s":[1]},{"t":61.0000024845809,"s":[3]}])", {0, 61}, {1, 3}},
        {"values without an array", R"([{"t":0,"s":1},{"t":3,"s":2}])", {0, 3}, {1, 2}},
        {"a lone key", R"([{"t":4,"s":[8]}])", {4}, {8}},
    };
    for (const auto& [name, keys, frames, values] : cases) {
        SCOPED_TRACE(name);
        const Stream rotation = transformOf(std::string("{\"r\":{\"k\":") + keys + "}}").rotation;
        EXPECT_EQ(rotation.keys.frames, frames);
        EXPECT_EQ(rotation.keys.values, values);
    }
}

TEST(Reader, EasingHoldsAndTangents) {
    const Transform t = transformOf(
        R"({"s":{"k":[{"t":0,"s":[0,0],"o":{"x":[0.3],"y":[0]},"i":{"x":[0.7,0.5],"y":[1,1]}},{"t":9,"s":[9,9]}]},
            "p":{"k":[{"t":0,"s":[0,0,0],"o":{"x":0.3,"y":0},"i":{"x":0.7,"y":1},"to":[1,2,3],"ti":[0,0,0]},
                      {"t":5,"s":[1,1,1],"h":1},{"t":9,"s":[9,9,9]}]},
            "r":{"k":[{"t":0,"s":[0],"o":{"x":[0.167],"y":[0.167]},"i":{"x":[0.833],"y":[0.833]}},{"t":9,"s":[9]}]}})");
    const KeySegment& scale = t.scale.keys.segments[0];
    EXPECT_EQ(scale.outX[1], 0.3) << "a short array's first element counts for the rest";
    EXPECT_EQ(scale.inX[1], 0.5);
    EXPECT_FALSE(scale.linear);
    EXPECT_TRUE(t.position.keys.segments[0].spatial);
    EXPECT_EQ(t.position.keys.segments[0].outTangent, (Components{1, 2, 3}));
    EXPECT_TRUE(t.position.keys.segments[1].hold);
    EXPECT_TRUE(t.rotation.keys.segments.empty()) << "linear keys need none";
}

TEST(Reader, ExpressionsAndSeparatedDimensions) {
    const char* arm = R"({"ty":4,"nm":"arm\n1","ddd":1,
        "ks":{"p":{"s":true,"x":{"a":0,"k":1,"x":"var $bm_rt;"},"y":{"k":2}},"rz":{"k":30}}},{"ty":4})";
    const ReadResult read = readLottie(documentOf(arm), "a.json");
    ASSERT_TRUE(read) << read.error;
    const Transform& t = read.composition->layers[0]->transform;
    EXPECT_TRUE(t.separated);
    EXPECT_EQ(positionAt(t, 0), (Components{1, 2, 0}));
    EXPECT_TRUE(t.dimensions->x.hasExpression && t.dimensions->x.expressionEnabled);
    EXPECT_FALSE(t.dimensions->y.hasExpression);
    EXPECT_EQ(t.rotation.value[0], 30);
    ASSERT_EQ(read.notes.size(), 1u);
    EXPECT_NE(read.notes[0].find("layer 1 \"arm 1\""), std::string::npos) << read.notes[0];
}

TEST(Reader, RefusesWithAMessage) {
    const auto second = [](const std::string& ks) {
        return documentOf("{\"ty\":4},{\"ty\":4,\"nm\":\"ball\",\"ks\":" + ks + "}");
    };
    const std::tuple<const char*, std::string, std::vector<std::string>> cases[] = {
        {"not JSON", "{\n\"fr\":NaN}", {"f.json", "line 2, column 6", "not valid JSON"}},
        {"layers missing", R"({"fr":25,"w":1,"h":1})", {"\"layers\""}},
        {"no frame rate", R"({"w":1,"h":1,"layers":[]})", {"\"fr\"", "missing"}},
        {"frame rate 0", R"({"fr":0,"w":1,"h":1,"layers":[]})", {"\"fr\"", "is 0"}},
        {"width of a wrong type", R"({"fr":25,"w":"640","h":1,"layers":[]})", {"\"w\"", "\"640\""}},
        {"height without end", R"({"fr":25,"w":1,"h":1e999,"layers":[]})", {"\"h\"", "1e999"}},
        {"width beyond reason", R"({"fr":25,"w":1e300,"h":1,"layers":[]})", {"1000000"}},
        {"position without end",
         second(R"({"p":{"a":0,"k":[1,1e999]}})"),
         {"layer 2 \"ball\"", "/layers/1/ks/p/k", "1e999"}},
        {"rotation too large", second(R"({"r":{"k":-1e16}})"), {"layer 2 \"ball\"", "/ks/r/k", "1e15"}},
        {"a plain rotation", second(R"({"r":{"a":0,"k":1.1e15}})"), {"/ks/r/k", "1e15"}},
        {"a key's time", second(R"({"s":{"k":[{"t":1e999,"s":[1,1]}]}})"), {"layer 2", "/ks/s/k/0/t"}},
        {"a key's tangent", second(R"({"p":{"k":[{"t":0,"s":[1,1],"to":[1e99,0]}]}})"), {"/ks/p/k/0/to"}},
        {"a separated dimension", second(R"({"p":{"s":true,"x":{"k":0},"y":{"k":1e40}}})"), {"/ks/p/y/k"}},
        {"an excerpt in one line", "{\"fr\":25,\"w\":[1,\r\n\t2],\"h\":1,\"layers\":[]}", {"is [1, 2];"}},
        {"an excerpt is cut between characters",
         "{\"fr\":25,\"w\":\"" + std::string(38, 'a') + "\xC3\xA9\",\"h\":1,\"layers\":[]}",
         {"is \"" + std::string(38, 'a') + "...;"}},
        {"control characters in a name",
         documentOf(
             R"({"ty":4,"nm":"a\u001b[2J\r\n\t  b\u009b\u0080c\u0000\u007fd\u00a0\u00bf","ks":{"r":{"k":1e99}}})"),
         {"layer 1 \"a [2J b c d\xC2\xA0\xC2\xBF\""}},
        {"layers that would fill the memory",
         documentOf(times("{}", 100001)),
         {"\"layers\"", "more than 100000 layers"}},
        {"masks that would fill it",
         documentOf("{\"ty\":4},{\"nm\":\"ball\",\"masksProperties\":[" + times("{}", 100001) + "]}"),
         {"layer 2 \"ball\", /layers/1/masksProperties", "100000 masks"}},
        {"shape elements that would fill it",
         documentOf("{\"ty\":4,\"nm\":\"sky\",\"shapes\":[" + times("{\"ty\":\"gr\",\"it\":[{},{}]}", 66667) + "]}"),
         {"layer 1 \"sky\", /layers/0/shapes", "more than 200000 shape elements"}},
    };
    for (const auto& [name, text, says] : cases) {
        SCOPED_TRACE(name);
        const ReadResult read = readLottie(text, "f.json");
        EXPECT_FALSE(read);
        for (const std::string& words : says)
            EXPECT_NE(read.error.find(words), std::string::npos) << read.error;
        EXPECT_EQ(read.error, printable(read.error));
    }
    EXPECT_EQ(printable("a\xC2"), "a\xC2") << "half a character at the end";
    EXPECT_TRUE(readLottie(second(R"({"p":{"k":[1e15,-1e15]},"r":{"a":0,"k":1e-999}})"), "f.json"));
}

// A small file that stands for a large one: read as often as it is referred to, it would fill the memory.
TEST(Reader, SlotsThatStandForTooMuch) {
    // Of a slot of 100000 keys with 15 bytes each, 99999 commas and 8 bytes around them 64 MiB hold 41.
    const std::string slot = R"({"k":[)" + times(R"({"t":1,"s":[1]})", 100000) + "]}";
    const std::string layers = times(R"({"ty":3,"ks":{"r":{"sid":"s","k":0}}})", 200);
    const ReadResult read = readLottie(documentOf(layers, R"("slots":{"s":{"p":)" + slot + "}},"), "t.json");
    EXPECT_FALSE(read);
    EXPECT_NE(read.error.find("layer 42, /layers/41/ks/r (line 1"), std::string::npos) << read.error;
    EXPECT_NE(read.error.find("slots stand for more than 64 MiB"), std::string::npos) << read.error;
}

} // namespace
} // namespace jostle::standalone
