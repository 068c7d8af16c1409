#include "persistence/attribute_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "persistence/near_names.h"

namespace jostle {

namespace {

std::optional<double> parseFlag(std::string_view text) {
    for (const std::string_view word : {"1", "true", "on", "yes"}) {
        if (equalWithoutCase(text, word)) {
            return 1.0;
        }
    }
    for (const std::string_view word : {"0", "false", "off", "no"}) {
        if (equalWithoutCase(text, word)) {
            return 0.0;
        }
    }
    return std::nullopt;
}

std::optional<double> parseNumber(std::string_view text, AttributeForm form) {
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc{} || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    if (form == AttributeForm::Integer && value != std::trunc(value)) {
        return std::nullopt;
    }
    return value;
}

std::string plain(double value) {
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    return {buffer.data(), result.ptr};
}

} // namespace

std::optional<double> parseAttributeText(std::string_view text, AttributeForm form,
                                         std::span<const std::string_view> choices) {
    const auto named = std::find_if(choices.begin(), choices.end(),
                                    [&](std::string_view choice) { return equalWithoutCase(choice, text); });
    if (named != choices.end()) {
        return static_cast<double>(named - choices.begin());
    }
    return form == AttributeForm::Boolean ? parseFlag(text) : parseNumber(text, form);
}

std::string describeValues(AttributeForm form, double least, double greatest,
                           std::span<const std::string_view> choices) {
    if (form == AttributeForm::Boolean) {
        return "0 or 1";
    }
    const std::string range = plain(least) + " to " + plain(greatest);
    if (choices.empty()) {
        return (form == AttributeForm::Integer ? "a whole number from " : "a number from ") + range;
    }
    std::string names;
    for (const std::string_view choice : choices) {
        names.append(names.empty() ? "" : ", ").append(choice);
    }
    return "one of " + names + ", or " + range;
}

} // namespace jostle
