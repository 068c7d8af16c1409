#pragma once

#include <string>

#include "standalone/document/path.h"
#include "standalone/document/stream.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/format_rules.h"
#include "standalone/lottie/key_texts.h"
#include "standalone/lottie/splice.h"

namespace jostle::standalone {

/// Prints the text of a property's member `k`: keyframes if the stream moves, else its value.
///
/// Keys without segments, as baked motion has them, are linear and rounded to a thousandth; others keep their easing
/// and their numbers. In place of a number that is not finite stands the last finite one before it.
/// @param style  of the object that holds the member
/// @param texts  kept from one property to the next
void printValue(const Stream& stream, FieldForm form, const TextStyle& style, KeyTextsStore& texts, TextSink& out);

/// That text.
[[nodiscard]] std::string valueText(const Stream& stream, FieldForm form, const TextStyle& style);

/// The text of a property as a whole.
/// @param style  of the object that holds the property
[[nodiscard]] std::string propertyText(const Stream& stream, FieldForm form, const TextStyle& style);

/// The text of the member `k` of a property that holds a path, by the rules for streams.
[[nodiscard]] std::string pathValueText(const PathStream& path, const FormatRules& rules, const TextStyle& style);

/// The text of such a property as a whole.
[[nodiscard]] std::string pathPropertyText(const PathStream& path, const FormatRules& rules, const TextStyle& style);

} // namespace jostle::standalone
