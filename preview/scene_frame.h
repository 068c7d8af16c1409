#pragma once

#include "simulation/body_sample.h"
#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <cstddef>
#include <span>

namespace jostle {

/// What one frame is drawn from.
struct SceneFrame {
    const Scene& scene; ///< its bodies built; one without any body in a world is drawn empty
    /// How the bodies stood, one for each record; empty: as they stand in the world.
    std::span<const BodySample> samples{};
    /// Which frame it is, which decides what is out of time. Below 0: as the clock's last tick left it, which was the
    /// frame before unless the clock stands still.
    int frame = -1;
};

/// Whether a body's layer has not begun or has ended on the frame, or the body is dead.
[[nodiscard]] bool isOutOfTime(const SceneFrame& frame, std::size_t index);

/// How a record's body stands on the frame. Its record must have a body.
[[nodiscard]] BodySample sampleOf(const SceneFrame& frame, std::size_t index);
/// The same as a transform, metres and radians.
[[nodiscard]] b2Transform placeOf(const SceneFrame& frame, std::size_t index);

} // namespace jostle
