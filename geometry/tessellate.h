#pragma once

#include "geometry/outline_check.h"
#include "geometry/triangulate.h"

#include <span>
#include <vector>

namespace jostle {

/// Triangles of the area that some rings enclose an odd number of times, for rings in any state: they may cross
/// themselves and each other, touch, repeat points and hold numbers that are not finite, which are left out.
///
/// @param rings      closed outlines, in pixels
/// @param triangles  receives the triangles, appended, in the same pixels, rounded to 2 to the -22 of the largest;
/// those
///                   without area are left out
/// @return whether the tessellator got through. Outlines beyond some ten thousand points or crossings are not given to
///         it, so that none can take the program's memory or its time
[[nodiscard]] bool tessellate(std::span<const Ring> rings, std::vector<Triangle>& triangles);

} // namespace jostle
