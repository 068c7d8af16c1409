#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace jostle::standalone {

/// Room that the text of any finite number may take.
constexpr std::size_t numberTextRoom = 400;

/// Prints a finite number as the shortest plain decimals that read back the same; never "-0" or an exponent.
/// @param at  room for numberTextRoom characters
/// @return behind the last character
[[nodiscard]] char* printShortest(char* at, double value);

/// Prints any finite number by the rules of printThousandths.
[[nodiscard]] char* printLargeThousandths(char* at, double value);

/// The numbers from 0 to 999, in four bytes each so that all stay near the processor: three digits, and how many of
/// them count in front of a point and behind one.
class ThreeDigits {
public:
    constexpr ThreeDigits() {
        for (std::size_t i = 0; i < 1000; ++i) {
            unsigned char* const entry = &all_[4 * i];
            entry[0] = static_cast<unsigned char>('0' + i / 100);
            entry[1] = static_cast<unsigned char>('0' + i / 10 % 10);
            entry[2] = static_cast<unsigned char>('0' + i % 10);
            const int zerosInFront = i >= 100 ? 0 : i >= 10 ? 1 : 2;
            const int behindPoint = i == 0 ? 0 : i % 100 == 0 ? 2 : i % 10 == 0 ? 3 : 4; // with the point
            entry[3] = static_cast<unsigned char>(zerosInFront + 4 * behindPoint);
        }
    }

    // Each of these writes four or five characters, of which what does not count is to be written over.

    /// Prints a number below 1000 without zeros in front.
    [[nodiscard]] char* printWhole(char* at, std::uint32_t number) const {
        const unsigned char* const entry = &all_[4 * number];
        const std::size_t zerosInFront = entry[3] & 3U;
        std::memcpy(at, entry + zerosInFront, 4);
        return at + 3 - zerosInFront;
    }
    /// Prints all three digits.
    [[nodiscard]] char* printAll(char* at, std::uint32_t number) const {
        std::memcpy(at, &all_[4 * number], 4);
        return at + 3;
    }
    /// Prints a number of thousandths below 1000 with the point before it and no zeros at the end; nothing of 0.
    [[nodiscard]] char* printRest(char* at, std::uint32_t number) const {
        const unsigned char* const entry = &all_[4 * number];
        at[0] = '.';
        std::memcpy(at + 1, entry, 4);
        return at + (entry[3] >> 2U);
    }

private:
    std::array<unsigned char, 4 * 1001> all_{}; // digits may be read from their middle on
};
inline constexpr ThreeDigits threeDigits;

/// Prints a finite number rounded to a thousandth, as plain decimals without trailing zeros; never "-0".
///
/// Baked motion is little else than such numbers: most are done in place, three digits at a time and without a branch
/// by the sign.
/// @param at     room for numberTextRoom characters
/// @param other  prints what is too large to be done so, or not finite
/// @return behind the last character
template<class Other>
[[nodiscard]] inline char* printThousandths(char* at, double value, const Other& other) {
    const double scaled = value * 1000;
    if (!(std::abs(scaled) < 999999999))
        return other(at);
    const auto rounded = static_cast<std::int32_t>(scaled + std::copysign(0.5, scaled));
    *at = '-';
    at += rounded < 0 ? 1 : 0;
    const auto thousandths = static_cast<std::uint32_t>(std::abs(rounded));
    const std::uint32_t whole = thousandths / 1000;
    if (whole < 1000)
        at = threeDigits.printWhole(at, whole);
    else
        at = threeDigits.printAll(threeDigits.printWhole(at, whole / 1000), whole % 1000);
    return threeDigits.printRest(at, thousandths % 1000);
}
[[nodiscard]] inline char* printThousandths(char* at, double value) {
    return printThousandths(at, value, [value](char* place) { return printLargeThousandths(place, value); });
}

/// As that, faster for small whole numbers, as most frames are.
template<class Other>
[[nodiscard]] inline char* printFrame(char* at, double frame, const Other& other) {
    if (frame >= 0 && frame < 1000) {
        const auto whole = static_cast<std::int32_t>(frame);
        if (whole == frame)
            return threeDigits.printWhole(at, static_cast<std::uint32_t>(whole));
    }
    return printThousandths(at, frame, other);
}

/// As printShortest, to the end of a string.
void appendShortest(std::string& out, double value);

} // namespace jostle::standalone
