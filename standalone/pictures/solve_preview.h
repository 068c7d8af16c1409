#pragma once

#include <string>

#include "standalone/commands/options.h"
#include "standalone/pictures/picture_look.h"

namespace jostle::standalone {

/// `solve` with a moving picture of what it simulates, made in the same run: the file follows once the result is saved.
/// @param preview  the picture's file, ending in .gif; empty for none
/// @return an ExitStatus; anything but exitDone comes with a line on standard error
[[nodiscard]] int runWithPreview(SolveRequest request, const std::string& preview, const PictureOptions& picture);

} // namespace jostle::standalone
