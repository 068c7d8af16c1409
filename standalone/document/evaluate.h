#pragma once

#include "standalone/document/composition.h"
#include "standalone/document/stream.h"

namespace jostle::standalone {

/// A 4 by 4 matrix for row vectors: (x, y, 0, 1) times `m`; the translation stands in the last row.
struct Matrix4d {
    double m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

/// `first` times `second`: what is in the space of `first` goes through it, then through `second`.
[[nodiscard]] Matrix4d operator*(const Matrix4d& first, const Matrix4d& second);

/// Value of a stream at a composition frame, in the stream's units. Expressions are not evaluated.
///
/// Before the first key and after the last one their values hold. Components that the stream does not have are 0.
[[nodiscard]] Components valueAt(const Stream& stream, double frame);

/// Position of a transform at a composition frame, in pixels of the parent, from separated dimensions too.
[[nodiscard]] Components positionAt(const Transform& transform, double frame);

/// Direction of travel at a composition frame in degrees, clockwise from the x axis; 0 for a position that rests.
///
/// The tangent of the position's segment; before the first key that of the first segment, after the last that of
/// the last.
[[nodiscard]] double travelDirection(const Transform& transform, double frame);

/// Layer pixels to pixels of the parent, at a composition frame: anchor, scale, skew, rotation, auto-orientation,
/// position. Depth and the other two rotations of 3D layers are left out.
[[nodiscard]] Matrix4d localMatrix(const Layer& layer, double frame);

/// Layer pixels to composition pixels, through all parents.
[[nodiscard]] Matrix4d worldMatrix(const Layer& layer, double frame);

} // namespace jostle::standalone
