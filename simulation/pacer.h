#pragma once

#include <cstdint>
#include <functional>

namespace jostle {

/// Keeps a running clock from going faster than it should. Called once in each running tick.
class Pacer {
public:
    virtual ~Pacer() = default;

    /// Returns when the tick may go on.
    /// @param fps           frames per second of the composition
    /// @param isSingleStep  the tick stands alone, so that the time since the last one means nothing
    virtual void pace(double fps, bool isSingleStep) = 0;
};

/// Never waits: for the command line, tests and benchmarks.
class FreePacer final : public Pacer {
public:
    void pace(double, bool) override {}
};

/// Waits off what is left of a frame, so that a window plays no faster than real time; a slow scene shows a lower rate.
class WallPacer final : public Pacer {
public:
    /// Milliseconds by the wall clock; may wrap around, as only differences count.
    using Now = std::function<std::int32_t()>;
    /// Blocks for some milliseconds, at least 0.
    using Sleep = std::function<void(int)>;

    /// On the system's clock, blocking the calling thread.
    WallPacer();
    WallPacer(Now now, Sleep sleep);

    void pace(double fps, bool isSingleStep) override;

    /// Frames per second at the last tick, from 0 to that of the composition. 0 before the first.
    [[nodiscard]] float rate() const { return rate_; }

private:
    Now now_;
    Sleep sleep_;
    std::int32_t lastTickMs_ = 0; ///< 0 means none yet
    float rate_ = 0.0f;
};

/// How often a timer that drives the tick should fire: about a fifth faster than the composition, since the tick waits
/// off the difference.
/// @param fps  above 0
/// @return whole milliseconds
[[nodiscard]] int tickIntervalMs(double fps);

} // namespace jostle
