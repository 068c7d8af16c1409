#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulation/scene.h"

namespace jostle {

/// One setting given on the command line, as in `floor.type=Static` or `gravity.magnitude=5`.
struct SettingOverride {
    std::string target;    ///< "solver", "gravity", or which bodies: a layer's name, its number from 1, or "*"
    std::string attribute; ///< as in the settings tables
    std::string value;
};

/// A layer as the user knows it, in the order of the composition.
struct NamedLayer {
    std::string name;      ///< as shown
    std::string whyNoBody; ///< empty if it became a body
};

/// Splits KEY=VALUE at the last "=", and KEY at its last ".", so that names of layers may hold both.
/// @return nothing if the text has no "=" or no "."
[[nodiscard]] std::optional<SettingOverride> parseOverride(std::string_view text);

/// Writes one setting into the scene, latches and flags included. Bodies whose mesh settings it changes are for the
/// caller to mesh anew, see MeshSettings.
///
/// @param layers  all layers of the composition, so that the numbers of Scene::layerIndices are places in it
/// @return nothing if it was set; else a message that says what is wrong and lists what may have been meant. The
///         scene is then as it was.
[[nodiscard]] std::optional<std::string> applyOverride(const SettingOverride& setting, Scene& scene,
                                                       std::span<const NamedLayer> layers);

} // namespace jostle
