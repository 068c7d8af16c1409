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

/// From 0 to 255 each, as colour dialogs give them.
struct ByteColor {
    int red = 0;
    int green = 0;
    int blue = 0;

    bool operator==(const ByteColor&) const = default;
};

/// Multiplied by 255 and truncated, which loses a fraction: 0.33 gives 84.
[[nodiscard]] constexpr ByteColor byteColor(const Rgb& color) {
    const auto channel = [](float value) { return static_cast<int>(static_cast<double>(value) * 255.0); };
    return {channel(color[0]), channel(color[1]), channel(color[2])};
}

} // namespace jostle
