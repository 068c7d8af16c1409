#pragma once

#include <CLI/CLI.hpp>

#include "standalone/window/open.h"

namespace jostle::standalone {

/// Adds the command that opens the window, without its settings.
/// @param animationDescription  as for the other commands
inline CLI::App& addOpen(CLI::App& app, OpenOptions& options, const char* animationDescription) {
    CLI::App* command = app.add_subcommand("open", "Shows the simulation of a Lottie file in a window.");
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    return *command;
}

} // namespace jostle::standalone
