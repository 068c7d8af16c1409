#pragma once

#include <string>
#include <string_view>

namespace jostle::standalone {

/// A text that came from outside, as it may stand in a message of one line: each run of white space and control
/// characters becomes a single blank, and nothing in it moves a terminal's cursor or changes its colours.
/// @param text  UTF-8; bytes that are none are handed on
[[nodiscard]] std::string printable(std::string_view text);

} // namespace jostle::standalone
