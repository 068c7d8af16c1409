#pragma once

#include <box2d/b2_circle_shape.h>
#include <box2d/b2_polygon_shape.h>

#include <span>

namespace jostle {

/// Makes a convex polygon of the vertices as they are.
///
/// The library's own `b2PolygonShape::Set` welds vertices closer than half the linear slop, and turns what collapses
/// into a box two metres wide; here every vertex survives at any tolerance. Only the order is turned round where the
/// vertices run the wrong way for the library.
///
/// @param vertices  metres relative to the body, convex, in either direction
/// @param polygon   receives vertices, outward normals and centroid; left alone if the answer is false
/// @return false if there are fewer than 3 or more than 8 vertices, one lies farther than 10000 m from the body or is
///         not finite, an edge has no length, or the area is no more than the float epsilon (the least that the
///         library takes)
[[nodiscard]] bool fillPolygon(std::span<const b2Vec2> vertices, b2PolygonShape& polygon);

/// Makes a circle.
///
/// @param center  metres relative to the body
/// @param radius  metres
/// @param circle  left alone if the answer is false
/// @return false if the centre lies farther than 10000 m from the body or the radius is longer, one of them is not
///         finite, or the area is no more than the float epsilon
[[nodiscard]] bool fillCircle(b2Vec2 center, float radius, b2CircleShape& circle);

/// Whether the library can work out the mass of a polygon or circle: its area exceeds the float epsilon. Always so for
/// one that was just filled, but scaling may have flattened it since.
[[nodiscard]] bool canHaveMass(const b2Shape& shape);

/// Scales a polygon in place about a point, or the radius of a circle by the size of `ratioX`, its centre staying where
/// it is. Mass is not touched. A shape that would reach farther than 10000 m from the body stays as it is.
///
/// @param pivot           metres relative to the body
/// @param ratioX, ratioY  not 0; a negative one turns a polygon over
void scaleShape(b2Shape& shape, b2Vec2 pivot, float ratioX, float ratioY);

} // namespace jostle
