#pragma once

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Prints which layers of a Lottie file become bodies, of what shape, and why the others do not.
/// @return an ExitStatus; a failure comes with a line on standard error
[[nodiscard]] int runInspect(const InspectOptions& options);

} // namespace jostle::standalone
