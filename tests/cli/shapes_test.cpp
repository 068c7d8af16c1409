#include <gtest/gtest.h>

#include <tuple>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

std::string group(const std::string& name, const std::string& element, const std::string& position) {
    return R"({"ty":"gr","nm":")" + name + R"(","it":[)" + element +
           R"(,{"ty":"fl","c":{"k":[1,0,0,1]},"o":{"k":100}},{"ty":"tr","p":{"k":)" + position + "}}]}";
}

std::string shapeLayer(const std::string& name, const std::string& elements,
                       const std::string& more = R"("ip":0,"op":10)") {
    return R"({"ty":4,"nm":")" + name + R"(","ks":{"p":{"k":[50,50]},"a":{"a":0,"k":[0,0]}},)" + more +
           R"(,"shapes":[)" + elements + "]}";
}

const std::string square = R"({"ty":"rc","s":{"k":[20,20]},"p":{"k":[0,0]},"r":{"k":0}})";
const std::string disc = R"({"ty":"el","s":{"k":[20,20]},"p":{"k":[0,0]}})";
const std::string star = R"({"ty":"sr","sy":2,"p":{"k":[0,0]},"pt":{"k":80},"r":{"k":0},"or":{"k":30},"os":{"k":0}})";
const std::string bow = R"({"ty":"sh","ks":{"a":0,"k":{"c":true,"v":[[0,0],[20,20],[20,0],[0,20]],)"
                        R"("i":[[0,0],[0,0],[0,0],[0,0]],"o":[[0,0],[0,0],[0,0],[0,0]]}}})";
const std::string twoParts = group("left", square, "[-30,0]") + "," + group("right", disc, "[30,0]");

// The composition has the frames 0 to 9.
TEST(Inspect, TellsWhatEachLayerBecomesAndWhen) {
    const auto shape = [](const std::string& element) { return shapeLayer("art", group("g", element, "[0,0]")); };
    const auto during = [](const char* span) { return shapeLayer("art", group("g", square, "[0,0]"), span); };
    // The layer, the end of its row in the table, and a part of its object.
    const std::tuple<const char*, std::string, const char*, const char*> cases[] = {
        {"a rectangle", shape(square), "  shape  box", R"("shape":"box","readFrom":"shapes")"},
        {"a circle", shape(disc), "  shape  circle", R"("circles":1,"boxes":0)"},
        {"both", shapeLayer("art", twoParts), "  shape  1 circle, 1 box", R"("warnings":[])"},
        {"many corners", shape(star), "  shape  78 triangles  dense mesh", R"("warnings":["dense mesh"])"},
        {"crossing", shape(bow), "  self-intersecting", R"("self-intersecting")"},
        {"nothing to see", shape(R"({"ty":"tm"})"),
         "  fallback: no outline was found, a box of 100 by 100 pixels stands in", R"("readFrom":"fallback")"},
        {"no body", R"({"ty":3,"nm":"carrier","ip":0,"op":10,"ks":{}})", "a null", R"("name":"carrier")"},
        {"comes late", during(R"("ip":3,"op":10)"), "  shape  box, from frame 3", R"("body":true)"},
        {"ends early", during(R"("ip":0,"op":9)"), "  shape  box, until frame 9", ""},
        {"both ends", during(R"("ip":3,"op":7)"), "  shape  box, from frame 3 until frame 7", ""},
    };
    for (const auto& [name, layer, row, json] : cases) {
        SCOPED_TRACE(name);
        const TestFolder folder(document(layer));
        expectHas(folder.succeed({"inspect", "in.json"}).out, row + std::string("\n"));
        expectHas(folder.succeed({"inspect", "in.json", "--json"}).out, json);
    }
}

TEST(Inspect, OutlinesAreInCompositionPixels) {
    const TestFolder folder(document(shapeLayer("art", twoParts)));
    const ProgramRun run = folder.succeed({"inspect", "in.json", "--json", "--outlines"});
    expectHas(run.out, R"({"centre":[80.0,50.0],"radius":10.0})");
    expectHas(run.out, "[10.0,40.0]");
}

