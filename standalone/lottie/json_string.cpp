#include "standalone/lottie/json_string.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace jostle::standalone {

namespace {

constexpr std::uint32_t replacement = 0xFFFD;

void appendUtf8(std::string& out, std::uint32_t code) {
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

/// Length of the well-formed UTF-8 sequence at the start of a text that is not empty; 0 if it is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    }
    // Overlong forms, surrogates, and what lies beyond U+10FFFF.
    const bool bad = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F) ||
                     (lead == 0xF0 && byte(1) < 0x90) || (lead == 0xF4 && byte(1) > 0x8F);
    return bad ? 0 : length;
}

std::uint32_t hexAt(std::string_view raw, std::size_t at) {
    std::uint32_t code = replacement;
    if (at + 4 <= raw.size())
        std::from_chars(raw.data() + at, raw.data() + at + 4, code, 16);
    return code;
}

/// Appends what the escape whose backslash is at `at` stands for; returns where it ends.
std::size_t appendEscape(std::string& out, std::string_view raw, std::size_t at) {
    constexpr std::string_view letters = "bfnrt", meanings = "\b\f\n\r\t";
    if (at + 1 >= raw.size())
        return raw.size();
    const char letter = raw[at + 1];
    if (letter != 'u') {
        const std::size_t place = letters.find(letter);
        out += place == std::string_view::npos ? letter : meanings[place];
        return at + 2;
    }
    std::uint32_t code = hexAt(raw, at + 2);
    at += 6;
    if (code >= 0xD800 && code < 0xDC00 && raw.substr(at < raw.size() ? at : raw.size(), 2) == "\\u") {
        const std::uint32_t low = hexAt(raw, at + 2);
        if (low >= 0xDC00 && low < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            at += 6;
        }
    }
    appendUtf8(out, code >= 0xD800 && code < 0xE000 ? replacement : code);
    return at;
}

} // namespace

std::string unescaped(std::string_view raw) {
    const auto plain = [](char c) { return c != '\\' && static_cast<unsigned char>(c) < 0x80; };
    const auto first = static_cast<std::size_t>(std::find_if_not(raw.begin(), raw.end(), plain) - raw.begin());
    std::string out(raw, 0, first);
    for (std::size_t at = first; at < raw.size();) {
        if (raw[at] == '\\') {
            at = appendEscape(out, raw, at);
        } else if (const std::size_t length = sequenceLength(raw.substr(at)); length > 0) {
            out.append(raw, at, length);
            at += length;
        } else {
            appendUtf8(out, replacement);
            ++at;
        }
    }
    return out;
}

void appendQuoted(std::string& out, std::string_view utf8) {
    constexpr std::string_view digits = "0123456789abcdef";
    out += '"';
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            out += "\\u00";
            out += digits[byte >> 4];
            out += digits[byte & 15];
        } else {
            out += c;
        }
    }
    out += '"';
}

} // namespace jostle::standalone
