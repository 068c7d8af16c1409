#pragma once

#include <cstdint>
#include <functional>

namespace jostle {

/// What settings need of the composition's layers while they are applied to a scene.
struct LayerAccess {
    std::int32_t layerCount = 0; ///< layers that gravity can be taken from: all of the composition
    /// Reads the layer of a record anew with its present mesh settings, as `refreshBody` of the host room does. Without
    /// it bodies keep their shapes.
    std::function<void(std::int32_t bodyIndex)> refreshBody;
};

} // namespace jostle
