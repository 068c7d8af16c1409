#pragma once

#include "preview/draw_list.h"
#include "preview/draw_style.h"
#include "preview/view_transform.h"
#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <cstdint>
#include <span>
#include <vector>

namespace jostle {

/// Where a body stood on a frame that is not the world's present one, and how it was.
struct BodyPose {
    b2Vec2 position{0.0f, 0.0f}; ///< metres
    float angle = 0.0f;          ///< radians
    bool outOfTime = false;
    bool dormant = false;
};

/// What one frame is drawn from.
struct SceneFrame {
    const Scene& scene;                ///< its bodies built; one without any body in a world is drawn empty
    std::span<const BodyPose> poses{}; ///< one for each record in place of what the world holds; empty: the world's
};

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
    /// One edge of a body's outline: which fixture of its list and which of its corners it starts at.
    struct Edge {
        std::uint32_t fixture = 0;
        std::uint32_t corner = 0;
    };
    struct Outline {
        std::uint64_t signature = 0; ///< of the shapes that the edges were found in
        bool known = false;
        std::vector<Edge> edges;
    };

    std::vector<Outline> outlines_; ///< by record
};

} // namespace jostle
