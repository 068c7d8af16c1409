#include <csignal>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/commands/guarded.h"
#include "standalone/commands/heap.h"
#include "standalone/commands/inspect.h"
#include "standalone/commands/load.h"
#include "standalone/commands/options.h"
#include "standalone/commands/separate.h"
#include "standalone/commands/settings.h"
#include "standalone/commands/solve_batch.h"
#ifdef JOSTLE_GUI
#include "standalone/pictures/add_commands.h"
#include "standalone/window/add_command.h"
#endif

namespace {

using namespace jostle::standalone;

constexpr const char* solveDescription =
    "Simulates the layers of a Lottie file as rigid bodies and writes their motion as keyframes.";

constexpr const char* solveExamples = R"(Examples:
  jostle solve title.json -o falling.json --set floor.type=Static
      All layers fall but the one named floor. "jostle inspect title.json" lists them.
  jostle solve titles/*.json -o solved/
      Each file on its own, as many at once as there are processors.
  jostle solve title.json -o variants/ --set floor.type=Static
         --sweep gravity.magnitude=2:10:4 --sweep "*.restitution=0:0.9:0.3"
      Twelve results side by side: open variants/sweep.html.

With --json progress comes on standard error, one JSON object a line, among messages that begin
with "jostle: ".
Exit status: 0 done, 1 failed while working or any of several files failed, 2 wrong use.)";

constexpr const char* setDescription =
    "Changes a setting, as often as you like: floor.type=Static, \"*.restitution=0.8\", 3.density=2, "
    "gravity.magnitude=5, solver.stepsPerFrame=4. Before the dot stands a layer's name, its number from 1, * for all, "
    "solver or gravity. Body types: Static, Kinematic, Dynamic, Dormant, AEmatic, Dead.";

constexpr const char* animationDescription =
    "Which animation of a .lottie archive, by its identifier; without it the first";

/// Help in lines that a terminal shows whole: names to the left, descriptions broken between words.
class WrappedHelp : public CLI::Formatter {
public:
    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        constexpr std::size_t names = 26;
        constexpr std::size_t width = 100;
        std::string text = "  " + make_option_name(option, isPositional) + make_option_opts(option);
        text += text.size() + 2 > names ? "\n" + std::string(names, ' ') : std::string(names - text.size(), ' ');
        std::size_t column = names;
        std::istringstream words(make_option_desc(option));
        for (std::string word; words >> word; column += word.size() + 1) {
            if (column > names && column + word.size() > width) {
                text += "\n" + std::string(names, ' ');
                column = names;
            }
            text += (column > names ? " " : "") + word;
        }
        return text + "\n";
    }
};

/// A whole number within limits, which the help leaves for the error to tell.
CLI::Validator within(int least, int most) {
    return CLI::Range(least, most).description("");
}

/// The options that change a composition's setup.
void addSetup(CLI::App& command, std::string& settings, std::vector<std::string>& sets,
              const std::string& group = "Options") {
    command.add_option("--settings", settings, "Settings file (.xml) to lay over the composition, before --set")
        ->type_name("FILE")
        ->check([](const std::string& name) { return name.empty() ? "is empty; name a settings file" : std::string(); })
        ->group(group);
    command.add_option("--set", sets, setDescription)
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false)
        ->group(group);
}

void addSolveFiles(CLI::App& command, SolveRequest& request) {
    SolveOptions& options = request.options;
    command.add_option("input", request.inputs, "Lottie files (.json or .lottie)")->required()->type_name("IN");
    command
        .add_option("-o,--output", options.output,
                    "Result, or the folder for it, which is needed with --sweep; without it IN with \"-solved\" after "
                    "its name")
        ->type_name("OUT")
        ->group("Files");
    command
        .add_flag("--in-place", options.inPlace,
                  "Changes the composition itself, not a duplicate; without -o saves it in IN")
        ->group("Files");
    command.add_option("--animation", options.animation, animationDescription)->type_name("ID")->group("Files");
    command
        .add_option("--samples", options.samples, "Also writes where each body was on each frame, as JSON; of one IN")
        ->type_name("FILE")
        ->group("Files");
}

void addSolveSimulation(CLI::App& command, SolveOptions& options) {
    constexpr const char* group = "Simulation";
    addSetup(command, options.settings, options.sets, group);
    command
        .add_flag("--separate", options.separate,
                  "First splits layers with several masks or groups, so that each part moves on its own")
        ->group(group);
}

void addSolveKeyframes(CLI::App& command, SolveOptions& options) {
    constexpr const char* group = "Keyframes";
    command.add_option("--start", options.startFrame, "First baked frame; without it the start of the work area")
        ->type_name("N")
        ->check(within(0, greatestFrame))
        ->group(group);
    command.add_option("--end", options.endFrame, "Last baked frame; without it the last of the work area")
        ->type_name("N")
        ->check(within(0, greatestFrame))
        ->group(group);
    command
        .add_option("--reduce", options.reduce,
                    "Fewer keyframes, with straight lines between them: on every frame positions are at most so many "
                    "pixels and angles so many degrees off the simulation; without it each change has its key")
        ->type_name("PIXELS")
        ->check(CLI::Range(0.01, 1000.0).description(""))
        ->group(group);
    command.add_flag("--motion-blur", options.motionBlur, "Turns on motion blur for the layers that move")
        ->group(group);
}

void addSolveMany(CLI::App& command, SolveRequest& request) {
    constexpr const char* group = "Many results";
    constexpr int mostJobs = 1024;
    command
        .add_option("--sweep", request.sweeps,
                    "Solves IN once for each value A, A+STEP and so on up to B of a setting; given again, for each "
                    "combination. Results are named by the values, and sweep.html beside them shows all")
        ->type_name("KEY=A:B:STEP")
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false)
        ->group(group);
    command
        .add_option("--player", request.player,
                    "For sweep.html: the script lottie.min.js on this computer, instead of the one on the network")
        ->type_name("PATH")
        ->group(group);
    command
        .add_option("-j,--jobs", request.jobs,
                    "How many to solve at once; without it one for each processor. Results do not depend on it")
        ->type_name("N")
        ->check(within(1, mostJobs))
        ->group(group);
}

void addSolve(CLI::App& app, SolveRequest& request) {
    CLI::App* command = app.add_subcommand("solve", solveDescription);
    addSolveFiles(*command, request);
    addSolveSimulation(*command, request.options);
    addSolveKeyframes(*command, request.options);
    addSolveMany(*command, request);
    command->add_flag("-q,--quiet", request.options.quiet, "Says nothing unless something is wrong")->group("Output");
    command->add_flag("--json", request.options.json, "Prints summary and progress as JSON")->group("Output");
    command->footer(solveExamples);
    command->callback([&options = request.options] { options.progress = progressFor(options.quiet, options.json); });
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
        ->check(within(0, 100));
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

void addSettings(CLI::App& app, SettingsOptions& options) {
    CLI::App* command = app.add_subcommand(
        "settings", "Writes the setup of a composition as a settings file, to be edited, kept or laid over it again.");
    command->add_option("input", options.input, "Lottie file (.json or .lottie)")->required()->type_name("IN");
    command->add_option("-o,--output", options.output, "Settings file; without it IN with \".xml\" after its name")
        ->type_name("FILE");
    command->add_option("--animation", options.animation, animationDescription)->type_name("ID");
    addSetup(*command, options.settings, options.sets);
    command->add_flag("-q,--quiet", options.quiet, "Says nothing unless something is wrong");
}

} // namespace

int main(int argc, char** argv) {
    keepFreedMemory();
    CLI::App app{"Jostle simulates the layers of a composition as rigid bodies and bakes their motion to keyframes."};
    app.name("jostle");
    app.formatter(std::make_shared<WrappedHelp>());
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("jostle ") + JOSTLE_VERSION);
    app.failure_message([](const CLI::App* whole, const CLI::Error& error) {
        const std::vector<CLI::App*> used = whole->get_subcommands();
        const std::string command = used.empty() ? "" : used.front()->get_name() + " ";
        return std::string("jostle: ") + error.what() + "; \"jostle " + command + "--help\" tells how it is used\n";
    });
    app.footer("Exit status: 0 done, 1 failed while working, 2 wrong use.");
    SolveRequest solveRequest;
    InspectOptions inspectOptions;
    SeparateOptions separateOptions;
    SettingsOptions settingsOptions;
    addSolve(app, solveRequest);
    addInspect(app, inspectOptions);
    addSeparate(app, separateOptions);
    addSettings(app, settingsOptions);
#ifdef JOSTLE_GUI
    RenderOptions renderOptions;
    addSetup(addRender(app, renderOptions, animationDescription), renderOptions.settings, renderOptions.sets);
    std::string solvePreview;
    PictureOptions solvePicture;
    addPreview(*app.get_subcommand("solve"), solvePreview, solvePicture);
    OpenOptions openOptions;
    addSetup(addOpen(app, openOptions, animationDescription), openOptions.settings, openOptions.sets);
#endif
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitDone : exitWrongUse;
    }
    // A file that grows beyond a limit is then an error of writing, and is told as one.
    std::signal(SIGXFSZ, SIG_IGN);
    int status = exitDone;
    if (app.got_subcommand("inspect")) {
        status = runGuarded(inspectOptions.input, [&] { return runInspect(inspectOptions); });
    } else if (app.got_subcommand("separate")) {
        status = runGuarded(separateOptions.input, [&] { return runSeparate(separateOptions); });
    } else if (app.got_subcommand("settings")) {
        status = runGuarded(settingsOptions.input, [&] { return runSettings(settingsOptions); });
#ifdef JOSTLE_GUI
    } else if (app.got_subcommand("render")) {
        status = runGuarded(renderOptions.input, [&] { return runRender(renderOptions); });
    } else if (app.got_subcommand("open")) {
        status = runGuarded(openOptions.input, [&] { return runOpen(openOptions); });
    } else {
        status = runWithPreview(solveRequest, solvePreview, solvePicture);
#else
    } else {
        status = runSolveRequest(solveRequest);
#endif
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain("standard output", "cannot be written");
        return status == exitDone ? exitFailed : status;
    }
    return status;
}
