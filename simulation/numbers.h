#pragma once

#include "simulation/scene.h"

#include <algorithm>
#include <cmath>

namespace jostle {

/// The largest magnitude of anything handed to the physics library: metres, metres per second, radians per second,
/// degrees. Far beyond any composition, and small enough that no product inside the library overflows.
constexpr float worldLimit = 1.0e6f;

/// A value kept within limits; what is not a number counts as 0.
[[nodiscard]] inline float bounded(float value, float low = -worldLimit, float high = worldLimit) {
    return std::clamp(std::isnan(value) ? 0.0f : value, low, high);
}

[[nodiscard]] inline b2Vec2 bounded(b2Vec2 value, float limit = worldLimit) {
    return {bounded(value.x, -limit, limit), bounded(value.y, -limit, limit)};
}

/// The vector of a length, in any unit, and a direction in degrees, 0 being right and 90 down; worked out in floats.
[[nodiscard]] inline b2Vec2 polarVector(float length, float directionDegrees) {
    const float radians = degreesToRadians(bounded(directionDegrees));
    return {bounded(length) * std::cos(radians), bounded(length) * std::sin(radians)};
}

} // namespace jostle
