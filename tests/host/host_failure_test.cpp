#include <algorithm>

#include <gtest/gtest.h>

#include "host/host_layer_motion.h"
#include "host/keyframe_writer.h"
#include "host/layer_import.h"
#include "tests/host/failing_suites.h"
#include "tests/host/lottie_document.h"

namespace jostle {

namespace {

std::unique_ptr<Document> mixedDocument() {
    auto document = emptyDocument();
    DocumentLayer& moving = addLayer(*document);
    animate(moving.transform.position, {150, 60, 0}, 50, {50, 60, 0});
    animate(moving.transform.scale, {100, 100, 100}, 50, {200, 200, 100});
    moving.transform.rotation.hasExpression = moving.transform.rotation.expressionEnabled = true;
    DocumentLayer& separated = addLayer(*document);
    separate(separated);
    setParent(separated, addNull(*document));
    DocumentLayer& masked = addLayer(*document);
    masked.tree = standalone::bareTree(masked);
    addNode(addNode(*masked.tree, standalone::NodeKind::MaskParade), standalone::NodeKind::Mask);
    return document;
}

/// Imports, asks for motion, and writes to a duplicate. @return whether all of it went well
bool importAndExport(const HostContext& context) {
    Scene scene;
    const ImportReport import = initFromComposition(context, scene);
    bool allWell = import.error == A_Err_NONE && scene.bodyCount() == 3;
    for (const LayerReport& layer : import.layers)
        allWell = allWell && layer.error == A_Err_NONE;
    {
        HostLayerMotion motion(context);
        for (int layer = 0; layer < 2; ++layer) {
            allWell = motion.velocity(layer, 1, 0.04).LengthSquared() >= 0 && allWell;
            allWell = motion.lastKeyframeFrame(layer) >= -1 && allWell;
            allWell = motion.scale(layer, 1).IsValid() && motion.gravity(layer, 1).IsValid() && allWell;
        }
    }
    ExportResult samples;
    samples.positions = {{10, 20}, {30, 40}};
    samples.rotations = {0, 10};
    const std::vector<ExportResult> results(scene.bodies.size(), samples);
    HostChain chain(context);
    const KeyframeJob job{scene, results, 0, 1, true};
    return writeKeyframes(chain, duplicateActiveComposition(chain), job, {}).outcome == WriteOutcome::Done && allWell;
}

TEST(HostFailure, NothingLeaksWhicheverCallIsRefused) {
    const int refused = refuseEachCall(mixedDocument, [](const HostContext& context) {
        const bool allWell = importAndExport(context);
        EXPECT_TRUE(allWell || FailingSuites::reached());
    });
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 4999);
}

// The readers of masks, shapes and glyphs, at the first import and once more for each body.
TEST(HostFailure, ReadersGiveBackWhateverCallIsRefused) {
    const std::string layers =
        joined({solidLayer(mask(hostCircle)), shapeLayer(group(joined({path(hostCircle), fill("[1,0,0,1]")}))),
                layerText(R"("ty":5,"t":{"d":{"k":[{"t":0,"s":{"t":"o","f":"F","s":9,"j":0}}]}})", {})});
    const int refused = refuseEachCall([&] { return lottieDocument(layers); },
                                       [](const HostContext& context) {
                                           Scene scene;
                                           (void)initFromComposition(context, scene);
                                           for (int body = 0; body < scene.bodyCount(); ++body)
                                               (void)refreshBody(context, scene, body);
                                       });
    EXPECT_GT(refused, 200);
}

// Unless the composition itself cannot be read, two of three layers come in.
TEST(HostFailure, OneUnreadableLayerDoesNotKeepTheOthersOut) {
    const auto document = [] {
        auto three = emptyDocument();
        for (int i = 0; i < 3; ++i)
            addLayer(*three);
        return three;
    };
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
    const ImportReport report = initFromComposition({nullptr, 0}, scene);
    EXPECT_EQ(report.error, A_Err_MISSING_SUITE);
    EXPECT_EQ(scene.bodyCount(), 0);
}

} // namespace

} // namespace jostle
