#pragma once

#include "editing/simulation_view.h"
#include "workbench/jostle_dlg.h"
#include "workbench/timeline.h"

#include <QLabel>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace jostle::test {

/// A window over a scene, on the screen. Its time stands still: the tests make the turns of the clock.
class Window {
public:
    explicit Window(Scene scene, PreviewWidget::Painter painter = PreviewWidget::Painter::WhatWorks)
        : view(std::move(scene), layers_, WallPacer([] { return 1; }, [](int) {})), dialog(view, painter) {
        dialog.resize(900, 700);
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    }

    void turn(int times = 1) {
        for (int i = 0; i < times; ++i) {
            view.updatePhysics();
        }
    }
    template<class Widget>
    [[nodiscard]] Widget& find(const char* name) const {
        auto* const widget = dialog.findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    void click(const char* button) const { QTest::mouseClick(&find<QToolButton>(button), Qt::LeftButton); }
    [[nodiscard]] bool isChecked(const char* button) const { return find<QToolButton>(button).isChecked(); }
    [[nodiscard]] std::string text(const char* label) const { return find<QLabel>(label).text().toStdString(); }

    /// A pixel of the preview in the window's pixels.
    [[nodiscard]] QPoint inWindow(QPointF pixel) { return dialog.preview().mapTo(&dialog, pixel.toPoint()); }
    [[nodiscard]] QPointF pixelOf(b2Vec2 world) {
        const ViewTransform& seen = dialog.preview().view();
        return {seen.pixelX(static_cast<double>(world.x)), seen.pixelY(static_cast<double>(world.y))};
    }

private:
    StillLayers layers_;

public:
    SimulationView view;
    JostleDlg dialog;
};

} // namespace jostle::test
