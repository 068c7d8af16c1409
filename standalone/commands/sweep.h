#pragma once

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Solves one file with each combination of the values that settings are to take, and writes an index of the results
/// beside them: sweep.json for programs, sweep.html for a browser.
/// @return an ExitStatus; exitFailed if any result could not be made, the others are there then
[[nodiscard]] int runSweep(const SolveRequest& request);

} // namespace jostle::standalone
