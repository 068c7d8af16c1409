#pragma once

#include "standalone/document/layer_details.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// Glyph outlines of a text layer in layer pixels, laid out as its document at a composition frame says.
/// @param root         the document
/// @param layerObject  the layer in it
[[nodiscard]] TextOutlines readTextOutlines(const JsonValue& root, const JsonValue& layerObject, double frame);

} // namespace jostle::standalone
