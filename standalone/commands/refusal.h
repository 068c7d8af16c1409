#pragma once

#include <string>

namespace jostle::standalone {

/// Why a command does not do what it was asked for.
struct Refusal {
    std::string about; ///< the option or the file
    std::string message;
};

/// Prints one line on standard error: the program, what it is about, and what is wrong.
void complain(const std::string& about, const std::string& message);

/// Complains of a wrong use.
/// @return exitWrongUse
[[nodiscard]] int refuse(const Refusal& refusal);

/// Complains of a failure.
/// @return exitFailed
[[nodiscard]] int fail(const Refusal& failure);

} // namespace jostle::standalone
