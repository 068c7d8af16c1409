#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

/// A composition of 100 by 100 pixels, 10 frames at 10 per second, with these layers.
std::string document(const std::string& layers) {
    return R"({"v":"5.7.4","fr":10,"ip":0,"op":10,"w":100,"h":100,"nm":"test","assets":[],"layers":[)" + layers + "]}";
}

/// A solid of 20 by 10 pixels at the centre, with its position's value as given.
std::string solid(const std::string& name, int number, const std::string& position = "[50,50,0]") {
    return R"({"ty":1,"nm":")" + name + R"(","ind":)" + std::to_string(number) + R"(,"ks":{"p":{"a":0,"k":)" +
           position + R"(},"a":{"a":0,"k":[10,5,0]}},"sw":20,"sh":10,"sc":"#ff0000",)" + R"("ip":0,"op":10,"st":0})";
}

bool isOneLine(const std::string& text) {
    return !text.empty() && text.back() == '\n' && std::count(text.begin(), text.end(), '\n') == 1;
}

TEST(Solve, GivesTheSameBytesTwice) {
    const TestFolder folder;
    folder.put("in.json", sample("flutter-example_with_images-data.json"));
    for (const char* out : {"a.json", "b.json"}) {
        const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "-o", out, "--quiet"});
        ASSERT_EQ(run.exitStatus, 0) << run.err;
        EXPECT_EQ(run.out + run.err, "");
    }
    EXPECT_EQ(folder.contents("a.json"), folder.contents("b.json"));
    EXPECT_NE(folder.contents("a.json"), folder.contents("in.json"));
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"a.json", "b.json", "in.json"}));
}

TEST(Solve, LeavesAFileWithNothingToSimulateAsItIs) {
    const std::string null = R"({"ty":3,"ind":1,"ip":0,"op":10,"ks":{}})";
    const std::string inputs[] = {document(null), " " + document(null + R"(,{"ty":4,"ind":2,"hd":true,"shapes":[]})")};
    for (const std::string& input : inputs) {
        const TestFolder folder;
        folder.put("in.json", input);
        const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "-o", "out.json"});
        EXPECT_EQ(run.exitStatus, 0) << run.err;
        EXPECT_NE(run.out.find("nothing to simulate"), std::string::npos) << run.out;
        EXPECT_EQ(folder.contents("out.json"), input);
    }
}

// Free fall at 10 m/s2, 10 frames a second, 2 steps a frame: after n steps of h = 1/20 s the way is
// 10 h h n (n + 1) / 2 metres, so frame f (n = 2 f) stands at 100 times that below the start: 7.5 pixels at frame 1,
// 25 at frame 2, 52.5 at frame 3.
TEST(Solve, WritesWhatAFreeBodyDoes) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1)));
    const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "-o", "out.json", "--end", "3"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const std::string out = folder.contents("out.json");
    for (const char* key : {R"({"t":0,"s":[50,50,0],)", R"({"t":1,"s":[50,57.5,0],)", R"({"t":2,"s":[50,75,0],)",
                            R"({"t":3,"s":[50,102.5,0]})", R"("r":{"a":0,"k":0})", R"("ip":0,"op":4,)"}) {
        EXPECT_NE(out.find(key), std::string::npos) << key << " in " << out;
    }
}

TEST(Solve, TakesSettings) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1) + "," + solid("floor", 2, "[50,90,0]")));
    const ProgramRun run =
        runProgram(folder.path(), {"solve", "in.json", "-o", "out.json", "--end", "1", "--set", "box.type=Dead",
                                   "--set", "floor.gravityScale=-1", "--set", "gravity.magnitude=20", "-q"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const std::string out = folder.contents("out.json");
    // A dead layer keeps its streams; the other rises twice as fast as a body falls by itself: 15 pixels in one frame.
    EXPECT_NE(out.find(R"("p":{"a":0,"k":[50,50,0]})"), std::string::npos) << out;
    EXPECT_NE(out.find(R"({"t":1,"s":[50,75,0]})"), std::string::npos) << out;
}

TEST(Solve, InPlaceChangesTheInputAndKeepsItsName) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1)));
    const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "--in-place"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(folder.contents("in.json").find(R"("nm":"test")"), std::string::npos);
    EXPECT_NE(folder.contents("in.json").find(R"({"t":9,)"), std::string::npos);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"in.json"});
}

