#include "standalone/commands/solve_plan.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace jostle::standalone {

namespace {

namespace fs = std::filesystem;

bool sameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return fileIdentity(a) == fileIdentity(b) || fs::equivalent(a, b, error);
}

int usableFrame(double frame) {
    return static_cast<int>(std::clamp(frame, 0.0, double{greatestFrame}));
}

} // namespace

std::string fileIdentity(const std::string& path) {
    // Only an absolute path becomes the same text for a file that is not there yet.
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(fs::absolute(path, error), error);
    return error ? path : canonical.string();
}

std::string besideInput(const std::string& input, const std::string& suffix) {
    const fs::path path(input);
    return (path.parent_path() / path.stem()).string() + suffix + path.extension().string();
}

std::optional<Refusal> checkOutput(const std::string& input, const std::string& output) {
    if (output.empty()) {
        return Refusal{"-o", "names no file"};
    }
    if (sameFile(output, input)) {
        return Refusal{output, "is the input itself; give another -o"};
    }
    return std::nullopt;
}

std::optional<Refusal> choosePaths(const SolveOptions& options, std::string& output) {
    output = options.output.value_or(options.inPlace ? options.input : besideInput(options.input, "-solved"));
    if (output.empty()) {
        return Refusal{"-o", "names no file"};
    }
    if (!options.inPlace && sameFile(output, options.input)) {
        return Refusal{output, "is the input itself; give --in-place to change it, or another -o"};
    }
    if (!options.samples.empty() && (sameFile(options.samples, output) || sameFile(options.samples, options.input))) {
        return Refusal{options.samples, "is the input or the result; give --samples another file"};
    }
    return std::nullopt;
}

std::optional<Refusal> chooseRange(const SolveOptions& options, const Composition& composition, FrameRange& range) {
    range.first = options.startFrame.value_or(usableFrame(std::floor(FrameClock::snap(composition.inFrame))));
    const int lastShown = usableFrame(std::ceil(FrameClock::snap(composition.outFrame)) - 1);
    // A start beyond the work area without an end bakes that one frame.
    range.last = options.endFrame.value_or(std::max(lastShown, range.first));
    const int lastOfAll = usableFrame(std::ceil(FrameClock::snap(composition.durationFrames)) - 1);
    if (range.first > lastOfAll) {
        return Refusal{"start frame " + std::to_string(range.first),
                       "lies after the composition's last frame, " + std::to_string(lastOfAll)};
    }
    if (range.first > range.last) {
        return Refusal{"start frame " + std::to_string(range.first),
                       "lies after the last frame to bake, " + std::to_string(range.last) + "; give a later --end"};
    }
    return std::nullopt;
}

} // namespace jostle::standalone
