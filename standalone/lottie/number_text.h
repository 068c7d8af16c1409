#pragma once

#include <algorithm>
#include <array>
#include <bit>
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

/// The numbers from 0 to 999, each as four bytes that are taken and put down at once: three digits, and how many
/// characters count.
class ThreeDigits {
public:
    constexpr ThreeDigits() {
        for (std::size_t i = 0; i < 1000; ++i) {
            const std::array<unsigned char, 3> digits{static_cast<unsigned char>('0' + i / 100),
                                                      static_cast<unsigned char>('0' + i / 10 % 10),
                                                      static_cast<unsigned char>('0' + i % 10)};
            const std::size_t zerosInFront = i >= 100 ? 0 : i >= 10 ? 1 : 2;
            for (std::size_t digit = 0; digit < 3; ++digit) {
                all_[4 * i + digit] = digits[digit];
                whole_[4 * i + digit] = digits[std::min<std::size_t>(digit + zerosInFront, 2)];
            }
            all_[4 * i + 3] = i == 0 ? 0 : i % 100 == 0 ? 2 : i % 10 == 0 ? 3 : 4;
            whole_[4 * i + 3] = static_cast<unsigned char>(3 - zerosInFront);
        }
    }

    // Each of these writes four or five characters, of which what does not count is to be written over.

    /// Prints a number below 1000 without zeros in front.
    [[nodiscard]] char* printWhole(char* at, std::size_t number) const { return at + put(at, &whole_[4 * number]); }
    /// Prints all three digits.
    [[nodiscard]] char* printAll(char* at, std::size_t number) const {
        put(at, &all_[4 * number]);
        return at + 3;
    }
    /// Prints a number of thousandths below 1000 with the point before it and no zeros at the end; nothing of 0.
    [[nodiscard]] char* printRest(char* at, std::size_t number) const {
        *at = '.';
        return at + put(at + 1, &all_[4 * number]);
    }

private:
    /// @return the last of the four bytes
    static std::uint32_t put(char* at, const unsigned char* entry) {
        std::uint32_t bytes = 0;
        std::memcpy(&bytes, entry, 4);
        std::memcpy(at, &bytes, 4);
        return std::endian::native == std::endian::little ? bytes >> 24U : bytes & 0xFFU;
    }

    std::array<unsigned char, 4000> all_{};   ///< the digits, and how many characters count behind a point, with it
    std::array<unsigned char, 4000> whole_{}; ///< the digits from the first that is not 0, and their number
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
    const std::uint32_t whole = thousandths / 1000, rest = thousandths - 1000 * whole;
    if (whole < 1000)
        at = threeDigits.printWhole(at, whole);
    else
        at = threeDigits.printAll(threeDigits.printWhole(at, whole / 1000), whole % 1000);
    return threeDigits.printRest(at, rest);
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
