#pragma once

#include <optional>
#include <string>

#include "standalone/commands/options.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// First and last baked frame.
struct FrameRange {
    int first = 0;
    int last = 0;
};

/// Why a run cannot be made as asked for.
struct Refusal {
    std::string about; ///< the option or the file
    std::string message;
};

/// Where the result goes: what the options say, else beside the input.
/// @param output  receives the path
[[nodiscard]] std::optional<Refusal> choosePaths(const SolveOptions& options, std::string& output);

/// Which frames are baked: what the options say, else the composition's work area without what lies before frame 0.
/// @param range  receives them
[[nodiscard]] std::optional<Refusal> chooseRange(const SolveOptions& options, const Composition& composition,
                                                 FrameRange& range);

} // namespace jostle::standalone
