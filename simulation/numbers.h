#pragma once

#include "simulation/scene.h"

#include <box2d/b2_body.h>

#include <algorithm>
#include <cmath>

namespace jostle {

/// The largest number that a panel takes. Values up to it go to the physics library as they are. Records filled by hand
/// or from a file may hold any float, whose products inside the library overflow; the fourth power of this one does
/// not.
constexpr float settingLimit = 16777200.0f;

/// A value kept within limits; what is not a number counts as 0.
[[nodiscard]] inline float bounded(float value, float low = -settingLimit, float high = settingLimit) {
    return std::clamp(std::isnan(value) ? 0.0f : value, low, high);
}

[[nodiscard]] inline b2Vec2 bounded(b2Vec2 value, float limit = settingLimit) {
    return {bounded(value.x, -limit, limit), bounded(value.y, -limit, limit)};
}

/// A force on a body, in newtons, kept below what no body could follow: the library moves none by more than 2 m in a
/// step. What is not a number counts as 0.
[[nodiscard]] inline b2Vec2 boundedForce(const b2Body& body, b2Vec2 force) {
    constexpr float greatestAcceleration = 1.0e9f; // metres per second squared
    const float limit = greatestAcceleration * body.GetMass();
    const float largest = std::max(std::abs(force.x), std::abs(force.y));
    // Shortened as a whole, so that it keeps its direction.
    return largest > limit && std::isfinite(largest) ? (limit / largest) * force : bounded(force, limit);
}

/// The vector of a length, in any unit, and a direction in degrees, 0 being right and 90 down; worked out in floats.
[[nodiscard]] inline b2Vec2 polarVector(float length, float directionDegrees) {
    const float radians = degreesToRadians(bounded(directionDegrees));
    return {bounded(length) * std::cos(radians), bounded(length) * std::sin(radians)};
}

} // namespace jostle
