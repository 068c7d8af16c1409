#include "persistence/xml_elements.h"

#include <algorithm>

namespace jostle {

namespace {

// A document takes some 30 times the memory of its text if it is made of the smallest elements. Settings have elements
// of hundreds of characters, with attributes of a dozen or more, and never come near these.
constexpr std::ptrdiff_t mostElements = 1000000;
constexpr std::ptrdiff_t mostAttributes = 8000000;
// The library compares each attribute with all those before it.
constexpr std::ptrdiff_t mostAttributesOfOne = 1000;

/// Whether no two "<" have more than so many "=" between them.
bool hasShortElements(std::string_view text) {
    while (!text.empty()) {
        const std::string_view element = text.substr(0, text.find('<', 1));
        if (std::count(element.begin(), element.end(), '=') > mostAttributesOfOne) {
            return false;
        }
        text.remove_prefix(element.size());
    }
    return true;
}

/// Whether there is nothing beside the root element but comments and the like; the library takes more.
bool hasOneRoot(const tinyxml2::XMLDocument& document) {
    int roots = 0;
    for (const tinyxml2::XMLNode* node = document.FirstChild(); node != nullptr; node = node->NextSibling()) {
        roots += node->ToElement() != nullptr || node->ToText() != nullptr ? 1 : 0;
    }
    return roots <= 1;
}

} // namespace

bool parseXml(std::string_view text, tinyxml2::XMLDocument& document) {
    const bool isModest = text.size() <= maximumSettingsBytes &&
                          std::count(text.begin(), text.end(), '<') <= mostElements &&
                          std::count(text.begin(), text.end(), '=') <= mostAttributes && hasShortElements(text);
    // To the library the text ends with the first NUL.
    return isModest && text.find('\0') == std::string_view::npos &&
           document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS && hasOneRoot(document);
}

std::optional<double> valueOfText(const char* text, AttributeForm form, bool wholeWhenRead, std::size_t choiceCount,
                                  bool negativeIsTrue) {
    if (form == AttributeForm::Real && !wholeWhenRead) {
        return realOf(text);
    }
    const std::int32_t value = integerOf(text);
    if (form == AttributeForm::Boolean) {
        return value > 0 || (negativeIsTrue && value < 0) ? 1.0 : 0.0;
    }
    if (choiceCount > 0 && (value < 0 || static_cast<std::size_t>(value) >= choiceCount)) {
        return std::nullopt;
    }
    return value;
}

} // namespace jostle
