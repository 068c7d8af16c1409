#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

std::string document(const std::string& layers) {
    return R"({"v":"5.7.4","fr":10,"ip":0,"op":10,"w":100,"h":100,"nm":"test","assets":[],"layers":[)" + layers + "]}";
}

std::string group(const std::string& name, const std::string& element, const std::string& position) {
    return R"({"ty":"gr","nm":")" + name + R"(","it":[)" + element +
           R"(,{"ty":"fl","c":{"a":0,"k":[1,0,0,1]},"o":{"a":0,"k":100}},)" + R"({"ty":"tr","p":{"a":0,"k":)" +
           position + R"(},"a":{"a":0,"k":[0,0]},"s":{"a":0,"k":[100,100]},)" +
           R"("r":{"a":0,"k":0},"o":{"a":0,"k":100}}]})";
}

std::string shapeLayer(const std::string& name, const std::string& elements) {
    return R"({"ty":4,"nm":")" + name +
           R"(","ip":0,"op":10,"st":0,"ks":{"p":{"a":0,"k":[50,50]},"a":{"a":0,"k":[0,0]}},)" + R"("shapes":[)" +
           elements + "]}";
}

const std::string square = R"({"ty":"rc","s":{"a":0,"k":[20,20]},"p":{"a":0,"k":[0,0]},"r":{"a":0,"k":0}})";
const std::string disc = R"({"ty":"el","s":{"a":0,"k":[20,20]},"p":{"a":0,"k":[0,0]}})";
const std::string star = R"({"ty":"sr","sy":2,"p":{"a":0,"k":[0,0]},"pt":{"a":0,"k":80},"r":{"a":0,"k":0},)"
                         R"("or":{"a":0,"k":30},"os":{"a":0,"k":0}})";
const std::string bow = R"({"ty":"sh","ks":{"a":0,"k":{"c":true,"v":[[0,0],[20,20],[20,0],[0,20]],)"
                        R"("i":[[0,0],[0,0],[0,0],[0,0]],"o":[[0,0],[0,0],[0,0],[0,0]]}}})";
const std::string twoParts = group("left", square, "[-30,0]") + "," + group("right", disc, "[30,0]");

