#pragma once

#include <algorithm>

#include "simulation/scene.h"

namespace jostle {

/// What a body's record says about how its outlines become shapes.
struct MeshOptions {
    int subdivisions = 4; ///< of curves; 2 leaves outlines as they are
    bool useConvexHull = false;
};

/// @param body  its `meshPrecision` counts from 0 to 1000
[[nodiscard]] inline MeshOptions meshOptionsOf(const BodyRecord& body) {
    return {std::clamp(body.meshPrecision, 0, 1000) + 2, body.useConvexHull};
}

} // namespace jostle
