#include <csignal>
#include <cstdio>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/commands/inspect.h"
#include "standalone/commands/load.h"
#include "standalone/commands/options.h"
#include "standalone/commands/separate.h"
#include "standalone/commands/solve.h"

namespace {

using namespace jostle::standalone;

constexpr const char* solveDescription =
    "Simulates the layers of a Lottie file as rigid bodies and writes their motion as keyframes.";

constexpr const char* setDescription =
    "Changes a setting, as often as you like: floor.type=Static, \"*.restitution=0.8\", 3.density=2, "
    "gravity.magnitude=5, solver.stepsPerFrame=4. Before the dot stands a layer's name, its number from 1, * for all, "
    "solver or gravity. Body types: Static, Kinematic, Dynamic, Dormant, AEmatic, Dead.";

constexpr const char* animationDescription =
    "Which animation of a .lottie archive, by its identifier; without it the first";

void addSolve(CLI::App& app, SolveOptions& options) {
    CLI::App* command = app.add_subcommand("solve", solveDescription);
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("-o,--output", options.output, "Result; without it IN with \"-solved\" after its name")
        ->type_name("OUT");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    command->add_option("--set", options.sets, setDescription)
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
    command->add_option("--start", options.startFrame, "First baked frame; without it the start of the work area")
        ->type_name("N")
        ->check(CLI::Range(0, greatestFrame));
    command->add_option("--end", options.endFrame, "Last baked frame; without it the last of the work area")
        ->type_name("N")
        ->check(CLI::Range(0, greatestFrame));
    command->add_flag("--in-place", options.inPlace,
                      "Changes the composition itself, not a duplicate; without -o saves it in IN");
    command->add_flag("--separate", options.separate,
                      "First splits layers with several masks or groups, so that each part moves on its own");
    command->add_flag("--motion-blur", options.motionBlur, "Turns on motion blur for the layers that move");
    command
        ->add_option("--reduce", options.reduce,
                     "Fewer keyframes: straight lines between keys that keep every frame within so many pixels, and "
                     "degrees, of the simulation; off unless given")
        ->type_name("PIXELS")
        ->check(CLI::Range(0.01, 1000.0));
    command->add_option("--samples", options.samples, "Also writes where each body was on each frame, as JSON")
        ->type_name("FILE");
    command->add_flag("-q,--quiet", options.quiet, "Says nothing unless something is wrong");
    command->add_flag("--json", options.json, "Prints the summary as JSON");
}

void addInspect(CLI::App& app, InspectOptions& options) {
    CLI::App* command =
        app.add_subcommand("inspect", "Tells which layers become bodies, of what shape, and why the others do not.");
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    CLI::Option* const json = command->add_flag("--json", options.json, "Prints a JSON object");
    command
        ->add_flag("--outlines", options.outlines,
                   "With --json: also the pieces that each body consists of at frame 0, in composition pixels")
        ->needs(json);
    command
        ->add_option("--precision", options.precision,
                     "How finely curves are followed, as meshPrecision of all bodies: N + 1 points on each; 2 unless "
                     "given")
        ->type_name("N")
        ->check(CLI::Range(0, 100));
    command
        ->add_option("--matrices", options.matrices,
                     "Prints instead, as JSON, where each layer stands at these composition frames, parents included: "
                     "a list such as 0,12.5,30-60, or \"all\" for those of the work area")
        ->type_name("FRAMES");
}

void addSeparate(CLI::App& app, SeparateOptions& options) {
    CLI::App* command = app.add_subcommand(
        "separate", "Splits layers with several masks or groups into layers of one each, and hides what was split.");
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("-o,--output", options.output, "Result; without it IN with \"-separated\" after its name")
        ->type_name("OUT");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    command->add_flag("-q,--quiet", options.quiet, "Says nothing unless something is wrong");
}

/// Runs a command, and tells what it was about if the memory does not suffice.
int run(const std::string& input, const std::function<int()>& command) {
    try {
        return command();
    } catch (const std::bad_alloc&) {
        complain(input, "there is not enough memory for it; nothing was written. Solve fewer frames at a time");
        return exitFailed;
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Jostle simulates the layers of a composition as rigid bodies and bakes their motion to keyframes."};
    app.name("jostle");
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("jostle ") + JOSTLE_VERSION);
    app.failure_message([](const CLI::App* whole, const CLI::Error& error) {
        const std::vector<CLI::App*> used = whole->get_subcommands();
        const std::string command = used.empty() ? "" : used.front()->get_name() + " ";
        return std::string("jostle: ") + error.what() + "; \"jostle " + command + "--help\" tells how it is used\n";
    });
    app.footer("Exit status: 0 done, 1 failed while working, 2 wrong use.");
    SolveOptions solveOptions;
    InspectOptions inspectOptions;
    SeparateOptions separateOptions;
    addSolve(app, solveOptions);
    addInspect(app, inspectOptions);
    addSeparate(app, separateOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitDone : exitWrongUse;
    }
    // A file that grows beyond a limit is then an error of writing, and is told as one.
    std::signal(SIGXFSZ, SIG_IGN);
    int status = exitDone;
    if (app.got_subcommand("inspect")) {
        status = run(inspectOptions.input, [&] { return runInspect(inspectOptions); });
    } else if (app.got_subcommand("separate")) {
        status = run(separateOptions.input, [&] { return runSeparate(separateOptions); });
    } else {
        status = run(solveOptions.input, [&] { return runSolve(solveOptions); });
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain("standard output", "cannot be written");
        return status == exitDone ? exitFailed : status;
    }
    return status;
}
