#pragma once

#include <optional>
#include <string>

#include "standalone/commands/options.h"
#include "standalone/commands/refusal.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// First and last baked frame.
struct FrameRange {
    int first = 0;
    int last = 0;
};

/// The same text for any two ways to name a file, be it there or not.
[[nodiscard]] std::string fileIdentity(const std::string& path);

/// A file in the input's folder: its name with something after it, before the extension.
[[nodiscard]] std::string besideInput(const std::string& input, const std::string& suffix);

/// Whether a result may go there: not over the input.
[[nodiscard]] std::optional<Refusal> checkOutput(const std::string& input, const std::string& output);

/// Where the result goes: what the options say, else beside the input.
/// @param output  receives the path
[[nodiscard]] std::optional<Refusal> choosePaths(const SolveOptions& options, std::string& output);

/// Which frames are baked: what the options say, else the composition's work area without what lies before frame 0.
/// @param range  receives them
[[nodiscard]] std::optional<Refusal> chooseRange(const SolveOptions& options, const Composition& composition,
                                                 FrameRange& range);

} // namespace jostle::standalone
