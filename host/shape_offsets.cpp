#include "host/shape_offsets.h"

#include <cmath>
#include <iterator>
#include <string_view>
#include <utility>

#include "host/host_time.h"

namespace jostle {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double leastMove = 0.05; // pixels; nobody sees less
constexpr int deepestGroup = 200;

AEGP_TwoDVal pointOf(const Stream& stream) {
    return stream.valueAt(sampleTime, Expressions::Applied).point();
}

/// Elements that are drawn, or that move what is drawn, from a point of their group: the ramp of a gradient, the turns
/// of a repeater. What is before them in the group must not be moved past that point.
bool hangsFromGroup(std::string_view matchName) {
    return matchName == "ADBE Vector Graphic - G-Fill" || matchName == "ADBE Vector Graphic - G-Stroke" ||
           matchName == "ADBE Vector Filter - Repeater" || matchName == "ADBE Vector Filter - Twist";
}

AEGP_TwoDVal turned(AEGP_TwoDVal point, double radians) {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {c * point.x - s * point.y, s * point.x + c * point.y};
}

AEGP_TwoDVal project(AEGP_TwoDVal point, const Matrix4& matrix) {
    const auto& m = matrix.m;
    const double w = point.x * m[0][3] + point.y * m[1][3] + m[3][3];
    const double divisor = w != 0.0 ? w : 1.0;
    return {(point.x * m[0][0] + point.y * m[1][0] + m[3][0]) / divisor,
            (point.x * m[0][1] + point.y * m[1][1] + m[3][1]) / divisor};
}

} // namespace

ShapeOffsets::ShapeOffsets(HostChain& chain, const Layer& layer) {
    elements_ = walk(layer.vectorContents(chain), 0);
}

bool ShapeOffsets::keep(Stream stream, Offset offset) {
    if (streams_[offset].exists())
        return false;
    streams_[offset] = std::move(stream);
    return true;
}

void ShapeOffsets::addPlaced(const Stream& element, const char* position, Offset offset,
                             std::vector<Element>& elements) {
    Stream stream = element.child(position);
    const AEGP_TwoDVal before = pointOf(stream);
    elements.push_back({before, keep(std::move(stream), offset) ? AEGP_TwoDVal{0, 0} : before});
}

/// Passes the elements of a group through its transform: scaled, skewed and turned about its anchor, then moved.
void ShapeOffsets::placeGroup(const Stream& transform, std::vector<Element>& elements) {
    Stream anchorStream = transform.child("ADBE Vector Anchor");
    Stream positionStream = transform.child("ADBE Vector Position");
    const AEGP_TwoDVal anchor = pointOf(anchorStream);
    const AEGP_TwoDVal position = pointOf(positionStream);
    const AEGP_TwoDVal percent = pointOf(transform.child("ADBE Vector Scale"));
    const auto radians = [&transform](const char* name) {
        return transform.child(name).valueAt(sampleTime, Expressions::Applied).number() * radiansPerDegree;
    };
    const double turn = radians("ADBE Vector Rotation");
    const double skew = std::tan(radians("ADBE Vector Skew"));
    const double skewAxis = radians("ADBE Vector Skew Axis");
    const bool losesAnchor = keep(std::move(anchorStream), GroupAnchor);
    const bool losesPosition = keep(std::move(positionStream), GroupPosition);
    const auto place = [&](AEGP_TwoDVal point, AEGP_TwoDVal from, AEGP_TwoDVal to) {
        const AEGP_TwoDVal scaled{(point.x - from.x) * percent.x / 100, (point.y - from.y) * percent.y / 100};
        AEGP_TwoDVal leaning = turned(scaled, skewAxis);
        leaning.x -= skew * leaning.y;
        const AEGP_TwoDVal there = turned(leaning, turn - skewAxis);
        return AEGP_TwoDVal{there.x + to.x, there.y + to.y};
    };
    const AEGP_TwoDVal none{0, 0};
    for (Element& element : elements) {
        element.before = place(element.before, anchor, position);
        element.after = place(element.after, losesAnchor ? none : anchor, losesPosition ? none : position);
    }
}

std::vector<ShapeOffsets::Element> ShapeOffsets::walk(const Stream& group, int depth) {
    std::vector<Element> elements;
    if (depth > deepestGroup)
        return elements;
    for (const NamedStream& child : childrenOf(group)) {
        if (child.matchName == "ADBE Vector Shape - Rect") {
            addPlaced(child.stream, "ADBE Vector Rect Position", Rect, elements);
        } else if (child.matchName == "ADBE Vector Shape - Ellipse") {
            addPlaced(child.stream, "ADBE Vector Ellipse Position", Ellipse, elements);
        } else if (child.matchName == "ADBE Vector Shape - Star") {
            addPlaced(child.stream, "ADBE Vector Star Position", Star, elements);
        } else if (child.matchName == "ADBE Vector Shape - Group" || hangsFromGroup(child.matchName)) {
            elements.push_back({{0, 0}, {0, 0}}); // no place of its own that could be lost
        } else if (child.matchName == "ADBE Vector Transform Group") {
            placeGroup(child.stream, elements);
        } else if (child.matchName == "ADBE Vector Group" || child.matchName == "ADBE Vectors Group") {
            std::vector<Element> inner = walk(child.stream, depth + 1);
            elements.insert(elements.end(), std::make_move_iterator(inner.begin()),
                            std::make_move_iterator(inner.end()));
        }
    }
    return elements;
}

bool ShapeOffsets::areInPlace(const Matrix4& matrix, AEGP_TwoDVal place, AEGP_TwoDVal anchor) const {
    const AEGP_TwoDVal origin = project({0, 0}, matrix);
    for (const Element& element : elements_) {
        const AEGP_TwoDVal shown = project(element.before, matrix);
        const AEGP_TwoDVal offset = project({element.after.x - anchor.x, element.after.y - anchor.y}, matrix);
        // Not at once "is greater": what is no number is not in its place.
        if (!(std::hypot(place.x + offset.x - origin.x - shown.x, place.y + offset.y - origin.y - shown.y) < leastMove))
            return false;
    }
    return true;
}

void ShapeOffsets::clear() const {
    for (const Stream& stream : streams_) {
        if (!stream.exists())
            continue;
        stream.disableExpression();
        stream.deleteKeys();
        StreamValue value = stream.valueAt(sampleTime, Expressions::Ignored);
        value.setPoint({0, 0});
        stream.setValue(value);
    }
}

std::optional<AEGP_TwoDVal> layerPointAt(const Matrix4& matrix, AEGP_TwoDVal place) {
    const auto& m = matrix.m;
    const double x = place.x - m[3][0];
    const double y = place.y - m[3][1];
    const double determinant = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    const AEGP_TwoDVal point{(x * m[1][1] - y * m[1][0]) / determinant, (y * m[0][0] - x * m[0][1]) / determinant};
    if (!(std::abs(determinant) > 1e-12) || !std::isfinite(point.x) || !std::isfinite(point.y))
        return std::nullopt;
    return point;
}

} // namespace jostle
