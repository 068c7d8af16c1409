#pragma once

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Writes the setup of a composition as a settings file.
/// @return an ExitStatus
[[nodiscard]] int runSettings(const SettingsOptions& options);

} // namespace jostle::standalone
