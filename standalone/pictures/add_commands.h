#pragma once

#include <CLI/CLI.hpp>

#include "standalone/pictures/render.h"
#include "standalone/pictures/solve_preview.h"

namespace jostle::standalone {

/// Adds the options that say how pictures look.
inline void addPictureOptions(CLI::App& command, PictureOptions& options) {
    constexpr const char* group = "Picture";
    command
        .add_option("--size", options.size,
                    "Pixels; of a width alone the height follows. Without it 960 on the longer side, 640 if it moves")
        ->type_name("WIDTHxHEIGHT")
        ->group(group);
    command.add_option("--background", options.background, "dark, light, or a colour such as #20242c")
        ->type_name("COLOUR")
        ->group(group);
    command.add_option("--show", options.show, "Also mesh, boxes (around bodies) or axes; several with commas")
        ->type_name("WHAT")
        ->delimiter(',')
        ->expected(1)
        ->take_all()
        ->group(group);
    command.add_option("--hide", options.hide, "Leaves out shapes, joints, bounds or signs; several with commas")
        ->type_name("WHAT")
        ->delimiter(',')
        ->expected(1)
        ->take_all()
        ->group(group);
}

/// Adds to `solve` what is needed for a preview.
/// @param preview  receives the file's name
inline void addPreview(CLI::App& solve, std::string& preview, PictureOptions& options) {
    CLI::Option* const file =
        solve
            .add_option("--preview", preview,
                        "Also writes a moving picture of the simulation (.gif), baked frames only")
            ->type_name("FILE")
            ->group("Picture");
    addPictureOptions(solve, options);
    for (const char* name : {"--size", "--background", "--show", "--hide"}) {
        solve.get_option(name)->needs(file);
    }
}

/// Adds the command that makes pictures, without its settings.
/// @param animationDescription  as for the other commands
inline CLI::App& addRender(CLI::App& app, RenderOptions& options, const char* animationDescription) {
    CLI::App* command = app.add_subcommand(
        "render", "Simulates the layers and writes what the preview shows as a picture, still or moving.");
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("-o,--output", options.output, "The picture: .png for one frame, .gif for many")
        ->required()
        ->type_name("OUT");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    command->add_flag("--separate", options.separate,
                      "First splits layers with several masks or groups, so that each part moves on its own");
    command->add_option("--frame", options.frame, "Which frame, of a .png; 0 without it")
        ->type_name("N")
        ->check(CLI::Range(0, greatestFrame));
    command->add_option("--start", options.startFrame, "First frame of a .gif; without it the start of the work area")
        ->type_name("N")
        ->check(CLI::Range(0, greatestFrame));
    command->add_option("--end", options.endFrame, "Last frame of a .gif; without it the last of the work area")
        ->type_name("N")
        ->check(CLI::Range(0, greatestFrame));
    command
        ->add_option("--every", options.every,
                     "Frames from one picture of a .gif to the next; without it 1, or what keeps it below 50 a second")
        ->type_name("N")
        ->check(CLI::Range(1, greatestFrame));
    addPictureOptions(*command, options.picture);
    command->add_flag("-q,--quiet", options.quiet, "Says nothing unless something is wrong");
    command->add_flag("--json", options.json, "Prints summary and progress as JSON");
    command->callback([&options] { options.progress = progressFor(options.quiet, options.json); });
    return *command;
}

} // namespace jostle::standalone
