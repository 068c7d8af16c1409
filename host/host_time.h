#pragma once

#include <cstdint>

#include "host/suites.h"

namespace jostle {

/// Time 0 on a scale of 1: the first frame of the composition, at which layers are imported.
inline constexpr A_Time sampleTime{0, 1};

/// A host time of scale 100000, its value rounded to the nearest integer, halves away from zero. Seconds that are
/// not finite or do not fit give the nearest time that does.
[[nodiscard]] A_Time hostTimeOf(double seconds);

/// Time of a frame, exact wherever it fits the 32 bits of the value.
/// @param frameDuration  duration of one frame, of a scale above 0
[[nodiscard]] A_Time timeOfFrame(A_Time frameDuration, int frame);

/// A time in frames; 0 if one of the two has a scale of 0 or the duration is 0.
[[nodiscard]] double framesOf(A_Time time, A_Time frameDuration);

/// Cuts frames towards zero. What a rounding left just beside a whole frame counts as that frame.
[[nodiscard]] int wholeFrames(double frames);

/// As `wholeFrames`, but rounds up.
[[nodiscard]] int framesUpTo(double frames);

} // namespace jostle
