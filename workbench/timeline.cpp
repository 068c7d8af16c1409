#include "workbench/timeline.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace jostle {

namespace {

constexpr int widgetHeight = 34;
constexpr double margin = 12.0;        // room for half of the playhead, and for the numbers at the ends
constexpr double trackTop = 22.0;      // of the line of simulated frames
constexpr double trackHeight = 5.0;    // likewise
constexpr double labelDistance = 70.0; // at least, between numbers
constexpr QColor accent(235, 175, 30);

/// A round number of frames that are at least so far apart: 1, 2 or 5 times a power of ten.
int roundStep(double framesApart) {
    double power = 1.0;
    while (power * 10.0 <= framesApart) {
        power *= 10.0;
    }
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= framesApart) {
            return static_cast<int>(factor * power);
        }
    }
    return static_cast<int>(10.0 * power);
}

} // namespace

Timeline::Timeline(SimulationView& simulation, QWidget* parent) : QWidget(parent), simulation_(simulation) {
    setObjectName("timeline");
    setFixedHeight(widgetHeight);
    setToolTip(tr("Drag to look at a frame"));
    setAccessibleName(tr("Timeline"));
    connect(&simulation, &SimulationView::pictureChanged, this, qOverload<>(&QWidget::update));
    connect(&simulation, &SimulationView::transportChanged, this, qOverload<>(&QWidget::update));
}

QSize Timeline::sizeHint() const {
    return {400, widgetHeight};
}

int Timeline::lastFrame() const {
    const int simulated = simulation_.samples().count() - 1;
    return std::max({1, simulation_.scene().compFrames - 1, simulated, simulation_.frame()});
}

double Timeline::xOfFrame(int frame) const {
    return margin + (width() - 2.0 * margin) * frame / lastFrame();
}

int Timeline::frameAt(double x) const {
    const double part = (x - margin) / std::max(1.0, width() - 2.0 * margin);
    return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * lastFrame()));
}

void Timeline::mousePressEvent(QMouseEvent* event) {
    goToPointer(*event);
}

void Timeline::mouseMoveEvent(QMouseEvent* event) {
    goToPointer(*event);
}

void Timeline::goToPointer(const QMouseEvent& event) {
    const int frame = frameAt(event.position().x());
    const bool isNew = frame != wantedFrame_ || event.type() == QEvent::MouseButtonPress;
    if (event.buttons().testFlag(Qt::LeftButton) && isNew) {
        wantedFrame_ = frame;
        simulation_.showFrame(frame);
    }
}

void Timeline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRuler(painter);
    paintSimulated(painter);
    paintPlayhead(painter);
}

void Timeline::paintSimulated(QPainter& painter) const {
    const double left = xOfFrame(0);
    const QRectF track(left, trackTop, xOfFrame(lastFrame()) - left, trackHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(track, trackHeight / 2, trackHeight / 2);
    const int simulated = simulation_.samples().count() - 1;
    if (simulated > 0) {
        const QRectF done(left, trackTop, xOfFrame(simulated) - left, trackHeight);
        painter.setBrush(QColor(accent.red(), accent.green(), accent.blue(), 110));
        painter.drawRoundedRect(done, trackHeight / 2, trackHeight / 2);
    }
}

void Timeline::paintRuler(QPainter& painter) const {
    QFont small = font();
    small.setPointSizeF(7.5);
    painter.setFont(small);
    const int last = lastFrame();
    const double framesPerPixel = last / std::max(1.0, width() - 2.0 * margin);
    const int step = roundStep(labelDistance * framesPerPixel);
    QColor ink = palette().color(QPalette::WindowText);
    for (int frame = 0; frame <= last; frame += step) {
        const double x = xOfFrame(frame);
        ink.setAlpha(200);
        painter.setPen(ink);
        painter.drawText(QRectF(x - 40, 0, 80, 14), Qt::AlignCenter, QString::number(frame));
        ink.setAlpha(90);
        painter.setPen(ink);
        painter.drawLine(QPointF(x, 15.0), QPointF(x, trackTop - 1.0));
    }
}

void Timeline::paintPlayhead(QPainter& painter) const {
    if (simulation_.isCatchingUp() && !simulation_.isPlaying()) {
        painter.setPen(QPen(QColor(accent.red(), accent.green(), accent.blue(), 140), 1.0, Qt::DashLine));
        const double x = xOfFrame(std::min(wantedFrame_, lastFrame()));
        painter.drawLine(QPointF(x, 12.0), QPointF(x, height()));
    }
    const double x = xOfFrame(simulation_.frame());
    painter.setPen(QPen(accent, 1.5));
    painter.drawLine(QPointF(x, 14.0), QPointF(x, height() - 2.0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawPolygon(QPolygonF({{x - 5.0, 12.0}, {x + 5.0, 12.0}, {x + 5.0, 15.0}, {x, 20.0}, {x - 5.0, 15.0}}));
}

} // namespace jostle
