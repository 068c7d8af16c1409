#pragma once

#include <functional>
#include <string>

namespace jostle::standalone {

/// Runs a command, and tells what it was about if the memory does not suffice.
/// @return what the command does, or exitFailed
[[nodiscard]] int runGuarded(const std::string& about, const std::function<int()>& command);

} // namespace jostle::standalone
