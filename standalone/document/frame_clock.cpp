#include "standalone/document/frame_clock.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace jostle::standalone {

namespace {

constexpr double wholeTolerance = 0.003; ///< how far a multiple of the rate may be from an integer
constexpr double largestValue = std::numeric_limits<std::int32_t>::max();
constexpr double largestScale = std::numeric_limits<std::uint32_t>::max();

HostTime durationFor(double frameRate) {
    for (const int multiplier : {1, 10, 100, 1000}) {
        const double product = frameRate * multiplier;
        const double whole = std::round(product);
        if (whole >= 1 && whole <= largestScale && std::abs(product - whole) <= wholeTolerance)
            return {multiplier, static_cast<std::uint32_t>(whole)};
    }
    const double product = std::round(frameRate * 65536);
    if (product >= 1 && product <= largestScale)
        return {65536, static_cast<std::uint32_t>(product)};
    // Out of any real rate's range: as near as the two integers allow.
    if (frameRate > 1)
        return {1, static_cast<std::uint32_t>(std::min(std::round(frameRate), largestScale))};
    return {static_cast<std::int32_t>(std::min(std::round(1 / frameRate), largestValue)), 1};
}

/// The fraction numerator / denominator on the largest scale that keeps its value within 32 bits.
HostTime coarse(double numerator, double denominator) {
    const double seconds = numerator / denominator;
    const double scale = std::clamp(std::floor(largestValue / std::max(std::abs(seconds), 1e-300)), 1.0, denominator);
    const double value = std::clamp(std::round(seconds * scale), -largestValue, largestValue);
    return {static_cast<std::int32_t>(value), static_cast<std::uint32_t>(scale)};
}

} // namespace

FrameClock::FrameClock(double frameRate) : frameRate_{frameRate}, duration_{durationFor(frameRate)} {}

HostTime FrameClock::timeOf(double frame) const {
    if (!std::isfinite(frame))
        return {0, duration_.scale};
    const double snapped = snap(frame);
    const double value = snapped * duration_.value;
    const double scale = duration_.scale;
    // Whole frames are exact on the clock's own scale, others need a finer one.
    for (const double finer : {1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0}) {
        const double whole = std::round(value * finer);
        if (std::abs(whole) > largestValue || scale * finer > largestScale)
            break;
        if (std::abs(value * finer - whole) < 1e-6)
            return {static_cast<std::int32_t>(whole), static_cast<std::uint32_t>(scale * finer)};
    }
    if (std::abs(value) < 9e15 && value == std::round(value)) {
        const auto divisor = std::gcd(static_cast<std::int64_t>(value), static_cast<std::int64_t>(duration_.scale));
        const double reduced = value / static_cast<double>(divisor);
        if (std::abs(reduced) <= largestValue)
            return {static_cast<std::int32_t>(reduced), static_cast<std::uint32_t>(duration_.scale / divisor)};
        return coarse(value, scale);
    }
    const double finest = std::floor(std::min(largestScale / scale, largestValue / std::max(std::abs(value), 1.0)));
    return coarse(value * std::max(finest, 1.0), scale * std::max(finest, 1.0));
}

double FrameClock::snapBetween(double frame) {
    const double whole = std::round(frame);
    const double tolerance = std::max(0.001, 2e-6 * std::abs(frame));
    return std::abs(frame - whole) <= tolerance ? whole : frame;
}

} // namespace jostle::standalone
