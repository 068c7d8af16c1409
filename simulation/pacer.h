#pragma once

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

} // namespace jostle
