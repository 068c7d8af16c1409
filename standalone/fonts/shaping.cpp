#include "standalone/fonts/shaping.h"

#include <algorithm>

#include <hb.h>

namespace jostle::standalone {

namespace {

constexpr std::size_t noFont = static_cast<std::size_t>(-1);

struct Run {
    std::size_t begin = 0, end = 0; ///< bytes
    std::size_t font = noFont;
    hb_script_t script = HB_SCRIPT_COMMON;
    bool rightToLeft = false;
};

/// The character at a place of valid UTF-8, and the place after it.
char32_t next(std::string_view text, std::size_t& at) {
    const auto byte = [&] { return static_cast<unsigned>(static_cast<unsigned char>(text[at++])); };
    const unsigned lead = byte();
    if (lead < 0x80)
        return lead;
    int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    char32_t character = lead & (0x3FU >> static_cast<unsigned>(more));
    for (; more > 0 && at < text.size(); --more)
        character = character << 6U | (byte() & 0x3FU);
    return character;
}

bool isReal(hb_script_t script) {
    return script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN;
}

/// Whether a character goes with the one before it: marks, joiners, variation selectors.
bool isDependent(char32_t character) {
    switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), character)) {
    case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
    case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
        return true;
    default:
        return false;
    }
}

std::size_t fontFor(char32_t character, const std::vector<Run>& runs, FontChoice& fonts) {
    constexpr char32_t firstPrinted = 0x20, deletion = 0x7F;
    if (character < firstPrinted || character == deletion)
        return noFont;
    if (isDependent(character) && !runs.empty() && runs.back().font != noFont) {
        const bool seen = fonts.at(runs.back().font).covers(character);
        const bool joins = hb_unicode_general_category(hb_unicode_funcs_get_default(), character) ==
                           HB_UNICODE_GENERAL_CATEGORY_FORMAT;
        if (seen || joins)
            return runs.back().font;
    }
    const std::size_t place = fonts.placeFor(character);
    return place > 0 || fonts.first().covers(character) ? place : noFont;
}

/// Runs in the order of the text. Characters of no script of their own take that of what stands before them, at the
/// beginning that of what comes first.
std::vector<Run> runsOf(std::string_view line, FontChoice& fonts) {
    std::vector<Run> runs;
    for (std::size_t at = 0; at < line.size();) {
        Run run;
        run.begin = at;
        const char32_t character = next(line, at);
        run.end = at;
        run.font = fontFor(character, runs, fonts);
        run.script = hb_unicode_script(hb_unicode_funcs_get_default(), character);
        if (!runs.empty() && !isReal(run.script))
            run.script = runs.back().script;
        if (!runs.empty() && !isReal(runs.back().script) && isReal(run.script)) {
            for (Run& before : runs)
                before.script = run.script;
        }
        if (!runs.empty() && runs.back().font == run.font && runs.back().script == run.script)
            runs.back().end = run.end;
        else
            runs.push_back(run);
    }
    for (Run& run : runs)
        run.rightToLeft = hb_script_get_horizontal_direction(run.script) == HB_DIRECTION_RTL;
    return runs;
}

/// From the order of the text to that on the line: what runs against the line's direction is turned about, each
/// stretch by itself.
void orderOnLine(std::vector<Run>& runs) {
    if (runs.empty())
        return;
    const bool lineRightToLeft = runs.front().rightToLeft;
    const auto against = [&](const Run& run) { return run.rightToLeft != lineRightToLeft; };
    for (auto begin = runs.begin(); begin != runs.end();) {
        begin = std::find_if(begin, runs.end(), against);
        const auto end = std::find_if_not(begin, runs.end(), against);
        std::reverse(begin, end);
        begin = end;
    }
    if (lineRightToLeft)
        std::reverse(runs.begin(), runs.end());
}

void appendRun(ShapedText& out, std::string_view line, const Run& run, FontChoice& fonts, const ShapingStyle& style) {
    if (run.font == noFont) {
        for (std::size_t at = run.begin; at < run.end;) {
            out.clusters.push_back({at, 0, {}});
            const char32_t character = next(line, at);
            out.lacksCharacters = out.lacksCharacters || character > 0x20;
        }
        return;
    }
    if (run.font > 0 && std::find(out.borrowed.begin(), out.borrowed.end(), run.font) == out.borrowed.end())
        out.borrowed.push_back(run.font);
    Font& font = fonts.at(run.font);
    const RunStyle runStyle{isReal(run.script) ? static_cast<std::uint32_t>(run.script) : 0, run.rightToLeft,
                            style.ligatures, style.smallCapitals};
    std::size_t cluster = noFont;
    for (const PlacedGlyph& glyph : font.place(line, run.begin, run.end, runStyle)) {
        if (glyph.cluster != cluster)
            out.clusters.push_back({glyph.cluster, 0, {}});
        cluster = glyph.cluster;
        ShapedCluster& last = out.clusters.back();
        last.glyphs.push_back({&font.outline(glyph.glyph), last.advance + glyph.x, glyph.y});
        last.advance += glyph.advance;
    }
}

} // namespace

ShapedText shapeLine(std::string_view line, FontChoice& fonts, const ShapingStyle& style) {
    ShapedText out;
    std::vector<Run> runs = runsOf(line, fonts);
    orderOnLine(runs);
    for (const Run& run : runs)
        appendRun(out, line, run, fonts, style);
    return out;
}

} // namespace jostle::standalone
