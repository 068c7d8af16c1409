#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Reads one character at `place` and moves past it.
char32_t nextCharacter(std::string_view utf8, std::size_t& place) {
    const auto first = static_cast<unsigned char>(utf8[place++]);
    if (first < 0x80)
        return first;
    const std::size_t tail = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
    if (tail == 0 || first >= 0xF8 || place + tail > utf8.size())
        return replacement;
    char32_t character = first & (0x3Fu >> tail);
    for (std::size_t i = 0; i < tail; ++i) {
        if (!isContinuation(utf8[place + i]))
            return replacement;
        character = (character << 6) | (static_cast<unsigned char>(utf8[place + i]) & 0x3F);
    }
    constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
    if (character < least[tail] || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF))
        return replacement;
    place += tail;
    return character;
}

} // namespace

std::u16string utf16Of(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    for (std::size_t place = 0; place < utf8.size();) {
        const char32_t character = nextCharacter(utf8, place);
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::string utf8Of(const char16_t* utf16) {
    const auto isHigh = [](char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
    const auto isLow = [](char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
    std::string bytes;
    const auto tail = [&](char32_t bits) { bytes += static_cast<char>(0x80 | (bits & 0x3F)); };
    for (; *utf16 != 0; ++utf16) {
        char32_t character = *utf16;
        if (isHigh(character) && isLow(utf16[1]))
            character = 0x10000 + ((character - 0xD800) << 10) + (*++utf16 - 0xDC00u);
        else if (isHigh(character) || isLow(character))
            character = replacement;
        if (character < 0x80) {
            bytes += static_cast<char>(character);
        } else if (character < 0x800) {
            bytes += static_cast<char>(0xC0 | (character >> 6));
            tail(character);
        } else if (character < 0x10000) {
            bytes += static_cast<char>(0xE0 | (character >> 12));
            tail(character >> 6);
            tail(character);
        } else {
            bytes += static_cast<char>(0xF0 | (character >> 18));
            tail(character >> 12);
            tail(character >> 6);
            tail(character);
        }
    }
    return bytes;
}

std::string_view startOf(std::string_view utf8, std::size_t limit) {
    if (utf8.size() <= limit)
        return utf8;
    while (limit > 0 && isContinuation(utf8[limit]))
        --limit;
    return utf8.substr(0, limit);
}

} // namespace jostle::standalone
