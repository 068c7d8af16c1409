#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace jostle::standalone {

/// What a job said on standard error, with each line naming it: "jostle: what is wrong" becomes "jostle: name: what is
/// wrong", and lines that name it already stay.
/// @param name  as the user gave it
[[nodiscard]] std::string namedLines(std::string_view lines, std::string_view name);

/// The last line without the program's name and the job's, as a reason of its failure; empty if there is none.
[[nodiscard]] std::string lastMessage(std::string_view lines, std::string_view name);

/// Prints lines on standard error in one go.
void printLines(const std::string& lines);

/// A text as a JSON string, with its quotes.
[[nodiscard]] std::string jsonString(std::string_view text);

/// A JSON text without the line's end after it, to be put into another.
[[nodiscard]] std::string_view withoutLineEnd(std::string_view text);

} // namespace jostle::standalone
