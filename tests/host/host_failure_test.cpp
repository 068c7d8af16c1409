#include <gtest/gtest.h>

#include "host/host_layer_motion.h"
#include "host/keyframe_writer.h"
#include "host/layer_import.h"
#include "tests/host/document.h"
#include "tests/host/failing_suites.h"
#include "tests/host/lottie_document.h"

namespace jostle {

namespace {

std::unique_ptr<Document> mixedDocument() {
    auto document = emptyDocument();
    DocumentLayer& moving = addLayer(*document);
    addKey(moving.transform.position, 0, {150, 60, 0});
    addKey(moving.transform.position, 50, {50, 60, 0});
    addKey(moving.transform.scale, 0, {100, 100, 100});
    addKey(moving.transform.scale, 50, {200, 200, 100});
    moving.transform.rotation.hasExpression = moving.transform.rotation.expressionEnabled = true;
    DocumentLayer& separated = addLayer(*document);
    separated.transform.separated = true;
    separated.transform.positionX = separated.transform.positionY = constantStream(1, {60, 0, 0});
    setParent(separated, addNull(*document));
    addMasks(addLayer(*document), 1);
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

// Whatever call the host refuses, all that it handed out comes back and no undo group stays open.
TEST(HostFailure, NothingLeaksWhicheverCallIsRefused) {
    constexpr int tooMany = 5000;
    int call = 1;
    bool reached = true;
    for (; reached && call < tooMany; ++call) {
        HostedDocument hosted(mixedDocument());
        const FailingSuites failing(hosted.host.basic(), call);
        const bool allWell = importAndExport({failing.basic(), hosted.host.pluginId()});
        reached = FailingSuites::reached();
        EXPECT_TRUE(hosted.host.balance().allReturned()) << "call " << call << ": " << hosted.host.balance().text();
        EXPECT_TRUE(hosted.host.misuses().empty()) << "call " << call;
        EXPECT_TRUE(reached || allWell);
    }
    EXPECT_GT(call, 100);
    EXPECT_LT(call, tooMany);
}

// The readers of masks, shapes and glyphs, at the first import and once more for each body.
TEST(HostFailure, ReadersGiveBackWhateverCallIsRefused) {
    const std::string layers =
        joined({solidLayer(mask(hostCircle)), shapeLayer(group(joined({path(hostCircle), fill("[1,0,0,1]")}))),
                layerText(R"("ty":5,"t":{"d":{"k":[{"t":0,"s":{"t":"o","f":"F","s":9,"j":0}}]}})", {})});
    int call = 1;
    for (bool reached = true; reached; ++call) {
        HostedDocument hosted(lottieDocument(layers));
        const FailingSuites failing(hosted.host.basic(), call);
        const HostContext context{failing.basic(), hosted.host.pluginId()};
        Scene scene;
        (void)initFromComposition(context, scene);
        for (int body = 0; body < scene.bodyCount(); ++body)
            (void)refreshBody(context, scene, body);
        reached = FailingSuites::reached();
        EXPECT_TRUE(hosted.host.balance().allReturned()) << "call " << call << ": " << hosted.host.balance().text();
    }
    EXPECT_GT(call, 200);
}

TEST(HostFailure, OneUnreadableLayerDoesNotKeepTheOthersOut) {
    // Refuse one call after the other: unless the composition itself cannot be read, two of three layers come in.
    int readable = 0;
    for (int call = 1;; ++call) {
        auto document = emptyDocument();
        for (int i = 0; i < 3; ++i)
            addLayer(*document);
        HostedDocument hosted(std::move(document));
        const FailingSuites failing(hosted.host.basic(), call);
        Scene scene;
        const ImportReport report = initFromComposition({failing.basic(), hosted.host.pluginId()}, scene);
        if (!FailingSuites::reached())
            break;
        if (report.error != A_Err_NONE)
            continue;
        ++readable;
        EXPECT_GE(scene.bodyCount(), 2) << call;
        int refused = 0;
        for (const LayerReport& layer : report.layers)
            refused += layer.error != A_Err_NONE ? 1 : 0;
        EXPECT_LE(refused, 1) << call;
    }
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
