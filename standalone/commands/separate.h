#pragma once

#include <string>

#include "host/separation.h"
#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Splits the layers of a Lottie file that have several masks or groups, and writes the result.
/// @return an ExitStatus; a failure comes with a line on standard error, and no file was changed
[[nodiscard]] int runSeparate(const SeparateOptions& options);

/// Splits all layers of the active composition that can be.
/// @param messages  null if nobody is to be told
[[nodiscard]] SeparationReport separateAll(const HostContext& context, MessageSink* messages);

/// Prints on standard error which layers' groups were separated from their masks.
void printUnmasked(const SeparationReport& report, const std::string& input);

} // namespace jostle::standalone