TEST(Inspect, TellsTheShapeAndWarningsOfEachBody) {
    struct Case {
        const char* name;
        std::string elements;
        const char* row;  // the end of its row in the table
        const char* json; // a part of its object
    };
    const Case cases[] = {
        {"a rectangle", group("g", square, "[0,0]"), "  shape  box", R"("shape":"box","readFrom":"shapes")"},
        {"a circle", group("g", disc, "[0,0]"), "  shape  circle", R"("circles":1,"boxes":0)"},
        {"both", twoParts, "  shape  1 circle, 1 box", R"("warnings":[])"},
        {"many corners", group("g", star, "[0,0]"), "  shape  78 triangles  dense mesh",
         R"("warnings":["dense mesh"])"},
        {"crossing", group("g", bow, "[0,0]"), "  self-intersecting", R"("self-intersecting")"},
        {"nothing to see", group("g", R"({"ty":"tm"})", "[0,0]"),
         "  fallback: no outline was found, a box of 100 by 100 pixels stands in", R"("readFrom":"fallback")"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder;
        folder.put("in.json", document(shapeLayer("art", c.elements)));
        const ProgramRun table = runProgram(folder.path(), {"inspect", "in.json"});
        EXPECT_EQ(table.exitStatus, 0) << table.err;
        EXPECT_NE(table.out.find(std::string(c.row) + "\n"), std::string::npos) << table.out;
        const ProgramRun json = runProgram(folder.path(), {"inspect", "in.json", "--json"});
        EXPECT_NE(json.out.find(c.json), std::string::npos) << json.out;
    }
}

TEST(Inspect, OutlinesAreInCompositionPixels) {
    const TestFolder folder;
    folder.put("in.json", document(shapeLayer("art", twoParts)));
    const ProgramRun run = runProgram(folder.path(), {"inspect", "in.json", "--json", "--outlines"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(run.out.find(R"({"centre":[80.0,50.0],"radius":10.0})"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("[10.0,40.0]"), std::string::npos) << run.out;
}

TEST(Solve, PrintsTheMessagesOfTheImport) {
    const TestFolder folder;
    folder.put("in.json", document(shapeLayer("bow", group("g", bow, "[0,0]"))));
    const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "-o", "out.json"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_NE(run.err.find("Self-intersecting shapes are not supported.\n"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("Body #1 (bow)"), std::string::npos) << run.err;
}

// The layer keeps its groups' offsets, and its point under the disc follows the body.
TEST(Solve, SamplesTellTheAnchorThatIsWritten) {
    const TestFolder folder;
    folder.put("in.json", document(shapeLayer("art", twoParts)));
    const ProgramRun run =
        runProgram(folder.path(), {"solve", "in.json", "-o", "out.json", "--end", "0", "--samples", "samples.json"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(folder.contents("samples.json").find(R"("anchor":[30,0],"scale":[1,1],"positions":[[80,50]])"),
              std::string::npos)
        << folder.contents("samples.json");
    EXPECT_NE(folder.contents("out.json").find(R"("a":{"a":0,"k":[30,0])"), std::string::npos)
        << folder.contents("out.json");
}

TEST(Inspect, NamesAFontThatIsMissing) {
    const TestFolder folder;
    folder.put("in.json", document(R"({"ty":5,"nm":"title","ip":0,"op":10,"st":0,"ks":{},"t":{"d":{"k":[{"t":0,"s":)"
                                   R"({"t":"Hi","s":20,"f":"No Such Font","j":0}}]}}})"));
    for (const char* command : {"inspect", "solve"}) {
        const ProgramRun run = runProgram(folder.path(), {command, "in.json"});
        EXPECT_EQ(run.exitStatus, 0) << run.err;
        EXPECT_NE(run.err.find("Text of layer 1 \"title\": "), std::string::npos) << command << ": " << run.err;
    }
}

TEST(Separate, MakesALayerOfEachPart) {
    const TestFolder folder;
    folder.put("in.json", document(shapeLayer("art", twoParts)));
    const ProgramRun run = runProgram(folder.path(), {"separate", "in.json", "-o", "out.json"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.out, "out.json: 1 layer separated into 2\n");
    const ProgramRun table = runProgram(folder.path(), {"inspect", "out.json"});
    for (const char* row :
         {"1  left   shape  box\n", "2  right  shape  circle\n", "3  art    shape  no body: hidden\n"})
        EXPECT_NE(table.out.find(row), std::string::npos) << table.out;
    // In one go: the parts fall, each on its own.
    const ProgramRun solved = runProgram(folder.path(), {"solve", "in.json", "--separate", "-o", "solved.json", "--set",
                                                         "left.type=Static", "--end", "3"});
    EXPECT_EQ(solved.exitStatus, 0) << solved.err;
    EXPECT_NE(solved.out.find("2 bodies"), std::string::npos) << solved.out;
    // A circle starts at the centre of its group and falls 7.5 pixels in the first frame.
    EXPECT_NE(folder.contents("solved.json").find(R"("t":1,"s":[80,57.5)"), std::string::npos)
        << folder.contents("solved.json");
}

TEST(Separate, LeavesAFileWithoutPartsAsItIs) {
    const TestFolder folder;
    const std::string input = document(shapeLayer("art", group("one", square, "[0,0]")));
    folder.put("in.json", input);
    const ProgramRun run = runProgram(folder.path(), {"separate", "in.json"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(folder.contents("in-separated.json"), input);
    EXPECT_EQ(runProgram(folder.path(), {"separate", "in.json", "-o", "in.json"}).exitStatus, 2);
}

} // namespace
} // namespace jostle::test
