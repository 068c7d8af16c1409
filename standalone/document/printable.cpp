#include "standalone/document/printable.h"

#include <cstddef>

namespace jostle::standalone {

namespace {

unsigned char byteAt(std::string_view text, std::size_t place) {
    return place < text.size() ? static_cast<unsigned char>(text[place]) : 0;
}

/// Bytes of the blank or control character at a place; 0 if another character stands there.
std::size_t blankLength(std::string_view text, std::size_t place) {
    const unsigned char first = byteAt(text, place);
    if (first <= 0x20 || first == 0x7F)
        return 1;
    // U+0080 to U+009F, which some terminals obey as well.
    const unsigned char second = byteAt(text, place + 1);
    return first == 0xC2 && second >= 0x80 && second <= 0x9F ? 2 : 0;
}

} // namespace

std::string printable(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    bool inBlank = false;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t blank = blankLength(text, place);
        if (blank == 0)
            line += text[place];
        else if (!inBlank)
            line += ' ';
        inBlank = blank != 0;
        place += blank != 0 ? blank : 1;
    }
    return line;
}

} // namespace jostle::standalone
