#include "standalone/fonts/font_style.h"

#include <charconv>

namespace jostle::standalone {

namespace {

struct Word {
    std::string_view name;
    int value;
};

// The first that occurs counts, so longer words stand before those within them.
constexpr Word weights[] = {
    {"extralight", 200}, {"ultralight", 200}, {"semilight", 350},  {"demilight", 350}, {"light", 300},
    {"hairline", 100},   {"thin", 100},       {"extrabold", 800},  {"ultrabold", 800}, {"semibold", 600},
    {"demibold", 600},   {"extrablack", 950}, {"ultrablack", 950}, {"black", 900},     {"heavy", 900},
    {"bold", 700},       {"demi", 600},       {"medium", 500},
};
constexpr Word widths[] = {
    {"ultracondensed", 50}, {"extracondensed", 63}, {"semicondensed", 87}, {"condensed", 75}, {"narrow", 75},
    {"semiexpanded", 113},  {"extraexpanded", 150}, {"expanded", 125},     {"extended", 125}, {"wide", 125},
};

template<std::size_t count>
int firstOf(const Word (&words)[count], std::string_view text, int fallback) {
    for (const Word& word : words) {
        if (text.find(word.name) != std::string_view::npos)
            return word.value;
    }
    return fallback;
}

} // namespace

std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c == ' ' || c == '-' || c == '_' || c == '"' || c == '\'')
            continue;
        plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return plain;
}

FontStyle styleNamed(std::string_view name) {
    const std::string plain = plainName(name);
    FontStyle style;
    style.weight = firstOf(weights, plain, style.weight);
    style.width = firstOf(widths, plain, style.width);
    style.slanted = plain.find("italic") != std::string::npos || plain.find("oblique") != std::string::npos;
    int number = 0;
    std::from_chars(plain.data(), plain.data() + plain.size(), number);
    if (number >= 1 && number <= 1000)
        style.weight = number;
    return style;
}

} // namespace jostle::standalone
