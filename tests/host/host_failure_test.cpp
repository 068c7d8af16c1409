#include <algorithm>

#include <gtest/gtest.h>

#include "host/host_layer_motion.h"
#include "host/keyframe_writer.h"
#include "host/layer_import.h"
#include "tests/host/failing_suites.h"
#include "tests/host/lottie_document.h"

namespace jostle {

namespace {

/// One layer of each kind that is read in its own way: one whose position and scale move and that has an expression, a
/// child with separate dimensions, and bodies of a mask, of shapes and of glyphs.
std::unique_ptr<Document> mixedDocument() {
    const Stance moving{.position = R"([{"t":0,"s":[150,60]},{"t":50,"s":[50,60]}])",
                        .scale = R"([{"t":0,"s":[100,100]},{"t":50,"s":[200,200]}])",
                        .rotation = R"(0,"x":"time")"};
    const Stance child{.position = R"([0,0],"s":true,"x":{"k":60},"y":{"k":60})", .more = R"(,"parent":3)"};
    return lottieDocument(
        joined({solidLayer("", moving), solidLayer("", child), layerText(R"("ty":3,"ind":3)", {}),
                solidLayer(mask(hostCircle)), shapeLayer(group(joined({path(hostCircle), fill("[1,0,0,1]")}))),
                layerText(R"("ty":5,"t":{"d":{"k":[{"t":0,"s":{"t":"o","f":"F","s":9,"j":0}}]}})", {})}));
}

/// Imports, reads each body once more, asks for motion, and writes to a duplicate. @return whether all of it went well
bool importAndExport(const HostContext& context) {
    Scene scene;
    const ImportReport import = initFromComposition(context, scene);
    bool allWell = import.error == A_Err_NONE && scene.bodyCount() == 5;
    for (const LayerReport& layer : import.layers)
        allWell = allWell && layer.error == A_Err_NONE;
    for (int body = 0; body < scene.bodyCount(); ++body)
        allWell = refreshBody(context, scene, body).has_value() && allWell;
    {
        HostLayerMotion motion(context);
        for (int layer = 0; layer < 2; ++layer) {
            allWell = motion.velocity(layer, 1, 0.04).IsValid() && motion.lastKeyframeFrame(layer) >= -1 && allWell;
            allWell = motion.scale(layer, 1).IsValid() && motion.gravity(layer, 1).IsValid() && allWell;
        }
    }
    ExportResult samples;
    samples.positions = {{10, 20}, {30, 40}};
    samples.rotations = {0, 10};
    HostChain chain(context);
    const KeyframeJob job{scene, [&](std::size_t, ExportResult& taken) { taken = samples; }, 0, 1, true};
    return writeKeyframes(chain, duplicateActiveComposition(chain), job, {}).outcome == WriteOutcome::Done && allWell;
}

TEST(HostFailure, NothingLeaksWhicheverCallIsRefused) {
    const int refused = refuseEachCall(mixedDocument, [](const HostContext& context) {
        const bool allWell = importAndExport(context);
        EXPECT_TRUE(allWell || FailingSuites::reached());
    });
    EXPECT_GT(refused, 300);
    EXPECT_LT(refused, 4999);
}

// Unless the composition itself cannot be read, two of three layers come in.
TEST(HostFailure, OneUnreadableLayerDoesNotKeepTheOthersOut) {
    const auto document = [] { return lottieDocument(joined({solidLayer(""), solidLayer(""), solidLayer("")})); };
    int readable = 0;
    refuseEachCall(document, [&readable](const HostContext& context) {
        Scene scene;
        const ImportReport report = initFromComposition(context, scene);
        if (report.error != A_Err_NONE)
            return;
        ++readable;
        EXPECT_GE(scene.bodyCount(), 2);
        EXPECT_LE(std::count_if(report.layers.begin(), report.layers.end(),
                                [](const LayerReport& layer) { return layer.error != A_Err_NONE; }),
                  1);
    });
    EXPECT_GT(readable, 50);
}

TEST(HostFailure, WithoutAHostNothingIsImported) {
    Scene scene;
    scene.bodies.resize(2);
    EXPECT_EQ(initFromComposition({nullptr, 0}, scene).error, A_Err_MISSING_SUITE);
    EXPECT_EQ(scene.bodyCount(), 0);
}

} // namespace

} // namespace jostle
