#include "simulation/simulation_clock.h"

#include "simulation/pacer.h"
#include "tests/support/expect_near.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

/// Metres that the integrator has a body fall from rest in steps of h seconds: its step is v += h g, x += h v, so that
/// n steps give v = n h g and x = g h^2 (1 + 2 + ... + n) = g h^2 n (n + 1) / 2.
double fallen(double h, double n) {
    return 10.0 * h * h * n * (n + 1.0) / 2.0;
}

Scene oneBox(int fps, int stepsPerFrame) {
    Scene scene = emptyScene(fps);
    scene.globals.stepsPerFrame = stepsPerFrame;
    addBox(scene, {0, 0}, 1, 1);
    return scene;
}

TEST(SimulationClock, aFreeBoxFallsAsTheIntegratorHasIt) {
    for (const auto& [fps, stepsPerFrame, divider] : {std::tuple{25, 0, 1}, {25, 1, 2}, {30, 2, 1}, {30, 5, 2}}) {
        SCOPED_TRACE(testing::Message() << fps << " fps, " << stepsPerFrame << " steps, slower by " << divider);
        Scene scene = oneBox(fps, stepsPerFrame);
        scene.globals.timeDivider = divider;
        Playback run(std::move(scene), 10);
        const double n = 10 * stepsPerFrame;
        const double h = n > 0 ? 1.0 / (fps * divider * stepsPerFrame) : 0;
        EXPECT_NEAR(run.body().GetPosition().y, fallen(h, n), 1e-4);
        EXPECT_NEAR(run.body().GetLinearVelocity().y, 10.0 * h * n, 1e-4);
    }
}

// 16777200 degrees are 46603 turns and 120 degrees; 1000080 are 2778 turns. Single precision keeps a tenth of a degree.
TEST(SimulationClock, gravityKeepsItsDirectionAtTheEndOfThePanel) {
    for (const auto& [direction, degrees] : {std::pair{16777200.0, 120.0}, {1000080.0, 0.0}}) {
        Scene scene = oneBox(25, 2);
        scene.globals.direction = direction;
        Playback run(std::move(scene), 2);
        const b2Vec2 velocity = run.body().GetLinearVelocity();
        EXPECT_NEAR(std::atan2(velocity.y, velocity.x) * 180.0 / 3.14159265, degrees, 1.0);
    }
}

TEST(SimulationClock, aRunThatNobodyStopsEnds) {
    Playback run(emptyScene(25), 100000);
    EXPECT_TRUE(run.clock.isRunning());
    run.clock.tick();
    EXPECT_FALSE(run.clock.isRunning());
    EXPECT_EQ(run.clock.frame(), 1);
}

TEST(SimulationClock, gravityIsCapturedWhilePlaying) {
    Playback run(oneBox(25, 1), 3);
    run.clock.startGravityCapture();
    run.clock.pause();
    run.clock.tick();
    run.playTo(4);
    run.scene.globals.magnitude = 4;
    run.playTo(5);
    run.clock.stopGravityCapture();
    run.playTo(7);
    const GravityCapture& capture = run.clock.gravityCapture();
    expectNear({capture.values}, {{0, 10}, {0, 4}}, 1e-5f);
    EXPECT_EQ(capture.firstValue.y, 10.0f);
    EXPECT_EQ(capture.startFrame, 3);
}

/// Plays until the export, or whatever else runs, comes to its end.
void playOut(SimulationClock& clock, ExportRun& samples) {
    clock.step(); // still waiting for its tick when the export begins
    clock.startExport(samples);
    while (clock.isRunning()) {
        clock.tick();
    }
    EXPECT_FALSE(clock.isExporting());
}

TEST(ExportRun, samplesItsRangeBeforeEachStep) {
    Scene scene = oneBox(25, 1);
    scene.compWidth = 101;
    scene.compHeight = 100;
    scene.bodies[0].angularVelocity = 25; // a radian a frame
    scene.bodies[0].layerAnchor = {7, 8};
    addBox(scene, {5, 0}, 1, 1, BodyType::Static);
    Playback run(std::move(scene));
    ExportRun samples(2, 4);
    playOut(run.clock, samples);
    EXPECT_TRUE(samples.isComplete());
    EXPECT_EQ(samples.result(0).positions[0].x, 550.5f) << "the last record comes first; half of 101 is 50.5";
    const ExportResult box = samples.result(1);
    EXPECT_EQ(box.layerAnchor, b2Vec2(7, 8));
    ASSERT_EQ(box.positions.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const double n = 2.0 + static_cast<double>(i); // steps made on entering the frame
        EXPECT_NEAR(box.positions[i].y, 50 + 100 * fallen(0.04, n), 1e-2);
        EXPECT_NEAR(box.rotations[i], n * 57.29578, 1e-3);
    }
}

