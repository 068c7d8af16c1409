#pragma once

#include "editing/simulation_view.h"
#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "preview/scene_drawing.h"
#include "preview/view_transform.h"

#include <QPoint>
#include <QWidget>

#include <vector>

class QLabel;

namespace jostle {

/// Shows the simulation: with OpenGL where a context can be made, else with the image painter, and then says so in a
/// corner.
///
/// The wheel zooms, dragging pans, a click selects the body under the pointer or, with Shift, adds it or takes it away.
class PreviewWidget final : public QWidget {
    Q_OBJECT

public:
    enum class Painter { WhatWorks, Image };

    /// @param simulation  must outlive the widget
    explicit PreviewWidget(SimulationView& simulation, Painter painter = Painter::WhatWorks, QWidget* parent = nullptr);

    [[nodiscard]] bool usesOpenGl() const { return usesOpenGl_; }

    [[nodiscard]] const ViewTransform& view() const { return view_; }
    /// @param percent  brought within the slider's range
    void setZoom(int percent);
    /// Shows the whole composition, without pan.
    void zoomToFit();

    [[nodiscard]] const ViewOptions& options() const { return options_; }
    void setOptions(const ViewOptions& options);
    [[nodiscard]] const DrawStyle& style() const { return style_; }
    void setStyle(const DrawStyle& style);
    [[nodiscard]] bool showsTrails() const { return showsTrails_; }
    /// Whether selected bodies draw the way that they came.
    void setTrails(bool shown);

    /// What is to be painted now; valid until the next call.
    [[nodiscard]] const Drawing& drawing();

signals:
    void zoomChanged(int percent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void repaintPicture();
    void fitSurface();
    void drawTrails();
    void selectAt(QPointF position, bool adds);

    SimulationView& simulation_;
    bool usesOpenGl_ = false;
    QWidget* surface_ = nullptr;
    QLabel* note_ = nullptr; ///< only without OpenGL
    ViewTransform view_;
    ViewOptions options_;
    DrawStyle style_;
    bool showsTrails_ = false;
    SceneDrawing sceneDrawing_;
    Drawing drawing_;
    std::vector<b2Vec2> trail_; ///< composition pixels, of one body
    QPointF pressedAt_;
    QPointF lastAt_;
    bool isDragging_ = false;
};

} // namespace jostle
