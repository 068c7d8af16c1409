#pragma once

#include <array>

namespace jostle {

/// Each from 0 to 1.
struct Color {
    double alpha = 1.0;
    double red = 0.5;
    double green = 0.5;
    double blue = 0.5;
};

/// Red, green and blue from 0 to 1, as the preview takes them.
using Rgb = std::array<float, 3>;

} // namespace jostle
