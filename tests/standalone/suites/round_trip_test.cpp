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

} // namespace
} // namespace jostle::standalone
