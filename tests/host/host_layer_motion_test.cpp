#include "host/host_layer_motion.h"

#include <functional>
#include <tuple>

#include <gtest/gtest.h>

#include "simulation/scene.h"
#include "tests/host/imported.h"
#include "tests/support/expect_near.h"

namespace jostle {

namespace {

using standalone::Transform;

constexpr double frameSeconds = 0.04;

TEST(HostLayerMotion, FindsTheLastKeyframeOfTheWholeChain) {
    const auto key = [](standalone::Stream& stream, double last) { animate(stream, {}, last, {50, 50, 50}); };
    const auto keyTwo = [&](Transform& own, Transform& parents) {
        key(own.scale, 30);
        key(parents.rotation, 40);
    };
    const auto keyOneDimension = [&](Transform& own, Transform&) {
        separate(own);
        key(own.dimensions.own().y, 20);
    };
    const auto express = [](auto&, auto& p) { p.scale.hasExpression = p.scale.expressionEnabled = true; };
    const std::tuple<const char*, std::function<void(Transform & own, Transform & parents)>, int> cases[] = {
        {"nothing moves", [](auto&, auto&) {}, -1},
        {"its own position", [&](auto& own, auto&) { key(own.position, 30); }, 30},
        {"the latest counts", keyTwo, 40},
        {"between frames is rounded up", [&](auto& own, auto&) { key(own.anchor, 30.25); }, 31},
        {"each dimension by itself", keyOneDimension, 20},
        {"a parent's expression never ends", express, 100000},
    };
    for (const auto& [name, change, frame] : cases) {
        SCOPED_TRACE(name);
        ParentedDocument made;
        change(made.child.transform, made.parent.transform);
        HostedDocument hosted(std::move(made.document));
        EXPECT_EQ(HostLayerMotion(hosted.context()).lastKeyframeFrame(0), frame);
    }
}

// The position goes from x 150 to x 250 in 50 frames: 2 pixels in 0.04 seconds, 0.5 metres per second.
TEST(HostLayerMotion, ReadsMotionAtTheTimesAsked) {
    ParentedDocument made;
    made.document->pixelAspect = 2;
    animate(made.child.transform.position, {150, 60, 0}, 50, {250, 60, 0});
    animate(made.child.transform.scale, {100, 100, 100}, 50, {200, 100, 100});
    made.parent.transform.position.value = {0, 0, 0};
    made.parent.transform.scale.value = {100, 50, 100};
    HostedDocument hosted(std::move(made.document));
    HostLayerMotion motion(hosted.context());
    for (const int frame : {0, 10, 25}) {
        const double time = frame * frameSeconds;
        SCOPED_TRACE(frame);
        // Twice as fast, since a pixel is twice as wide.
        expectNear({motion.velocity(0, time, frameSeconds)}, {{1, 0}});
        expectPoint(motion.scale(0, time), {1.0f + static_cast<float>(frame) / 50, 0.5f});
    }
    EXPECT_NEAR(motion.velocity(0, 60 * frameSeconds, frameSeconds).x, 0.0f, 1e-6f);
    expectNear({motion.pointToComposition(0, {10, 5}, 25 * frameSeconds)}, {{200, 30}});
    EXPECT_NEAR(motion.gravity(0, 0).x, 150.0f, 1e-4f);
    EXPECT_EQ(motion.velocity(7, 0, frameSeconds).x, 0.0f); // no such layer
    EXPECT_EQ(motion.scale(-1, 0).x, 1.0f);
}

TEST(HostLayerMotion, TurnsTheShorterWay) {
    auto document = emptyDocument();
    animate(addLayer(*document).transform.rotation, {170, 0, 0}, 50, {190, 0, 0});
    HostedDocument hosted(std::move(document));
    HostLayerMotion motion(hosted.context());
    // 20 degrees in 2 seconds. Between the frames 24 and 26 the angle of the matrix jumps from 180 to -180.
    for (const int frame : {0, 24, 25, 40})
        EXPECT_NEAR(motion.angularVelocity(0, frame * frameSeconds, frameSeconds), degreesToRadians(10.0f), 1e-5f);
}

} // namespace

} // namespace jostle
