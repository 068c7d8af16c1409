#include "simulation/simulation_clock.h"

#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jostle {
namespace {

Scene oneBox(int fps, int stepsPerFrame) {
    Scene scene = emptyScene(fps);
    scene.globals.stepsPerFrame = stepsPerFrame;
    addBox(scene, {0, 0}, 1, 1);
    return scene;
}

TEST(SimulationClock, aFreeBoxFallsAsTheIntegratorHasIt) {
    // The library's step is v += h g, x += h v, with h the length of one of the steps of a frame. From rest, n steps
    // give v = n h g and x = g h^2 (1 + 2 + ... + n) = g h^2 n (n + 1) / 2.
    for (const int fps : {25, 30}) {
        for (const int stepsPerFrame : {0, 1, 2, 5}) {
            for (const int divider : {1, 2}) {
                SCOPED_TRACE(testing::Message() << fps << " fps, " << stepsPerFrame << " steps, slower by " << divider);
                Scene scene = oneBox(fps, stepsPerFrame);
                scene.globals.timeDivider = divider;
                Playback run(std::move(scene));
                run.playTo(10);
                const double n = 10 * stepsPerFrame;
                const double h = n > 0 ? 1.0 / (fps * divider * stepsPerFrame) : 0;
                EXPECT_NEAR(run.body().GetPosition().y, 10.0 * h * h * n * (n + 1) / 2, 1e-4);
                EXPECT_NEAR(run.body().GetLinearVelocity().y, 10.0 * h * n, 1e-4);
            }
        }
    }
}

TEST(SimulationClock, aSingleStepIsOneFrame) {
    StillLayers layers;
    FreePacer pacer;
    Scene scene = oneBox(25, 2);
    SimulationClock clock(scene, layers, pacer);
    clock.tick();
    EXPECT_EQ(clock.frame(), 0) << "a stopped clock only shows";
    EXPECT_EQ(clock.world().GetBodyCount(), 1) << "but builds what it shows";
    clock.step();
    EXPECT_TRUE(clock.isRunning() && clock.isPlaying() && clock.isSingleStep());
    clock.tick();
    clock.tick();
    EXPECT_EQ(clock.frame(), 1);
    EXPECT_FALSE(clock.isRunning() || clock.isPlaying() || clock.isSingleStep());
}

TEST(SimulationClock, pauseKeepsAndRefreshLoses) {
    Playback run(oneBox(25, 2));
    run.playTo(5);
    const float y = run.body().GetPosition().y;
    run.clock.pause();
    run.clock.tick();
    EXPECT_EQ(run.clock.frame(), 5);
    EXPECT_EQ(run.body().GetPosition().y, y);
    for (const bool playing : {false, true}) {
        run.clock.refresh();
        EXPECT_EQ(run.clock.isPlaying(), playing) << "an edit starts over, and plays on if it was playing";
        EXPECT_EQ(run.clock.frame(), 0);
        EXPECT_EQ(run.body().GetPosition().y, 0.0f);
        run.playTo(3);
    }
}

TEST(SimulationClock, repeatPlaysUpToItsEndFrame) {
    Playback run(oneBox(25, 2));
    run.playTo(4);
    run.clock.repeat();
    std::vector<int> frames;
    for (int i = 0; i < 6; ++i) {
        run.clock.tick();
        frames.push_back(run.clock.frame());
    }
    EXPECT_EQ(frames, (std::vector<int>{1, 2, 3, 4, 1, 2}));
    run.clock.pause();
    run.clock.tick();
    EXPECT_FALSE(run.clock.isRunning() || run.clock.isRepeating()) << "an idle tick must not start over";
    EXPECT_EQ(run.clock.frame(), 2);
}

TEST(SimulationClock, aRebuildLetsGoOfAnExport) {
    Playback run(oneBox(25, 2));
    ExportRun samples(0, 9);
    run.clock.startExport(samples);
    for (int i = 0; i < 5; ++i) {
        run.clock.tick();
    }
    run.clock.refresh();
    for (int i = 0; i < 20; ++i) {
        run.clock.tick();
    }
    EXPECT_FALSE(samples.isComplete());
    EXPECT_EQ(samples.results().front().positions.size(), 5u);
}

// 16777200 degrees are 46603 turns and 120 degrees; 1000080 are 2778 turns. Single precision keeps a tenth of a degree.
TEST(SimulationClock, gravityKeepsItsDirectionAtTheEndOfThePanel) {
    for (const auto& [direction, degrees] : {std::pair{16777200.0, 120.0}, std::pair{1000080.0, 0.0}}) {
        Scene scene = oneBox(25, 2);
        scene.globals.direction = direction;
        Playback run(std::move(scene));
        run.playTo(2);
        const b2Vec2 velocity = run.body().GetLinearVelocity();
        EXPECT_NEAR(std::atan2(velocity.y, velocity.x) * 180.0 / 3.14159265, degrees, 1.0);
    }
}

TEST(SimulationClock, aRunThatNobodyStopsEnds) {
    Playback run(emptyScene(25));
    run.playTo(100000);
    EXPECT_TRUE(run.clock.isRunning());
    run.clock.tick();
    EXPECT_FALSE(run.clock.isRunning());
    EXPECT_EQ(run.clock.frame(), 1);
}

TEST(SimulationClock, aBallBouncesByItsRestitution) {
    // From rest h above the floor it comes back to e^2 h. The engine takes the larger restitution of the two.
    for (const float restitution : {0.4f, 0.8f}) {
        Scene scene = emptyScene(60);
        scene.globals.stepsPerFrame = 10;
        addBody(scene, {0, -2.1f}, {circleShape(0.1f)}).restitution = restitution;
        addBox(scene, {0, 0.5f}, 10, 1, BodyType::Static);
        Playback run(std::move(scene));
        run.playTo(45); // falls for sqrt(2 h / g) = 0.63 s, 38 frames
        float highest = 0;
        for (int frame = 46; frame < 120; ++frame) {
            run.playTo(frame);
            highest = std::max(highest, -run.body().GetPosition().y - 0.1f);
        }
        EXPECT_NEAR(highest, 2 * restitution * restitution, 0.03f);
    }
}

TEST(SimulationClock, gravityIsCapturedWhilePlaying) {
    Playback run(oneBox(25, 1));
    run.playTo(3);
    run.clock.startGravityCapture();
    run.clock.pause();
    run.clock.tick();
    run.playTo(4);
    run.scene.globals.magnitude = 4;
    run.playTo(5);
    run.clock.stopGravityCapture();
    run.playTo(7);
    const GravityCapture& capture = run.clock.gravityCapture();
    ASSERT_EQ(capture.values.size(), 2u);
    EXPECT_EQ(capture.values[1].y, 4.0f);
    EXPECT_EQ(capture.firstValue.y, 10.0f);
    EXPECT_EQ(capture.startFrame, 3);
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
    run.clock.startExport(samples);
    while (run.clock.isRunning()) {
        run.clock.tick();
    }
    EXPECT_TRUE(samples.isComplete());
    EXPECT_FALSE(run.clock.isExporting());
    EXPECT_EQ(run.clock.frame(), 5);
    EXPECT_EQ(samples.results()[0].positions[0].x, 550.5f) << "the last record comes first; half of 101 is 50.5";
    const ExportResult& box = samples.results()[1];
    EXPECT_EQ(box.layerAnchor, b2Vec2(7, 8));
    ASSERT_EQ(box.positions.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const double n = 2.0 + static_cast<double>(i); // steps made on entering the frame
        EXPECT_NEAR(box.positions[i].y, 50 + 100 * 10 * 0.04 * 0.04 * n * (n + 1) / 2, 1e-2);
        EXPECT_NEAR(box.rotations[i], n * 57.29578, 1e-3);
    }
}

TEST(ExportRun, rangesThatEndAtOnceOrNever) {
    Playback run(oneBox(25, 1));
    const auto play = [&](ExportRun samples) {
        run.clock.step(); // still waiting for its tick when the export begins
        run.clock.startExport(samples);
        while (run.clock.isRunning()) {
            run.clock.tick();
        }
        return samples;
    };
    const ExportRun one = play({0, 0});
    EXPECT_TRUE(one.isComplete());
    EXPECT_EQ(one.results()[0].positions.size(), 1u);
    const ExportRun empty = play({5, 2});
    EXPECT_FALSE(empty.isComplete());
    EXPECT_TRUE(empty.results().empty());

    ExportRun cancelled(0, 9);
    run.clock.startExport(cancelled);
    run.clock.tick();
    run.clock.cancelExport();
    EXPECT_FALSE(run.clock.isRunning() || run.clock.isExporting() || cancelled.isComplete());
}

} // namespace
} // namespace jostle
