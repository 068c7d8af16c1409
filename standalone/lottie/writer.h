#pragma once

#include <string>

#include "standalone/document/composition.h"
#include "standalone/lottie/reader.h"

namespace jostle::standalone {

/// The source text with what is marked as changed in a composition that was read from it, or in a copy of that.
///
/// Written are streams that differ from the source, a layer's parent, auto-orientation, motion blur and visibility,
/// and the composition's name and work area. All else stays byte for byte. Layers that are not in the source are
/// not written.
[[nodiscard]] std::string writeLottie(const LottieSource& source, const Composition& composition);

} // namespace jostle::standalone
