#include "host/keyframe_writer.h"

#include <limits>
#include <tuple>

#include <gtest/gtest.h>

#include "standalone/document/evaluate.h"
#include "tests/host/imported.h"
#include "tests/support/expect_near.h"

namespace jostle {

namespace {

using standalone::Components;

/// One result for each record, of as many samples as the positions given.
ExportResult samplesOf(std::vector<b2Vec2> positions, std::vector<float> rotations) {
    ExportResult result;
    result.positions = std::move(positions);
    result.rotations = std::move(rotations);
    result.layerAnchor = {10, 5};
    return result;
}

/// Imports a document, and writes to it.
struct Export : Imported {
    using Imported::Imported;

    WriteReport tryToWrite(const std::vector<ExportResult>& results, int startFrame, const WriteProgress& progress) {
        const auto frames = static_cast<int>(results.at(0).positions.size());
        const auto samplesOf = [&](std::size_t k, ExportResult& samples) { samples = results.at(k); };
        const KeyframeJob job{scene, samplesOf, startFrame, startFrame + frames - 1, motionBlur, tolerance};
        HostChain chain(hosted.context());
        return writeKeyframes(chain, activeComposition(chain), job, progress);
    }

    WriteReport write(const std::vector<ExportResult>& results, int startFrame) {
        WriteReport written = tryToWrite(results, startFrame, {});
        EXPECT_EQ(written.outcome, WriteOutcome::Done);
        return written;
    }

    /// Writes bodies that stand still.
    void writeStill(int startFrame, std::size_t frames) {
        const ExportResult still =
            samplesOf(std::vector<b2Vec2>(frames, b2Vec2(30, 40)), std::vector<float>(frames, 0.0f));
        write(std::vector<ExportResult>(scene.bodies.size(), still), startFrame);
    }

