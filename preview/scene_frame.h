#pragma once

#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <cstddef>
#include <span>

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
    /// The frame that the world stands at, which decides which layers are out of time. Below 0: as the clock's last
    /// tick left them, which was the frame before unless the clock stands still.
    int frame = -1;
};

/// Whether a body's layer has not begun or has ended on the frame, or the body is dead.
[[nodiscard]] bool isOutOfTime(const SceneFrame& frame, std::size_t index);

/// Where a record's body stands on the frame, metres and radians. Its record must have a body.
[[nodiscard]] b2Transform placeOf(const SceneFrame& frame, std::size_t index);

} // namespace jostle
