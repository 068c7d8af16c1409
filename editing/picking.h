#pragma once

#include "simulation/body_sample.h"
#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <cstdint>
#include <span>

namespace jostle {

/// The topmost body at a point of the world.
/// @param point    metres
/// @param samples  where the bodies stand, one for each record; empty: as in the world
/// @return the record's index, or -1; bodies that are not `selectable` are seen through
[[nodiscard]] std::int32_t pickBody(const Scene& scene, b2Vec2 point, std::span<const BodySample> samples = {});

} // namespace jostle
