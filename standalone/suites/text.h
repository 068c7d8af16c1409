#pragma once

#include <string>
#include <string_view>

namespace jostle::standalone {

/// UTF-16 of a UTF-8 text. Every byte that is not part of a valid sequence becomes U+FFFD.
[[nodiscard]] std::u16string utf16Of(std::string_view utf8);

/// UTF-8 of a terminated UTF-16 text. Halves of a character without the other become U+FFFD.
[[nodiscard]] std::string utf8Of(const char16_t* utf16);

/// The longest start of a UTF-8 text that has at most `limit` bytes and does not cut a character.
[[nodiscard]] std::string_view startOf(std::string_view utf8, std::size_t limit);

} // namespace jostle::standalone
