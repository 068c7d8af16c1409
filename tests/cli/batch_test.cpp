#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

using Names = std::vector<std::string>;

/// Three files that can be solved and two that cannot, the second and the last.
void putFiles(const TestFolder& folder) {
    folder.put("a.json", document(solid("box", 1)));
    folder.put("b.json", "{}");
    folder.put("c.json", document(solid("box", 1) + "," + solid("floor", 2, "[50,90,0]")));
    folder.put("d.json", sample("android-Parenting.json"));
    folder.put("e.json", "[");
}

TEST(Batch, SolvesWhatCanBeAndNamesTheRest) {
    const TestFolder folder;
    putFiles(folder);
    const ProgramRun run = folder.run({"solve", "a.json", "b.json", "c.json", "d.json", "e.json", "-o", "new/folder"});
    EXPECT_EQ(run.exitStatus, 1);
    expectHas(run.out, "3 of 5 files solved; failed: b.json, e.json\n");
    expectHas(run.err, "jostle: b.json: ");
    expectHas(run.err, "jostle: e.json: ");
    folder.succeed({"solve", "d.json", "-o", "alone.json", "-q"});
    EXPECT_EQ(folder.contents("new/folder/d.json"), folder.contents("alone.json"));
    EXPECT_NE(folder.contents("new/folder/a.json"), "");
    EXPECT_FALSE(std::filesystem::exists(folder.path("new/folder/b.json")));
}

TEST(Batch, IsTheSameHoweverManyRunAtOnce) {
    const TestFolder folder;
    putFiles(folder);
    ProgramRun runs[2];
    std::map<std::string, std::string> files[2];
    for (int i = 0; i < 2; ++i) {
        runs[i] = folder.run({"solve", "d.json", "e.json", "c.json", "b.json", "a.json", "-o", "out", "--json",
                              "--quiet", "--jobs", i == 0 ? "1" : "5"});
        EXPECT_EQ(runs[i].exitStatus, 1);
        files[i] = folder.files();
        std::filesystem::remove_all(folder.path("out"));
    }
    EXPECT_EQ(runs[0].out, runs[1].out);
    EXPECT_EQ(runs[0].err, runs[1].err);
    EXPECT_EQ(files[0], files[1]);
    expectHas(runs[0].out, R"({"input":"e.json","solved":false,"message":")");
    expectHas(runs[0].out, R"("solved":3,"failed":2,"interrupted":false})");
}

TEST(Batch, GoesBesideTheInputsOrInPlaceTooAndASingleFileIntoAFolder) {
    const TestFolder folder;
    for (const char* name : {"a.json", "b.json", "c.json"})
        folder.put(name, document(solid("box", 1)));
    for (Names arguments : {Names{"solve", "a.json"}, Names{"solve", "b.json", "c.json"}}) {
        folder.succeed(arguments);
        arguments.push_back("--in-place");
        folder.succeed(arguments);
    }
    EXPECT_EQ(folder.names(), (Names{"a-solved.json", "a.json", "b-solved.json", "b.json", "c-solved.json", "c.json"}));
    for (const char* name : {"a", "b", "c"}) {
        expectHas(folder.contents(std::string(name) + "-solved.json"), R"("nm":"test 2")");
        expectHas(folder.contents(std::string(name) + ".json"), R"("nm":"test")");
        expectHas(folder.contents(std::string(name) + ".json"), R"({"t":9,)");
    }
    folder.succeed({"solve", "a.json", "-o", "out/"});
    EXPECT_NE(folder.contents("out/a.json"), "");
}

TEST(Batch, AnInterruptionEndsAllInOrder) {
    const TestFolder folder;
    for (const char* name : {"a.json", "b.json", "c.json"}) {
        folder.put(name, slowDocument());
    }
    folder.put("out/a.json", "old");
    const ProgramRun run = folder.interrupt(
        {"solve", "a.json", "b.json", "c.json", "-o", "out", "--end", "100000", "-j", "2"}, "out/.b.json.jostle-part");
    EXPECT_EQ(run.exitStatus, 1);
    expectHas(run.err, "jostle: a.json: interrupted");
    expectHas(run.out, "interrupted: 0 of 3 files solved");
    expectHas(run.out, "c.json (not begun)");
    EXPECT_EQ(folder.contents("out/a.json"), "old");
    EXPECT_EQ(folder.names("out"), Names{"a.json"});
}

TEST(Batch, RefusesBeforeAnythingRuns) {
    const TestFolder folder;
    for (const char* name : {"a.json", "b.json", "sub/a.json"}) {
        folder.put(name, document(solid("box", 1)));
    }
    folder.put("file", "");
    expectRefused(folder, {{{"solve", "a.json", "sub/a.json", "-o", "out"}, "a.json and sub/a.json"},
                           {{"solve", "a.json", "./a.json"}, "a.json and ./a.json"},
                           {{"solve", "a.json", "b.json", "-o", "."}, "is the input itself"},
                           {{"solve", "sub/a.json", "a.json", "-o", ".", "--in-place"}, "a.json"},
                           {{"solve", "a.json", "b.json", "-o", "out", "--samples", "s.json"}, "--samples"},
                           {{"solve", "a.json", "b.json", "-o", "file"}, "is no folder", 1},
                           {{"solve", "a.json", "b.json", "-o", ""}, "names no folder"}});
}

} // namespace
} // namespace jostle::test
