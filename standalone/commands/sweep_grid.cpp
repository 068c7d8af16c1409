#include "standalone/commands/sweep_grid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace jostle::standalone {

namespace {

constexpr int mostDecimals = 9;
constexpr std::int64_t greatest = 1'000'000'000'000'000'000; // with the decimals as part of it

/// A decimal number, digits / 10^decimals.
struct Decimal {
    std::int64_t digits = 0;
    int decimals = 0;
};

/// @return nothing for what is no plain decimal, or does not fit
std::optional<Decimal> decimalOf(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    Decimal number;
    bool inFraction = false;
    bool hasDigit = false;
    for (const char c : text) {
        if (c == '.' && !inFraction) {
            inFraction = true;
            continue;
        }
        if (c < '0' || c > '9' || number.digits > greatest / 10 || number.decimals == mostDecimals) {
            return std::nullopt;
        }
        hasDigit = true;
        number.digits = 10 * number.digits + (c - '0');
        number.decimals += inFraction ? 1 : 0;
    }
    number.digits = isNegative ? -number.digits : number.digits;
    return hasDigit ? std::optional(number) : std::nullopt;
}

/// With more decimals. @return whether it fits
bool stretch(Decimal& number, int decimals) {
    for (; number.decimals < decimals; ++number.decimals) {
        if (number.digits > greatest / 10 || number.digits < -greatest / 10) {
            return false;
        }
        number.digits *= 10;
    }
    return true;
}

std::string textOf(Decimal number) {
    while (number.decimals > 0 && number.digits % 10 == 0) {
        number.digits /= 10;
        --number.decimals;
    }
    std::string text = std::to_string(number.digits < 0 ? -number.digits : number.digits);
    const auto decimals = static_cast<std::size_t>(number.decimals);
    if (decimals > 0) {
        text.insert(0, decimals + 1 - std::min(text.size(), decimals + 1), '0');
        text.insert(text.size() - decimals, 1, '.');
    }
    return number.digits < 0 ? "-" + text : text;
}

std::vector<std::string_view> splitAtColons(std::string_view text) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t colon = text.find(':');
        parts.push_back(text.substr(0, colon));
        if (colon == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(colon + 1);
    }
}

/// A key with what file systems and shells do not take replaced.
std::string inFileName(const std::string& key) {
    constexpr std::string_view unwanted = "/\\:?\"'<>|&;$`%# ";
    std::string text;
    for (const char c : key) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '*') {
            text += "all";
        } else {
            text += byte < 0x20 || byte == 0x7F || unwanted.find(c) != std::string_view::npos ? '-' : c;
        }
    }
    if (text.starts_with('.') || text.starts_with('-')) {
        text.front() = '_'; // neither hidden nor an option
    }
    return text;
}

std::string numberedName(std::size_t index) {
    const std::string number = std::to_string(index + 1);
    return std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number + ".json";
}

} // namespace

std::variant<SweepAxis, std::string> parseSweep(std::string_view text) {
    constexpr const char* form = "is not KEY=A:B:STEP in plain numbers, such as ball.restitution=0:1:0.25";
    const std::size_t equals = text.rfind('=');
    if (equals == std::string_view::npos || text.substr(0, equals).find('.') == std::string_view::npos) {
        return form;
    }
    const std::vector<std::string_view> parts = splitAtColons(text.substr(equals + 1));
    if (parts.size() != 3) {
        return form;
    }
    std::array<Decimal, 3> numbers;
    int decimals = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::optional<Decimal> number = decimalOf(parts[i]);
        if (!number) {
            return form;
        }
        numbers[i] = *number;
        decimals = std::max(decimals, number->decimals);
    }
    for (Decimal& number : numbers) {
        if (!stretch(number, decimals)) {
            return "has numbers with more digits than can be counted with";
        }
    }
    const auto& [first, last, step] = numbers;
    if (step.digits == 0) {
        return "has a step of 0";
    }
    if ((last.digits - first.digits) / step.digits < 0 ||
        (last.digits != first.digits && (last.digits > first.digits) != (step.digits > 0))) {
        return "has a step that leads away from the last value";
    }
    const auto count = static_cast<std::uint64_t>((last.digits - first.digits) / step.digits) + 1;
    if (count > mostSweepResults) {
        return "makes " + std::to_string(count) + " results; at most " + std::to_string(mostSweepResults) +
               " are made, so take a larger step";
    }
    SweepAxis axis{std::string(text.substr(0, equals)), {}};
    for (std::uint64_t i = 0; i < count; ++i) {
        axis.values.push_back(textOf({first.digits + static_cast<std::int64_t>(i) * step.digits, decimals}));
    }
    return axis;
}

std::size_t sweepSize(std::span<const SweepAxis> axes) {
    std::size_t size = 1;
    for (const SweepAxis& axis : axes) {
        size *= axis.values.size();
        if (size > mostSweepResults) {
            break;
        }
    }
    return size;
}

std::vector<std::string> sweepValues(std::span<const SweepAxis> axes, std::size_t index) {
    std::vector<std::string> values(axes.size());
    for (std::size_t i = axes.size(); i-- > 0;) {
        const std::vector<std::string>& all = axes[i].values;
        values[i] = all[index % all.size()];
        index /= all.size();
    }
    return values;
}

std::string sweepFileName(std::span<const SweepAxis> axes, std::size_t index) {
    constexpr std::size_t longest = 200; // bytes, of the 255 that most file systems take
    const std::vector<std::string> values = sweepValues(axes, index);
    std::string name;
    std::size_t longestOfAll = 0;
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const std::string key = (i == 0 ? "" : "_") + inFileName(axes[i].key) + "=";
        name += key + values[i];
        std::size_t longestValue = 0;
        for (const std::string& value : axes[i].values) {
            longestValue = std::max(longestValue, value.size());
        }
        longestOfAll += key.size() + longestValue;
    }
    return longestOfAll > longest ? numberedName(index) : name + ".json";
}

} // namespace jostle::standalone
