#include <optional>
#include <string_view>

#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"
#include "tests/standalone/suites/rich_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

constexpr const char* file =
    R"({"v":"5.7.4","fr":25,"ip":0,"op":100,"w":320,"h":240,"nm":"Scene","layers":[
{"ty":1,"nm":"masked","ind":4,"ip":0,"op":50,"st":0,"sw":40,"sh":20,"sc":"#ff8000","ks":{"p":{"a":0,"k":[30,0]}},
"hasMask":true,"masksProperties":[
{"mode":"a","inv":false,"nm":"one","pt":{"a":0,"k":{"v":[[0,0],[10,0],[10,10]],"i":[[0,0],[0,0],[0,0]],
"o":[[0,0],[0,0],[0,0]],"c":true}},"o":{"a":0,"k":10},"x":{"a":0,"k":0}},
{"mode":"s","inv":false,"nm":"two","pt":{"a":0,"k":{"v":[[0,0],[20,0],[20,20]],"i":[[0,0],[0,0],[0,0]],
"o":[[0,0],[0,0],[0,0]],"c":true}},"o":{"a":0,"k":20},"x":{"a":0,"k":0}}]},
{"ty":4,"nm":"shape","ind":5,"ip":0,"op":50,"st":0,"ks":{},"shapes":[
{"ty":"gr","nm":"first","it":[{"ty":"rc","nm":"r","p":{"a":0,"k":[1,2]},"s":{"a":0,"k":[3,4]},"r":{"a":0,"k":0}},
{"ty":"tr","p":{"a":0,"k":[5,6]}}]},
{"ty":"gr","nm":"second","it":[{"ty":"el","nm":"e","p":{"a":0,"k":[1,2]},"s":{"a":0,"k":[3,4]}},{"ty":"tr"}]}]},
{"ty":3,"nm":"holder","ind":7,"parent":4,"ip":0,"op":50,"st":0,"ks":{"p":{"a":0,"k":[100,100]}}}]})";

/// A copy of the masked layer that has only one of its masks.
void takeMaskApart(RichSession& s, AEGP_LayerH source, A_long which) {
    AEGP_LayerH made = nullptr;
    EXPECT_EQ(s.layers().AEGP_DuplicateLayer(source, &made), A_Err_NONE);
    for (int i = 0; i < 2; ++i) {
        const AEGP_StreamRefH mask = s.below(s.root(made), {"ADBE Mask Parade", "0"});
        EXPECT_EQ(s.tree().AEGP_DeleteStream(mask), A_Err_NONE);
        s.dispose(mask);
    }
    const AEGP_MaskRefH from = s.mask(source, which);
    AEGP_MaskRefH to = nullptr;
    EXPECT_EQ(s.masks().AEGP_CreateNewMask(made, &to, nullptr), A_Err_NONE);
    for (const AEGP_MaskStream stream : {400, 402, 401, 403})
        s.copyValue(s.maskStream(from, stream), s.maskStream(to, stream));
    EXPECT_EQ(s.masks().AEGP_DisposeMask(from), A_Err_NONE);
    EXPECT_EQ(s.masks().AEGP_DisposeMask(to), A_Err_NONE);
    EXPECT_EQ(s.layers().AEGP_SetLayerName(made, which == 0 ? u"first mask" : u"second \"mask\""), A_Err_NONE);
}

void change(RichSession& s) {
    const AEGP_LayerH masked = s.layer(0);
    const AEGP_LayerH shape = s.layer(1);
    takeMaskApart(s, masked, 0);
    takeMaskApart(s, masked, 1);
    EXPECT_EQ(s.layers().AEGP_SetLayerFlag(masked, AEGP_LayerFlag_VIDEO_ACTIVE, 0), A_Err_NONE);
    AEGP_LayerH made = nullptr, null = nullptr;
    const auto& comps = s.table<AEGP_CompSuite15>();
    EXPECT_EQ(comps.AEGP_CreateVectorLayerInComp(s.comp(), &made), A_Err_NONE);
    s.select(s.below(s.root(shape), {"ADBE Root Vectors Group", "1"}));
    EXPECT_EQ(s.command(hostCommandCopy), A_Err_NONE);
    s.select(s.below(s.root(made), {"ADBE Root Vectors Group"}));
    EXPECT_EQ(s.command(hostCommandPaste), A_Err_NONE);
    EXPECT_EQ(comps.AEGP_CreateNullInComp(nullptr, s.comp(), nullptr, &null), A_Err_NONE);
    EXPECT_EQ(s.layers().AEGP_SetLayerParent(made, null), A_Err_NONE);
    EXPECT_EQ(s.layers().AEGP_ReorderLayer(shape, AEGP_REORDER_LAYER_TO_END), A_Err_NONE);
}

