#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include <tinyxml2.h>

#include "persistence/attribute.h"
#include "persistence/number_text.h"

/// What the readers of settings share on top of the XML library. For this room alone.
namespace jostle {

using XmlElement = tinyxml2::XMLElement;

/// Parses a text of UTF-8 that is within the limits, unless it is nested more than 100 deep or holds more than one
/// document.
/// @return whether the document holds it
[[nodiscard]] bool parseXml(std::string_view text, tinyxml2::XMLDocument& document);

/// The text of an attribute, or null.
/// @param name  ends with a NUL, as literals do
[[nodiscard]] inline const char* attributeText(const XmlElement& element, std::string_view name) {
    return element.Attribute(name.data());
}

/// An attribute as an integer; nothing if it is missing.
[[nodiscard]] inline std::optional<std::int32_t> integerAttribute(const XmlElement& element, std::string_view name) {
    const char* const text = attributeText(element, name);
    return text == nullptr ? std::nullopt : std::optional(integerOf(text));
}

/// How the attributes of an element are taken.
struct ReadRules {
    bool negativeIsTrue = false; ///< a flag holds unless it is 0; else only above 0
    bool throughPanels = false;  ///< values go through the panels' sliders, which narrows them
};

/// The value of an attribute's text. Nothing for a number that stands for no choice.
[[nodiscard]] std::optional<double> valueOfText(const char* text, AttributeForm form, bool wholeWhenRead,
                                                std::size_t choiceCount, bool negativeIsTrue);

/// Takes the attributes of an element into a record. What is missing leaves its field alone, and so does what lacks its
/// partner.
template<class Record>
void readAttributes(const XmlElement& element, std::span<const Attribute<Record>> table, Record& record,
                    const ReadRules& rules = {}) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::size_t first = i;
        bool complete = attributeText(element, table[i].name) != nullptr;
        while (table[i].withNext) {
            ++i;
            complete = complete && attributeText(element, table[i].name) != nullptr;
        }
        for (std::size_t k = first; complete && k <= i; ++k) {
            const Attribute<Record>& row = table[k];
            const std::optional<double> value =
                valueOfText(attributeText(element, row.name), row.form, row.wholeWhenRead, row.choices.size(),
                            rules.negativeIsTrue);
            if (value) {
                row.write(record, rules.throughPanels && row.throughPanel ? row.throughPanel(*value) : *value);
            }
        }
    }
}

} // namespace jostle