TEST(Solve, NamesTheResultAfterTheInputAndTheDuplicateAfterTheComposition) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1)));
    const ProgramRun run = runProgram(folder.path(), {"solve", "in.json"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(run.out.find("in-solved.json"), std::string::npos) << run.out;
    EXPECT_NE(folder.contents("in-solved.json").find(R"("nm":"test 2")"), std::string::npos);
    EXPECT_EQ(folder.contents("in.json"), document(solid("box", 1)));
}

TEST(Solve, SamplesAndSummaryAgree) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1)));
    const ProgramRun run =
        runProgram(folder.path(), {"solve", "in.json", "--json", "--end", "2", "--samples", "samples.json"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(run.out.find(R"("bodies":1)"), std::string::npos) << run.out;
    EXPECT_NE(folder.contents("samples.json").find("[50,50],[50,57.5],[50,75]"), std::string::npos)
        << folder.contents("samples.json");
}

TEST(Solve, RefusesBadInputInOneLineAndKeepsTheOldFile) {
    struct Case {
        const char* name;
        std::string input;
        const char* says;
    };
    const Case cases[] = {
        {"truncated", sample("android-Parenting.json").substr(0, 5000), "JSON"},
        {"empty", "", "JSON"},
        {"binary", std::string("\0\1\2\3", 4), "JSON"},
        {"archive", "PK\3\4 and so on", "archive cannot be opened"},
        {"no object", "[]", "Lottie"},
        {"some other JSON", R"({"name":"package","version":"1.0"})", "Lottie"},
        {"no layers", document(""), "no layers"},
        {"no frame rate", R"({"v":"5","fr":0,"ip":0,"op":9,"w":9,"h":9,"layers":[]})", "fr"},
        {"NaN in a transform", document(solid("box", 1, "[NaN,0,0]")), "JSON"},
        {"1e308 in a transform", document(solid("box", 1, "[1e308,0,0]")), "box"},
        {"1e999 in a transform", document(solid("box", 1, "[0,1e999,0]")), "box"},
        {"text after the end", document(solid("box", 1)) + " x", "after the end"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder;
        folder.put("in.json", c.input);
        folder.put("out.json", "old");
        const ProgramRun run = runProgram(folder.path(), {"solve", "in.json", "-o", "out.json"});
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_TRUE(isOneLine(run.err)) << run.err;
        EXPECT_NE(run.err.find("in.json"), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(folder.contents("out.json"), "old");
        EXPECT_EQ(folder.names(), (std::vector<std::string>{"in.json", "out.json"}));
    }
}

TEST(Solve, RefusesFilesThatCannotBeReadOrWritten) {
    struct Case {
        std::vector<std::string> arguments;
        const char* says;
    };
    const Case cases[] = {
        {{"solve", ".", "-o", "out.json"}, "directory"},
        {{"solve", "missing.json", "-o", "out.json"}, "missing.json"},
        {{"solve", "in.json", "-o", "no/such/folder/out.json"}, "out.json"},
        {{"solve", "in.json", "-o", "."}, "directory"},
        {{"solve", "in.json", "-o", "out.json", "--samples", "no/folder/s.json"}, "s.json"},
        {{"inspect", "missing.json"}, "missing.json"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.says);
        const TestFolder folder;
        folder.put("in.json", document(solid("box", 1)));
        folder.put("out.json", "old");
        const ProgramRun run = runProgram(folder.path(), c.arguments);
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_TRUE(isOneLine(run.err)) << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
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
        {"solve", "in.json", "--set", "box"},
        {"solve", "in.json", "--set", "bax.type=Static"},
        {"solve", "in.json", "--set", "box.type=Statick"},
        {"solve", "in.json", "--samples", "in-solved.json"},
        {"inspect", "in.json", "--outlines"},
    };
    for (const std::vector<std::string>& arguments : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const TestFolder folder;
        folder.put("in.json", document(solid("box", 1)));
        const ProgramRun run = runProgram(folder.path(), arguments);
        EXPECT_EQ(run.exitStatus, 2) << run.err;
        EXPECT_NE(run.err, "");
        EXPECT_EQ(folder.names(), std::vector<std::string>{"in.json"});
    }
}

TEST(Inspect, TellsWhatBecomesABodyAndWhyNot) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1) + R"(,{"ty":3,"nm":"carrier","ind":2,"ip":0,"op":10,"ks":{}})"));
    const ProgramRun table = runProgram(folder.path(), {"inspect", "in.json"});
    EXPECT_EQ(table.exitStatus, 0) << table.err;
    EXPECT_NE(table.out.find("box"), std::string::npos);
    EXPECT_NE(table.out.find("a null"), std::string::npos);
    const ProgramRun json = runProgram(folder.path(), {"inspect", "in.json", "--json"});
    EXPECT_EQ(json.exitStatus, 0);
    EXPECT_NE(json.out.find(R"("name":"carrier")"), std::string::npos) << json.out;
    EXPECT_NE(json.out.find(R"("body":false)"), std::string::npos) << json.out;
}

} // namespace
} // namespace jostle::test
