#pragma once

namespace jostle::standalone {

/// From now on the first SIGINT, SIGTERM or SIGHUP asks for an orderly end, as `interrupted` tells, and a second one of
/// the same kind ends the program at once. Those that the program was started to ignore stay ignored.
void heedInterruptions();

/// For a process made by a fork: signals end it at once again, until it heeds them itself.
void forgetInterruptions();

/// Whether somebody wants the program to end.
[[nodiscard]] bool interrupted();

} // namespace jostle::standalone
