#pragma once

#include "geometry/assemble.h"
#include "host/layer.h"
#include "host/mesh_options.h"

namespace jostle {

/// What masks are measured by.
struct MaskFrame {
    b2Vec2 layerAnchor{0.0f, 0.0f}; ///< layer pixels
    b2Vec2 layerScale{1.0f, 1.0f};
    double pixelAspect = 1.0; ///< of the layer
};

/// The shapes of all masks of a layer at time 0, whatever their mode, opacity or feather. A single mask may be a circle
/// or a box; of several all are meshed.
///
/// @return what was read until the host refused an answer
[[nodiscard]] BodyMesh readMasks(HostChain& chain, const Layer& layer, const MaskFrame& frame,
                                 const MeshOptions& options);

} // namespace jostle
