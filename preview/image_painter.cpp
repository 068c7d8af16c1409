#include "preview/image_painter.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace jostle {

namespace {

QColor toQColor(Rgba color) {
    return {color.red, color.green, color.blue, color.alpha};
}

/// From a list's units to the image's pixels.
struct ToImage {
    double scale = 1.0;
    double x = 0.0;
    double y = 0.0;

    QPointF operator()(b2Vec2 p) const { return {x + scale * double{p.x}, y + scale * double{p.y}}; }
};

/// Cuts a segment to a box, by Liang and Barsky: for each side the share of the segment at which it crosses.
/// Source: Y.-D. Liang and B. A. Barsky, "A new concept and method for line clipping", ACM Transactions on Graphics 3
/// (1984), 1-22.
/// @return whether some of it is left
bool cut(QPointF& from, QPointF& to, const QRectF& box) {
    const QPointF along = to - from;
    double first = 0.0;
    double last = 1.0;
    const std::pair<double, double> sides[] = {{-along.x(), from.x() - box.left()},
                                               {along.x(), box.right() - from.x()},
                                               {-along.y(), from.y() - box.top()},
                                               {along.y(), box.bottom() - from.y()}};
    for (const auto& [speed, room] : sides) {
        if (speed == 0.0) {
            if (!(room >= 0.0)) {
                return false;
            }
        } else if (speed < 0.0) {
            first = std::max(first, room / speed);
        } else {
            last = std::min(last, room / speed);
        }
    }
    if (!(first <= last)) {
        return false;
    }
    to = from + last * along;
    from += first * along;
    return true;
}

bool isFinite(QPointF p) {
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

class ListPainter {
public:
    ListPainter(QPainter& painter, const ToImage& toImage, const QRectF& box)
        : painter_(painter), toImage_(toImage), box_(box) {}

    void paint(const DrawList& list) {
        paintSurfaces(list);
        paintRings(list.rings);
        paintLines(list.lines);
        paintPoints(list.points);
    }

private:
    void paintSurfaces(const DrawList& list) {
        const std::span<const Vertex> corners(list.triangles);
        std::size_t painted = 0;
        auto surface = list.surfaces.begin();
        const auto paintUpTo = [&](std::size_t end) {
            while (painted < end) {
                surface = std::upper_bound(surface, list.surfaces.end(), painted);
                const std::size_t next = surface == list.surfaces.end() ? end : std::min<std::size_t>(*surface, end);
                paintTriangles(corners.subspan(painted, next - painted));
                painted = next;
            }
        };
        for (const Disc& disc : list.discs) {
            paintUpTo(disc.cornersBefore);
            paintEllipse(disc.center, toImage_.scale * double{disc.radius}, Qt::NoPen, toQColor(disc.color));
        }
        paintUpTo(corners.size());
    }

    void paintRings(const std::vector<Ring>& rings) {
        for (const Ring& ring : rings) {
            paintEllipse(ring.center, toImage_.scale * double{ring.radius},
                         QPen(toQColor(ring.color), double{ring.width}), Qt::NoBrush);
        }
    }

    /// @param radius  in pixels of the image
    void paintEllipse(b2Vec2 center, double radius, const QPen& pen, const QBrush& brush) {
        const QPointF at = toImage_(center);
        if (isFinite(at) && std::isfinite(radius) &&
            box_.intersects({at.x() - radius, at.y() - radius, 2.0 * radius, 2.0 * radius})) {
            painter_.setPen(pen);
            painter_.setBrush(brush);
            painter_.drawEllipse(at, radius, radius);
        }
    }

    // Of one surface. Triangles of one colour that follow one another become one path, all turning the same way, so
    // that no seams show where they touch.
    void paintTriangles(std::span<const Vertex> corners) {
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
            addTriangle(path, toImage_(corners[i].at), toImage_(corners[i + 1].at), toImage_(corners[i + 2].at));
            const bool isLast = i + 5 >= corners.size();
            if (isLast || corners[i + 3].color != corners[i].color) {
                painter_.fillPath(path, toQColor(corners[i].color));
                path.clear();
                path.setFillRule(Qt::WindingFill);
            }
        }
    }

    void addTriangle(QPainterPath& path, QPointF a, QPointF b, QPointF c) const {
        if (!isFinite(a) || !isFinite(b) || !isFinite(c) || std::max({a.x(), b.x(), c.x()}) < box_.left() ||
            std::min({a.x(), b.x(), c.x()}) > box_.right() || std::max({a.y(), b.y(), c.y()}) < box_.top() ||
            std::min({a.y(), b.y(), c.y()}) > box_.bottom()) {
            return;
        }
        const QPointF ab = b - a;
        const QPointF ac = c - a;
        if (ab.x() * ac.y() - ab.y() * ac.x() < 0.0) {
            std::swap(b, c);
        }
        path.moveTo(a);
        path.lineTo(b);
        path.lineTo(c);
        path.closeSubpath();
    }

    // Lines that go on where the one before ended are one stroke, with joins.
    void paintLines(const std::vector<Line>& lines) {
        painter_.setBrush(Qt::NoBrush);
        QPolygonF chain;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const Line& line = lines[i];
            QPointF from = toImage_(line.from);
            QPointF to = toImage_(line.to);
            if (isFinite(from) && isFinite(to) && cut(from, to, box_)) {
                if (chain.isEmpty() || chain.back() != from) {
                    flush(chain);
                    chain.append(from);
                }
                painter_.setPen(
                    QPen(toQColor(line.color), double{line.width}, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
                chain.append(to);
            }
            const bool goesOn = i + 1 < lines.size() && lines[i + 1].color == line.color &&
                                lines[i + 1].width == line.width && lines[i + 1].from == line.to;
            if (!goesOn) {
                flush(chain);
            }
        }
    }

    void flush(QPolygonF& chain) {
        if (chain.size() > 2 && chain.front() == chain.back()) {
            painter_.drawPolygon(chain);
        } else if (chain.size() > 1) {
            painter_.drawPolyline(chain);
        }
        chain.clear();
    }

    void paintPoints(const std::vector<Point>& points) {
        for (const Point& point : points) {
            paintEllipse(point.at, double{point.size} / 2.0, Qt::NoPen, toQColor(point.color));
        }
    }

    QPainter& painter_;
    ToImage toImage_;
    QRectF box_;
};

} // namespace

void paintImage(const Drawing& drawing, const ViewTransform& view, QImage& image) {
    constexpr double border = 50.0; // wider than any stroke or point, so that no cut shows
    image.fill(toQColor(withAlpha(drawing.background, 1.0f)));
    const double ratio = image.width() / view.width;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(ratio, ratio);
    const QRectF box = QRectF(0.0, 0.0, view.width, view.height).adjusted(-border, -border, border, border);
    ListPainter composition(painter, {view.scale(), view.originX(), view.originY()}, box);
    composition.paint(drawing.shapes);
    composition.paint(drawing.overlays);
    ListPainter(painter, {}, box).paint(drawing.view);
}

QImage paintedImage(const Drawing& drawing, const ViewTransform& view) {
    QImage image(static_cast<int>(std::ceil(view.width)), static_cast<int>(std::ceil(view.height)),
                 QImage::Format_RGB32);
    if (!image.isNull()) {
        paintImage(drawing, view, image);
    }
    return image;
}

} // namespace jostle
