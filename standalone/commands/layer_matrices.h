#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/document/composition.h"

namespace jostle::standalone {

/// Frames from a list such as "0,12.5,30-60" or "all", which stands for the whole frames of the work area.
/// @return nothing if it is no such list, or one of more than a million frames
[[nodiscard]] std::optional<std::vector<double>> parseFrameList(std::string_view text, const Composition& composition);

/// Where each layer stands at composition frames, as a JSON object: `frames`, and of each layer its place from 1, its
/// identifier, its name, whether it is a 3D layer, and for each frame [a, b, c, d, x, y]: the point (u, v) of the
/// layer stands at (a u + c v + x, b u + d v + y) in composition pixels.
[[nodiscard]] std::string matricesText(const Composition& composition, const std::vector<double>& frames);

} // namespace jostle::standalone
