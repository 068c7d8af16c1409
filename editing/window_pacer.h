#pragma once

#include "simulation/pacer.h"

#include <utility>

namespace jostle {

/// Holds the clock to real time, but lets it run freely where frames are caught up with unseen.
class WindowPacer final : public Pacer {
public:
    explicit WindowPacer(WallPacer wall) : wall_(std::move(wall)) {}

    void setHeld(bool held) { held_ = held; }
    /// Frames per second at the last tick that was held.
    [[nodiscard]] float rate() const { return wall_.rate(); }

    void pace(double fps, bool isSingleStep) override {
        if (held_) {
            wall_.pace(fps, isSingleStep);
        }
    }

private:
    WallPacer wall_;
    bool held_ = true;
};

} // namespace jostle
