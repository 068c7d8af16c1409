#pragma once

#include <optional>

#include "geometry/assemble.h"
#include "geometry/primitives.h"
#include "host/layer.h"
#include "host/mesh_options.h"

namespace jostle {

/// What the contents of a shape layer come to. Place, angle and anchor are those of the last element read.
struct VectorShapes {
    bool hasOutlines = false;    ///< whether any element had an outline; the mesh is empty otherwise
    BodyMesh mesh;               ///< metres around `position`
    std::optional<Color> color;  ///< of the last fill or stroke
    b2Vec2 position{0.0f, 0.0f}; ///< composition pixels
    float angle = 0.0f;          ///< radians; of the groups around it
    bool isPath = false;         ///< a free path, whose vertices have the layer's scale and rotation already
    b2Vec2 anchor{0.0f, 0.0f};   ///< layer pixels; of a free path only
};

/// Reads a shape layer's elements at time 0, in the order of its streams. Hidden ones count; what changes outlines,
/// such as trimming and repeating, does not.
///
/// @return what was read until the host refused an answer
[[nodiscard]] VectorShapes readShapes(HostChain& chain, const Layer& layer, const LayerFrame& frame,
                                      const MeshOptions& options);

} // namespace jostle