    bool motionBlur = false;
    double tolerance = 0.0;
};

void expectKeys(const standalone::Stream& stream, const std::vector<double>& frames,
                const std::vector<double>& values) {
    EXPECT_EQ(stream.keys.frames, frames);
    ASSERT_EQ(stream.keys.values.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_NEAR(stream.keys.values[i], values[i], 1e-4) << i;
}

void expectValue(const standalone::Stream& stream, const Components& value) {
    EXPECT_TRUE(stream.keys.empty());
    for (std::size_t i = 0; i < value.size(); ++i)
        EXPECT_NEAR(stream.value[i], value[i], 1e-4) << i;
}

/// A document with one animated solid.
std::unique_ptr<Document> animatedDocument() {
    auto document = emptyDocument();
    standalone::Transform& transform = addLayer(*document).transform;
    animate(transform.position, {150, 60, 7}, 90, {50, 60, 7});
    animate(transform.rotation, {}, 90, {360, 0, 0});
    return document;
}

TEST(KeyframeWriter, WritesKeysWhereTheSamplesChange) {
    Export job(animatedDocument());
    job.hosted.layer(0).autoOrient = true;
    job.motionBlur = true;
    // At rest for three frames, then two pixels a frame. The second sample's neighbours are alike.
    const WriteReport report =
        job.write({samplesOf({{10, 20}, {10, 20}, {10, 20}, {12, 20}, {14, 20}}, {5, 5, 5, 5, 5})}, 30);
    EXPECT_EQ(report.layersWritten, 1);
    const DocumentLayer& layer = job.hosted.layer(0);
    // The third component stays.
    expectKeys(layer.transform.position, {30, 32, 33, 34}, {10, 20, 7, 10, 20, 7, 12, 20, 7, 14, 20, 7});
    EXPECT_DOUBLE_EQ(standalone::valueAt(layer.transform.rotation, 30)[0], 5);
    expectValue(layer.transform.anchor, {10, 5, 0});
    expectValue(layer.transform.scale, {100, 100, 100});
    EXPECT_TRUE(layer.motionBlur);
    EXPECT_FALSE(layer.autoOrient) << "it would turn the layer once more";
    EXPECT_EQ(job.hosted.host.outcome().inFrame, 30);
    EXPECT_EQ(job.hosted.host.outcome().outFrame, 35);
}

TEST(KeyframeWriter, LeavesOutKeysThatALineTells) {
    Export job(animatedDocument());
    job.tolerance = 0.1;
    // One third of a pixel a frame, then back; the angle trembles within the tolerance. Values are written rounded.
    const float third = 1.0f / 3.0f;
    job.write({samplesOf({{0, 20}, {third, 20}, {2 * third, 20}, {1, 20}, {2 * third, 20}, {third, 20}},
                         {5, 5.05f, 5, 5, 5, 5})},
              0);
    const DocumentLayer& layer = job.hosted.layer(0);
    expectKeys(layer.transform.position, {0, 3, 5}, {0, 20, 7, 1, 20, 7, 0.333, 20, 7});
    EXPECT_DOUBLE_EQ(layer.transform.position.keys.values[6], 0.333);
    expectKeys(layer.transform.rotation, {0}, {5});
}

TEST(KeyframeWriter, TreatsStaticAndDeadBodiesAsTheirTypesSay) {
    auto document = animatedDocument();
    animate(addLayer(*document).transform.position, {1, 2, 3}, 50, {4, 5, 6});
    setParent(*document->layers[1], addNull(*document));
    Export job(std::move(document));
    job.motionBlur = true;
    job.scene.bodies[0].type = BodyType::Static;
    job.scene.bodies[1].type = BodyType::Dead;
    // The first result belongs to the last record.
    job.write({samplesOf({{1, 1}, {9, 9}}, {1, 2}), samplesOf({{30, 40}, {50, 60}}, {15, 25})}, 0);
    const DocumentLayer& still = job.hosted.layer(0);
    expectValue(still.transform.position, {30, 40, 7});
    expectValue(still.transform.rotation, {15, 0, 0});
    EXPECT_FALSE(still.motionBlur);
    const DocumentLayer& dead = job.hosted.layer(1);
    expectKeys(dead.transform.position, {0, 50}, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(dead.parent, nullptr);
    EXPECT_FALSE(dead.motionBlur);
}

TEST(KeyframeWriter, CutsTheParentAndKeepsTheScale) {
    const std::tuple<const char*, Components, Components, Components> cases[] = {
        // percent
        {"multiplied by the parent's", {50, 60, 100}, {200, 300, 100}, {100, 180, 100}},
        {"a flip upside down stays", {50, -60, 100}, {200, 300, 100}, {100, -180, 100}},
        // The rotation of the body is 180 degrees then, and turns the other axis over.
        {"a flip sideways is a half turn and a flip upside down", {-50, 60, 100}, {200, 300, 100}, {100, -180, 100}},
    };
    for (const auto& [name, own, parents, written] : cases) {
        SCOPED_TRACE(name);
        ParentedDocument made;
        made.child.transform.scale.value = own;
        made.parent.transform.scale.value = parents;
        Export job(std::move(made.document));
        job.writeStill(0, 1);
        EXPECT_EQ(job.hosted.layer(0).parent, nullptr);
        expectValue(job.hosted.layer(0).transform.scale, written);
    }
}

// The rotation of the run goes on from the one at time 0, where the x axis may be flipped though it is not in the
// range, or the other way round: both axes are turned over throughout, or neither.
TEST(KeyframeWriter, TurnsTheScaleOverAsItWasOnImport) {
    for (const double flipped : {-100.0, 100.0}) {
        SCOPED_TRACE(flipped);
        auto document = emptyDocument();
        DocumentLayer& layer = addLayer(*document);
        animate(layer.transform.scale, {flipped, 100, 100}, 10, {-flipped, 100, 100});
        addKey(layer.transform.scale, 30, {-2 * flipped, 100, 100});
        Export job(std::move(document));
        job.writeStill(20, 3);
        const double y = flipped < 0 ? -100 : 100;
        expectKeys(job.hosted.layer(0).transform.scale, {20, 21, 22}, {-150, y, 100, -155, y, 100, -160, y, 100});
    }
}

// The parent is a body too, written first, as the last record. It doubles in 10 frames. The child's world scale at
// time 0 must be read before the parent's keys are cut to the range.
TEST(KeyframeWriter, ReadsScalesBeforeWritingAny) {
    auto document = emptyDocument();
    DocumentLayer& child = addLayer(*document);
    animate(child.transform.scale, {100, 100, 100}, 10, {100, 50, 100});
    DocumentLayer& parent = addLayer(*document);
    animate(parent.transform.scale, {100, 100, 100}, 10, {200, 100, 100});
    setParent(child, parent);
    Export job(std::move(document));
    job.writeStill(5, 3);
    expectKeys(job.hosted.layer(1).transform.scale, {5, 6, 7}, {150, 100, 100, 160, 100, 100, 170, 100, 100});
    expectKeys(job.hosted.layer(0).transform.scale, {5, 6, 7}, {150, 75, 100, 160, 70, 100, 170, 65, 100});
}

TEST(KeyframeWriter, WritesSeparatedDimensionsOneByOne) {
    auto document = emptyDocument();
    document->pixelAspect = 2;
    DocumentLayer& layer = addLayer(*document);
    separate(layer.transform);
    layer.transform.dimensions.own().x.hasExpression = layer.transform.dimensions.own().x.expressionEnabled = true;
    animate(layer.transform.dimensions.own().x, {150, 0, 0}, 50, {});
    Export job(std::move(document));
    job.write({samplesOf({{10, 20}, {12, 20}, {14, 20}}, {0, 0, 0})}, 0);
    const auto& transform = job.hosted.layer(0).transform;
    EXPECT_TRUE(transform.separated);
    EXPECT_FALSE(transform.dimensions->x.expressionEnabled);
    expectKeys(transform.dimensions->x, {0, 1, 2}, {5, 6, 7}); // half as many pixels of twice the width
    EXPECT_EQ(standalone::valueAt(transform.dimensions->y, 0)[0], 20);
}

TEST(KeyframeWriter, TakesTheSampleBeforeForOneThatIsNoNumber) {
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    Export job(animatedDocument());
    const WriteReport report = job.write({samplesOf({{none, 0}, {10, 20}, {12, none}, {14, 20}}, {0, 1, 2, 3})}, 0);
    EXPECT_EQ(report.layersMended, 1);
    // Mended to 10, 10, 10, 14: the second sample's neighbours are alike.
    expectKeys(job.hosted.layer(0).transform.position, {0, 2, 3}, {10, 20, 7, 10, 20, 7, 14, 20, 7});
}

TEST(KeyframeWriter, LeavesNothingBehindWhenCancelledOrRefusingARangeThatEndsBeforeItBegins) {
    auto document = animatedDocument();
    addLayer(*document);
    setParent(*document->layers[1], addNull(*document));
    Export job(std::move(document));
    int calls = 0;
    const auto still = samplesOf({{30, 40}, {35, 40}}, {0, 1});
    const WriteReport refused = job.tryToWrite({samplesOf({}, {}), samplesOf({}, {})}, 10, {});
    EXPECT_EQ(refused.outcome, WriteOutcome::Failed);
    EXPECT_EQ(refused.error, A_Err_PARAMETER);
    const WriteReport report = job.tryToWrite({still, still}, 10, [&](int done, int total) {
        EXPECT_EQ(done, ++calls);
        EXPECT_EQ(total, 2);
        return done < 2;
    });
    EXPECT_EQ(report.outcome, WriteOutcome::Cancelled);
    EXPECT_EQ(report.error, A_Err_NONE);
    expectKeys(job.hosted.layer(0).transform.position, {0, 90}, {150, 60, 7, 50, 60, 7});
    expectValue(job.hosted.layer(1).transform.position, {150, 60, 7});
    EXPECT_EQ(job.hosted.layer(1).parent, &job.hosted.layer(2));
    EXPECT_EQ(job.hosted.host.outcome().outFrame, 100);
}

const std::string plainRect = rect("[40,20]", "[15,0]");
const std::string gradient =
    R"({"ty":"gf","o":{"k":100},"t":1,"s":{"k":[0,0]},"e":{"k":[40,0]},"g":{"p":2,"k":{"k":[0,1,0,0,1,0,0,1]}}})";
const std::string repeater = R"({"ty":"rp","c":{"k":3},"o":{"k":0},"tr":{"ty":"tr","r":{"k":40}}})";

/// The vertices of a body where they stand, in metres.
std::vector<b2Vec2> placedVertices(const BodyRecord& body) {
    std::vector<b2Vec2> vertices;
    for (const auto& shapes : body.outlines)
        for (const ShapeDef& shape : shapes)
            for (const b2Vec2& v : shape.verts)
                vertices.push_back(b2Mul(b2Transform(body.position, b2Rot(body.angle)), v));
    return vertices;
}

/// What a run of one frame has for bodies that have not moved.
std::vector<ExportResult> samplesAtRest(const Scene& scene) {
    std::vector<ExportResult> results;
    for (auto body = scene.bodies.rbegin(); body != scene.bodies.rend(); ++body) {
        ExportResult& result = results.emplace_back();
        result.positions.push_back(scene.worldToPixels(body->position));
        result.rotations.push_back(radiansToDegrees(body->angle));
        result.layerAnchor = body->layerAnchor;
    }
    return results;
}

// A layer that is written where it stands shows the same picture: read once more it has the same body.
TEST(KeyframeWriter, ALayerLooksAsBeforeAtFrameZero) {
    const std::string at20 = R"(,"a":{"k":[2,3]},"p":{"k":[20,5]})";
    const std::string at60 = R"(,"p":{"k":[60,0]})";
    const std::string skew = R"(,"p":{"k":[20,5]},"sk":{"k":30})";
    const Stance small{.anchor = "[7,8]", .scale = "[50,50]", .rotation = "30"};
    const Stance stretched{.anchor = "[7,8]", .scale = "[200,50]", .rotation = "30"};
    const Stance child{.rotation = "20", .more = R"(,"ind":1,"parent":2)"};
    const Stance plain;
    // Whether the groups' offsets are taken away, so that the anchor stays; the elements, and how the layer stands.
    const std::tuple<const char*, bool, std::string, Stance> cases[] = {
        {"on a turned and scaled layer", true, group(plainRect, at20), small},
        {"a path on a turned and stretched layer", true, group(corner, at20), stretched},
        {"a path in a scaled group", true, group(corner, R"(,"p":{"k":[20,5]},"s":{"k":[50,200]})"), plain},
        {"two paths in one group", true, group(joined({corner, corner}), at20), plain},
        {"two groups: offsets that are not the same stay", false, joined({group(plainRect, at20), group(corner, at60)}),
         turned("30")},
        {"two groups, the path first", false, joined({group(corner, at60), group(plainRect, at20)}), turned("30")},
        {"a group within a group", false, group(group(plainRect, R"(,"p":{"k":[5,0]})"), at20), turned("30")},
        {"a child of a turned parent", true, group(corner, at20), child},
        {"a gradient, whose ramp starts in the group", false, group(joined({plainRect, gradient}), at20), plain},
        {"a gradient over what is in the group's middle", true,
         group(joined({rect("[40,20]", "[0,0]"), gradient}), at20), plain},
        {"a repeater, which turns about a point of the group", false, group(joined({plainRect, repeater}), at20),
         plain},
        {"a skewed group", false, group(rect("[40,20]", "[0,15]"), skew), plain},
        {"skewed along the other axis", true, group(rect("[40,20]", "[0,15]"), skew + R"(,"sa":{"k":90})"), plain},
    };
    for (const auto& [name, cleared, elements, stance] : cases) {
        SCOPED_TRACE(name);
        Export job(lottieDocument(joined({shapeLayer(elements, stance),
                                          layerText(R"("ty":3,"ind":2)", {.position = "[30,40]", .rotation = "15"})})));
        const std::vector<ExportResult> results = samplesAtRest(job.scene);
        const WriteReport report = job.write(results, 0);
        // Whoever compares the samples with the picture is told the point that follows them, and the turn.
        const standalone::Transform& shown = job.hosted.layer(0).transform;
        const WrittenStance& written = report.stances.at(0);
        expectValue(shown.anchor, {double{written.anchor.x}, double{written.anchor.y}, 0});
        EXPECT_FLOAT_EQ(static_cast<float>(standalone::valueAt(shown.rotation, 0)[0]),
                        results.back().rotations.front() + written.turn);
        Scene again;
        ASSERT_EQ(initFromComposition(job.hosted.context(), again).error, A_Err_NONE);
        expectNear(placedVertices(again.bodies.at(0)), placedVertices(job.body()));
        EXPECT_EQ(written.anchor == results.back().layerAnchor, cleared);
    }
}

} // namespace

} // namespace jostle
