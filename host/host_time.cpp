#include "host/host_time.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace jostle {

namespace {

constexpr std::uint32_t samplingScale = 100000;
// Frames are quotients of two inexact times: this much, in frames, is taken for rounding.
constexpr double frameGuard = 1e-9;

std::int32_t fitted(double value) {
    constexpr double least = std::numeric_limits<std::int32_t>::min();
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, least, most));
}

} // namespace

A_Time hostTimeOf(double seconds) {
    return {fitted(std::round(seconds * samplingScale)), samplingScale};
}

A_Time reducedTimeOfFrame(A_Time frameDuration, int frame) {
    std::int64_t value = static_cast<std::int64_t>(frameDuration.value) * frame;
    std::int64_t scale = frameDuration.scale;
    const auto tooLong = [&] { return value != static_cast<std::int32_t>(value); };
    if (tooLong()) {
        const std::int64_t divisor = std::gcd(value, scale);
        value /= divisor;
        scale /= divisor;
    }
    while (tooLong() && scale > 1) {
        value /= 2;
        scale /= 2;
    }
    return {fitted(static_cast<double>(value)), static_cast<A_u_long>(scale)};
}

double framesOf(A_Time time, A_Time frameDuration) {
    if (time.scale == 0 || frameDuration.scale == 0 || frameDuration.value == 0)
        return 0.0;
    return static_cast<double>(time.value) * frameDuration.scale /
           (static_cast<double>(time.scale) * frameDuration.value);
}

int wholeFrames(double frames) {
    return fitted(frames + std::copysign(frameGuard, frames));
}

int framesUpTo(double frames) {
    return fitted(std::ceil(frames - frameGuard));
}

} // namespace jostle
