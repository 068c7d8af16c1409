#pragma once

#include "geometry/shape_def.h"

#include <box2d/b2_math.h>

#include <cstddef>
#include <vector>

namespace jostle {

/// More triangles than this in one body raise its mesh warning.
constexpr std::size_t meshWarningLimit = 75;

/// What a layer's outlines were read from.
enum class OutlineSource { Masks, Text, VectorShapes };

/// Replaces outlines by convex hulls, as a body's `useConvexHull` asks for it. On purpose, it means three things:
///
/// - Masks: each outline that is neither circle nor box becomes its own hull, open or not; to be called after
///   flattening.
/// - Text: all vertices have one hull, which replaces all outlines; to be called before flattening.
/// - Vector shapes: the same, but only if there are two groups or more and the first has two outlines or more, or if
///   the very first outline is closed and neither circle nor box.
void wrapInHulls(OutlineSource source, ShapeDefList& groups);

/// How composition pixels become a body's metres: v' = scale (v - origin) / 100, by component.
struct BodySpace {
    b2Vec2 origin = {0.0f, 0.0f}; ///< composition pixels
    b2Vec2 scale = {1.0f, 1.0f};
};

/// Of masks: measured from the layer's anchor, in layer pixels.
[[nodiscard]] BodySpace maskBodySpace(b2Vec2 layerAnchor, float pixelAspectRatio, b2Vec2 layerScale);

/// Of text.
/// @param world  the layer's anchor in composition pixels, before the composition's pixel aspect ratio
[[nodiscard]] BodySpace textBodySpace(b2Vec2 world, float compPixelAspectRatio);

/// Of vector shapes.
/// @param lastIsFreePath  the last element read was a free path, whose vertices have the layer's scale already
[[nodiscard]] BodySpace vectorBodySpace(b2Vec2 shapePos, b2Vec2 layerScale, bool lastIsFreePath);

/// A body's shapes, in metres.
struct BodyMesh {
    ShapeDefList shapes;              ///< one group: circles, boxes, open outlines, triangles
    bool meshWarning = false;         ///< more triangles than meshWarningLimit
    bool triangulationFailed = false; ///< an outline crosses itself, or got no triangles
};

/// The pieces of one layer's outlines.
///
/// @param circleShapes, boxShapes  the primitives, as they were read; a hull has no effect on them
/// @param groups  all outlines, after wrapInHulls() and flattening; primitives among them, and closed ones of fewer
///                than 3 vertices, are passed over
/// @param space   where the body has its origin
[[nodiscard]] BodyMesh assemble(const std::vector<ShapeDef>& circleShapes, const std::vector<ShapeDef>& boxShapes,
                                const ShapeDefList& groups, const BodySpace& space);

/// The final flat list as one group: circles, boxes, open outlines, and the triangles of the closed ones; all in the
/// pixels they come in. Boxes and triangles are wound so that isReversed() holds.
///
/// @param meshWarning, triangulationFailed  receive the flags of a BodyMesh
[[nodiscard]] ShapeDefList buildShapeList(const std::vector<ShapeDef>& circleShapes,
                                          const std::vector<ShapeDef>& boxShapes,
                                          const std::vector<ShapeDef>& closedShapes,
                                          const std::vector<ShapeDef>& openShapes, bool& meshWarning,
                                          bool& triangulationFailed);

} // namespace jostle
