#include "standalone/fonts/font_library.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include <fontconfig/fontconfig.h>

#include "standalone/fonts/destroy.h"
#include "standalone/fonts/font_style.h"

namespace jostle::standalone {

namespace {

using Pattern = std::unique_ptr<FcPattern, Destroy<FcPatternDestroy>>;

const FcChar8* bytes(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

/// A text member of a pattern, the `index`-th of several; nothing beyond the last.
std::optional<std::string> textOf(const FcPattern* pattern, const char* member, int index = 0) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, member, index, &text) != FcResultMatch)
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(text));
}

bool holdsName(const FcPattern* pattern, const char* member, std::string_view name) {
    const std::string plain = plainName(name);
    for (int i = 0; !plain.empty(); ++i) {
        const std::optional<std::string> text = textOf(pattern, member, i);
        if (!text)
            return false;
        if (plainName(*text) == plain)
            return true;
    }
    return false;
}

std::vector<std::string> familiesOf(const FontRequest& request) {
    std::vector<std::string> families;
    std::string rest = request.family.empty() ? request.name.substr(0, request.name.find('-')) : request.family;
    for (std::size_t comma = 0; comma != std::string::npos;) {
        comma = rest.find(',');
        std::string family = rest.substr(0, comma);
        rest.erase(0, comma == std::string::npos ? comma : comma + 1);
        const std::size_t first = family.find_first_not_of(" \"'"), last = family.find_last_not_of(" \"'");
        if (first != std::string::npos)
            families.push_back(family.substr(first, last - first + 1));
    }
    return families;
}

/// The style's name; without one what stands after the hyphen of a PostScript name.
std::string styleOf(const FontRequest& request) {
    const std::size_t hyphen = request.name.rfind('-');
    return request.style.empty() && hyphen != std::string::npos ? request.name.substr(hyphen + 1) : request.style;
}

Pattern patternOf(const FontRequest& request) {
    Pattern pattern(FcPatternCreate());
    for (const std::string& family : familiesOf(request))
        FcPatternAddString(pattern.get(), FC_FAMILY, bytes(family));
    const std::string styleName = styleOf(request);
    if (!styleName.empty())
        FcPatternAddString(pattern.get(), FC_STYLE, bytes(styleName));
    if (!request.name.empty())
        FcPatternAddString(pattern.get(), FC_POSTSCRIPT_NAME, bytes(request.name));
    const FontStyle style = styleNamed(styleName);
    FcPatternAddDouble(pattern.get(), FC_WEIGHT, FcWeightFromOpenTypeDouble(style.weight));
    FcPatternAddInteger(pattern.get(), FC_SLANT, style.slanted ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddDouble(pattern.get(), FC_WIDTH, style.width);
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    return pattern;
}

/// Whether glyphs can be taken from it: outlines, in a file of the kind that HarfBuzz reads too.
bool isUsable(const FcPattern* font) {
    FcBool variable = FcFalse; // the font as a whole; its instances are in the list as well
    FcPatternGetBool(font, FC_VARIABLE, 0, &variable);
    const std::string format = textOf(font, FC_FONTFORMAT).value_or("");
    return variable == FcFalse && (format == "TrueType" || format == "CFF");
}

bool hasStyle(const FcPattern* font, const FontRequest& request) {
    const std::string name = styleOf(request);
    if (holdsName(font, FC_STYLE, name))
        return true;
    const FontStyle wanted = styleNamed(name);
    double weight = FcWeightFromOpenTypeDouble(wanted.weight);
    int slant = wanted.slanted ? FC_SLANT_ITALIC : FC_SLANT_ROMAN;
    FcPatternGetDouble(font, FC_WEIGHT, 0, &weight);
    FcPatternGetInteger(font, FC_SLANT, 0, &slant);
    return std::abs(FcWeightToOpenTypeDouble(weight) - wanted.weight) < 50 &&
           (slant != FC_SLANT_ROMAN) == wanted.slanted;
}

bool isAsked(const FcPattern* font, const FontRequest& request) {
    if (holdsName(font, FC_POSTSCRIPT_NAME, request.name) || holdsName(font, FC_FULLNAME, request.name))
        return true;
    const std::vector<std::string> families = familiesOf(request);
    return !families.empty() && holdsName(font, FC_FAMILY, families.front()) && hasStyle(font, request);
}

} // namespace

