#pragma once

#include <box2d/b2_math.h>

#include <span>
#include <vector>

namespace jostle {

/// Convex hull of a set of points, by gift wrapping.
///
/// Starts at the point of largest x (smallest y among equals) and takes, at each turn, the point that leaves all others
/// on one side; of collinear points the farthest.
///
/// @param points  points in any unit and order; repeats allowed
/// @return the hull's corners in order around it, the start point first and not repeated at the end; none if there are
///         no points
/// Cost is the number of points times the number of corners.
/// Source: R. A. Jarvis, "On the identification of the convex hull of a finite set of points in the plane",
/// Information Processing Letters 2 (1973), 18-21.
[[nodiscard]] std::vector<b2Vec2> convexHull(std::span<const b2Vec2> points);

} // namespace jostle
