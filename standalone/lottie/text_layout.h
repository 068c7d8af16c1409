#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/document/path.h"

namespace jostle::standalone {

/// Largest magnitude of a text's own numbers: sizes, distances, coordinates of glyphs.
constexpr double textNumberLimit = 1e6;
/// Characters (bytes of UTF-8) of a text that are laid out, and vertices that its outlines may have.
constexpr std::size_t mostTextBytes = 20000, mostTextVertices = 1000000;

/// A paragraph box in layer pixels.
struct TextBox {
    double left = 0, top = 0;
    double width = 0;
};

/// A text as it stands at a time.
struct TextDocument {
    std::string text; ///< UTF-8; lines end with a carriage return, a line feed, both, or U+0003
    std::string font; ///< its name in the document's list
    double size = 0;  ///< pixels
    enum class Justification { Left, Right, Centre } justification = Justification::Left;
    double tracking = 0;      ///< pixels after each character
    double lineHeight = 0;    ///< pixels
    double baselineShift = 0; ///< pixels, up
    bool smallCapitals = false;
    std::optional<TextBox> box;
};

/// Outlines of a glyph for a font size of 100, from a point near the pen. They belong to the source of glyphs.
struct GlyphOutline {
    const std::vector<PathValue>* outlines = nullptr;
    double x = 0, y = 0;
};

/// What is never split: a character, a ligature, a letter with its marks. Lengths are for a font size of 100.
struct TextPiece {
    std::size_t begin = 0; ///< byte of the line
    double advance = 0;
    std::vector<GlyphOutline> glyphs;
};

/// Gives the glyphs of a line of text.
class GlyphSource {
public:
    virtual ~GlyphSource() = default;
    /// Pieces in the order they stand on the line, from left to right.
    [[nodiscard]] virtual std::vector<TextPiece> pieces(std::string_view line) = 0;
    /// From the baseline up, for a font size of 100.
    [[nodiscard]] virtual double ascent() const = 0;
};

/// Outlines of a text in layer pixels, in the order of the text.
[[nodiscard]] std::vector<PathValue> layOut(const TextDocument& document, GlyphSource& glyphs);

} // namespace jostle::standalone
