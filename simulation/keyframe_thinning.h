#pragma once

#include <box2d/b2_math.h>

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace jostle {

/// Whether two positions in pixels count as different. The limit stands on the squared distance, so that it is about
/// 0.032 pixels, while two floats are compared as they are.
[[nodiscard]] inline bool vectorsDiffer(b2Vec2 a, b2Vec2 b) {
    return (a - b).LengthSquared() > 0.001f;
}

/// Whether two single values (degrees, or one coordinate in pixels) count as different.
[[nodiscard]] inline bool floatsDiffer(float a, float b) {
    return std::abs(a - b) > 0.001f;
}

/// Which samples become keyframes.
///
/// The first always does. One between does if the samples before and after it differ, so that both ends of a rest
/// keep their keys. The last does if it differs from the one before it.
///
/// @param samples  one value per frame, n >= 0
/// @param differ   whether two samples count as different
/// @param room     for the result, to be used again for the next samples
/// @return indices into `samples`, rising; empty only if `samples` is
template<class T, class Differ>
[[nodiscard]] std::span<const std::size_t> keyframeIndices(std::span<const T> samples, Differ differ,
                                                           std::vector<std::size_t>& room) {
    if (samples.empty()) {
        return {};
    }
    const std::size_t last = samples.size() - 1;
    if (room.size() < samples.size()) {
        room.resize(samples.size());
    }
    std::size_t* const indices = room.data();
    indices[0] = 0;
    std::size_t count = 1;
    // Each is written down and then counted or not: of bodies that barely move nobody could foresee a branch.
    for (std::size_t i = 1; i < last; ++i) {
        indices[count] = i;
        count += differ(samples[i + 1], samples[i - 1]) ? 1 : 0;
    }
    if (last > 0 && differ(samples[last], samples[last - 1])) {
        indices[count++] = last;
    }
    return {indices, count};
}

} // namespace jostle
