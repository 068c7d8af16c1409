#pragma once

#include <array>
#include <cstddef>

#include "simulation/scene.h"

namespace jostle {

/// Red, green and blue from 0 to 255 of the labels 1 to 16, as the host sets them up. A user's own choice of colours is
/// in no suite that every host has.
inline constexpr std::array<std::array<int, 3>, 16> labelColors{{
    {181, 56, 56},   // red
    {228, 216, 76},  // yellow
    {169, 203, 199}, // aqua
    {229, 188, 201}, // pink
    {169, 169, 202}, // lavender
    {231, 193, 158}, // peach
    {179, 199, 179}, // sea foam
    {103, 125, 224}, // blue
    {74, 164, 76},   // green
    {142, 44, 154},  // purple
    {232, 146, 13},  // orange
    {127, 69, 42},   // brown
    {244, 109, 214}, // fuchsia
    {61, 162, 165},  // cyan
    {168, 150, 119}, // sandstone
    {30, 64, 30},    // dark green
}};

/// The colour of a label; grey for 0, which is no label, and for any number beyond 16.
[[nodiscard]] inline Color labelColor(int label) {
    if (label < 1 || label > static_cast<int>(labelColors.size()))
        return {1.0, 0.5, 0.5, 0.5};
    const auto& color = labelColors[static_cast<std::size_t>(label - 1)];
    return {1.0, color[0] / 255.0, color[1] / 255.0, color[2] / 255.0};
}

} // namespace jostle
