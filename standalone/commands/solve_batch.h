#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/commands/options.h"
#include "standalone/commands/solve_plan.h"

namespace jostle::standalone {

/// Does what the user asked `solve` for: one file, several, or one with a grid of settings.
/// @return an ExitStatus; with several files exitFailed if any of them failed
[[nodiscard]] int runSolveRequest(const SolveRequest& request);

/// Where each of several results goes: its input's name in the folder, without a folder where a single one would go.
/// @param outputs  receives a path for each input
/// @return why not: a result would fall on another, or on an input
[[nodiscard]] std::optional<Refusal> chooseOutputs(const SolveRequest& request, std::vector<std::string>& outputs);

/// Makes a folder for results, and those above it.
/// @return nothing if it is there
[[nodiscard]] std::optional<Refusal> makeFolder(const std::string& path);

} // namespace jostle::standalone
