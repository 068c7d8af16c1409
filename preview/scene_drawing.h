#pragma once

#include "preview/body_shapes.h"
#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "preview/scene_frame.h"
#include "preview/view_transform.h"

namespace jostle {

/// Fills a drawing with all that belongs to the scene: bodies in their states, meshes, boxes, axes, joints with their
/// glyphs, links of `AEmatic` bodies, the composition's bounds. Overlays of tools come after it, see overlays.h.
///
/// Keeps the outlines of bodies, found from their fixtures, from frame to frame, and finds them anew where the shapes
/// have changed; so one instance serves one scene. It only reads the scene and its world. Once all arrays have grown
/// nothing is allocated.
class SceneDrawing {
public:
    /// @param view     how large things are seen, which decides the lengths of dashes and signs
    /// @param drawing  what it held is dropped
    void draw(const SceneFrame& frame, const ViewOptions& options, const DrawStyle& style, const ViewTransform& view,
              Drawing& drawing);

private:
    void drawBodies(const SceneFrame& frame, const ViewOptions& options, const DrawStyle& style, float unit,
                    Drawing& drawing);

    BodyShapes shapes_;
};

} // namespace jostle
