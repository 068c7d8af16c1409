#include "persistence/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "persistence/panel_ranges.h"

namespace jostle {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

/// Takes blanks and one sign from the front of a text.
/// @return whether the sign is a minus
bool takeSign(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    return isNegative;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether a number out of range is too large, rather than too near to 0: the place of its first digit that is not 0,
/// counted from the point, decides together with its exponent.
/// @param number        digits with a point among them, then perhaps an exponent
/// @param exponentMark  small letter before the exponent
/// @param digitWeight   how much of the exponent a digit is worth
bool isTooLarge(std::string_view number, char exponentMark, long digitWeight) {
    const auto isMark = [&](char c) { return c == exponentMark || c == exponentMark - 'a' + 'A'; };
    const std::size_t mark =
        static_cast<std::size_t>(std::find_if(number.begin(), number.end(), isMark) - number.begin());
    const std::string_view digits = number.substr(0, mark);
    const long point = static_cast<long>(std::min(digits.find('.'), digits.size()));
    const long first = static_cast<long>(std::min(digits.find_first_not_of("0."), digits.size()));
    long exponent = 0;
    if (mark < number.size()) {
        std::string_view text = number.substr(mark + 1);
        const bool isNegative = takeSign(text);
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), exponent);
        if (parsed.ec == std::errc::result_out_of_range) {
            return !isNegative;
        }
        exponent = isNegative ? -exponent : exponent;
    }
    return (point - first) * digitWeight + std::clamp(exponent, -1000000000L, 1000000000L) > 0;
}

/// A number without a sign; 0 if the text does not begin with one.
double unsignedReal(std::string_view text) {
    // from_chars takes a sign of its own, which after ours would be a second one.
    if (text.empty() || text.front() == '-') {
        return 0;
    }
    const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    if (isHex) {
        text.remove_prefix(2);
        if (text.front() == '-') {
            return 0;
        }
    }
    double value = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value,
                                        isHex ? std::chars_format::hex : std::chars_format::general);
    if (parsed.ec == std::errc::result_out_of_range) {
        const std::string_view number = text.substr(0, static_cast<std::size_t>(parsed.ptr - text.data()));
        const bool isLarge = isHex ? isTooLarge(number, 'p', 4) : isTooLarge(number, 'e', 1);
        return isLarge ? std::numeric_limits<double>::infinity() : 0.0;
    }
    const bool isNumber = parsed.ec == std::errc{} && !std::isnan(value);
    // Both words would be taken after 0x as well.
    return isNumber && !(isHex && std::isinf(value)) ? value : 0.0;
}

double usable(double value) {
    return std::isnan(value) ? 0.0 : std::clamp(value, -greatestInBox, greatestInBox);
}

} // namespace

std::int32_t integerOf(std::string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool isNegative = takeSign(text);
    if (text.empty() || !isDigit(text.front())) {
        return 0;
    }
    std::int64_t value = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
    if (parsed.ec == std::errc::result_out_of_range) {
        return isNegative ? Limits::min() : Limits::max();
    }
    value = isNegative ? -value : value;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

float realOf(std::string_view text) {
    const bool isNegative = takeSign(text);
    const double value = usable(unsignedReal(text));
    return static_cast<float>(isNegative ? -value : value);
}

std::string integerText(std::int32_t value) {
    return std::to_string(value);
}

std::string realText(double value) {
    std::array<char, 32> buffer{}; // eight digits, a sign, a point and six decimals at most
    const double narrowed = static_cast<double>(static_cast<float>(usable(value)));
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), narrowed, std::chars_format::fixed, 6);
    return {buffer.data(), result.ptr};
}

} // namespace jostle
