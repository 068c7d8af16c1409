#pragma once

#include <cstdint>

#include "host/suites.h"

namespace jostle {

/// Time 0 on a scale of 1: the first frame of the composition, at which layers are imported.
inline constexpr A_Time sampleTime{0, 1};

/// A host time of scale 100000, its value rounded to the nearest integer, halves away from zero. Seconds that are
/// not finite or do not fit give the nearest time that does.
[[nodiscard]] A_Time hostTimeOf(double seconds);

/// As `timeOfFrame`, where the value has to be made smaller.
[[nodiscard]] A_Time reducedTimeOfFrame(A_Time frameDuration, int frame);

/// Time of a frame, exact wherever it fits the 32 bits of the value.
/// @param frameDuration  duration of one frame, of a scale above 0
[[nodiscard]] inline A_Time timeOfFrame(A_Time frameDuration, int frame) {
    // In long rows for the keys of one stream, and nearly always short enough.
    const std::int64_t value = static_cast<std::int64_t>(frameDuration.value) * frame;
    if (value == static_cast<std::int32_t>(value))
        return {static_cast<std::int32_t>(value), frameDuration.scale};
    return reducedTimeOfFrame(frameDuration, frame);
}

/// A time in frames; 0 if one of the two has a scale of 0 or the duration is 0.
[[nodiscard]] double framesOf(A_Time time, A_Time frameDuration);

/// Cuts frames towards zero. What a rounding left just beside a whole frame counts as that frame.
[[nodiscard]] int wholeFrames(double frames);

/// As `wholeFrames`, but rounds up.
[[nodiscard]] int framesUpTo(double frames);

} // namespace jostle
