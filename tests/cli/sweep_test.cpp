#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

using Names = std::vector<std::string>;

ProgramRun sweep(const TestFolder& folder, const Names& arguments) {
    Names all{"solve", "in.json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return folder.run(all);
}

TEST(Sweep, MakesEachCombinationAsSetDoes) {
    const TestFolder folder;
    folder.put("in.json", document(solid("box", 1) + "," + solid("floor", 2, "[50,90,0]")));
    const ProgramRun run = sweep(folder, {"--set", "floor.type=Static", "--sweep", "gravity.magnitude=2:10:8",
                                          "--sweep", "*.restitution=0.9:0.5:-0.4", "-o", "out"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    expectHas(run.out, "4 of 4 results");
    const Names expected{"gravity.magnitude=10_all.restitution=0.5.json",
                         "gravity.magnitude=10_all.restitution=0.9.json",
                         "gravity.magnitude=2_all.restitution=0.5.json",
                         "gravity.magnitude=2_all.restitution=0.9.json",
                         "sweep.html",
                         "sweep.json"};
    EXPECT_EQ(folder.names("out"), expected);
    ASSERT_EQ(sweep(folder, {"--set", "floor.type=Static", "--set", "gravity.magnitude=10", "--set",
                             "*.restitution=0.5", "-o", "one.json", "-q"})
                  .exitStatus,
              0);
    EXPECT_EQ(folder.contents("out/gravity.magnitude=10_all.restitution=0.5.json"), folder.contents("one.json"));
    const std::string index = folder.contents("out/sweep.json");
    expectHas(index, R"("sweep":[{"key":"gravity.magnitude","values":[2,10]},)"
                     R"({"key":"*.restitution","values":[0.9,0.5]}])");
    expectHas(index, R"({"file":"gravity.magnitude=2_all.restitution=0.9.json","values":{"gravity.magnitude":2,)"
                     R"("*.restitution":0.9},"solved":true,"result":{)");
}

TEST(Sweep, ThePageHoldsTheResultsAndNamesThePlayer) {
    const TestFolder folder;
    folder.put("in.json", document(solid("</script><b>", 1)));
    folder.put("a player.js", "");
    const Names arguments{"--sweep", "gravity.magnitude=1:2:1", "-o", "out", "-q"};
    ASSERT_EQ(sweep(folder, arguments).exitStatus, 0);
    const std::string page = folder.contents("out/sweep.html");
    expectHas(page, "<script src=\"https://");
    EXPECT_NE(page.find("\"nm\":\"\\u003c/script>\\u003cb>\""), std::string::npos) << "a layer's name broke out";
    Names withPlayer = arguments;
    withPlayer.insert(withPlayer.end(), {"--player", "a player.js"});
    ASSERT_EQ(sweep(folder, withPlayer).exitStatus, 0);
    expectHas(folder.contents("out/sweep.html"), "<script src=\"../a%20player.js\">");
}

TEST(Sweep, AnInterruptedOneListsWhatIsMade) {
    const TestFolder folder;
    folder.put("in.json", slowDocument());
    // The first, of static bodies, is quick all the same.
    const ProgramRun run =
        folder.interrupt({"solve", "in.json", "--sweep", "*.type=0:4:2", "-o", "out", "--end", "20000", "-j", "1"},
                         "out/.all.type=2.json.jostle-part");
    EXPECT_EQ(run.exitStatus, 1);
    expectHas(run.out, "interrupted: 1 of 3 results");
    const std::string index = folder.contents("out/sweep.json");
    expectHas(index, R"("values":{"*.type":0},"solved":true)");
    expectHas(index, R"("solved":false,"message":"interrupted while solving; nothing was written")");
    expectHas(index, R"("message":"interrupted before its turn")");
    expectHas(folder.contents("out/sweep.html"), "interrupted before its turn");
}

TEST(Sweep, SaysWhatIsWrongAndMakesNothing) {
    struct Case {
        Names arguments;
        const char* says;
    };
    const Case cases[] = {
        {{"--sweep", "gravity.magnitude=1:2:1"}, "-o FOLDER"},
        {{"--sweep", "gravity.magnitude=1:2", "-o", "out"}, "KEY=A:B:STEP"},
        {{"--sweep", "gravity.magnitud=1:2:1", "-o", "out"}, "magnitude"},
        {{"--sweep", "bix.friction=0:1:0.5", "-o", "out"}, "bix"},
        {{"--sweep", "box.type=0:9:1", "-o", "out"}, "type"},
        {{"--sweep", "box.friction=0:1:0.5", "--sweep", "box.friction=0:1:1", "-o", "out"}, "another --sweep"},
        {{"--sweep", "box.friction=0:1:0.01", "--sweep", "box.density=1:10:1", "-o", "out"}, "1000"},
        {{"--sweep", "box.friction=0:1:0.5", "-o", "out", "--samples", "s.json"}, "--samples"},
        {{"--sweep", "box.friction=0:1:0.5", "-o", "out", "--player", "none.js"}, "none.js"},
        {{"in.json", "--sweep", "box.friction=0:1:0.5", "-o", "out"}, "one input"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        const TestFolder folder;
        folder.put("in.json", document(solid("box", 1)));
        const ProgramRun run = sweep(folder, c.arguments);
        EXPECT_EQ(run.exitStatus, 2);
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        expectHas(run.err, c.says);
        EXPECT_EQ(folder.names(), Names{"in.json"});
    }
}

} // namespace
} // namespace jostle::test
