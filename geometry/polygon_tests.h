#pragma once

#include <box2d/b2_math.h>

#include <span>

namespace jostle {

/// Whether two segments ab and cd cross, each strictly between its ends.
///
/// Parallel segments never do, even if they overlap.
[[nodiscard]] bool segmentsIntersect(b2Vec2 a, b2Vec2 b, b2Vec2 c, b2Vec2 d);

/// Whether two edges of a closed outline cross. Compares all pairs of up to 100 edges; of more, those whose boxes meet,
/// so that only rounding could make a difference.
[[nodiscard]] bool isSelfIntersecting(std::span<const b2Vec2> verts);

/// Whether a closed outline has more left turns than right turns or the reverse.
///
/// @return true if most of its corners turn toward negative z; false with fewer than 3 corners
[[nodiscard]] bool isReversed(std::span<const b2Vec2> verts);

/// Whether a point lies within a closed outline, by the even-odd rule.
///
/// Of the points on the border some count as inside: those on a right or bottom edge (y points down) do.
[[nodiscard]] bool pointInPolygon(b2Vec2 point, std::span<const b2Vec2> verts);

} // namespace jostle
