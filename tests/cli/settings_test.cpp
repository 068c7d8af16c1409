#include <gtest/gtest.h>

#include <tuple>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

/// Layer 1 stands still at the centre, layer 2 a metre to its right.
std::string settings(const std::string& joint) {
    return R"(<JostleSettings><preview/><solver/><gravity/><bodies><body layerID="1" type="0"/>)"
           R"(<body layerID="2" positionX="1" positionY="0"/></bodies><joints>)"
           R"(<joint bodyAId="0" bodyBId="1" bodyALayerID="1" bodyBLayerID="2" )" +
           joint + "/></joints></JostleSettings>";
}

TEST(Settings, AreWrittenAndLaidOverTheSameComposition) {
    const TestFolder folder(document(solid("box", 1) + "," + solid("box", 2, "[75,50,0]")));
    EXPECT_EQ(folder.succeed({"settings", "in.json", "--set", "1.type=Static", "--set", "2.gravityScale=-1"}).out,
              "in.json.xml: settings of 2 bodies, 0 joints\n");
    const std::string text = folder.contents("in.json.xml");
    expectHas(text, R"(<body layerID="2" type="2" )");
    expectHas(text, R"(gravityScale="-1.000000")");
    folder.succeed({"settings", "in.json", "--settings", "in.json.xml", "-o", "again.xml", "-q"});
    EXPECT_EQ(folder.contents("again.xml"), text);
    // Gravity doubled on top of it: 15 pixels in the first frame, upwards.
    folder.succeed(
        {"solve", "in.json", "-o", "out.json", "--settings", "again.xml", "--set", "gravity.magnitude=20", "-q"});
    expectHas(folder.contents("out.json"), R"({"t":1,"s":[75,35,0])");
}

TEST(Settings, JointsOfAFileHold) {
    // The setting of gravity, the joint, and where layer 2 is then.
    constexpr std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        // Straight down along the piston's axis, as a free body: 7.5 and 25 pixels.
        {"piston", "gravity.magnitude=10", R"(type="2" axisX="0" axisY="1")", R"({"t":2,"s":[150,75,0])"},
        // A rod to a point a metre above keeps a body from falling, and so does a pivot in its middle.
        {"distance", "gravity.magnitude=10", R"(type="0" anchorAX="1" anchorAY="-1" anchorBX="0" anchorBY="0")",
         R"("k":[150,50,0])"},
        {"pivot", "gravity.magnitude=10", R"(type="1" anchorX="1" anchorY="0")", R"("k":[150,50,0])"},
        // 0.01 of 200 newtons a metre, stretched by 0.1 m, on 0.02 kg: 10 m/s2 from the end of the first frame on, in
        // the first of the two steps of the next: 0.5 m/s, so 5 pixels in that frame.
        {"spring", "gravity.magnitude=0", R"(type="3" springiness="0.01" damping="0" desiredLength="0.9")",
         R"({"t":2,"s":[145,50,0])"},
    };
    for (const auto& [name, gravity, joint, key] : cases) {
        SCOPED_TRACE(name);
        const TestFolder folder(document(solid("box", 1) + "," + solid("box", 2)));
        folder.put("in.xml", settings(joint));
        const ProgramRun run =
            folder.succeed({"solve", "in.json", "--settings", "in.xml", "--set", gravity, "-o", "out.json"});
        EXPECT_EQ(run.err.find("jostle:"), std::string::npos) << run.err;
        expectHas(folder.contents("out.json"), key);
    }
}

TEST(Settings, OfNoUseAreTold) {
    const TestFolder folder(document(solid("box", 7)));
    folder.put("other.xml", settings("type=\"0\""));
    const std::vector<RefusedCommand> cases{
        {{"solve", "in.json", "-q", "-o", "out.json", "--settings", "no.xml"}, "no.xml' cannot be found", 1},
        {{"solve", "in.json", "-q", "-o", "out.json", "--settings", "in.json"}, "its format is not supported", 1},
        {{"settings", "in.json", "-o", "no/such/out.xml"}, "cannot be written", 1},
        {{"settings", "in.json", "-o", "in.json"}, "is the input itself"},
        {{"settings", "in.json", "--set", "box.densty=1"}, "did you mean \"density\""},
    };
    expectRefused(folder, cases);
    expectHas(folder.succeed({"settings", "in.json", "--settings", "other.xml", "-o", "out.xml"}).err,
              "names no layer of the composition");
    EXPECT_NE(folder.contents("out.xml"), "");
}

} // namespace
} // namespace jostle::test
