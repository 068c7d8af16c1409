#pragma once

#include <span>
#include <string>

#include "persistence/quick_preset.h"
#include "simulation/scene.h"

namespace jostle {

/// Which settings files we write, and read without a warning.
constexpr std::int32_t settingsMajorVersion = 1;
constexpr std::int32_t settingsMinorVersion = 2;

/// A setup as the text of a settings file: XML 1.0, everything in attributes.
[[nodiscard]] std::string settingsText(const Scene& scene, std::span<const SnapshotStrip::Item> snapshots);

} // namespace jostle
