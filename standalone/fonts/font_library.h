#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "standalone/fonts/font.h"

namespace jostle::standalone {

/// A font as a document asks for it.
struct FontRequest {
    std::string family; ///< may be a list with commas, the first wanted most
    std::string style;  ///< as in "Bold Italic"
    std::string name;   ///< the full or PostScript name; all may be empty

    friend auto operator<=>(const FontRequest&, const FontRequest&) = default;
};

class FontFiles;

/// The fonts for a request, best first: the first is what was asked for or nearest to it, the others lend the
/// characters that it lacks. Files are opened when needed.
class FontChoice {
public:
    FontChoice(const FontFiles& files, const FontRequest& request);
    ~FontChoice();
    FontChoice(const FontChoice&) = delete;
    FontChoice& operator=(const FontChoice&) = delete;

    /// Whether there is any font.
    [[nodiscard]] explicit operator bool() const { return !candidates_.empty(); }
    /// Whether the first one has the family and the style that were asked for.
    [[nodiscard]] bool isExact() const { return exact_; }
    /// The first one; only if there is any.
    [[nodiscard]] Font& first();
    /// Which font shows a character, by its place in the row; the first one for characters that none has.
    [[nodiscard]] std::size_t placeFor(char32_t character);
    /// The font at a place that placeFor gave.
    [[nodiscard]] Font& at(std::size_t place);
    /// Family and style of a font of the row.
    [[nodiscard]] std::string title(std::size_t place) const;

private:
    struct Candidate;

    std::vector<Candidate> candidates_;
    bool exact_ = false;
};

/// Fonts to choose from. Choices are made once and kept.
class FontLibrary {
public:
    /// The fonts that the system has, as its fontconfig says.
    FontLibrary();
    /// The fonts in one folder and those below it, and nothing else.
    explicit FontLibrary(const std::string& folder);
    ~FontLibrary();
    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;

    /// The system's fonts, looked for when first asked. For one thread at a time.
    [[nodiscard]] static FontLibrary& installed();

    [[nodiscard]] FontChoice& choose(const FontRequest& request);

private:
    std::unique_ptr<FontFiles> files_;
    std::map<FontRequest, std::unique_ptr<FontChoice>> choices_;
};

} // namespace jostle::standalone
