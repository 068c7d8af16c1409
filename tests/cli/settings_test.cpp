#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

/// A solid of 20 by 20 pixels in a composition of 200 by 200, 10 frames at 10 per second.
std::string solid(int number, const std::string& position) {
    return R"({"ty":1,"nm":"box","ind":)" + std::to_string(number) + R"(,"ks":{"p":{"a":0,"k":)" + position +
           R"(},"a":{"a":0,"k":[10,10,0]}},"sw":20,"sh":20,"sc":"#ff0000","ip":0,"op":10,"st":0})";
}

std::string document(const std::string& layers) {
    return R"({"v":"5.7.4","fr":10,"ip":0,"op":10,"w":200,"h":200,"nm":"test","assets":[],"layers":[)" + layers + "]}";
}

/// Layer 1 stands still at the centre, layer 2 a metre to its right.
std::string settings(const std::string& joint) {
    return R"(<JostleSettings><preview/><solver/><gravity/><bodies><body layerID="1" type="0"/>)"
           R"(<body layerID="2" positionX="1" positionY="0"/></bodies><joints>)"
           R"(<joint bodyAId="0" bodyBId="1" bodyALayerID="1" bodyBLayerID="2" )" +
           joint + "/></joints></JostleSettings>";
}

TEST(Settings, AreWrittenAndLaidOverTheSameComposition) {
    const TestFolder folder;
    folder.put("in.json", document(solid(1, "[100,100,0]") + "," + solid(2, "[150,100,0]")));
    const ProgramRun written =
        folder.run({"settings", "in.json", "--set", "1.type=Static", "--set", "2.gravityScale=-1"});
    ASSERT_EQ(written.exitStatus, 0) << written.err;
    EXPECT_EQ(written.out, "in.json.xml: settings of 2 bodies, 0 joints\n");
    const std::string text = folder.contents("in.json.xml");
    EXPECT_NE(text.find(R"(<body layerID="2" type="2" )"), std::string::npos) << text;
    EXPECT_NE(text.find(R"(gravityScale="-1.000000")"), std::string::npos) << text;
    ASSERT_EQ(folder.run({"settings", "in.json", "--settings", "in.json.xml", "-o", "again.xml", "-q"}).exitStatus, 0);
    EXPECT_EQ(folder.contents("again.xml"), text);
    // Gravity doubled on top of it: 15 pixels in the first frame, upwards.
    ASSERT_EQ(folder
                  .run({"solve", "in.json", "-o", "out.json", "--settings", "again.xml", "--set",
                        "gravity.magnitude=20", "-q"})
                  .exitStatus,
              0);
    EXPECT_NE(folder.contents("out.json").find(R"({"t":1,"s":[150,85,0])"), std::string::npos)
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
        {"piston", "gravity.magnitude=10", R"(type="2" axisX="0" axisY="1")", R"({"t":2,"s":[200,125,0])"},
        // A rod to a point a metre above keeps a body from falling, and so does a pivot in its middle.
        {"distance", "gravity.magnitude=10", R"(type="0" anchorAX="1" anchorAY="-1" anchorBX="0" anchorBY="0")",
         R"("k":[200,100,0])"},
        {"pivot", "gravity.magnitude=10", R"(type="1" anchorX="1" anchorY="0")", R"("k":[200,100,0])"},
        // 0.02 of 200 newtons a metre, stretched by 0.1 m, on 0.04 kg: 10 m/s2 from the end of the first frame on, in
        // the
        // first of the two steps of the next: 0.5 m/s, so 5 pixels in that frame.
        {"spring", "gravity.magnitude=0", R"(type="3" springiness="0.02" damping="0" desiredLength="0.9")",
         R"({"t":2,"s":[195,100,0])"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder;
        folder.put("in.json", document(solid(1, "[100,100,0]") + "," + solid(2, "[200,100,0]")));
        folder.put("in.xml", settings(c.joint));
        const ProgramRun run =
            folder.run({"solve", "in.json", "--settings", "in.xml", "--set", c.gravity, "-o", "out.json"});
        ASSERT_EQ(run.exitStatus, 0) << run.err;
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
        const TestFolder folder;
        folder.put("in.json", document(solid(7, "[100,100,0]")));
        folder.put("other.xml", settings("type=\"0\""));
        const ProgramRun run = folder.run(c.arguments);
        EXPECT_EQ(run.exitStatus, c.exitStatus);
        EXPECT_NE(run.err.find(c.says), std::string::npos) << run.err;
        EXPECT_EQ(folder.names().size(), c.exitStatus == 0 ? 3u : 2u) << "only a run that was done leaves a file";
    }
}

} // namespace
} // namespace jostle::test
