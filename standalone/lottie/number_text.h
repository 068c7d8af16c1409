#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>

namespace jostle::standalone {

/// Room that the text of any finite number may take.
constexpr std::size_t numberTextRoom = 400;

/// Prints a finite number as the shortest plain decimals that read back the same; never "-0" or an exponent.
/// @param at  room for numberTextRoom characters
/// @return behind the last character
[[nodiscard]] char* printShortest(char* at, double value);

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
    at = std::to_chars(at, at + numberTextRoom - 1, thousandths / 1000).ptr;
    const auto rest = static_cast<int>(thousandths % 1000);
    if (rest == 0)
        return at;
    *at++ = '.';
    *at++ = static_cast<char>('0' + rest / 100);
    if (rest % 100 == 0)
        return at;
    *at++ = static_cast<char>('0' + rest / 10 % 10);
    if (rest % 10 != 0)
        *at++ = static_cast<char>('0' + rest % 10);
    return at;
}

/// As printShortest, to the end of a string.
void appendShortest(std::string& out, double value);

} // namespace jostle::standalone
