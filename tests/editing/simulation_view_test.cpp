#include "editing/simulation_view.h"

#include "editing/picking.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace jostle {
namespace {

/// A view whose time stands still, so that it neither waits nor depends on the machine.
struct Desk {
    explicit Desk(Scene scene) : view(std::move(scene), layers, WallPacer([] { return 1; }, [](int) {})) {}

    void turn(int times) {
        for (int i = 0; i < times; ++i) {
            view.updatePhysics();
        }
    }
    void playTo(int frame) {
        view.play();
        while (view.isCatchingUp() || view.frame() < frame) {
            view.updatePhysics();
        }
        view.pause();
    }
    void show(int frame) {
        view.showFrame(frame);
        while (view.isCatchingUp()) {
            view.updatePhysics();
        }
    }
    [[nodiscard]] BodySample shown(std::size_t body) const {
        if (!view.shownSamples().empty()) {
            return view.shownSamples()[body];
        }
        return sampleOf(view.scene().bodies[body]);
    }

    StillLayers layers;
    SimulationView view;
};

/// A box that falls past another, which hangs from a third on a spring and a pivot; a fourth hangs from its layer.
Scene hangingScene() {
    Scene scene = emptyScene(25);
    addBox(scene, {0.4f, -3}, 0.5f, 0.5f);
    addBox(scene, {0.5f, 0}, 1, 0.3f);
    addBox(scene, {0, -1}, 1, 0.2f, BodyType::Static);
    addBox(scene, {6, 0}, 1, 1, BodyType::AEmatic).aematicAnchor = {0.5f, 0.5f};
    addJoint(scene, JointType::Spring, 1, 2).desiredLength = 0.5f;
    addJoint(scene, JointType::Pivot, 1, 2).anchor = {0, -1};
    return scene;
}

// What buttons lead to: Transport.buttonsDoWhatTheySay.
TEST(SimulationView, anEditStartsOverAndPlaysOnIfItPlayed) {
    using View = SimulationView;
    const std::tuple<const char*, std::function<void(View&)>, int, int, bool> cases[] = {
        {"nothing moves before it is told to", nullptr, 2, 0, false},
        {"it plays", &View::play, 4, 4, true},
        {"an edit starts over, playing on", &View::refreshSimulation, 0, 0, true},
        {"restart stops", &View::restartSimulation, 1, 0, false},
        {"a stopped one stays so after an edit", &View::refreshSimulation, 1, 0, false},
    };
    Desk desk(hangingScene());
    for (const auto& [name, act, turns, frame, plays] : cases) {
        SCOPED_TRACE(name);
        if (act) {
            act(desk.view);
        }
        desk.turn(turns);
        EXPECT_EQ(desk.view.frame(), frame);
        EXPECT_EQ(desk.view.isPlaying(), plays);
    }
}

TEST(SimulationView, aShownFrameIsThatOfAFreshSimulation) {
    const std::tuple<const char*, std::function<void(Desk&)>, int> cases[] = {
        {"a later frame is simulated first", [](Desk& desk) { desk.show(30); }, 30},
        {"an earlier one comes from the samples", [](Desk& desk) { desk.playTo(40), desk.show(12); }, 12},
        {"the first one too", [](Desk& desk) { desk.playTo(40), desk.show(0); }, 0},
        {"playing goes on from it", [](Desk& desk) { desk.playTo(40), desk.show(12), desk.playTo(20); }, 20},
        {"and on beyond the samples", [](Desk& desk) { desk.playTo(40), desk.show(12), desk.playTo(60); }, 60},
        {"a step leads to the next", [](Desk& desk) { desk.playTo(40), desk.show(12), desk.view.step(); }, 13},
        {"single steps, after which springs pull otherwise, spoil nothing",
         [](Desk& desk) {
             for (int i = 0; i < 20; ++i) {
                 desk.view.step();
                 desk.turn(1);
             }
             desk.show(20);
         },
         20},
        {"nor does a restart", [](Desk& desk) { desk.playTo(40), desk.view.restartSimulation(), desk.show(50); }, 50},
        {"nor do pauses", [](Desk& desk) { desk.playTo(5), desk.turn(3), desk.playTo(25), desk.turn(1); }, 25},
        {"an edit makes samples useless",
         [](Desk& desk) {
             desk.view.scene().globals.magnitude = 0;
             desk.playTo(30);
             desk.view.scene().globals.magnitude = hangingScene().globals.magnitude;
             desk.view.refreshSimulation();
             desk.show(20);
         },
         20},
        {"a change of mind on the way leads elsewhere",
         [](Desk& desk) { desk.view.showFrame(5000), desk.view.updatePhysics(), desk.show(3); }, 3},
    };
    for (const auto& [name, act, frame] : cases) {
        SCOPED_TRACE(name);
        Desk desk(hangingScene());
        act(desk);
        ASSERT_EQ(desk.view.frame(), frame);
        const Playback<> fresh(hangingScene(), frame);
        for (std::size_t i = 0; i < fresh.scene.bodies.size(); ++i) {
            const BodySample expected = sampleOf(fresh.scene.bodies[i]);
            EXPECT_EQ(desk.shown(i).position, expected.position);
            EXPECT_EQ(desk.shown(i).angle, expected.angle);
            EXPECT_EQ(desk.shown(i).pull, expected.pull);
        }
    }
}

TEST(SimulationView, aLoopEndsAtTheFrameShown) {
    Desk desk(hangingScene());
    desk.playTo(30);
    desk.show(4);
    desk.view.repeat();
    while (desk.view.isCatchingUp()) {
        desk.turn(1);
    }
    for (const int frame : {1, 2, 3, 4, 1, 2}) {
        desk.turn(1);
        EXPECT_EQ(desk.view.frame(), frame);
    }
}

TEST(SimulationView, theRateIsToldOnEvenFrames) {
    int milliseconds = 1000;
    StillLayers layers;
    SimulationView view(hangingScene(), layers, WallPacer([&] { return milliseconds; }, [](int) {}));
    std::vector<float> rates;
    QObject::connect(&view, &SimulationView::rateChanged, [&](float rate) { rates.push_back(rate); });
    view.play();
    for (int i = 0; i < 5; ++i) {
        view.updatePhysics();
        milliseconds += 100;
    }
    // The first tick has none before it; the others come every 100 ms, so 10 in a second.
    EXPECT_EQ(rates, (std::vector<float>{25, 10, 10}));
}

TEST(FrameSamples, keepWhatThereIsRoomFor) {
    const Playback<> run(hangingScene());
    FrameSamples samples(2 * 4 * sizeof(BodySample)); // four bodies
    for (const int frame : {0, 0, 2, 1, 2}) {
        samples.add(frame, run.scene);
    }
    EXPECT_EQ(samples.count(), 2);
    EXPECT_FALSE(samples.contains(2));
    EXPECT_FALSE(samples.contains(-1));
}

TEST(PickBody, takesTheTopmostThatCanBeSelected) {
    Scene scene = weightlessScene();
    addBox(scene, {0, 0}, 1, 1);
    addBox(scene, {0, 0}, 3, 3);
    const Playback<> run(scene);
    EXPECT_EQ(pickBody(run.scene, {0.4f, 0.4f}), 0);
    EXPECT_EQ(pickBody(run.scene, {1.4f, 0.4f}), 1);
    EXPECT_EQ(pickBody(run.scene, {1.6f, 0.4f}), -1);
    const BodySample elsewhere[] = {{{5, 5}, 0, false, {}}, {{9, 9}, b2_pi / 4, false, {}}};
    EXPECT_EQ(pickBody(run.scene, {5.4f, 5.4f}, elsewhere), 0);
    EXPECT_EQ(pickBody(run.scene, {9, 11.1f}, elsewhere), 1) << "1.5 * sqrt(2) = 2.12 below the centre is its corner";
    run.scene.bodies[0].userData->selectable = false;
    EXPECT_EQ(pickBody(run.scene, {0.4f, 0.4f}), 1);
}

TEST(SelectionModel, keepsTheOrderOfSelectionAndMarksRecords) {
    Scene scene = hangingScene();
    SelectionModel selection(scene);
    int changes = 0;
    QObject::connect(&selection, &SelectionModel::changed, [&] { ++changes; });
    selection.setBodies({2, 0, 2, 7, -1});
    EXPECT_EQ(selection.bodies(), (std::vector<std::int32_t>{2, 0}));
    selection.toggle(1);
    selection.toggle(2);
    EXPECT_EQ(selection.bodies(), (std::vector<std::int32_t>{0, 1}));
    for (std::size_t i = 0; i < scene.bodies.size(); ++i) {
        EXPECT_EQ(scene.bodies[i].userData->selected, i < 2);
    }
    selection.setBodies({1, 0});
    selection.setBodies({1, 0});
    EXPECT_EQ(changes, 4);
}

} // namespace
} // namespace jostle
