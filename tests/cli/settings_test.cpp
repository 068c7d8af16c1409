#include <gtest/gtest.h>

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
    EXPECT_NE(folder.contents("out.json").find(R"({"t":1,"s":[75,35,0])"), std::string::npos)
        << folder.contents("out.json");
}

TEST(Settings, JointsOfAFileHold) {
    struct Case {
        const char* name;
        const char* gravity;
        const char* joint;
        const char* key; ///< where layer 2 is then
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder(document(solid("box", 1) + "," + solid("box", 2)));
        folder.put("in.xml", settings(c.joint));
        const ProgramRun run =
            folder.succeed({"solve", "in.json", "--settings", "in.xml", "--set", c.gravity, "-o", "out.json"});
        EXPECT_EQ(run.err.find("jostle:"), std::string::npos) << run.err;
        EXPECT_NE(folder.contents("out.json").find(c.key), std::string::npos) << folder.contents("out.json");
    }
}

TEST(Settings, OfNoUseAreTold) {
    struct Case {
        std::vector<std::string> arguments;
        int exitStatus;
        const char* says;
    };
    const Case cases[] = {
        {{"solve", "in.json", "-q", "-o", "out.json", "--settings", "no.xml"}, 1, "no.xml' cannot be found"},
        {{"solve", "in.json", "-q", "-o", "out.json", "--settings", "in.json"}, 1, "its format is not supported"},
        {{"settings", "in.json", "--settings", "other.xml", "-o", "out.xml"}, 0, "names no layer of the composition"},
        {{"settings", "in.json", "-o", "no/such/out.xml"}, 1, "cannot be written"},
        {{"settings", "in.json", "-o", "in.json"}, 2, "is the input itself"},
        {{"settings", "in.json", "--set", "box.densty=1"}, 2, "did you mean \"density\""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.says);
        const TestFolder folder(document(solid("box", 7)));
        folder.put("other.xml", settings("type=\"0\""));
        const ProgramRun run = folder.run(c.arguments);
        EXPECT_EQ(run.exitStatus, c.exitStatus);
        expectHas(run.err, c.says);
        EXPECT_EQ(folder.names().size(), c.exitStatus == 0 ? 3u : 2u) << "only a run that was done leaves a file";
    }
}

} // namespace
} // namespace jostle::test
