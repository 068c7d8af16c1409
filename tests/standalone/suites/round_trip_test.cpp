#include <string_view>

#include "host/separation.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"
#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

/// Makes layers of the masks and of the groups, names one of them, moves one and hangs another from a new null.
void change(Session& s) {
    separateLayers({s.host.basic(), s.id()}, std::vector<int>{0, 1}, nullptr, {});
    s.inGroup([&] {
        EXPECT_EQ(s.layers().AEGP_SetLayerName(s.layer(1), u"a \"mask\""), A_Err_NONE);
        EXPECT_EQ(s.layers().AEGP_ReorderLayer(s.layer(3), AEGP_REORDER_LAYER_TO_END), A_Err_NONE);
        const AEGP_LayerH null = got(s.comps().AEGP_CreateNullInComp, nullptr, s.comp(), nullptr);
        EXPECT_EQ(s.layers().AEGP_SetLayerParent(s.layer(1), null), A_Err_NONE);
    });
}

/// All that a document holds, but not what of it is new.
std::string contentsOf(Session& s) {
    s.makeTrees();
    std::string text = s.document();
    for (const std::string_view mark : {" list changed", " changed"}) {
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark))
            text.erase(at, mark.size());
    }
    return text;
}

ReadResult readFile(const std::string& text) {
    ReadResult result = readLottie(text, "file");
    EXPECT_TRUE(result) << result.error << text;
    return result;
}

TEST(RoundTrip, ChangedDocumentsReadAsTheyWereLeft) {
    ReadResult result = readFile(richFile);
    std::string left, text;
    {
        Session session(std::move(result.composition));
        change(session);
        left = contentsOf(session);
        text = writeLottie(*result.source, session.outcome());
        EXPECT_EQ(session.undo() + session.undo(), A_Err_NONE);
        EXPECT_EQ(writeLottie(*result.source, session.outcome()), richFile) << "undone to the byte";
        session.expectClean();
    }
    Session session(readFile(text).composition);
    EXPECT_EQ(contentsOf(session), left) << text;
}

TEST(RoundTrip, NothingIsPastedTooDeepToBeReadAgain) {
    std::string groups = R"({"ty":"el"})";
    for (int i = 0; i < 60; ++i)
        groups = R"({"ty":"gr","it":[)" + groups + "]}";
    ReadResult result =
        readFile(R"({"v":"5.7.4","fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":4,"ind":1,"ks":{},"shapes":[)" +
                 groups + "]}]}");
    Session session(std::move(result.composition));
    const char* const outermost = "ADBE Root Vectors Group/0";
    EXPECT_EQ(session.copy(session.place(0, outermost)), A_Err_NONE);
    AEGP_StreamRefH innermost = session.place(0, outermost);
    for (int i = 1; i < 60; ++i)
        innermost = session.below(innermost, "ADBE Vectors Group/0");
    EXPECT_NE(session.paste(innermost), A_Err_NONE) << "120 groups";
    EXPECT_EQ(session.paste(session.place(0, outermost)), A_Err_NONE) << "61 groups";
    readFile(writeLottie(*result.source, session.outcome()));
}

TEST(RoundTrip, AValueStillLeapsWhereKeysAreAdded) {
    ReadResult result = readFile(R"({"fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":3,"ks":{"r":{"a":1,"k":[)"
                                 R"({"t":0,"s":[0]},{"t":10,"s":[50]},{"t":10,"s":[100]},{"t":20,"s":[0]}]}}}]})");
    std::string text;
    {
        Session session(std::move(result.composition));
        const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, {{40, 7}});
        session.dispose({rotation});
        text = writeLottie(*result.source, session.outcome());
    }
    Session session(readFile(text).composition);
    const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
    const std::pair<A_long, double> expected[] = {{5, 25}, {10, 100}, {15, 50}}; // at 5 half of the way to 50
    for (const auto& [frame, angle] : expected)
        EXPECT_EQ(session.value(rotation, frame).one_d, angle) << frame << text;
    session.dispose({rotation});
}

} // namespace
} // namespace jostle::standalone
