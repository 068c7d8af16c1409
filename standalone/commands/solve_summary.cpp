#include "standalone/commands/solve_summary.h"

#include <cstdint>
#include <cstdio>

#include "standalone/commands/json_line.h"

namespace jostle::standalone {

namespace {

void printJson(const SolveSummary& summary) {
    printJsonLine({{"input", summary.input}, {"output", summary.output}},
                  {{"bodies", static_cast<std::uint64_t>(summary.bodies)},
                   {"passedOver", static_cast<std::uint64_t>(summary.passedOver)},
                   {"startFrame", static_cast<std::uint64_t>(summary.range.first)},
                   {"endFrame", static_cast<std::uint64_t>(summary.range.last)},
                   {"keyframes", summary.keyframes}});
}

void printSentence(const SolveSummary& summary) {
    if (summary.bodies == 0) {
        std::printf("%s: nothing to simulate, so it is the input as it was; \"jostle inspect\" tells why\n",
                    summary.output.c_str());
        return;
    }
    std::printf("%s: %d %s over frames %d to %d, %zu keyframes", summary.output.c_str(), summary.bodies,
                summary.bodies == 1 ? "body" : "bodies", summary.range.first, summary.range.last, summary.keyframes);
    if (summary.passedOver > 0) {
        std::printf("; %d %s no body (\"jostle inspect\" tells why)", summary.passedOver,
                    summary.passedOver == 1 ? "layer is" : "layers are");
    }
    std::printf("\n");
}

} // namespace

std::size_t bakedKeyCount(const Composition& composition) {
    std::size_t count = 0;
    for (const std::unique_ptr<Layer>& layer : composition.layers) {
        const Transform& transform = layer->transform;
        for (const Stream* stream : {&transform.anchor, &transform.position, &transform.dimensions->x,
                                     &transform.dimensions->y, &transform.scale, &transform.rotation}) {
            count += stream->changed && isAnimated(*stream) ? stream->keys.size() : 0;
        }
    }
    return count;
}

void printSummary(const SolveSummary& summary, const SolveOptions& options) {
    if (options.json) {
        printJson(summary);
    } else if (!options.quiet) {
        printSentence(summary);
    }
}

} // namespace jostle::standalone
