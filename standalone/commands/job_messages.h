#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "standalone/commands/job_runner.h"

namespace jostle::standalone {

/// What a job said on standard error, with each line naming it: "jostle: what is wrong" becomes "jostle: name: what is
/// wrong", and lines that name it already stay.
/// @param name  as the user gave it
[[nodiscard]] std::string namedLines(std::string_view lines, std::string_view name);

/// Why a job failed: the last line of its standard error without the program's name and the job's, or that it was never
/// started. Empty if nobody knows.
/// @param name  as the user gave it
[[nodiscard]] std::string reasonOf(const JobOutcome& outcome, std::string_view name);

/// Prints lines on standard error in one go.
void printLines(const std::string& lines);

/// A text as a JSON string, with its quotes.
[[nodiscard]] std::string jsonString(std::string_view text);

/// A JSON text without the line's end after it, to be put into another.
[[nodiscard]] std::string_view withoutLineEnd(std::string_view text);

} // namespace jostle::standalone
