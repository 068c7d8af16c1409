#pragma once

#include <string>
#include <vector>

namespace jostle::standalone {

struct OpenOptions {
    std::string input;
    std::string animation;         ///< identifier in an archive; empty for the first
    std::string settings;          ///< settings file; empty: none
    std::vector<std::string> sets; ///< KEY=VALUE
};

/// Shows the simulation of a Lottie file in the plug-in's window, until it is closed. The file stays as it is.
/// @return an ExitStatus; a failure comes with a line on standard error
[[nodiscard]] int runOpen(const OpenOptions& options);

} // namespace jostle::standalone
