#pragma once

#include <cstddef>
#include <string>

#include "standalone/commands/options.h"
#include "standalone/commands/solve_plan.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// What a run of `solve` came to.
struct SolveSummary {
    std::string input;
    std::string output;
    int bodies = 0;
    int passedOver = 0; ///< layers that are no body
    FrameRange range;
    std::size_t keyframes = 0; ///< written
};

/// Number of keyframes in the transforms that differ from the file.
[[nodiscard]] std::size_t bakedKeyCount(const Composition& composition);

/// Prints it on standard output: as a sentence, as JSON, or not at all.
void printSummary(const SolveSummary& summary, const SolveOptions& options);

} // namespace jostle::standalone
