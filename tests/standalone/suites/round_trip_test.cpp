#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

ReadResult readFile(const std::string& text) {
    ReadResult result = readLottie(text, "file");
    EXPECT_TRUE(result) << result.error << text;
    return result;
}

TEST(RoundTrip, NothingIsPastedTooDeepToBeReadAgain) {
    std::string groups = R"({"ty":"el"})";
    for (int i = 0; i < 60; ++i)
        groups = R"({"ty":"gr","it":[)" + groups + "]}";
    Session session(
        readFile(R"({"v":"5.7.4","fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":4,"ind":1,"ks":{},"shapes":[)" +
                 groups + "]}]}"));
    const char* const outermost = "ADBE Root Vectors Group/0";
    EXPECT_EQ(session.copy(session.place(0, outermost)), A_Err_NONE);
    AEGP_StreamRefH innermost = session.place(0, outermost);
    for (int i = 1; i < 60; ++i)
        innermost = session.below(innermost, "ADBE Vectors Group/0");
    EXPECT_NE(session.paste(innermost), A_Err_NONE) << "120 groups";
    EXPECT_EQ(session.paste(session.place(0, outermost)), A_Err_NONE) << "61 groups";
    readFile(session.written());
}

TEST(RoundTrip, AValueStillLeapsWhereKeysAreAdded) {
    const std::string file = R"({"fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":3,"ks":{"r":{"a":1,"k":[)"
                             R"({"t":0,"s":[0]},{"t":10,"s":[50]},{"t":10,"s":[100]},{"t":20,"s":[0]}]}}}]})";
    std::string text;
    {
        Session session(readFile(file));
        const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, {{40, 7}});
        session.dispose({rotation});
        text = session.written();
    }
    Session session(readFile(text));
    const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
    const std::pair<A_long, double> expected[] = {{5, 25}, {10, 100}, {15, 50}}; // at 5 half of the way to 50
    for (const auto& [frame, angle] : expected)
        EXPECT_EQ(session.value(rotation, frame).one_d, angle) << frame << text;
    session.dispose({rotation});
}

} // namespace
} // namespace jostle::standalone
