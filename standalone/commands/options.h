#pragma once

#include <optional>
#include <string>
#include <vector>

namespace jostle::standalone {

/// What the program returns to the shell.
enum ExitStatus : int { exitDone = 0, exitFailed = 1, exitWrongUse = 2 };

/// The last frame that the clock of the simulation counts to.
constexpr int greatestFrame = 100000;

struct SolveOptions {
    std::string input;
    std::string animation;             ///< identifier in an archive; empty for the first
    std::optional<std::string> output; ///< without one: beside the input, or the input itself with `inPlace`
    std::vector<std::string> sets;     ///< KEY=VALUE
    std::optional<int> startFrame;     ///< first baked frame; without it the start of the work area
    std::optional<int> endFrame;       ///< last baked frame; without it the last of the work area
    std::string samples;               ///< file for the simulated samples; empty: none
    double reduce = 0;                 ///< pixels and degrees that fewer keyframes may be off; 0: all that change
    bool inPlace = false;
    bool separate = false; ///< layers of several masks or groups are split first
    bool motionBlur = false;
    bool quiet = false;
    bool json = false;
};

struct InspectOptions {
    std::string input;
    std::string animation; ///< identifier in an archive; empty for the first
    std::string matrices;  ///< frames to print the layers' matrices of, see parseFrameList; empty: none
    bool json = false;
    std::optional<int> precision; ///< mesh precision of all bodies; without it what bodies have on import
    bool outlines = false;        ///< with `json`: also the pieces of each body, in composition pixels
};

struct SeparateOptions {
    std::string input;
    std::string animation;             ///< identifier in an archive; empty for the first
    std::optional<std::string> output; ///< without one: beside the input
    bool quiet = false;
};

} // namespace jostle::standalone