/// All that a document holds, but not what of it is new.
std::string contentsOf(RichSession& s) {
    A_long count = 0;
    EXPECT_EQ(s.layers().AEGP_GetCompNumLayers(s.comp(), &count), A_Err_NONE);
    for (A_long index = 0; index < count; ++index)
        s.dispose(s.root(s.layer(index))); // trees are made when they are asked for
    std::string text = s.document();
    for (const std::string_view mark : {" list changed", " changed"}) {
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark))
            text.erase(at, mark.size());
    }
    return text;
}

TEST(RoundTrip, ChangedDocumentsReadAsTheyWereLeft) {
    ReadResult result = readLottie(file, "file");
    ASSERT_TRUE(result) << result.error;
    std::string left, text;
    {
        RichSession session(std::move(result.composition));
        session.undoGroup("change");
        change(session);
        session.endGroup();
        left = contentsOf(session);
        text = writeLottie(*result.source, session.host.outcome());
        EXPECT_EQ(session.undo(), A_Err_NONE);
        EXPECT_EQ(writeLottie(*result.source, session.host.outcome()), file) << "undone to the byte";
        session.expectClean();
    }
    ReadResult again = readLottie(text, "again");
    ASSERT_TRUE(again) << again.error << text;
    RichSession session(std::move(again.composition));
    EXPECT_EQ(contentsOf(session), left) << text;
}

std::string shapesOf(const std::string& shapes) {
    return R"({"v":"5.7.4","fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":4,"ind":1,"ks":{},"shapes":[)" + shapes +
           "]}]}";
}

TEST(RoundTrip, NothingIsPastedTooDeepToBeReadAgain) {
    std::string groups = R"({"ty":"el"})";
    for (int i = 0; i < 60; ++i)
        groups = R"({"ty":"gr","it":[)" + groups + "]}";
    ReadResult result = readLottie(shapesOf(groups), "file");
    ASSERT_TRUE(result) << result.error;
    RichSession session(std::move(result.composition));
    const auto outermost = [&] {
        return session.below(session.root(session.layer(0)), {"ADBE Root Vectors Group", "0"});
    };
    session.select(outermost());
    EXPECT_EQ(session.command(hostCommandCopy), A_Err_NONE);
    AEGP_StreamRefH innermost = outermost();
    for (int i = 1; i < 60; ++i)
        innermost = session.below(innermost, {"ADBE Vectors Group", "0"});
    session.select(innermost);
    EXPECT_NE(session.command(hostCommandPaste), A_Err_NONE) << "120 groups";
    session.select(outermost());
    EXPECT_EQ(session.command(hostCommandPaste), A_Err_NONE) << "61 groups";
    const ReadResult again = readLottie(writeLottie(*result.source, session.host.outcome()), "again");
    EXPECT_TRUE(again) << again.error;
}

TEST(RoundTrip, AValueStillLeapsWhereKeysAreAdded) {
    ReadResult result = readLottie(R"({"fr":25,"ip":0,"op":50,"w":9,"h":9,"layers":[{"ty":3,"ks":{"r":{"a":1,"k":[)"
                                   R"({"t":0,"s":[0]},{"t":10,"s":[50]},{"t":10,"s":[100]},{"t":20,"s":[0]}]}}}]})",
                                   "file");
    ASSERT_TRUE(result) << result.error;
    std::string text;
    {
        Session session(std::move(result.composition));
        const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
        session.addKeys(rotation, {{40, 7}});
        session.dispose(rotation);
        text = writeLottie(*result.source, session.host.outcome());
    }
    ReadResult again = readLottie(text, "again");
    ASSERT_TRUE(again) << again.error;
    Session session(std::move(again.composition));
    const AEGP_StreamRefH rotation = session.stream(session.layer(0), AEGP_LayerStream_ROTATION);
    EXPECT_EQ(session.value(rotation, 5).one_d, 25) << text; // half of the way to 50
    EXPECT_EQ(session.value(rotation, 10).one_d, 100) << text;
    EXPECT_EQ(session.value(rotation, 15).one_d, 50) << text;
    session.dispose(rotation);
}

} // namespace
} // namespace jostle::standalone
