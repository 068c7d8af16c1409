#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jostle {

/// Reads a decimal integer as the C library's conversion does: after blanks and a sign, up to the first character that
/// is no digit. Independent of the locale.
/// @return 0 for a text that does not begin with a number; the nearest limit for one beyond 32 bits
[[nodiscard]] std::int32_t integerOf(std::string_view text);

/// Reads a real number as the C library's conversion does, exponents and hexadecimal digits included, and narrows it to
/// single precision. Independent of the locale.
/// @return 0 for a text that does not begin with a number, and for what is not a number; the largest number that
///         a panel takes, with its sign, for infinities and for all that is beyond it
[[nodiscard]] float realOf(std::string_view text);

/// An integer in decimal digits.
[[nodiscard]] std::string integerText(std::int32_t value);

/// A real number in fixed notation with six decimals, rounded from single precision. Independent of the locale.
/// @param value  what is not finite is written as `realOf` would read it
[[nodiscard]] std::string realText(double value);

} // namespace jostle
