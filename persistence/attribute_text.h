#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "persistence/attribute.h"

namespace jostle {

/// Parses the text of a value that a person typed.
///
/// @param text     a decimal number; for a flag also true/false, on/off, yes/no; for one with choices also a name
/// @param form     what kind of value it is
/// @param choices  names of the values 0, 1, 2 ..., compared without case
/// @return the value, or nothing if the text is none
[[nodiscard]] std::optional<double> parseAttributeText(std::string_view text, AttributeForm form,
                                                       std::span<const std::string_view> choices);

/// What a value may be, for messages: "a number from 0.01 to 100", "0 or 1", "one of Static, Dead or 0 to 1".
[[nodiscard]] std::string describeValues(AttributeForm form, double least, double greatest,
                                         std::span<const std::string_view> choices);

/// Sets an attribute from text.
/// @return nothing if it was set; else what would have been right, and the record is as it was
template<class Record>
[[nodiscard]] std::optional<std::string> setFromText(Record& record, const Attribute<Record>& attribute,
                                                     std::string_view text) {
    const std::optional<double> value = parseAttributeText(text, attribute.form, attribute.choices);
    if (value && *value >= attribute.least && *value <= attribute.greatest) {
        attribute.write(record, *value);
        return std::nullopt;
    }
    return describeValues(attribute.form, attribute.least, attribute.greatest, attribute.choices);
}

} // namespace jostle
