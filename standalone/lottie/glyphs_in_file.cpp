#include "standalone/lottie/glyphs_in_file.h"

#include <algorithm>
#include <cmath>

namespace jostle::standalone {

namespace {

constexpr std::size_t longestCharacter = 64; // bytes of one with all its joiners

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::size_t characterLength(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && isContinuation(text[length]))
        ++length;
    return length;
}

/// The pairs of numbers of a list; zeros for what is none.
std::vector<std::array<double, 2>> points(const JsonValue& list) {
    std::vector<std::array<double, 2>> found;
    if (!list.isArray())
        return found;
    forEachChild(list, [&](const JsonValue& entry) {
        std::array<double, 2>& point = found.emplace_back();
        entry.numbers(point.data(), 2);
        for (double& number : point)
            number = std::clamp(number, -textNumberLimit, textNumberLimit);
    });
    return found;
}

PathValue pathFrom(const JsonValue& value, bool absoluteTangents) {
    const auto places = points(value["v"]), ins = points(value["i"]), outs = points(value["o"]);
    PathValue path;
    path.closed = true;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto tangent = [&](const auto& list, std::size_t c) {
            return i >= list.size() ? 0 : absoluteTangents ? list[i][c] - places[i][c] : list[i][c];
        };
        path.vertices.push_back(
            {places[i][0], places[i][1], tangent(ins, 0), tangent(ins, 1), tangent(outs, 0), tangent(outs, 1)});
    }
    return path;
}

void appendPaths(std::vector<PathValue>& out, const JsonValue& elements, bool absoluteTangents) {
    if (!elements.isArray())
        return;
    forEachChild(elements, [&](const JsonValue& element) {
        if (element["it"].isArray()) {
            appendPaths(out, element["it"], absoluteTangents);
        } else if (element["ty"].string() == "sh") {
            const JsonValue value = element["ks"]["k"];
            PathValue path = pathFrom(value.isArray() ? value.firstChild()["s"].firstChild() : value, absoluteTangents);
            if (!path.vertices.empty())
                out.push_back(std::move(path));
        }
    });
}

} // namespace

GlyphsInFile::GlyphsInFile(const JsonValue& root, const JsonValue& font)
    : absoluteTangents_{root["__complete"].flag()},
      ascent_{std::clamp(font["ascent"].number(0), -textNumberLimit, textNumberLimit)} {
    const std::string family = font["fFamily"].string(), style = font["fStyle"].string();
    forEachChild(root["chars"], [&](const JsonValue& entry) {
        std::string character = entry["ch"].string();
        if (character.empty() || character.size() > longestCharacter || entry["fFamily"].string() != family ||
            entry["style"].string() != style)
            return;
        Glyph glyph;
        glyph.entry = entry;
        glyph.advance = std::clamp(entry["w"].number(0), -textNumberLimit, textNumberLimit);
        longest_ = std::max(longest_, character.size());
        glyphs_.emplace(std::move(character), std::move(glyph)); // of several the first counts
    });
}

void GlyphsInFile::read(Glyph& glyph) const {
    glyph.isRead = true;
    // An entry may name a composition in place of outlines.
    const JsonValue data = glyph.entry["data"];
    if (data.isObject())
        appendPaths(glyph.outlines, data["shapes"], absoluteTangents_);
}

std::vector<TextPiece> GlyphsInFile::pieces(std::string_view line) {
    std::vector<TextPiece> found;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t length = std::min(longest_, line.size() - at);
        const std::size_t shortest = characterLength(line.substr(at));
        auto glyph = glyphs_.end();
        // Characters that were joined have one name.
        for (; length >= shortest && glyph == glyphs_.end(); --length) {
            if (at + length == line.size() || !isContinuation(line[at + length]))
                glyph = glyphs_.find(line.substr(at, length));
        }
        TextPiece& piece = found.emplace_back();
        piece.begin = at;
        if (glyph == glyphs_.end()) {
            at += shortest;
            continue;
        }
        if (!glyph->second.isRead)
            read(glyph->second);
        piece.advance = glyph->second.advance;
        piece.glyphs.push_back({&glyph->second.outlines, 0, 0});
        at += glyph->first.size();
    }
    return found;
}

} // namespace jostle::standalone
