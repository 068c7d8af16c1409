#pragma once

#include "preview/draw_list.h"
#include "preview/view_transform.h"

#include <vector>

namespace jostle {

/// A corner of a triangle in picture pixels, which knows how far it lies off the middle of the stroke or disc that the
/// triangle is a part of. Its colour covers what is nearer to the middle than the radius, and fades over the pixel
/// around it. In a ring what counts is how far off the circle a place is.
struct FlatVertex {
    b2Vec2 at{0.0f, 0.0f};
    Rgba color;
    b2Vec2 offset{0.0f, 0.0f}; ///< picture pixels; (0, 0) all over a triangle that is to be covered evenly
    float radius = 1.0f;       ///< picture pixels; half of a stroke's width
    float circle = 0.0f;       ///< radius of a ring, picture pixels; 0 for anything else
};

/// All of a drawing as triangles, in the order in which they are painted: strokes become rectangles, points and discs
/// squares, so that a graphics library can take the whole of it in one go.
///
/// What is thinner than a pixel becomes a pixel wide and fainter.
/// @param triangles  receives them, three vertices each; what it held is dropped, its memory is kept
void flattenToTriangles(const Drawing& drawing, const ViewTransform& view, std::vector<FlatVertex>& triangles);

} // namespace jostle
