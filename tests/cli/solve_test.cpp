#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "standalone/lottie/archive.h"
#include "tests/cli/program.h"

namespace jostle::test {
namespace {

TEST(Solve, LeavesAFileWithNothingToSimulateAsItIs) {
    const std::string null = R"({"ty":3,"ind":1,"ip":0,"op":10,"ks":{}})";
    const std::pair<const char*, std::string> cases[] = {
        {".json", document(null)},
        {".json", " " + document(null + R"(,{"ty":4,"ind":2,"hd":true,"shapes":[]})")},
        {".lottie", standalone::newArchive(document(null))},
    };
    for (const auto& [ending, input] : cases) {
        const TestFolder folder;
        folder.put("in" + std::string(ending), input);
        expectHas(folder.succeed({"solve", "in" + std::string(ending)}).out, "nothing to simulate");
        folder.succeed({"solve", "in" + std::string(ending), "--in-place"});
        EXPECT_EQ(folder.contents("in-solved" + std::string(ending)), input);
        EXPECT_EQ(folder.contents("in" + std::string(ending)), input);
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
    // Between frames 0 and 2 the line passes frame 1 at 62.5, where the body is at 57.5.
    folder.succeed({"solve", "in.json", "-o", "out.json", "--end", "2", "--reduce", "5.01"});
    expectHas(folder.contents("out.json"), R"({"t":2,"s":[50,75,0]})");
    EXPECT_EQ(folder.contents("out.json").find(R"({"t":1,)"), std::string::npos) << "a key within the tolerance";
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

TEST(Solve, RefusesInOneLineAndKeepsTheOldFiles) {
    const TestFolder folder(document(solid("box", 1)));
    folder.put("out.json", "old");
    const std::tuple<const char*, std::string, const char*> broken[] = {
        {"truncated.json", sample("android-Parenting.json").substr(0, 5000), "not valid JSON"},
        {"empty.json", "", "not valid JSON"},
        {"archive.json", "PK\3\4 and so on", "the archive cannot be opened"},
        {"array.json", "[]", "this is no Lottie"},
        {"bare.json", document(""), "no layers"},
        {"far.json", document(solid("box", 1, "[1e308,0,0]")), "layer 1 \"box\""},
    };
    std::vector<RefusedCommand> cases;
    for (const auto& [name, contents, says] : broken) {
        folder.put(name, contents);
        cases.push_back({{"solve", name, "-o", "out.json"}, says, 1});
        cases.push_back({{"inspect", name}, std::string("jostle: ") + name + ": ", 1});
    }
    const auto add = [&](std::vector<std::string> options, const char* says, int exitStatus = 2) {
        options.insert(options.begin(), {"solve", "in.json"});
        cases.push_back({options, says, exitStatus});
    };
    add({"-o", "no/such/folder/out.json"}, "jostle: no/such/folder/out.json: ", 1);
    add({"-o", "out.json", "--samples", "no/s.json"}, "jostle: no/s.json: ", 1);
    add({"--no-such-option"}, "--no-such-option");
    add({"--start", "-1"}, "0 to 100000");
    add({"--start", "5", "--end", "4"}, "give a later --end");
    add({"--end", "100001"}, "0 to 100000");
    add({"--start", "10"}, "the composition's last frame, 9");
    add({"-o", ""}, "names no file");
    add({"-o", "in.json"}, "the input itself");
    add({"-o", "."}, "the input itself");
    add({"--reduce", "0"}, "0.01");
    add({"--jobs", "0"}, "1 to 1024");
    add({"--player", "lottie.js"}, "--sweep");
    add({"--set", "box"}, "KEY=VALUE");
    add({"--set", "bax.type=Static"}, "did you mean \"box\"");
    add({"--set", "box.type=Statick"}, "0 to 5");
    add({"--samples", "in-solved.json"}, "the result");
    add({"--samples", "./in-solved.json"}, "the result");
    cases.push_back({{}, "A subcommand is required"});
    cases.push_back({{"solve"}, "input is required"});
    cases.push_back({{"solve", ".", "-o", "out.json"}, ".: is a directory", 1});
    cases.push_back({{"solve", "missing.json", "-o", "out.json"}, "missing.json: cannot be opened", 1});
    cases.push_back({{"inspect", "in.json", "--outlines"}, "requires --json"});
    expectRefused(folder, cases);
}

} // namespace
} // namespace jostle::test
