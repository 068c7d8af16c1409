#pragma once

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Simulates a Lottie file and writes the result beside the target, then over it; or only tries whether it takes some
/// settings.
/// @return an ExitStatus; anything but exitDone comes with a line on standard error, and no file was changed
[[nodiscard]] int runSolve(const SolveOptions& options);

} // namespace jostle::standalone
