#pragma once

#include <string>

#include "standalone/document/composition.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/text_sink.h"

namespace jostle::standalone {

/// Writes the source text with what is marked as changed in a composition that was read from it, or in a copy of that.
///
/// Written are the streams that differ from the source, a layer's name, parent, auto-orientation, motion blur and
/// visibility, masks and shapes, the order of the layers, and the composition's name and work area. All else stays byte
/// for byte. Layers without a place in the source are new, those with the same place as another one are copies of it,
/// those that are missing are gone. References that this would break are mended: track mattes that go by their place
/// are named, and those of layers that are gone are dropped, as are parents.
void writeLottie(const LottieSource& source, const Composition& composition, TextSink& out);
/// That text as a string.
[[nodiscard]] std::string writeLottie(const LottieSource& source, const Composition& composition);

} // namespace jostle::standalone
