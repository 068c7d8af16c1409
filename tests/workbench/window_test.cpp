#include "tests/workbench/window.h"

#include "tests/support/scenes.h"
#include "workbench/zoom_row.h"

#include <QAction>
#include <QMenu>
#include <QSlider>
#include <QWheelEvent>
#include <QWindow>

#include <tuple>

namespace jostle::test {
namespace {

/// A box of one metre above a wider one, in a composition of 100 frames.
Scene boxScene() {
    Scene scene = emptyScene(25);
    scene.compFrames = 100;
    addBox(scene, {0, -3}, 1, 1);
    addBox(scene, {0, 3}, 6, 1, BodyType::Static);
    return scene;
}

TEST(Labels, haveTheirDigits) {
    EXPECT_EQ(frameText(123456), "123456");
    EXPECT_EQ(rateText(9.5f, 29.97), "09.5/30.0");
}

TEST(Transport, buttonsDoWhatTheySay) {
    const std::tuple<const char*, const char*, int, const char*, std::string, const char*> steps[] = {
        {"play", "playBtn", 3, "00003", "play", ""},
        {"pause", "playBtn", 2, "00003", "", ""},
        {"step", "stepBtn", 2, "00004", "", ""},
        {"play on", "playBtn", 1, "00005", "play", ""},
        {"a step ends the playing", "stepBtn", 3, "00006", "", ""},
        {"a loop plays from the start", "repeatBtn", 2, "00002", "repeat", "End Loop Frame: 6"},
        {"up to its end", nullptr, 5, "00001", "repeat", "End Loop Frame: 6"},
        {"play leaves the loop", "playBtn", 6, "00007", "play", ""},
        {"a loop in mid-play", "repeatBtn", 1, "00001", "repeat", "End Loop Frame: 7"},
        {"let go, it starts over", "repeatBtn", 2, "00000", "", "End Loop Frame: 0"},
        {"a loop to nowhere does not begin", "repeatBtn", 2, "00000", "", "End Loop Frame: 0"},
        {"play", "playBtn", 4, "00004", "play", "End Loop Frame: 0"},
        {"a loop", "repeatBtn", 1, "00001", "repeat", "End Loop Frame: 4"},
        {"a step leaves the loop", "stepBtn", 2, "00002", "", ""},
        {"a loop", "repeatBtn", 1, "00001", "repeat", "End Loop Frame: 2"},
        {"restart leaves the loop", "restartBtn", 2, "00000", "", ""},
    };
    Window window(boxScene());
    EXPECT_EQ(window.text("fpsSt"), "00.0/25.0");
    for (const auto& [name, button, turns, frame, checked, note] : steps) {
        SCOPED_TRACE(name);
        if (button != nullptr) {
            window.click(button);
        }
        window.turn(turns);
        EXPECT_EQ(window.text("frameSt"), frame);
        EXPECT_EQ(window.isChecked("playBtn"), checked == "play");
        EXPECT_EQ(window.isChecked("repeatBtn"), checked == "repeat");
        EXPECT_EQ(window.text("toolsNoteSt"), note);
    }
    EXPECT_EQ(window.text("fpsSt"), "25.0/25.0");
}

TEST(Transport, keysDoTheSame) {
    const std::tuple<Qt::Key, int, const char*> steps[] = {
        {Qt::Key_0, 3, "00003"}, {Qt::Key_0, 2, "00003"},        {Qt::Key_1, 2, "00004"},
        {Qt::Key_2, 1, "00001"}, {Qt::Key_PageDown, 2, "00002"}, {Qt::Key_Home, 2, "00000"},
    };
    Window window(boxScene());
    window.dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window.dialog));
    for (const auto& [key, turns, frame] : steps) {
        SCOPED_TRACE(key);
        QTest::keyClick(&window.dialog, key);
        window.turn(turns);
        EXPECT_EQ(window.text("frameSt"), frame);
    }
}

TEST(Zoom, wheelAndButtonsMoveTheSlider) {
    Window window(boxScene());
    QSlider& slider = window.find<QSlider>("zoomSld");
    EXPECT_EQ(slider.value(), 250);
    const auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers) {
        const QPointF at = window.inWindow({100, 100});
        QWheelEvent event(at, window.dialog.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(window.dialog.windowHandle(), &event);
        return slider.value();
    };
    EXPECT_EQ(wheel(120, {}), 310);
    EXPECT_EQ(wheel(-120, Qt::ShiftModifier), 130);
    EXPECT_EQ(wheel(-120, Qt::ShiftModifier), 1);
    slider.setValue(1951);
    EXPECT_DOUBLE_EQ(window.dialog.preview().view().zoom, 1951);
    const std::pair<const char*, int> clicks[] = {{"zoomOutBtn", 975}, {"zoomInBtn", 1075}};
    for (const auto& [button, zoom] : clicks) {
        window.click(button);
        EXPECT_EQ(slider.value(), zoom);
    }
    window.click("zoomFitBtn");
    ViewTransform fitted = window.dialog.preview().view();
    fitted.zoomToFit();
    EXPECT_EQ(slider.value(), fitted.zoom);
}

