#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

TEST(Solve, LeavesAFileWithNothingToSimulateAsItIs) {
    const std::string null = R"({"ty":3,"ind":1,"ip":0,"op":10,"ks":{}})";
    for (const std::string& input :
         {document(null), " " + document(null + R"(,{"ty":4,"ind":2,"hd":true,"shapes":[]})")}) {
        const TestFolder folder(input);
        expectHas(folder.succeed({"solve", "in.json", "-o", "out.json"}).out, "nothing to simulate");
        EXPECT_EQ(folder.contents("out.json"), input);
    }
}

// Free fall at 10 m/s2, 10 frames a second, 2 steps a frame: after n steps of h = 1/20 s the way is
// 10 h h n (n + 1) / 2 metres, so frame f (n = 2 f) stands at 100 times that below the start: 7.5 pixels at frame 1,
// 25 at frame 2, 52.5 at frame 3.
TEST(Solve, WritesWhatAFreeBodyDoesToKeysAndSamples) {
    const TestFolder folder(document(solid("box", 1)));
    const ProgramRun run =
        folder.succeed({"solve", "in.json", "-o", "out.json", "--end", "3", "--json", "--samples", "samples.json"});
    expectHas(run.out, R"("bodies":1)");
    expectHas(folder.contents("samples.json"), "[50,50],[50,57.5],[50,75]");
    for (const char* key : {R"({"t":0,"s":[50,50,0],)", R"({"t":1,"s":[50,57.5,0],)", R"({"t":2,"s":[50,75,0],)",
                            R"({"t":3,"s":[50,102.5,0]})", R"("r":{"a":0,"k":0})", R"("ip":0,"op":4,)"})
        expectHas(folder.contents("out.json"), key);
}

TEST(Solve, NamesTheResultAfterTheInputUnlessItTakesItsPlace) {
    const std::string input = document(solid("box", 1));
    const TestFolder folder(input);
    expectHas(folder.succeed({"solve", "in.json"}).out, "in-solved.json");
    expectHas(folder.contents("in-solved.json"), R"("nm":"test 2")");
    EXPECT_EQ(folder.contents("in.json"), input);
    folder.succeed({"solve", "in.json", "--in-place"});
    expectHas(folder.contents("in.json"), R"("nm":"test")");
    expectHas(folder.contents("in.json"), R"({"t":9,)");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"in-solved.json", "in.json"}));
}

// Free fall, see above: between frames 0 and 2 the line passes frame 1 at 62.5, where the body is at 57.5.
TEST(Solve, LeavesOutKeysWithinTheTolerance) {
    const TestFolder folder(document(solid("box", 1)));
    folder.succeed({"solve", "in.json", "-o", "out.json", "--end", "2", "--reduce", "5.01", "-q"});
    const std::string out = folder.contents("out.json");
    expectHas(out, R"({"t":0,"s":[50,50,0],)");
    EXPECT_EQ(out.find(R"({"t":1,)"), std::string::npos) << out;
    expectHas(out, R"({"t":2,"s":[50,75,0]})");
}

TEST(Solve, TellsMachinesHowFarItIs) {
    const TestFolder folder(document(solid("box", 1)));
    const ProgramRun run = folder.succeed({"solve", "in.json", "--json", "--end", "3"});
    expectOneLine(run.out);
    for (const char* event :
         {R"({"event":"progress","phase":"Solving","done":0,"total":4,"unit":"frames","percent":0,)",
          R"({"event":"progress","phase":"Solving","done":4,"total":4,"unit":"frames","percent":100)",
          R"("phase":"Keyframing","done":1,"total":1,"unit":"layers")"}) {
        expectHas(run.err, event);
    }
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), std::count(run.err.begin(), run.err.end(), '{'));
}

TEST(Solve, RefusesWhatCannotBeReadOrWrittenInOneLineAndKeepsTheOldFile) {
    struct Case {
        const char* name;
        std::string input;
        std::vector<std::string> arguments;
        const char* about;
        const char* says;
    };
    const std::string good = document(solid("box", 1));
    const std::vector<std::string> toOut{"solve", "in.json", "-o", "out.json"};
    const Case cases[] = {
        {"truncated", sample("android-Parenting.json").substr(0, 5000), toOut, "in.json", "JSON"},
        {"empty", "", toOut, "in.json", "JSON"},
        {"archive", "PK\3\4 and so on", toOut, "in.json", "archive cannot be opened"},
        {"no object", "[]", toOut, "in.json", "Lottie"},
        {"no layers", document(""), toOut, "in.json", "no layers"},
        {"1e308 in a transform", document(solid("box", 1, "[1e308,0,0]")), toOut, "in.json", "box"},
        {"a folder for input", good, {"solve", ".", "-o", "out.json"}, ": .:", "directory"},
        {"no input", good, {"solve", "missing.json", "-o", "out.json"}, "missing.json", ""},
        {"no folder", good, {"solve", "in.json", "-o", "no/such/folder/out.json"}, "out.json", ""},
        {"no folder for samples", good, {"solve", "in.json", "-o", "out.json", "--samples", "no/s.json"}, "s.json", ""},
        {"nothing to inspect", good, {"inspect", "missing.json"}, "missing.json", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder(c.input);
        folder.put("out.json", "old");
        const ProgramRun run = folder.run(c.arguments);
        EXPECT_EQ(run.exitStatus, 1);
        expectOneLine(run.err);
        expectHas(run.err, c.about);
        expectHas(run.err, c.says);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(folder.contents("out.json"), "old");
        EXPECT_EQ(folder.names(), (std::vector<std::string>{"in.json", "out.json"}));
    }
}

TEST(Solve, SaysWhatIsWrongWithTheCommand) {
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"solve"},
        {"solve", "in.json", "--no-such-option"},
        {"solve", "in.json", "--start", "-1"},
        {"solve", "in.json", "--start", "x"},
        {"solve", "in.json", "--start", "5", "--end", "4"},
        {"solve", "in.json", "--end", "100001"},
        {"solve", "in.json", "--start", "10"},
        {"solve", "in.json", "-o", ""},
        {"solve", "in.json", "-o", "in.json"},
        {"solve", "in.json", "-o", "."},
        {"solve", "in.json", "--reduce", "0"},
        {"solve", "in.json", "--jobs", "0"},
        {"solve", "in.json", "--player", "lottie.js"},
        {"solve", "in.json", "--set", "box"},
        {"solve", "in.json", "--set", "bax.type=Static"},
        {"solve", "in.json", "--set", "box.type=Statick"},
        {"solve", "in.json", "--samples", "in-solved.json"},
        {"solve", "in.json", "--samples", "./in-solved.json"},
        {"inspect", "in.json", "--outlines"},
    };
    for (const std::vector<std::string>& arguments : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const TestFolder folder(document(solid("box", 1)));
        const ProgramRun run = folder.run(arguments);
        EXPECT_EQ(run.exitStatus, 2) << run.err;
        EXPECT_NE(run.err, "");
        EXPECT_EQ(folder.names(), std::vector<std::string>{"in.json"});
    }
}

TEST(Inspect, TellsWhatBecomesABodyAndWhyNot) {
    const TestFolder folder(document(solid("box", 1) + R"(,{"ty":3,"nm":"carrier","ind":2,"ip":0,"op":10,"ks":{}})"));
    const std::string table = folder.succeed({"inspect", "in.json"}).out;
    expectHas(table, "box");
    expectHas(table, "a null");
    const std::string json = folder.succeed({"inspect", "in.json", "--json"}).out;
    expectHas(json, R"("name":"carrier")");
    expectHas(json, R"("body":false)");
}

} // namespace
} // namespace jostle::test
