#pragma once

#include "geometry/shape_def.h"

#include <array>
#include <span>
#include <vector>

namespace jostle {

using Triangle = std::array<b2Vec2, 3>;

/// Triangulates closed outlines; those inside another are its holes.
///
/// @param closedShapes  polygons in composition pixels, in any state, either winding
/// @param triangles     receives the triangles, appended, in the same pixels
/// @return whether some outline crosses itself, which is reported and tried all the same, or could not be
///         triangulated; the triangles of the others are appended in any case
/// Containment is decided by an outline's first corner alone and depth is not counted: an island within a hole gets no
/// surface. Outlines that the Delaunay step cannot take go to a tessellator, which fills what is enclosed an odd number
/// of times.
/// Source: constrained Delaunay by sweep-line, V. Domiter and B. Zalik, International Journal of Geographical
/// Information Science 22 (2008), 449-462, through the poly2tri library.
[[nodiscard]] bool triangulate(std::span<const ShapeDef> closedShapes, std::vector<Triangle>& triangles);

} // namespace jostle
