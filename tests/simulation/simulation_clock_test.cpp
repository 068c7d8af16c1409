#include "simulation/simulation_clock.h"

#include "tests/support/scenes.h"

#include <box2d/b2_body.h>
#include <gtest/gtest.h>

namespace jostle {
namespace {

/// A scene with its clock, which nothing holds back.
struct Playback {
    explicit Playback(Scene s) : scene(std::move(s)), clock(scene, layers, pacer) {}
    void playTo(int frame) {
        clock.play();
        while (clock.frame() < frame) {
            clock.tick();
        }
    }
    const b2Body& body(std::size_t i = 0) const { return *scene.bodies[i].body; }

    StillLayers layers;
    FreePacer pacer;
    Scene scene;
    SimulationClock clock;
};

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
        for (const int stepsPerFrame : {1, 2, 5}) {
            SCOPED_TRACE(testing::Message() << fps << " fps, " << stepsPerFrame << " steps");
            Playback run(oneBox(fps, stepsPerFrame));
            for (const int frame : {1, 10, 25}) {
                run.playTo(frame);
                const double h = 1.0 / (fps * stepsPerFrame);
                const double n = frame * stepsPerFrame;
                EXPECT_NEAR(run.body().GetPosition().y, 10.0 * h * h * n * (n + 1) / 2, 1e-4);
                EXPECT_NEAR(run.body().GetPosition().x, 0.0, 1e-4);
                EXPECT_NEAR(run.body().GetLinearVelocity().y, 10.0 * h * n, 1e-4);
            }
        }
    }
}

TEST(SimulationClock, aDividerOfTwoIsHalfTheSpeed) {
    Scene scene = oneBox(25, 1);
    scene.globals.timeDivider = 2;
    const TickTimes times = tickTimes(scene, 50);
    EXPECT_DOUBLE_EQ(times.stepTime, 0.02);
    EXPECT_DOUBLE_EQ(times.simTime, 1.0);
    EXPECT_DOUBLE_EQ(times.tickTime, 2.0);
    Playback run(std::move(scene));
    run.playTo(10);
    EXPECT_NEAR(run.body().GetPosition().y, 10.0 * 0.02 * 0.02 * 55, 1e-4);
}

TEST(SimulationClock, noStepsMakeNoMotion) {
    Playback run(oneBox(25, 0));
    run.playTo(5);
    EXPECT_EQ(run.body().GetPosition().y, 0.0f);
}

TEST(SimulationClock, aSingleStepIsOneFrame) {
    Playback run(oneBox(25, 2));
    run.clock.tick();
    EXPECT_EQ(run.clock.frame(), 0) << "a stopped clock only shows";
    EXPECT_EQ(run.clock.world().GetBodyCount(), 1) << "but builds what it shows";
    run.clock.step();
    EXPECT_TRUE(run.clock.isRunning() && run.clock.isPlaying() && run.clock.isSingleStep());
    run.clock.tick();
    run.clock.tick();
    EXPECT_EQ(run.clock.frame(), 1);
    EXPECT_FALSE(run.clock.isRunning() || run.clock.isPlaying() || run.clock.isSingleStep());
}

TEST(SimulationClock, pauseKeepsAndRestartLoses) {
    Playback run(oneBox(25, 2));
    run.playTo(5);
    const float y = run.body().GetPosition().y;
    run.clock.pause();
    run.clock.tick();
    EXPECT_EQ(run.clock.frame(), 5);
    EXPECT_EQ(run.body().GetPosition().y, y);
    run.clock.refresh();
    EXPECT_FALSE(run.clock.isRunning()) << "an edit while paused goes back to the start and stays there";
    EXPECT_EQ(run.clock.frame(), 0);
    EXPECT_EQ(run.body().GetPosition().y, 0.0f);
    run.playTo(3);
    run.clock.refresh();
    EXPECT_TRUE(run.clock.isPlaying()) << "an edit while playing starts over";
    EXPECT_EQ(run.clock.frame(), 0);
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
    run.clock.play();
    EXPECT_FALSE(run.clock.isRepeating());
}

TEST(SimulationClock, aRunThatNobodyStopsEnds) {
    Playback run(emptyScene(25));
    run.playTo(100000);
    EXPECT_TRUE(run.clock.isRunning());
    run.clock.tick();
    EXPECT_FALSE(run.clock.isRunning());
    EXPECT_EQ(run.clock.frame(), 1);
}

TEST(SimulationClock, runsOfOneSceneAgreeToTheBit) {
    const auto stack = [] {
        Scene scene = emptyScene(25);
        for (int i = 0; i < 5; ++i) {
            addBox(scene, {0.3f * static_cast<float>(i % 2), -1.2f * static_cast<float>(i)}, 1, 1);
        }
        addBox(scene, {0, 2}, 10, 1, BodyType::Static);
        return scene;
    };
    Playback first(stack());
    Playback second(stack());
    first.playTo(50);
    second.playTo(20);
    second.clock.restart();
    second.playTo(50);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(first.body(i).GetPosition(), second.body(i).GetPosition());
        EXPECT_EQ(first.body(i).GetAngle(), second.body(i).GetAngle());
    }
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
    ASSERT_EQ(samples.results().size(), 2u);
    EXPECT_EQ(samples.results()[0].positions[0].x, 550.5f) << "the last record comes first; half of 101 is 50.5";
    const ExportResult& box = samples.results()[1];
    EXPECT_EQ(box.layerAnchor, b2Vec2(7, 8));
    ASSERT_EQ(box.positions.size(), 3u);
    ASSERT_EQ(box.rotations.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        const int n = 2 + i; // steps made on entering the frame
        EXPECT_NEAR(box.positions[static_cast<std::size_t>(i)].y, 50 + 100 * 10 * 0.04 * 0.04 * n * (n + 1) / 2, 1e-2);
        EXPECT_NEAR(box.rotations[static_cast<std::size_t>(i)], n * 57.29578, 1e-3);
    }
}

TEST(ExportRun, rangesThatEndAtOnceOrNever) {
    Playback run(oneBox(25, 1));
    ExportRun one(0, 0);
    run.clock.step(); // still waiting for its tick when the export begins
    run.clock.startExport(one);
    run.clock.tick();
    EXPECT_TRUE(one.isComplete());
    EXPECT_EQ(one.results()[0].positions.size(), 1u);

    ExportRun empty(5, 2);
    run.clock.startExport(empty);
    while (run.clock.isRunning()) {
        run.clock.tick();
    }
    EXPECT_FALSE(empty.isComplete());
    EXPECT_TRUE(empty.results().empty());

    ExportRun cancelled(0, 9);
    run.clock.startExport(cancelled);
    run.clock.tick();
    run.clock.cancelExport();
    EXPECT_FALSE(run.clock.isRunning() || run.clock.isExporting());
    EXPECT_FALSE(cancelled.isComplete());
}

} // namespace
} // namespace jostle
