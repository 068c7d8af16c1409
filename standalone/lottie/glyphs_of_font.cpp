#include "standalone/lottie/glyphs_of_font.h"

#include <algorithm>

namespace jostle::standalone {

namespace {

/// A contour as an outline with relative tangents. A last curve that comes back to the start ends there.
PathValue pathOf(const GlyphContour& contour) {
    PathValue path;
    path.closed = true;
    path.vertices.push_back({contour.x, contour.y, 0, 0, 0, 0});
    for (std::size_t i = 0; i < contour.curves.size(); ++i) {
        const CurveTo& curve = contour.curves[i];
        PathVertex& from = path.vertices.back();
        from.outX = curve.firstX - from.x;
        from.outY = curve.firstY - from.y;
        const bool returns = i + 1 == contour.curves.size() && curve.x == contour.x && curve.y == contour.y;
        PathVertex& to = returns ? path.vertices.front() : path.vertices.emplace_back();
        to.x = curve.x;
        to.y = curve.y;
        to.inX = curve.secondX - curve.x;
        to.inY = curve.secondY - curve.y;
    }
    return path;
}

} // namespace

GlyphsOfFont::GlyphsOfFont(FontChoice& fonts, const ShapingStyle& style, double ascent)
    : fonts_{fonts}, style_{style}, ascent_{ascent != 0 ? ascent : fonts.first().ascent()} {}

std::vector<TextPiece> GlyphsOfFont::pieces(std::string_view line) {
    const ShapedText shaped = shapeLine(line, fonts_, style_);
    lacksCharacters_ = lacksCharacters_ || shaped.lacksCharacters;
    for (const std::size_t place : shaped.borrowed) {
        if (std::find(borrowed_.begin(), borrowed_.end(), place) == borrowed_.end())
            borrowed_.push_back(place);
    }
    std::vector<TextPiece> found;
    for (const ShapedCluster& cluster : shaped.clusters) {
        TextPiece& piece = found.emplace_back();
        piece.begin = cluster.begin;
        piece.advance = cluster.advance;
        for (const ShapedGlyph& glyph : cluster.glyphs) {
            const auto [known, isNew] = outlines_.try_emplace(glyph.outline);
            if (isNew) {
                for (const GlyphContour& contour : *glyph.outline)
                    known->second.push_back(pathOf(contour));
            }
            piece.glyphs.push_back({&known->second, glyph.x, glyph.y});
        }
    }
    return found;
}

} // namespace jostle::standalone
