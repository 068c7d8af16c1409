#pragma once

#include <string>
#include <string_view>

namespace jostle::standalone {

/// What stands between the quotes of a valid JSON string, without its escapes, in UTF-8. Bytes that are no UTF-8 and
/// halves of surrogate pairs become U+FFFD.
[[nodiscard]] std::string unescaped(std::string_view raw);

/// Appends a string with quotes, escaping what JSON does not allow as it is.
void appendQuoted(std::string& out, std::string_view utf8);

} // namespace jostle::standalone
