#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/layer_import.h"
#include "persistence/layer_access.h"
#include "persistence/settings_reader.h"
#include "standalone/commands/solve_plan.h"

namespace jostle::standalone {

/// What settings need of the layers of an import.
/// @param messages  of reading a layer anew; may be null
[[nodiscard]] LayerAccess layerAccess(const HostContext& context, Scene& scene, const ImportReport& report,
                                      MessageSink* messages);

/// Lays a settings file over an imported scene, and prints what is wrong with it on standard error.
/// @param path   UTF-8
/// @param quiet  nothing is said of a file that is no use but does no harm
/// @return whether the command may go on
[[nodiscard]] bool applySettingsFile(const HostContext& context, const std::string& path, const SettingsTarget& target,
                                     bool quiet);

/// Writes settings given as KEY=VALUE into an imported scene, and reads the layers anew whose mesh they change.
/// @param option  that they were given with, such as "--set"
/// @return nothing if all were set; else what is wrong with one
[[nodiscard]] std::optional<Refusal> applySets(const std::string& option, const std::vector<std::string>& sets,
                                               const ImportReport& report, const SettingsTarget& target);

} // namespace jostle::standalone
