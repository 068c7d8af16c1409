#pragma once

#include <string>
#include <vector>

namespace jostle {

/// A composition as it comes to the program: shape layers in a Lottie document, and the settings of a command line.
struct SolveScene {
    const char* name = "";
    std::string lottie;
    std::vector<std::string> settings; ///< KEY=VALUE
};

// 60 frames a second; what moves is heaped up, then falls.

/// Circles of 20 to 30 pixels across that fall into an open box.
[[nodiscard]] SolveScene circlesToSolve(int circles, int frames);
/// Boxes of 40 pixels on a floor, in rows of 32 and fewer.
[[nodiscard]] SolveScene boxesToSolve(int boxes, int frames);
/// Stars of 42 corners, which make 40 triangles each, that fall into a trough.
[[nodiscard]] SolveScene compoundsToSolve(int compounds, int frames);
/// Circles that bounce about in a closed box for ever, so that each has keys on every frame.
[[nodiscard]] SolveScene restlessToSolve(int circles, int frames);

} // namespace jostle
