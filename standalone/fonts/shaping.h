#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "standalone/fonts/font_library.h"

namespace jostle::standalone {

/// A glyph's outlines and where they stand from the pen at their cluster's beginning.
struct ShapedGlyph {
    const GlyphContours* outline = nullptr; ///< the font's own
    double x = 0, y = 0;
};

/// Characters that are set as one: a letter with its marks, a ligature.
struct ShapedCluster {
    std::size_t begin = 0; ///< byte of the text where they begin
    double advance = 0;
    std::vector<ShapedGlyph> glyphs;
};

/// A line of text with its glyphs placed.
struct ShapedText {
    std::vector<ShapedCluster> clusters; ///< from left to right on the line
    std::vector<std::size_t> borrowed;   ///< places of the other fonts that had to lend characters
    bool lacksCharacters = false;        ///< some are in no font: they take no room and have no outline
};

/// What a shaper may do to the letters.
struct ShapingStyle {
    bool ligatures = true;
    bool smallCapitals = false;
};

/// Places the glyphs of one line of valid UTF-8: in runs of one font, script and direction; runs from right to left
/// stand in their places as the line's first letter with a direction says.
/// @param fonts  with at least one font
[[nodiscard]] ShapedText shapeLine(std::string_view line, FontChoice& fonts, const ShapingStyle& style);

} // namespace jostle::standalone
