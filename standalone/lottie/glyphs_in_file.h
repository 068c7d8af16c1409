#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/lottie/json_tree.h"
#include "standalone/lottie/text_layout.h"

namespace jostle::standalone {

/// The glyphs that a document brings along. Characters without one take no room.
class GlyphsInFile : public GlyphSource {
public:
    /// @param root  the document
    /// @param font  the entry of its list of fonts whose glyphs are meant; may be Missing
    GlyphsInFile(const JsonValue& root, const JsonValue& font);

    [[nodiscard]] std::vector<TextPiece> pieces(std::string_view line) override;
    [[nodiscard]] double ascent() const override { return ascent_; }

private:
    struct Glyph {
        JsonValue entry;
        double advance = 0;
        bool isRead = false;
        std::vector<PathValue> outlines;
    };

    void read(Glyph& glyph) const;

    std::map<std::string, Glyph, std::less<>> glyphs_; ///< by the character
    std::size_t longest_ = 0;                          ///< bytes of a character's name
    bool absoluteTangents_ = false;
    double ascent_ = 0;
};

} // namespace jostle::standalone
