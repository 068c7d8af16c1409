#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace jostle::standalone {

/// Room that the text of any finite number may take.
constexpr std::size_t numberTextRoom = 400;

/// Prints a finite number as the shortest plain decimals that read back the same; never "-0" or an exponent.
/// @param at  room for numberTextRoom characters
/// @return behind the last character
[[nodiscard]] char* printShortest(char* at, double value);

/// A number from 0 to 999 as it stands at the front of a whole number, and as thousandths behind it.
struct ThreeDigits {
    char whole[4]; ///< without zeros in front, but one digit at least
    char rest[4];  ///< the point and three digits
    std::uint8_t wholeLength;
    std::uint8_t restLength; ///< without zeros at the end; 0 if there is nothing to print
};
constexpr std::array<ThreeDigits, 1000> makeThreeDigits() {
    std::array<ThreeDigits, 1000> all{};
    for (int i = 0; i < 1000; ++i) {
        ThreeDigits& entry = all[static_cast<std::size_t>(i)];
        const char digits[3] = {static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                                static_cast<char>('0' + i % 10)};
        entry.rest[0] = '.';
        for (int k = 0; k < 3; ++k)
            entry.rest[k + 1] = digits[k];
        entry.restLength = i % 10 != 0 ? 4 : i % 100 != 0 ? 3 : i != 0 ? 2 : 0;
        const int skipped = i >= 100 ? 0 : i >= 10 ? 1 : 2;
        for (int k = skipped; k < 3; ++k)
            entry.whole[entry.wholeLength++] = digits[k];
    }
    return all;
}
inline constexpr std::array<ThreeDigits, 1000> threeDigits = makeThreeDigits();

/// Prints a finite number rounded to a thousandth, as plain decimals without trailing zeros; never "-0".
/// @param at  room for numberTextRoom characters
/// @return behind the last character
[[nodiscard]] inline char* printThousandths(char* at, double value) {
    const double scaled = value * 1000;
    if (!(scaled < 9e15 && scaled > -9e15))
        return printShortest(at, value); // numbers this large have few or no decimals left
    auto thousandths = static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
    if (thousandths < 0) {
        *at++ = '-';
        thousandths = -thousandths;
    }
    // Three digits at a time: baked motion is little else than such numbers. Some are written to be written over.
    const auto digitsOf = [](std::int64_t number) -> const ThreeDigits& {
        return threeDigits[static_cast<std::size_t>(number)];
    };
    const std::int64_t whole = thousandths / 1000;
    if (whole < 1000) {
        std::memcpy(at, digitsOf(whole).whole, 4);
        at += digitsOf(whole).wholeLength;
    } else if (whole < 1000000) {
        std::memcpy(at, digitsOf(whole / 1000).whole, 4);
        at += digitsOf(whole / 1000).wholeLength;
        std::memcpy(at, digitsOf(whole % 1000).rest + 1, 3);
        at += 3;
    } else {
        at = std::to_chars(at, at + numberTextRoom - 4, whole).ptr;
    }
    const ThreeDigits& rest = digitsOf(thousandths % 1000);
    std::memcpy(at, rest.rest, 4);
    return at + rest.restLength;
}

/// As printShortest, to the end of a string.
void appendShortest(std::string& out, double value);

} // namespace jostle::standalone
