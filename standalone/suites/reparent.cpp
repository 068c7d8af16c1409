#include "standalone/suites/reparent.h"

#include <cmath>
#include <optional>

#include "standalone/document/evaluate.h"
#include "standalone/suites/stream_edits.h"

// Row vectors throughout: local = T(-anchor) S K R T(position), with S the scale, K the lean and R the turn. For a
// wanted matrix W with upper left rows w0, w1, and k0, k1 the rows of K (whose determinant is 1):
//   w0 = sx k0 R   gives the turn as the angle from k0 to w0, and |sx| = |w0| / |k0|
//   det W = sx sy  gives sy
// which is exact whenever W can be had with this K at all.

namespace jostle::standalone {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double radians = pi / 180;
constexpr double flat = 1e-9; // a scale of less is none

struct Row {
    double x, y;
};

double length(Row row) {
    return std::hypot(row.x, row.y);
}

double angleDegrees(Row row) {
    return std::atan2(row.y, row.x) / radians;
}

Row linearRow(const Matrix4d& matrix, int row) {
    return {matrix.m[row][0], matrix.m[row][1]};
}

double determinant(Row one, Row other) {
    return one.x * other.y - one.y * other.x;
}

/// Inverse of the flat part; none if it is singular.
std::optional<Matrix4d> inverse(const Matrix4d& matrix) {
    const auto& m = matrix.m;
    const double det = determinant(linearRow(matrix, 0), linearRow(matrix, 1));
    if (std::abs(det) < flat * flat)
        return std::nullopt;
    Matrix4d result;
    result.m[0][0] = m[1][1] / det;
    result.m[0][1] = -m[0][1] / det;
    result.m[1][0] = -m[1][0] / det;
    result.m[1][1] = m[0][0] / det;
    result.m[3][0] = -(m[3][0] * result.m[0][0] + m[3][1] * result.m[1][0]);
    result.m[3][1] = -(m[3][0] * result.m[0][1] + m[3][1] * result.m[1][1]);
    return result;
}

struct Pose {
    double scaleX, scaleY; ///< as fractions
    double turn;           ///< degrees, clockwise
};

/// Rows of the layer's lean at time 0: those of its matrix with neither scale nor turn.
Matrix4d leanOf(const Layer& layer) {
    Layer bare;
    bare.transform.scale.value = {100, 100, 100};
    bare.transform.skew = layer.transform.skew;
    bare.transform.skewAxis = layer.transform.skewAxis;
    return localMatrix(bare, 0);
}

/// @param mirrored  whether the layer's own x scale is below 0: of the two poses that look alike take that one
Pose decompose(const Matrix4d& wanted, const Matrix4d& lean, bool mirrored, double presentTurn) {
    const Row w0 = linearRow(wanted, 0);
    const Row w1 = linearRow(wanted, 1);
    const Row k0 = linearRow(lean, 0);
    const Row k1 = linearRow(lean, 1);
    if (length(w0) < flat) {
        const bool empty = length(w1) < flat;
        return {0, empty ? 0 : length(w1) / length(k1), empty ? presentTurn : angleDegrees(w1) - angleDegrees(k1)};
    }
    Pose pose{length(w0) / length(k0), 0, angleDegrees(w0) - angleDegrees(k0)};
    pose.scaleY = determinant(w0, w1) / pose.scaleX;
    if (mirrored)
        pose = {-pose.scaleX, -pose.scaleY, pose.turn + 180};
    pose.turn += 360 * std::round((presentTurn - pose.turn) / 360);
    return pose;
}

void foldPosition(LayerEntry& entry, double x, double y) {
    Transform& transform = entry.layer->transform;
    if (transform.separated) {
        Dimensions& dimensions = transform.dimensions.own();
        if (dimensions.x.keys.empty())
            setStaticValue(entry, dimensions.x, 1, {x, 0, 0});
        if (dimensions.y.keys.empty())
            setStaticValue(entry, dimensions.y, 1, {y, 0, 0});
    } else if (transform.position.keys.empty()) {
        setStaticValue(entry, transform.position, 2, {x, y, 0});
    }
}

void fold(LayerEntry& entry, const Matrix4d& wanted) {
    Transform& transform = entry.layer->transform;
    const Components anchor = valueAt(transform.anchor, 0);
    const Components scale = valueAt(transform.scale, 0);
    const double orientation = entry.layer->autoOrient ? travelDirection(transform, 0) : 0;
    const double presentTurn = valueAt(transform.rotation, 0)[0] + orientation;
    const Pose pose = decompose(wanted, leanOf(*entry.layer), scale[0] < 0, presentTurn);
    const auto& m = wanted.m;
    foldPosition(entry, anchor[0] * m[0][0] + anchor[1] * m[1][0] + m[3][0],
                 anchor[0] * m[0][1] + anchor[1] * m[1][1] + m[3][1]);
    if (transform.rotation.keys.empty())
        setStaticValue(entry, transform.rotation, 1, {pose.turn - orientation, 0, 0});
    if (transform.scale.keys.empty())
        setStaticValue(entry, transform.scale, 2, {100 * pose.scaleX, 100 * pose.scaleY, 0});
}

} // namespace

bool setParent(LayerEntry& entry, const LayerEntry* parent) {
    Layer& layer = *entry.layer;
    if (parent != nullptr && parent->comp != entry.comp)
        return false;
    Layer* next = parent == nullptr ? nullptr : parent->layer;
    for (const Layer* above = next; above != nullptr; above = above->parent) {
        if (above == &layer)
            return false;
    }
    if (next == layer.parent)
        return true;
    const Matrix4d world = worldMatrix(layer, 0);
    const std::optional<Matrix4d> space = next == nullptr ? Matrix4d{} : inverse(worldMatrix(*next, 0));
    state().journal.touchLayer(entry);
    layer.parent = next;
    layer.parentId = next == nullptr ? noParent : next->id;
    layer.changed = true;
    if (space)
        fold(entry, world * *space);
    return true;
}

} // namespace jostle::standalone
