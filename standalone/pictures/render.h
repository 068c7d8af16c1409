#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/commands/options.h"
#include "standalone/pictures/picture_look.h"

namespace jostle::standalone {

struct RenderOptions {
    std::string input;
    std::string animation;         ///< identifier in an archive; empty for the first
    std::string output;            ///< ends in .png or .gif
    std::string settings;          ///< settings file; empty: none
    std::vector<std::string> sets; ///< KEY=VALUE
    std::optional<int> frame;      ///< of a still picture; without it 0
    std::optional<int> startFrame; ///< of a moving one; without it the start of the work area
    std::optional<int> endFrame;   ///< of a moving one; without it the last of the work area
    int every = 0;                 ///< frames from one picture to the next; 0: as few as a GIF can show
    bool separate = false;         ///< layers of several masks or groups are split first
    bool quiet = false;
    bool json = false;
    ProgressFor progress = ProgressFor::People;
    PictureOptions picture;
};

/// Simulates a Lottie file from frame 0 and writes what the preview shows as a picture. The file itself stays as it is.
/// @return an ExitStatus; anything but exitDone comes with a line on standard error, and no file was changed
[[nodiscard]] int runRender(const RenderOptions& options);

} // namespace jostle::standalone
