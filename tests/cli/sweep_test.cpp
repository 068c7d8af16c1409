#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

using Names = std::vector<std::string>;

/// Arguments that sweep settings into a folder "out".
Names sweeping(const Names& settings, const Names& more = {}) {
    Names all{"solve", "in.json", "-o", "out"};
    for (const std::string& setting : settings)
        all.insert(all.end(), {"--sweep", setting});
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

TEST(Sweep, MakesEachCombinationAsSetDoes) {
    const TestFolder folder(document(solid("box", 1) + "," + solid("floor", 2, "[50,90,0]")));
    const Names axes{"gravity.magnitude=2:10:8", "*.restitution=0.9:0.5:-0.4"};
    expectHas(folder.succeed(sweeping(axes, {"--set", "floor.type=Static"})).out, "4 of 4 results");
    const Names expected{"gravity.magnitude=10_all.restitution=0.5.json",
                         "gravity.magnitude=10_all.restitution=0.9.json",
                         "gravity.magnitude=2_all.restitution=0.5.json",
                         "gravity.magnitude=2_all.restitution=0.9.json",
                         "sweep.html",
                         "sweep.json"};
    EXPECT_EQ(folder.names("out"), expected);
    folder.succeed({"solve", "in.json", "--set", "floor.type=Static", "--set", "gravity.magnitude=10", "--set",
                    "*.restitution=0.5", "-o", "one.json", "-q"});
    EXPECT_EQ(folder.contents("out/gravity.magnitude=10_all.restitution=0.5.json"), folder.contents("one.json"));
    const std::string index = folder.contents("out/sweep.json");
    expectHas(index, R"("sweep":[{"key":"gravity.magnitude","values":[2,10]},)"
                     R"({"key":"*.restitution","values":[0.9,0.5]}])");
    expectHas(index, R"({"file":"gravity.magnitude=2_all.restitution=0.9.json","values":{"gravity.magnitude":2,)"
                     R"("*.restitution":0.9},"solved":true,"result":{)");
}

TEST(Sweep, ThePageHoldsTheResultsAndNamesThePlayer) {
    const TestFolder folder(document(solid("</script><b>", 1)));
    folder.put("a player.js", "");
    folder.succeed(sweeping({"gravity.magnitude=1:2:1"}));
    const std::string page = folder.contents("out/sweep.html");
    expectHas(page, "<script src=\"https://");
    EXPECT_NE(page.find("\"nm\":\"\\u003c/script>\\u003cb>\""), std::string::npos) << "a layer's name broke out";
    folder.succeed(sweeping({"gravity.magnitude=1:2:1"}, {"--player", "a player.js"}));
    expectHas(folder.contents("out/sweep.html"), "<script src=\"../a%20player.js\">");
}

TEST(Sweep, AnInterruptedOneListsWhatIsMade) {
    const TestFolder folder(slowDocument());
    // The first, of static bodies, is quick all the same.
    const ProgramRun run =
        folder.interrupt(sweeping({"*.type=0:4:2"}, {"--end", "20000", "-j", "1"}), "out/.all.type=2.json.jostle-part");
    EXPECT_EQ(run.exitStatus, 1);
    expectHas(run.out, "interrupted: 1 of 3 results");
    const std::string index = folder.contents("out/sweep.json");
    expectHas(index, R"("values":{"*.type":0},"solved":true)");
    expectHas(index, R"("solved":false,"message":"interrupted while solving; nothing was written")");
    expectHas(index, R"("message":"interrupted before its turn")");
    expectHas(folder.contents("out/sweep.html"), "interrupted before its turn");
}

TEST(Sweep, SaysWhatIsWrongAndMakesNothing) {
    const std::vector<RefusedCommand> cases{
        {{"solve", "in.json", "--sweep", "gravity.magnitude=1:2:1"}, "-o FOLDER"},
        {sweeping({"gravity.magnitude=1:2"}), "KEY=A:B:STEP"},
        {sweeping({"gravity.magnitud=1:2:1"}), "magnitude"},
        {sweeping({"bix.friction=0:1:0.5"}), "bix"},
        {sweeping({"box.type=0:9:1"}), "type"},
        {sweeping({"box.friction=0:1:0.5", "box.friction=0:1:1"}), "another --sweep"},
        {sweeping({"box.friction=0:1:0.01", "box.density=1:10:1"}), "1000"},
        {sweeping({"box.friction=0:1:0.5"}, {"--samples", "s.json"}), "--samples"},
        {sweeping({"box.friction=0:1:0.5"}, {"--player", "none.js"}), "none.js"},
        {sweeping({"box.friction=0:1:0.5"}, {"in.json"}), "one input"},
    };
    expectRefused(TestFolder(document(solid("box", 1))), cases);
}

} // namespace
} // namespace jostle::test
