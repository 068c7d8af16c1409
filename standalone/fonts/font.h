#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jostle::standalone {

/// The size that all lengths of this folder are for: an em is 100 pixels, y points down, the baseline is at 0.
constexpr double fontSizeOfOutlines = 100;

/// A cubic curve from where the one before it ended.
struct CurveTo {
    double firstX = 0, firstY = 0;   ///< first control point
    double secondX = 0, secondY = 0; ///< second control point
    double x = 0, y = 0;             ///< end
};

/// A closed outline. If the last curve does not end at its start, a straight line leads back.
struct GlyphContour {
    double x = 0, y = 0;
    std::vector<CurveTo> curves;
};
using GlyphContours = std::vector<GlyphContour>;

/// A glyph as a font places it in a run of text.
struct PlacedGlyph {
    std::uint32_t glyph = 0;
    std::size_t cluster = 0; ///< byte of the text where the characters begin that it belongs to
    double x = 0, y = 0;     ///< offset from the pen
    double advance = 0;
};

/// How a run of text is to be set.
struct RunStyle {
    std::uint32_t script = 0; ///< HarfBuzz's tag; 0 to guess
    bool rightToLeft = false;
    bool ligatures = true; ///< where letters are spaced out they stay apart
    bool smallCapitals = false;
};

/// An opened font file. Glyphs' outlines are made once and kept.
class Font {
public:
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// @param path   of the file
    /// @param index  of the face in the file; the upper 16 bits choose an instance of a variable font
    /// @return null if the file is no font with outlines
    [[nodiscard]] static std::unique_ptr<Font> open(const std::string& path, long index);

    [[nodiscard]] bool covers(char32_t character) const;
    /// From the baseline up, as the font's own header says.
    [[nodiscard]] double ascent() const;
    /// Unhinted; quadratic curves as the same cubic ones. Empty for a blank. Stays where it is while the font lives.
    [[nodiscard]] const GlyphContours& outline(std::uint32_t glyph);
    /// Glyphs of the bytes from `begin` to `end` of a text, in the order they stand on the line from left to right.
    [[nodiscard]] std::vector<PlacedGlyph> place(std::string_view text, std::size_t begin, std::size_t end,
                                                 const RunStyle& style) const;

private:
    struct Handles;
    explicit Font(std::unique_ptr<Handles> handles);

    std::unique_ptr<Handles> handles_;
};

} // namespace jostle::standalone
