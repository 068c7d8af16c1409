#pragma once

#include <box2d/b2_math.h>

namespace jostle {

/// Pixels in one metre of the world.
constexpr float pixelsPerMetre = 100.0f;

/// A 4 by 4 transform for row vectors: a point is multiplied from the left, and the last row translates.
/// A fresh one is the identity.
struct Matrix4 {
    double m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

/// The point (x, y, 0, 1) passed through a matrix.
///
/// @param point  pixels in the space that the matrix maps from
/// @return pixels in the space that it maps to, divided by w; if w is zero the undivided values stand
[[nodiscard]] b2Vec2 projectPoint(b2Vec2 point, const Matrix4& matrix);

/// Composition pixels to world metres along x: 0 is the composition's centre.
[[nodiscard]] float toBodyX(float x, int compWidth);

/// Composition pixels to world metres along y, which points down in both.
[[nodiscard]] float toBodyY(float y, int compHeight);

/// A distance or an offset in pixels, as metres.
[[nodiscard]] b2Vec2 toWorld(b2Vec2 pixels);

} // namespace jostle