class FontFiles {
public:
    explicit FontFiles(FcConfig* config) : config_{config} {}

    /// All usable fonts, the nearest to a request first.
    [[nodiscard]] std::vector<Pattern> sorted(const FontRequest& request) const {
        std::vector<Pattern> fonts;
        const Pattern pattern = patternOf(request);
        if (!config_)
            return fonts;
        FcConfigSubstitute(config_.get(), pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultMatch;
        const std::unique_ptr<FcFontSet, Destroy<FcFontSetDestroy>> set(
            FcFontSort(config_.get(), pattern.get(), FcFalse, nullptr, &result));
        for (int i = 0; set && i < set->nfont; ++i) {
            if (isUsable(set->fonts[i])) {
                FcPatternReference(set->fonts[i]);
                fonts.emplace_back(set->fonts[i]);
            }
        }
        return fonts;
    }

private:
    std::unique_ptr<FcConfig, Destroy<FcConfigDestroy>> config_;
};

struct FontChoice::Candidate {
    Pattern pattern;
    std::unique_ptr<Font> font; ///< null until it is needed
};

FontChoice::FontChoice(const FontFiles& files, const FontRequest& request) {
    for (Pattern& pattern : files.sorted(request))
        candidates_.push_back({std::move(pattern), nullptr});
    // The first has to open; of the others only those that are asked for.
    while (!candidates_.empty()) {
        const FcPattern* pattern = candidates_.front().pattern.get();
        int index = 0;
        FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
        candidates_.front().font = Font::open(textOf(pattern, FC_FILE).value_or(""), index);
        if (candidates_.front().font)
            break;
        candidates_.erase(candidates_.begin());
    }
    exact_ = !candidates_.empty() && isAsked(candidates_.front().pattern.get(), request);
}

FontChoice::~FontChoice() = default;

Font& FontChoice::first() {
    return *candidates_.front().font;
}

Font& FontChoice::at(std::size_t place) {
    return *candidates_[place].font;
}

std::size_t FontChoice::placeFor(char32_t character) {
    if (first().covers(character))
        return 0;
    for (std::size_t place = 1; place < candidates_.size(); ++place) {
        Candidate& candidate = candidates_[place];
        FcCharSet* characters = nullptr;
        if (FcPatternGetCharSet(candidate.pattern.get(), FC_CHARSET, 0, &characters) != FcResultMatch ||
            FcCharSetHasChar(characters, character) == FcFalse)
            continue;
        if (!candidate.font) {
            int index = 0;
            FcPatternGetInteger(candidate.pattern.get(), FC_INDEX, 0, &index);
            candidate.font = Font::open(textOf(candidate.pattern.get(), FC_FILE).value_or(""), index);
        }
        if (candidate.font && candidate.font->covers(character))
            return place;
    }
    return 0;
}

std::string FontChoice::title(std::size_t place) const {
    const FcPattern* pattern = candidates_[place].pattern.get();
    const std::string style = textOf(pattern, FC_STYLE).value_or("");
    return textOf(pattern, FC_FAMILY).value_or("") + (style.empty() ? "" : " ") + style;
}

FontLibrary::FontLibrary() : files_{std::make_unique<FontFiles>(FcInitLoadConfigAndFonts())} {}

FontLibrary::FontLibrary(const std::string& folder) {
    constexpr const char* usualCache =
        R"(<fontconfig><cachedir prefix="xdg">fontconfig</cachedir></fontconfig>)"; // it complains without one
    FcConfig* config = FcConfigCreate();
    FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(usualCache), FcFalse);
    FcConfigAppFontAddDir(config, bytes(folder));
    files_ = std::make_unique<FontFiles>(config);
}

FontLibrary::~FontLibrary() = default;

FontLibrary& FontLibrary::installed() {
    static FontLibrary library;
    return library;
}

FontChoice& FontLibrary::choose(const FontRequest& request) {
    std::unique_ptr<FontChoice>& choice = choices_[request];
    if (!choice)
        choice = std::make_unique<FontChoice>(*files_, request);
    return *choice;
}

} // namespace jostle::standalone
