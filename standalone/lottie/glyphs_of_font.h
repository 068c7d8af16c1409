#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "standalone/fonts/shaping.h"
#include "standalone/lottie/text_layout.h"

namespace jostle::standalone {

/// The glyphs of an installed font, as it sets a line.
class GlyphsOfFont : public GlyphSource {
public:
    /// @param fonts   with at least one font
    /// @param ascent  for a font size of 100, if the document knows better than the font; else 0
    GlyphsOfFont(FontChoice& fonts, const ShapingStyle& style, double ascent);

    [[nodiscard]] std::vector<TextPiece> pieces(std::string_view line) override;
    [[nodiscard]] double ascent() const override { return ascent_; }

    /// Places of the fonts that had to lend characters so far, in order.
    [[nodiscard]] const std::vector<std::size_t>& borrowed() const { return borrowed_; }
    /// Whether some characters are in no font.
    [[nodiscard]] bool lacksCharacters() const { return lacksCharacters_; }

private:
    FontChoice& fonts_;
    ShapingStyle style_;
    double ascent_;
    std::map<const GlyphContours*, std::vector<PathValue>> outlines_;
    std::vector<std::size_t> borrowed_;
    bool lacksCharacters_ = false;
};

} // namespace jostle::standalone
