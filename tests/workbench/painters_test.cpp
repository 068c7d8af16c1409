#include "tests/workbench/window.h"

#include "preview/gl_painter.h"
#include "tests/support/picture_difference.h"
#include "tests/support/scenes.h"

#include <QImage>

namespace jostle::test {
namespace {

/// Bodies of every form and state, and joints of every kind.
Scene everythingScene() {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 4.5f}, 14, 0.6f, BodyType::Static);
    addBox(scene, {-6, -3}, 1.5f, 1, BodyType::Dormant);
    addBody(scene, {-3, -2}, {circleShape(0.8f)});
    addBody(scene, {0, -2}, {outlineShape({{-1, -1}, {1, -1}, {1, 1}, {0, 0}, {-1, 1}}, true)});
    addBody(scene, {3, -3}, {outlineShape({{-1, 0}, {0, -1}, {1, 0}}, false)});
    addBox(scene, {6, -2}, 1, 1, BodyType::Dead);
    addBox(scene, {5, 1}, 1, 1, BodyType::AEmatic);
    BodyRecord& magnet = addBody(scene, {-5, 1}, {circleShape(0.5f)});
    magnet.magnetismType = 1;
    scene.latchMagnetism(1);
    addBox(scene, {7.5f, 2}, 1, 1).inPoint = 20;
    const JointType types[] = {JointType::Distance, JointType::Pivot, JointType::Piston, JointType::Spring};
    for (int i = 0; i < 4; ++i) {
        JointRecord& joint = addJoint(scene, types[i], 1 + i, 2 + i);
        joint.anchor = {-1, -3};
        joint.desiredLength = 3;
    }
    return scene;
}

QImage pictureAt(int frame, PreviewWidget::Painter painter) {
    Window window(everythingScene(), painter);
    PreviewWidget& preview = window.dialog.preview();
    preview.zoomToFit();
    ViewOptions options = preview.options();
    options.mesh = options.boundingBox = options.localAxes = true;
    preview.setOptions(options);
    preview.setTrails(true);
    window.view.selection().setBodies({2, 3});
    window.view.showFrame(frame);
    while (window.view.isCatchingUp()) {
        window.turn();
    }
    for (auto* const note : preview.findChildren<QLabel*>()) {
        note->hide();
    }
    return preview.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

TEST(OpenGl, paintsThePictureOfTheImagePainter) {
    ASSERT_TRUE(GlPainter::support()) << "this display has no OpenGL";
    const QImage start = pictureAt(0, PreviewWidget::Painter::Image);
    for (const int frame : {0, 25}) {
        const QImage plain = pictureAt(frame, PreviewWidget::Painter::Image);
        const QImage accelerated = pictureAt(frame, PreviewWidget::Painter::WhatWorks);
        ASSERT_EQ(plain.size(), accelerated.size());
        EXPECT_LT(difference(plain, accelerated), 0.02) << "frame " << frame;
        EXPECT_EQ(difference(plain, start) > 0.005, frame > 0) << "frame " << frame;
    }
}

TEST(Painters, theWindowSaysWhatItDoesWithout) {
    for (const auto painter : {PreviewWidget::Painter::WhatWorks, PreviewWidget::Painter::Image}) {
        Window window(everythingScene(), painter);
        const bool expected = painter == PreviewWidget::Painter::WhatWorks && GlPainter::support().has_value();
        EXPECT_EQ(window.dialog.preview().usesOpenGl(), expected);
        const auto* const note = window.dialog.findChild<QLabel*>("painterNoteSt");
        EXPECT_EQ(note != nullptr && note->isVisible(), !expected);
        window.click("playBtn");
        window.turn(3);
        EXPECT_FALSE(window.dialog.grab().isNull());
    }
}

} // namespace
} // namespace jostle::test
