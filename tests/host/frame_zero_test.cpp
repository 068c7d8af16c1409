#include <gtest/gtest.h>

#include "host/keyframe_writer.h"
#include "simulation/export_run.h"
#include "standalone/document/evaluate.h"
#include "tests/host/imported.h"

namespace jostle {

namespace {

const std::string plainRect = rect("[40,20]", "[15,0]");
const std::string gradient =
    R"({"ty":"gf","o":{"k":100},"t":1,"s":{"k":[0,0]},"e":{"k":[40,0]},"g":{"p":2,"k":{"k":[0,1,0,0,1,0,0,1]}}})";
const std::string repeater = R"({"ty":"rp","c":{"k":3},"o":{"k":0},"tr":{"ty":"tr","r":{"k":40}}})";
const std::string corner = path(outlineText("[0,0],[30,0],[0,30]"));

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

struct LookCase {
    const char* name;
    bool cleared; ///< whether the first group's position is (0, 0) afterwards
    std::string elements;
    Stance stance = {};
};

double firstGroupX(HostedDocument& hosted) {
    HostChain chain(hosted.context());
    const Stream contents = activeComposition(chain).layer(chain, 0).root(chain).child("ADBE Root Vectors Group");
    return contents.childAt(0)
        .child("ADBE Vector Transform Group")
        .child("ADBE Vector Position")
        .valueAt({0, 1}, Expressions::Applied)
        .point()
        .x;
}

// A layer that is written where it stands shows the same picture: read once more it has the same body.
TEST(FrameZero, LooksAsBefore) {
    const std::string at20 = R"(,"a":{"k":[2,3]},"p":{"k":[20,5]})";
    const std::string at60 = R"(,"p":{"k":[60,0]})";
    const std::string skew = R"(,"p":{"k":[20,5]},"sk":{"k":30})";
    const Stance small{.anchor = "[7,8]", .scale = "[50,50]", .rotation = "30"};
    const Stance stretched{.anchor = "[7,8]", .scale = "[200,50]", .rotation = "30"};
    const Stance child{.rotation = "20", .more = R"(,"ind":1,"parent":2)"};
    const LookCase cases[] = {
        {"a rectangle in a group", true, group(plainRect, at20)},
        {"on a turned and scaled layer", true, group(plainRect, at20), small},
        {"a path", true, group(corner, at20)},
        {"a path on a turned and stretched layer", true, group(corner, at20), stretched},
        {"a path in a scaled group", true, group(corner, R"(,"p":{"k":[20,5]},"s":{"k":[50,200]})")},
        {"two paths in one group", true, group(joined({corner, corner}), at20)},
        {"two groups: offsets that are not the same stay", false, joined({group(plainRect, at20), group(corner, at60)}),
         turned("30")},
        {"the other way round", false, joined({group(corner, at20), group(plainRect, at60)})},
        {"a group within a group", false, group(group(plainRect, R"(,"p":{"k":[5,0]})"), at20), turned("30")},
        {"a child of a turned parent", true, group(corner, at20), child},
        {"a gradient, whose ramp starts in the group", false, group(joined({plainRect, gradient}), at20)},
        {"a gradient over what is in the group's middle", true,
         group(joined({rect("[40,20]", "[0,0]"), gradient}), at20)},
        {"a repeater, which turns about a point of the group", false, group(joined({plainRect, repeater}), at20)},
        {"a skewed group", false, group(rect("[40,20]", "[0,15]"), skew)},
        {"skewed along the other axis", true, group(rect("[40,20]", "[0,15]"), skew + R"(,"sa":{"k":90})")},
    };
    for (const LookCase& c : cases) {
        SCOPED_TRACE(c.name);
        Imported imported(joined({shapeLayer(c.elements, c.stance),
                                  layerText(R"("ty":3,"ind":2)", {.position = "[30,40]", .rotation = "15"})}));
        const std::vector<ExportResult> results = samplesAtRest(imported.scene);
        {
            HostChain chain(imported.hosted.context());
            const KeyframeJob job{imported.scene, results, 0, 0, false};
            const WriteReport report = writeKeyframes(chain, activeComposition(chain), job, {});
            ASSERT_EQ(report.outcome, WriteOutcome::Done);
            // Whoever compares the samples with the picture is told the point that follows them, and the turn.
            const standalone::Transform& written = imported.hosted.layer(0).transform;
            EXPECT_FLOAT_EQ(static_cast<float>(written.anchor.value[0]), report.stances.at(0).anchor.x);
            EXPECT_FLOAT_EQ(static_cast<float>(written.anchor.value[1]), report.stances.at(0).anchor.y);
            EXPECT_FLOAT_EQ(static_cast<float>(standalone::valueAt(written.rotation, 0)[0]),
                            results.back().rotations.front() + report.stances.at(0).turn);
        }
        Scene again;
        ASSERT_EQ(initFromComposition(imported.hosted.context(), again).error, A_Err_NONE);
        const std::vector<b2Vec2> before = placedVertices(imported.body());
        const std::vector<b2Vec2> after = placedVertices(again.bodies.at(0));
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_NEAR(after[i].x, before[i].x, 1e-4f) << i;
            EXPECT_NEAR(after[i].y, before[i].y, 1e-4f) << i;
        }
        EXPECT_EQ(firstGroupX(imported.hosted) == 0, c.cleared);
    }
}

} // namespace

} // namespace jostle