TEST(Solve, PrintsTheMessagesOfTheImport) {
    const TestFolder folder(document(shapeLayer("bow", group("g", bow, "[0,0]"))));
    const ProgramRun run = folder.succeed({"solve", "in.json", "-o", "out.json"});
    expectHas(run.err, "Self-intersecting shapes are not supported.\n");
    expectHas(run.err, "Body #1 (bow)");
}

// The layer keeps its groups' offsets, and its point under the disc follows the body.
TEST(Solve, SamplesTellTheAnchorThatIsWritten) {
    const TestFolder folder(document(shapeLayer("art", twoParts)));
    folder.succeed({"solve", "in.json", "-o", "out.json", "--end", "0", "--samples", "samples.json"});
    expectHas(folder.contents("samples.json"), R"("anchor":[30,0],"scale":[1,1],"positions":[[80,50]])");
    expectHas(folder.contents("out.json"), R"("a":{"a":0,"k":[30,0])");
}

TEST(Inspect, NamesAFontThatIsMissing) {
    const TestFolder folder(document(R"({"ty":5,"nm":"title","ip":0,"op":10,"st":0,"ks":{},"t":{"d":{"k":[{"t":0,"s":)"
                                     R"({"t":"Hi","s":20,"f":"No Such Font","j":0}}]}}})"));
    for (const char* command : {"inspect", "solve"})
        expectHas(folder.succeed({command, "in.json"}).err, "Text of layer 1 \"title\": ");
}

TEST(Separate, MakesALayerOfEachPart) {
    const TestFolder folder(document(shapeLayer("art", twoParts)));
    EXPECT_EQ(folder.succeed({"separate", "in.json", "-o", "out.json"}).out, "out.json: 1 layer separated into 2\n");
    expectHas(folder.succeed({"inspect", "out.json"}).out,
              "1  left   shape  box\n2  right  shape  circle\n3  art    shape  no body: hidden\n");
    // In one go: the parts fall, each on its own.
    const ProgramRun solved = folder.succeed(
        {"solve", "in.json", "--separate", "-o", "solved.json", "--set", "left.type=Static", "--end", "3"});
    expectHas(solved.out, "2 bodies");
    // A circle starts at the centre of its group and falls 7.5 pixels in the first frame.
    expectHas(folder.contents("solved.json"), R"("t":1,"s":[80,57.5)");
}

TEST(Separate, SaysWhoseMasksAreLeftBehind) {
    const std::string mask = R"({"mode":"a","inv":false,"o":{"a":0,"k":100},"pt":{"a":0,"k":{"c":true,)"
                             R"("v":[[0,0],[0,9],[9,9]],"i":[[0,0],[0,0],[0,0]],"o":[[0,0],[0,0],[0,0]]}}})";
    const auto masked = [](const std::string& masks) {
        return R"("ip":0,"op":10,"hasMask":true,"masksProperties":[)" + masks + "]";
    };
    const TestFolder folder(document(shapeLayer("plain", twoParts) + "," + shapeLayer("one", twoParts, masked(mask)) +
                                     "," + shapeLayer("two", twoParts, masked(mask + "," + mask))));
    const std::string lines = "jostle: in.json: the groups of layer 2 \"one\" are separated without its mask\n"
                              "jostle: in.json: the groups of layer 3 \"two\" are separated without its masks\n";
    EXPECT_EQ(folder.run({"separate", "in.json", "-o", "out.json"}).err, lines);
    expectHas(folder.run({"solve", "in.json", "--separate"}).err, lines);
    EXPECT_EQ(folder.run({"separate", "in.json", "-o", "out.json", "--quiet"}).err, "");
}

TEST(Separate, LeavesAFileWithoutPartsAsItIs) {
    const std::string input = document(shapeLayer("art", group("one", square, "[0,0]")));
    const TestFolder folder(input);
    folder.succeed({"separate", "in.json"});
    EXPECT_EQ(folder.contents("in-separated.json"), input);
    EXPECT_EQ(folder.run({"separate", "in.json", "-o", "in.json"}).exitStatus, 2);
}

} // namespace
} // namespace jostle::test