TEST(Pan, followsThePointerAndFitTakesItBack) {
    Window window(boxScene());
    QWindow* const handle = window.dialog.windowHandle();
    const ViewTransform before = window.dialog.preview().view();
    const b2Vec2 held = before.world(200, 150);
    QTest::mousePress(handle, Qt::LeftButton, {}, window.inWindow({200, 150}));
    QTest::mouseMove(handle, window.inWindow({240, 160}));
    QTest::mouseMove(handle, window.inWindow({260, 120}));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, window.inWindow({260, 120}));
    const b2Vec2 found = window.dialog.preview().view().world(260, 120);
    EXPECT_NEAR(found.x, held.x, 1e-4);
    EXPECT_NEAR(found.y, held.y, 1e-4);
    EXPECT_TRUE(window.view.selection().bodies().empty());
    window.click("zoomFitBtn");
    EXPECT_EQ(window.dialog.preview().view().panX, 0);
    EXPECT_EQ(window.dialog.preview().view().panY, 0);
}

TEST(Selection, clicksChooseBodiesWhereTheyAreShown) {
    Window window(boxScene());
    const auto click = [&](b2Vec2 world, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(window.dialog.windowHandle(), Qt::LeftButton, modifiers,
                          window.inWindow(window.pixelOf(world)));
        return window.view.selection().bodies();
    };
    using Bodies = std::vector<std::int32_t>;
    window.dialog.preview().zoomToFit();
    EXPECT_EQ(click({0.2f, -2.8f}), Bodies{0});
    EXPECT_EQ(click({2.0f, 3.2f}, Qt::ShiftModifier), (Bodies{0, 1}));
    EXPECT_EQ(click({0.2f, -2.8f}, Qt::ShiftModifier), Bodies{1});
    EXPECT_EQ(click({-3, -3}), Bodies{});
    window.view.play();
    window.turn(10);
    window.view.showFrame(0);
    EXPECT_EQ(click({0.2f, -3.4f}), Bodies{0}) << "it has fallen in the world, but not on the frame that is shown";
}

TEST(TimelineTest, showsWhatHasBeenSimulatedAndGoesOnToWhatHasNot) {
    Window window(boxScene());
    Timeline& timeline = window.find<Timeline>("timeline");
    ASSERT_EQ(timeline.lastFrame(), 99);
    const auto press = [&](int frame) {
        QTest::mouseClick(&timeline, Qt::LeftButton, {}, {qRound(timeline.xOfFrame(frame)), timeline.height() / 2});
    };
    window.click("playBtn");
    window.turn(30);
    press(10);
    EXPECT_EQ(window.text("frameSt"), "00010");
    EXPECT_FALSE(window.isChecked("playBtn"));
    press(60);
    EXPECT_TRUE(window.view.isCatchingUp());
    while (window.view.isCatchingUp()) {
        window.turn();
    }
    EXPECT_EQ(window.text("frameSt"), "00060");
}

TEST(ViewOptionsMenu, turnsOnAndOffWhatIsDrawn) {
    Window window(boxScene());
    QList<QAction*> actions = window.find<QMenu>("ViewOptionsMenu").actions();
    actions.removeIf([](const QAction* action) { return action->isSeparator(); });
    const char* const texts[] = {"Shapes", "Mesh",        "Bounding Box", "Local Axes",
                                 "Joints", "Comp Bounds", "Motion Trails"};
    const auto shown = [&window] {
        const PreviewWidget& preview = window.dialog.preview();
        const ViewOptions& o = preview.options();
        return std::vector<bool>{o.shapes, o.mesh,       o.boundingBox,        o.localAxes,
                                 o.joints, o.compBounds, preview.showsTrails()};
    };
    ASSERT_EQ(actions.size(), 7);
    for (qsizetype i = 0; i < 7; ++i) {
        QAction& action = *actions.at(i);
        EXPECT_EQ(action.text().toStdString(), texts[i]);
        std::vector<bool> expected = shown();
        std::vector<bool>::reference option = expected[static_cast<std::size_t>(i)];
        EXPECT_EQ(action.isChecked(), option);
        option.flip();
        action.trigger();
        EXPECT_EQ(shown(), expected) << texts[i];
    }
}

} // namespace
} // namespace jostle::test
