#include "preview/preview_widget.h"

#include "editing/picking.h"
#include "preview/overlays.h"
#include "preview/surfaces.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>

namespace jostle {

namespace {

constexpr int trailFrames = 600; // of the past, at most

} // namespace

PreviewWidget::PreviewWidget(SimulationView& simulation, Painter painter, QWidget* parent)
    : QWidget(parent), simulation_(simulation) {
    surface_ = painter == Painter::WhatWorks ? makeGlSurface(*this) : nullptr;
    usesOpenGl_ = surface_ != nullptr;
    surface_ = usesOpenGl_ ? surface_ : makeImageSurface(*this);
    setObjectName("simulationPreviewWidget");
    setMinimumSize(160, 90);
    surface_->setAttribute(Qt::WA_TransparentForMouseEvents);
    if (!usesOpenGl_) {
        note_ = new QLabel(tr("Drawn without OpenGL: no context could be made"), this);
        note_->setObjectName("painterNoteSt");
        note_->setAttribute(Qt::WA_TransparentForMouseEvents);
        note_->setStyleSheet("QLabel { color: rgb(235,225,205); background: rgba(0,0,0,150); padding: 4px 8px; }");
    }
    view_.compWidth = simulation.scene().compWidth;
    view_.compHeight = simulation.scene().compHeight;
    connect(&simulation, &SimulationView::pictureChanged, this, &PreviewWidget::repaintPicture);
}

void PreviewWidget::repaintPicture() {
    surface_->update();
}

void PreviewWidget::setZoom(int percent) {
    const double zoom = std::clamp(static_cast<double>(percent), ViewTransform::leastZoom, ViewTransform::greatestZoom);
    if (zoom != view_.zoom) {
        view_.zoom = zoom;
        emit zoomChanged(static_cast<int>(zoom));
        repaintPicture();
    }
}

void PreviewWidget::zoomToFit() {
    view_.zoomToFit();
    emit zoomChanged(static_cast<int>(view_.zoom));
    repaintPicture();
}

void PreviewWidget::setOptions(const ViewOptions& options) {
    options_ = options;
    repaintPicture();
}

void PreviewWidget::setStyle(const DrawStyle& style) {
    style_ = style;
    repaintPicture();
}

void PreviewWidget::setTrails(bool shown) {
    showsTrails_ = shown;
    repaintPicture();
}

const Drawing& PreviewWidget::drawing() {
    sceneDrawing_.draw({simulation_.scene(), simulation_.shownSamples(), simulation_.frame()}, options_, style_, view_,
                       drawing_);
    if (showsTrails_) {
        drawTrails();
    }
    return drawing_;
}

void PreviewWidget::drawTrails() {
    const Scene& scene = simulation_.scene();
    const FrameSamples& samples = simulation_.samples();
    const int end = std::min(simulation_.frame() + 1, samples.count());
    for (const std::int32_t body : simulation_.selection().bodies()) {
        const auto index = static_cast<std::size_t>(body);
        trail_.clear();
        for (int frame = std::max(0, end - trailFrames); frame < end; ++frame) {
            trail_.push_back(scene.worldToPixels(samples.at(frame)[index].position));
        }
        drawTrail(trail_, readableOn(toRgba(scene.bodies[index].userData->color), style_.background), style_, drawing_);
    }
}

void PreviewWidget::resizeEvent(QResizeEvent*) {
    view_.width = std::max(1, width());
    view_.height = std::max(1, height());
    fitSurface();
}

void PreviewWidget::fitSurface() {
    surface_->setGeometry(rect());
    if (note_ != nullptr) {
        constexpr int margin = 8;
        note_->adjustSize();
        note_->move(margin, height() - note_->height() - margin);
    }
}

void PreviewWidget::wheelEvent(QWheelEvent* event) {
    const bool fast = event->modifiers().testFlag(Qt::ShiftModifier);
    // With some modifiers the system turns the wheel sideways.
    const QPoint delta = event->angleDelta();
    setZoom(zoomAfterWheel(view_.zoom, delta.y() != 0 ? delta.y() : delta.x(), fast));
    event->accept();
}

void PreviewWidget::mousePressEvent(QMouseEvent* event) {
    pressedAt_ = lastAt_ = event->position();
    isDragging_ = event->button() == Qt::MiddleButton;
}

void PreviewWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    if (!isDragging_ && (at - pressedAt_).manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    isDragging_ = true;
    setCursor(Qt::ClosedHandCursor);
    const b2Vec2 delta = view_.worldDelta(at.x() - lastAt_.x(), at.y() - lastAt_.y());
    view_.panX += static_cast<double>(delta.x);
    view_.panY += static_cast<double>(delta.y);
    lastAt_ = at;
    repaintPicture();
}

void PreviewWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (!isDragging_ && event->button() == Qt::LeftButton) {
        selectAt(event->position(), event->modifiers().testFlag(Qt::ShiftModifier));
    }
    isDragging_ = false;
    unsetCursor();
}

void PreviewWidget::selectAt(QPointF position, bool adds) {
    SelectionModel& selection = simulation_.selection();
    const std::int32_t body =
        pickBody(simulation_.scene(), view_.world(position.x(), position.y()), simulation_.shownSamples());
    if (body >= 0 && adds) {
        selection.toggle(body);
    } else if (body >= 0) {
        selection.setBodies({body});
    } else if (!adds) {
        selection.clear();
    }
}

} // namespace jostle
