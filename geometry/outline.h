#pragma once

#include "geometry/shape_def.h"

#include <box2d/b2_math.h>

#include <span>

namespace jostle {

/// The point at `t`, from 0 to 1, on the cubic Bezier curve with these four control points.
[[nodiscard]] b2Vec2 cubicPoint(const b2Vec2 (&ctrlPts)[4], float t);

/// Whether one of `verts` is closer to a point than 0.0001 in x and in y.
[[nodiscard]] bool containsPoint(b2Vec2 point, std::span<const b2Vec2> verts);

/// Keeps, of vertices that containsPoint() takes for one, the first. The tangents stay as they are.
void removeDuplicates(ShapeDef& shapeDef);

/// Replaces the vertices of a Bezier outline by those of a polyline, without duplicates. The tangents stay as they are;
/// those that are missing count as zero.
///
/// @param subdivisions  a body's `meshPrecision` plus 2: a curved segment becomes `subdivisions` - 1 points, a straight
///                      one, with no handle longer than half a pixel in x or y, becomes one. 2 leaves all as it is, and
///                      more than 1000 count as 1000
void flatten(ShapeDef& shapeDef, int subdivisions);

/// Whether an outline is a circle as a host draws it: four vertices from the top on, in the host's direction.
///
/// @param radiusOut  receives the radius in the outline's pixels as soon as the two diameters agree, even if the
///                   handles then do not; otherwise it stays
[[nodiscard]] bool matchesCircle(const ShapeDef& shapeDef, float& radiusOut);

/// Whether an outline is a rectangle of four vertices without handles. Upright ones are so only if they are wound so
/// that their second edge runs toward positive y, or their first does, and is longer than 9.999 pixels.
[[nodiscard]] bool matchesBox(const ShapeDef& shapeDef);

/// A point turned about a centre, from x toward y.
[[nodiscard]] b2Vec2 rotateAround(b2Vec2 point, b2Vec2 centre, float angleRadians);

/// Where an outline is: the middle of two vertices, the mean of an open outline's, and the centroid of a closed one's
/// area.
///
/// @return in the pixels of the vertices. A closed outline without area gives the mean of its vertices, an empty one
///         (0, 0)
[[nodiscard]] b2Vec2 shapeCentroid(std::span<const b2Vec2> verts, bool open);

} // namespace jostle
