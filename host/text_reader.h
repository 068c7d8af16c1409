#pragma once

#include "geometry/assemble.h"
#include "host/layer.h"
#include "host/mesh_options.h"

namespace jostle {

/// The shapes of a text layer's glyphs at time 0; the inside of a letter stays open.
///
/// @param world        the layer's anchor in composition pixels, before the pixel aspect ratio
/// @param pixelAspect  of the composition
/// @return one group; without pieces for a text without outlines. What was read until the host refused an answer
[[nodiscard]] BodyMesh readTextOutlines(HostChain& chain, const Layer& layer, b2Vec2 world, double pixelAspect,
                                        const MeshOptions& options);

} // namespace jostle