TEST(ExportRun, runsThatEndEarlyOrAtOnce) {
    Playback run(oneBox(25, 1));
    ExportRun one(0, 0);
    playOut(run.clock, one);
    EXPECT_TRUE(one.isComplete());
    EXPECT_EQ(one.result(0).positions.size(), 1u);
    ExportRun empty(5, 2);
    playOut(run.clock, empty);
    EXPECT_FALSE(empty.isComplete());
    EXPECT_EQ(empty.bodyCount(), 0u);

    for (const bool isRebuilt : {false, true}) {
        SCOPED_TRACE(isRebuilt ? "a rebuild lets go of it" : "cancelled");
        ExportRun samples(0, 9);
        run.clock.startExport(samples);
        run.clock.tick();
        isRebuilt ? run.clock.refresh() : run.clock.cancelExport();
        EXPECT_EQ(run.clock.isRunning(), isRebuilt);
        for (int i = 0; i < 20; ++i) {
            run.clock.tick();
        }
        EXPECT_FALSE(run.clock.isExporting() || samples.isComplete());
        EXPECT_EQ(samples.result(0).positions.size(), 1u);
    }
    run.clock.pause();
    run.clock.refresh();
    EXPECT_FALSE(run.clock.isRunning()) << "an edit does not start a clock that was stopped";
}

/// FNV-1a over the bits of all positions and angles after some frames.
std::uint64_t hashAfter(Scene start, int frames) {
    const Playback run(std::move(start), frames);
    std::uint64_t hash = 14695981039346656037u;
    for (const BodyRecord& record : run.scene.bodies) {
        const b2Vec2 position = record.body->GetPosition();
        for (const float value : {position.x, position.y, record.body->GetAngle()}) {
            for (int shift = 0; shift < 32; shift += 8) {
                hash = (hash ^ (std::bit_cast<std::uint32_t>(value) >> shift & 0xffu)) * 1099511628211u;
            }
        }
    }
    return hash;
}

// The numbers are what three builds of two compilers agree on: g++ 12 and clang++ 14 with all optimisation, and g++
// with assertions and sanitizers and hardly any. A build that differs computes with other roundings, as where a
// multiplication is fused with an addition or the processor's own sine is taken.
TEST(Determinism, buildsAgreeToTheBit) {
    EXPECT_EQ(hashAfter(boxPyramid(), 60), 14423186464149840611u);
    EXPECT_EQ(hashAfter(starsInBowl(16), 80), 14657796114210569919u);
    EXPECT_EQ(hashAfter(chainOfPivots(), 120), 8880369136959379927u);
}

TEST(WallPacer, waitsOffWhatIsLeftOfAFrame) {
    // Milliseconds of the first tick and the second, and what is slept between them; 0 for not at all.
    const std::tuple<const char*, std::int32_t, std::int32_t, bool, int, float> cases[] = {
        {"a quick tick waits 40 - 15 ms", 1000, 1015, false, 25, 25},
        {"a slow one does not", 1000, 1050, false, 0, 20},
        {"at just the rate it does not", 1000, 1040, false, 0, 25},
        {"no time at all counts as a microsecond", 1000, 1000, false, 39, 25},
        {"a single step forgets the pause before it", 1000, 9000, true, 39, 25},
        {"a clock set back shows no rate", 1000, 500, false, 0, 0},
        {"a clock that wraps goes on", std::numeric_limits<std::int32_t>::max(),
         std::numeric_limits<std::int32_t>::min() + 9, false, 30, 25},
    };
    for (const auto& [name, from, to, isSingleStep, sleep, rate] : cases) {
        SCOPED_TRACE(name);
        std::int32_t now = from;
        std::vector<int> sleeps;
        WallPacer pacer([&] { return now; }, [&](int milliseconds) { sleeps.push_back(milliseconds); });
        pacer.pace(25, false);
        EXPECT_EQ(sleeps, std::vector<int>{39}) << "the first tick has none before it";
        now = to;
        sleeps.clear();
        pacer.pace(25, isSingleStep);
        EXPECT_EQ(sleeps, sleep > 0 ? std::vector<int>{sleep} : std::vector<int>{});
        EXPECT_FLOAT_EQ(pacer.rate(), rate);
    }
}

TEST(WallPacer, timersFireAFifthFaster) {
    EXPECT_EQ(tickIntervalMs(25), 33);    // 40 / 1.21 = 33.06
    EXPECT_EQ(tickIntervalMs(29.97), 27); // 33.37 is rounded to 33; 33 / 1.21 = 27.27
    EXPECT_EQ(tickIntervalMs(60), 14);    // 16.67 is rounded to 17; 17 / 1.21 = 14.05
}

} // namespace
} // namespace jostle
