#pragma once

#include <algorithm>
#include <cmath>

namespace jostle {

/// A slider of the panels: whole numbers, of which `scale` make a unit of the value.
struct SliderRange {
    int least;
    int greatest;
    double scale;

    /// Where the slider stands after it was given a value: the fraction is dropped, and it stops at its ends.
    [[nodiscard]] constexpr int positionOf(double value) const {
        const double position = value * scale;
        return position >= greatest ? greatest : position >= least ? static_cast<int>(position) : least;
    }

    /// The value that is left of one put into the slider.
    [[nodiscard]] constexpr double through(double value) const { return positionOf(value) / scale; }
};

inline constexpr SliderRange zoomSld{1, 2000, 1};
inline constexpr SliderRange timeDividerSld{1, 5000, 1000};
inline constexpr SliderRange substepsSld{1, 10, 1};
inline constexpr SliderRange collisionToleranceSld{1, 100000, 1000};
inline constexpr SliderRange gravityMagnitudeSld{0, 50000, 1000};
inline constexpr SliderRange gravityDirectionSld{0, 360000, 1000};

/// What number boxes take at most, all of them.
inline constexpr double greatestInBox = 16777200;

inline constexpr double leastTimeDivider = 0.01;
inline constexpr double leastTolerance = 0.001;

/// The value that is left of one put into the number box of the time divider: three decimals.
[[nodiscard]] inline double throughTimeDividerBox(double value) {
    return std::clamp(std::round(value * 1000.0) / 1000.0, leastTimeDivider, greatestInBox);
}

} // namespace jostle
