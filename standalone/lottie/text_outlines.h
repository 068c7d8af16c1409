#pragma once

#include "standalone/document/layer_details.h"
#include "standalone/fonts/font_library.h"
#include "standalone/lottie/json_tree.h"
#include "standalone/lottie/text_layout.h"

namespace jostle::standalone {

/// The text document of a text layer that holds at a composition frame: the last that begins no later, else the first.
/// Numbers are kept within textNumberLimit, the text within mostTextBytes; what is missing has its default.
/// @param slots  of the document; may be Missing
[[nodiscard]] TextDocument readTextDocument(const JsonValue& slots, const JsonValue& layerObject, double frame);

/// Glyph outlines of a text layer in layer pixels, each closed, in the order of the text.
///
/// They come from the document's own glyphs if it has any, else from an installed font; the notes name a font that had
/// to stand in, and text that was left out.
/// @param root         the document
/// @param layerObject  of its root composition; a layer without text has no outlines
/// @param frame        composition frame
[[nodiscard]] TextOutlines readTextOutlines(const JsonValue& root, const JsonValue& layerObject, double frame);

/// As above, with these fonts in place of the installed ones.
[[nodiscard]] TextOutlines readTextOutlines(const JsonValue& root, const JsonValue& layerObject, double frame,
                                            FontLibrary& fonts);

} // namespace jostle::standalone
