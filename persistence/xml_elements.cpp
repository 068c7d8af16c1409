#include "persistence/xml_elements.h"

namespace jostle {

namespace {

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
    // To the library the text ends with the first NUL.
    return text.find('\0') == std::string_view::npos &&
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
