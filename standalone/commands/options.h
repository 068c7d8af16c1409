#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace jostle {
struct Scene;
}

namespace jostle::standalone {

/// What the program returns to the shell.
enum ExitStatus : int { exitDone = 0, exitFailed = 1, exitWrongUse = 2 };

/// The last frame that the clock of the simulation counts to.
constexpr int greatestFrame = 100000;

/// Who is told how far long work has got.
enum class ProgressFor { Nobody, People, Machines };

[[nodiscard]] constexpr ProgressFor progressFor(bool quiet, bool json) {
    return quiet ? ProgressFor::Nobody : json ? ProgressFor::Machines : ProgressFor::People;
}

struct SolveOptions {
    std::string input;
    std::string animation;             ///< identifier in an archive; empty for the first
    std::optional<std::string> output; ///< without one: beside the input, or the input itself with `inPlace`
    std::string settings;              ///< settings file; empty: none
    std::vector<std::string> sets;     ///< KEY=VALUE
    std::vector<std::string> trials;   ///< KEY=VALUE; if any, all are only tried, and nothing is solved
    std::optional<int> startFrame;     ///< first baked frame; without it the start of the work area
    std::optional<int> endFrame;       ///< last baked frame; without it the last of the work area
    std::string samples;               ///< file for the simulated samples; empty: none
    double reduce = 0;                 ///< pixels and degrees that fewer keyframes may be off; 0: all that change
    bool inPlace = false;
    bool separate = false; ///< layers of several masks or groups are split first
    bool motionBlur = false;
    bool quiet = false;
    bool json = false;
    ProgressFor progress = ProgressFor::People;
    /// Shown the scene on each baked frame, its world standing at that frame; not to change it. Empty: nobody looks.
    std::function<void(const Scene&, int frame)> watch;
};

/// All that the user asked `solve` for.
struct SolveRequest {
    SolveOptions options; ///< for each input; its `input` is still empty
    std::vector<std::string> inputs;
    std::vector<std::string> sweeps; ///< KEY=A:B:STEP, see parseSweep
    std::string player;              ///< the player's script for the page of a sweep; empty for the one on the network
    std::optional<int> jobs;         ///< how many processes at once; without it one for each processor
};

struct SettingsOptions {
    std::string input;
    std::string animation;             ///< identifier in an archive; empty for the first
    std::optional<std::string> output; ///< without one: the input's name with ".xml" after it
    std::string settings;              ///< settings file to start from; empty: none
    std::vector<std::string> sets;     ///< KEY=VALUE
    bool quiet = false;
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
