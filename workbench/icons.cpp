#include "workbench/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace jostle {

namespace {

constexpr double side = 20.0; // all signs are drawn in a square of this
constexpr double strokeWidth = 1.8;

QPolygonF triangleRight(double left, double right) {
    return QPolygonF({{left, 4.0}, {right, side / 2}, {left, side - 4.0}});
}

void drawRepeat(QPainter& painter) {
    // Two half turns, each with a head at its end.
    const QRectF round(4.0, 4.0, 12.0, 12.0);
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(round, 20 * 16, 140 * 16);
    painter.drawArc(round, 200 * 16, 140 * 16);
    painter.setPen(Qt::NoPen);
}

void drawArrowHead(QPainter& painter, QPointF tip, QPointF back, double half) {
    const QPointF across(back.y() - tip.y(), tip.x() - back.x());
    const double length = std::hypot(across.x(), across.y());
    painter.drawPolygon(QPolygonF({tip, back + across / length * half, back - across / length * half}));
}

void drawCorners(QPainter& painter) {
    painter.setBrush(Qt::NoBrush);
    for (const double x : {3.5, side - 3.5}) {
        for (const double y : {4.5, side - 4.5}) {
            const double inX = x < side / 2 ? 4.5 : -4.5;
            const double inY = y < side / 2 ? 4.0 : -4.0;
            painter.drawPolyline(QPolygonF({{x + inX, y}, {x, y}, {x, y + inY}}));
        }
    }
}

void drawEye(QPainter& painter) {
    QPainterPath lid;
    lid.moveTo(2.5, side / 2);
    lid.quadTo(side / 2, 2.5, side - 2.5, side / 2);
    lid.quadTo(side / 2, side - 2.5, 2.5, side / 2);
    const QBrush fill = painter.brush();
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(lid);
    painter.setBrush(fill);
    painter.drawEllipse(QPointF(side / 2, side / 2), 2.2, 2.2);
}

void drawSign(QPainter& painter, Sign sign, const QColor& color) {
    const QPen stroke(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(stroke);
    painter.setBrush(color);
    switch (sign) {
    case Sign::Restart:
        painter.drawLine(QPointF(4.5, 4.5), QPointF(4.5, side - 4.5));
        painter.drawPolygon(QPolygonF({{15.5, 4.5}, {8.0, side / 2}, {15.5, side - 4.5}}));
        break;
    case Sign::Play:
        painter.drawPolygon(triangleRight(6.0, 16.0));
        break;
    case Sign::Pause:
        painter.drawRect(QRectF(5.5, 4.5, 2.4, 11.0));
        painter.drawRect(QRectF(12.1, 4.5, 2.4, 11.0));
        break;
    case Sign::Step:
        painter.drawPolygon(QPolygonF({{4.5, 4.5}, {12.0, side / 2}, {4.5, side - 4.5}}));
        painter.drawLine(QPointF(15.5, 4.5), QPointF(15.5, side - 4.5));
        break;
    case Sign::Repeat:
        drawRepeat(painter);
        painter.setBrush(color);
        drawArrowHead(painter, {17.6, 9.4}, {14.6, 5.6}, 3.0);
        drawArrowHead(painter, {2.4, 10.6}, {5.4, 14.4}, 3.0);
        break;
    case Sign::ZoomIn:
        painter.drawLine(QPointF(side / 2, 5.0), QPointF(side / 2, side - 5.0));
        painter.drawLine(QPointF(5.0, side / 2), QPointF(side - 5.0, side / 2));
        break;
    case Sign::ZoomOut:
        painter.drawLine(QPointF(5.0, side / 2), QPointF(side - 5.0, side / 2));
        break;
    case Sign::ZoomFit:
        drawCorners(painter);
        break;
    case Sign::ViewOptions:
        drawEye(painter);
        break;
    }
}

QPixmap pixmap(Sign sign, const QColor& color) {
    constexpr double sharpness = 4.0; // enough for the densest screens
    QPixmap picture(static_cast<int>(side * sharpness), static_cast<int>(side * sharpness));
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(sharpness, sharpness);
    drawSign(painter, sign, color);
    return picture;
}

} // namespace

QIcon icon(Sign sign, Sign checkedAs) {
    const QColor ink(200, 200, 200);
    const QColor faint(90, 90, 90);
    const QColor accent(235, 175, 30);
    QIcon made;
    made.addPixmap(pixmap(sign, ink), QIcon::Normal, QIcon::Off);
    made.addPixmap(pixmap(sign, faint), QIcon::Disabled, QIcon::Off);
    made.addPixmap(pixmap(checkedAs, accent), QIcon::Normal, QIcon::On);
    return made;
}

} // namespace jostle
