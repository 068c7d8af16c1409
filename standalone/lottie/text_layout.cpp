#include "standalone/lottie/text_layout.h"

#include <algorithm>

namespace jostle::standalone {

namespace {

constexpr double sizeOfOutlines = 100;

bool isSpace(std::string_view line, const TextPiece& piece) {
    return line[piece.begin] == ' ';
}

/// Splits at the characters that end lines.
std::vector<std::string_view> paragraphs(std::string_view text) {
    constexpr std::string_view ends = "\r\n\3";
    std::vector<std::string_view> found;
    for (;;) {
        const std::size_t end = text.find_first_of(ends);
        found.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return found;
        const bool both = text.substr(end, 2) == "\r\n";
        text.remove_prefix(end + (both ? 2 : 1));
    }
}

std::string_view withoutTrailingSpaces(std::string_view line) {
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

class Layout {
public:
    Layout(const TextDocument& document, GlyphSource& glyphs)
        : document_{document}, glyphs_{glyphs}, scale_{document.size / sizeOfOutlines} {}

    [[nodiscard]] std::vector<PathValue> run() {
        const std::string_view text = document_.text;
        double y = -document_.baselineShift;
        if (document_.box)
            y += document_.box->top + glyphs_.ascent() * scale_;
        for (const std::string_view paragraph : paragraphs(text)) {
            for (const std::string_view line : lines(paragraph)) {
                place(withoutTrailingSpaces(line), y);
                y += document_.lineHeight;
            }
        }
        return std::move(outlines_);
    }

private:
    // A space that would be the first too many breaks no line: the one at which the line breaks vanishes.
    [[nodiscard]] std::vector<std::string_view> lines(std::string_view paragraph) {
        if (!document_.box || paragraph.empty())
            return {paragraph};
        std::vector<TextPiece> pieces = glyphs_.pieces(paragraph);
        std::sort(pieces.begin(), pieces.end(), [](const auto& a, const auto& b) { return a.begin < b.begin; });
        std::vector<std::string_view> found;
        constexpr std::size_t none = static_cast<std::size_t>(-1);
        std::size_t start = 0, lastSpace = none;
        double width = 0;
        const auto breakAt = [&](std::size_t end, std::size_t next) {
            found.push_back(paragraph.substr(pieces[start].begin, pieces[end].begin - pieces[start].begin));
            start = next;
            lastSpace = none;
            width = 0;
        };
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const double advance = pieces[i].advance * scale_;
            const bool space = isSpace(paragraph, pieces[i]);
            if (!space && i > start && width + advance > document_.box->width) {
                if (lastSpace == none)
                    breakAt(i, i);
                else
                    breakAt(lastSpace, lastSpace + 1);
                i = start; // what stands there fits, or is alone
                width = pieces[i].advance * scale_ + document_.tracking;
                continue;
            }
            width += advance + document_.tracking;
            if (space)
                lastSpace = i;
        }
        found.push_back(start < pieces.size() ? paragraph.substr(pieces[start].begin) : std::string_view());
        return found;
    }

    void place(std::string_view line, double y) {
        if (line.empty() || vertices_ > mostTextVertices)
            return;
        std::vector<TextPiece> pieces = glyphs_.pieces(line);
        double pen = 0;
        for (TextPiece& piece : pieces) {
            for (GlyphOutline& glyph : piece.glyphs)
                glyph.x = pen + glyph.x * scale_;
            pen += piece.advance * scale_ + document_.tracking;
        }
        const double shift = shiftOf(pieces.empty() ? 0 : pen - document_.tracking);
        std::stable_sort(pieces.begin(), pieces.end(), [](const auto& a, const auto& b) { return a.begin < b.begin; });
        for (const TextPiece& piece : pieces) {
            for (const GlyphOutline& glyph : piece.glyphs)
                append(glyph, shift + glyph.x, y + glyph.y * scale_);
        }
    }

    [[nodiscard]] double shiftOf(double width) const {
        const double room = document_.box ? document_.box->width : 0;
        const double left = document_.box ? document_.box->left : 0;
        switch (document_.justification) {
        case TextDocument::Justification::Right:
            return left + room - width;
        case TextDocument::Justification::Centre:
            return left + (room - width) / 2;
        case TextDocument::Justification::Left:
            break;
        }
        return left;
    }

    void append(const GlyphOutline& glyph, double x, double y) {
        for (const PathValue& outline : *glyph.outlines) {
            vertices_ += outline.vertices.size();
            if (vertices_ > mostTextVertices)
                return;
            PathValue& placed = outlines_.emplace_back(outline);
            for (PathVertex& vertex : placed.vertices) {
                vertex = {x + vertex.x * scale_, y + vertex.y * scale_, vertex.inX * scale_,
                          vertex.inY * scale_,   vertex.outX * scale_,  vertex.outY * scale_};
            }
        }
    }

    const TextDocument& document_;
    GlyphSource& glyphs_;
    double scale_;
    std::size_t vertices_ = 0;
    std::vector<PathValue> outlines_;
};

} // namespace

std::vector<PathValue> layOut(const TextDocument& document, GlyphSource& glyphs) {
    return Layout(document, glyphs).run();
}

} // namespace jostle::standalone
