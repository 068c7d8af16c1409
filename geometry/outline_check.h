#pragma once

#include <box2d/b2_math.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace jostle {

/// A closed outline, without a repeat of its first point at the end.
using Ring = std::span<const b2Vec2>;

/// On which side of the line through a and b a point lies.
///
/// @return twice the signed area of the triangle a, b, point: positive if it turns from x toward y. Its sign is exact
///         for all finite points, and so is a zero; its size is that of 64-bit arithmetic.
[[nodiscard]] double orientation(b2Vec2 a, b2Vec2 b, b2Vec2 point);

/// Rounds points, in pixels, to a grid on which the triangulator's arithmetic is exact: a 67 millionth of the width or
/// height, whichever is larger, or a bit more, but not below a 524,288th of a pixel. Points of the size of the whole
/// are on such a grid already, as single precision is no finer.
[[nodiscard]] std::vector<std::vector<b2Vec2>> roundForTriangulation(std::span<const Ring> rings);

/// Whether some rings bound one area with holes in it, so that a constrained triangulation can take them.
///
/// @param rings  the outline first, then its holes, as roundForTriangulation() gave them if they are to be triangulated
/// @return false if there is a number that is not finite, a ring of fewer than 3 points, a point that occurs twice or
///         lies on an edge, a pair of edges that cross or overlap, or a hole outside of the outline. Holes within holes
///         pass.
/// Cost for n points, of whose edges at most k lie side by side: n times log n, plus n times k moves of an integer.
[[nodiscard]] bool isProperPolygon(std::span<const Ring> rings);

/// How many pairs of edges cross within some rings of finite points.
///
/// @return none if they are more than `limit`, or too many pairs of edges are close enough to be looked at
[[nodiscard]] std::optional<std::size_t> countCrossings(std::span<const Ring> rings, std::size_t limit);

} // namespace jostle
