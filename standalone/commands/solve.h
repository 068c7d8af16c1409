#pragma once

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Simulates a Lottie file and writes the result beside the target, then over it.
/// @return an ExitStatus; anything but exitDone comes with a line on standard error, and no file was changed
[[nodiscard]] int runSolve(const SolveOptions& options);

} // namespace jostle::standalone
