#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace jostle::standalone {

/// A time as the host's suites carry it: value / scale seconds.
struct HostTime {
    std::int32_t value = 0;
    std::uint32_t scale = 1;
};

/// Turns frames into host times and back without losing one.
///
/// Frame rates are stored with sixteen fractional bits and the times beside them were made from exact durations, so
/// whole frames come out a little off. Values near an integer are that integer.
class FrameClock {
public:
    FrameClock() = default;
    /// @param frameRate  frames per second, above 0
    explicit FrameClock(double frameRate);

    [[nodiscard]] double frameRate() const { return frameRate_; }

    /// Duration of one frame: the least multiplier of 1, 10, 100, 1000 that makes the rate nearly whole, else 65536,
    /// over that product.
    [[nodiscard]] HostTime frameDuration() const { return duration_; }

    /// Time of a frame; exact for whole frames as long as it fits 32 bits, else on a coarser scale.
    [[nodiscard]] HostTime timeOf(double frame) const;

    /// Frame at a time, snapped. A scale of 0 gives frame 0.
    [[nodiscard]] double frameAt(HostTime time) const {
        if (time.scale == 0)
            return 0;
        const std::optional<double> whole = wholeFrameAt(time);
        return whole ? *whole : snapBetween(inFrames(time));
    }

    /// The same if the frame is whole without being snapped, as nearly every one is; else nothing. Calls nothing.
    [[nodiscard]] std::optional<double> wholeFrameAt(HostTime time) const {
        if (time.scale == duration_.scale && duration_.value == 1)
            return time.value;
        if (const double frame = inFrames(time); isWhole(frame)) // not with a scale of 0
            return frame;
        return std::nullopt;
    }

    /// The nearest integer if `frame` differs from it by at most 0.001, or 2e-6 times itself; else `frame`.
    [[nodiscard]] static double snap(double frame) {
        return isWhole(frame) ? frame : snapBetween(frame); // rounding is a call
    }

private:
    [[nodiscard]] static bool isWhole(double frame) {
        constexpr double most = 2147483647;
        return std::abs(frame) < most && static_cast<double>(static_cast<std::int32_t>(frame)) == frame;
    }
    [[nodiscard]] static double snapBetween(double frame);

    // By the duration and not by the rate, so that what timeOf gave comes back however far the two differ.
    [[nodiscard]] double inFrames(HostTime time) const {
        const double numerator = static_cast<double>(time.value) * duration_.scale;
        const double denominator = static_cast<double>(time.scale) * duration_.value;
        return numerator / denominator;
    }

    double frameRate_ = 25;
    HostTime duration_{1, 25};
};

} // namespace jostle::standalone
