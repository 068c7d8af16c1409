#pragma once

#include "simulation/scene.h"

namespace jostle {

/// The times of one tick, all in seconds but for the divider.
struct TickTimes {
    double frameDuration = 0.0; ///< one frame of the composition
    double timeDivider = 1.0;   ///< how many ticks one frame of the host's animation takes
    double stepTime = 0.0;      ///< what the simulation advances by
    double simTime = 0.0;       ///< simulated time, at which layers are read
    double tickTime = 0.0;      ///< the tick's place on the composition's own axis
};

/// @param frame  ticks since the last restart; one less than the present tick's to read the tick before
[[nodiscard]] inline TickTimes tickTimes(const Scene& scene, int frame) {
    constexpr double leastDivider = 0.01;
    constexpr double longestStep = 1000.0;
    TickTimes times;
    times.frameDuration = scene.frameDurationSeconds();
    // Written so that a divider that is not a number gives the least one, and one far too large a step of 0 rather
    // than one whose inverse overflows in the physics library.
    times.timeDivider = scene.globals.timeDivider >= leastDivider ? scene.globals.timeDivider : leastDivider;
    const double stepTime = 1.0 / (times.timeDivider * scene.fps);
    times.stepTime = stepTime < 1.0e-12 ? 0.0 : (stepTime < longestStep ? stepTime : longestStep);
    times.simTime = frame * times.frameDuration / times.timeDivider;
    times.tickTime = frame * times.frameDuration;
    return times;
}

} // namespace jostle
