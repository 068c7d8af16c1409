#pragma once

#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "preview/view_transform.h"
#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <span>

// What tools and the timeline draw over a scene. Each appends to a drawing that SceneDrawing has filled.

namespace jostle {

/// The band of a selection.
/// @param start, end  opposite corners, world metres
void drawRubberBand(const Scene& scene, b2Vec2 start, b2Vec2 end, Drawing& drawing);

/// The gravity tool: a cross through the middle of the picture, a dashed circle whose radius is the magnitude, and an
/// arrow in gravity's direction.
/// @param magnitude         metres per second squared
/// @param directionDegrees  0 right, 90 down
/// @param gravityScale      picture pixels in one metre per second squared
void drawGravityTool(double magnitude, double directionDegrees, double gravityScale, const DrawStyle& style,
                     const ViewTransform& view, Drawing& drawing);

/// The velocity tool: where each selected body would fly, for 8 s under the panel's gravity, and for the first of them
/// the handle.
/// @param velocityScale  metres per second in one metre
void drawVelocityTool(const Scene& scene, double velocityScale, const DrawStyle& style, Drawing& drawing);

/// Where a body has been: a line that fades towards the oldest of its positions.
/// @param path  composition pixels, the oldest first; points that are not finite are left out
void drawTrail(std::span<const b2Vec2> path, Rgba color, const DrawStyle& style, Drawing& drawing);

} // namespace jostle
