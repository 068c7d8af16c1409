#include "standalone/pictures/render.h"

#include <cstdio>
#include <filesystem>
#include <utility>

#include "host/host_layer_motion.h"
#include "host/layer_import.h"
#include "persistence/target_file.h"
#include "simulation/simulation_clock.h"
#include "standalone/commands/interruption.h"
#include "standalone/commands/json_line.h"
#include "standalone/commands/load.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/progress.h"
#include "standalone/commands/separate.h"
#include "standalone/commands/settings_input.h"
#include "standalone/pictures/film.h"

namespace jostle::standalone {

namespace {

/// One run of the command, from its options to its file.
class RenderRun {
public:
    explicit RenderRun(const RenderOptions& options) : options_(options), progress_(options.progress) {}
    int run();

private:
    std::optional<Refusal> checkOptions();
    std::optional<Refusal> chooseFrames(const Composition& composition);
    bool readScene(const HostContext& context);
    bool applySettings(const HostContext& context, const ImportReport& report);
    bool simulate(const HostContext& context);
    bool playTo(SimulationClock& clock);
    bool film(SimulationClock& clock);
    bool save();
    void printSummary() const;

    int refuse(const Refusal& refusal) {
        complain(refusal.about, refusal.message);
        return status_ = exitWrongUse;
    }
    // Always false, as is what cannot go on.
    bool fail(const std::string& about, const std::string& message) {
        progress_.abandon();
        complain(about, message);
        status_ = exitFailed;
        return false;
    }

    const RenderOptions& options_;
    Progress progress_;
    PictureKind kind_ = PictureKind::Still;
    PictureLook look_;
    FrameRange range_;
    Scene scene_;
    std::string contents_;
    int pictures_ = 1;
    int status_ = exitDone;
};

std::optional<Refusal> RenderRun::checkOptions() {
    const std::optional<PictureKind> kind = pictureKind(options_.output);
    if (!kind) {
        return Refusal{options_.output, "is no name for a picture; give -o one that ends in .png or .gif"};
    }
    kind_ = *kind;
    if (kind_ == PictureKind::Still && (options_.startFrame || options_.endFrame || options_.every > 0)) {
        return Refusal{options_.output, "holds one frame; give --frame, or -o a name that ends in .gif"};
    }
    if (kind_ == PictureKind::Moving && options_.frame) {
        return Refusal{options_.output, "holds many frames; give --start and --end, or -o a name that ends in .png"};
    }
    if (std::optional<Refusal> refusal = checkOutput(options_.input, options_.output)) {
        return refusal;
    }
    return chooseLook(options_.picture, look_);
}

std::optional<Refusal> RenderRun::chooseFrames(const Composition& composition) {
    SolveOptions wanted;
    if (kind_ == PictureKind::Still) {
        wanted.startFrame = wanted.endFrame = options_.frame.value_or(0);
    } else {
        wanted.startFrame = options_.startFrame;
        wanted.endFrame = options_.endFrame;
    }
    return chooseRange(wanted, composition, range_);
}

bool RenderRun::applySettings(const HostContext& context, const ImportReport& report) {
    SnapshotStrip unused;
    const SettingsTarget target{scene_, unused, layerAccess(context, scene_, report, nullptr)};
    if (!options_.settings.empty() && !applySettingsFile(context, options_.settings, target, options_.quiet)) {
        status_ = exitFailed;
        return false;
    }
    if (const std::optional<Refusal> refusal = applySets("--set", options_.sets, report, target)) {
        refuse(*refusal);
        return false;
    }
    return true;
}

bool RenderRun::readScene(const HostContext& context) {
    if (options_.separate) {
        const SeparationReport separated = separateAll(context, nullptr);
        if (separated.error != A_Err_NONE) {
            return fail(options_.input, "the layers cannot be separated (host error " +
                                            std::to_string(separated.error) + "); nothing was saved");
        }
    }
    const ImportReport report = initFromComposition(context, scene_);
    if (report.error != A_Err_NONE) {
        return fail(options_.input, "the layers cannot be read (host error " + std::to_string(report.error) + ")");
    }
    return applySettings(context, report);
}

bool RenderRun::simulate(const HostContext& context) {
    HostLayerMotion motion(context);
    FreePacer pacer;
    SimulationClock clock(scene_, motion, pacer);
    clock.playFromStart();
    if (!playTo(clock)) {
        return false;
    }
    if (kind_ == PictureKind::Moving) {
        return film(clock);
    }
    contents_ = stillPicture(scene_, clock.frame(), look_);
    return true;
}

bool RenderRun::playTo(SimulationClock& clock) {
    if (range_.first == 0) {
        return true;
    }
    progress_.begin("Simulating", range_.first, "frames");
    while (clock.frame() < range_.first) {
        if (interrupted()) {
            return fail(options_.input, "interrupted while simulating; nothing was written");
        }
        clock.tick();
        progress_.update(clock.frame());
    }
    progress_.end();
    return true;
}

bool RenderRun::film(SimulationClock& clock) {
    Film film(look_, options_.every);
    progress_.begin("Rendering", range_.last - range_.first + 1, "frames");
    for (; clock.frame() <= range_.last && clock.isRunning(); clock.tick()) {
        if (interrupted()) {
            return fail(options_.input, "interrupted while rendering; nothing was written");
        }
        film.add(scene_, clock.frame());
        progress_.update(clock.frame() - range_.first + 1);
    }
    contents_ = film.finish();
    pictures_ = film.pictures();
    progress_.end();
    return true;
}

bool RenderRun::save() {
    if (contents_.empty()) {
        return fail(options_.output, "the picture cannot be made; give a smaller --size");
    }
    TargetFile target;
    if (const std::optional<std::string> error = target.open(options_.output)) {
        return fail(options_.output, *error);
    }
    if (const std::optional<std::string> error = target.commit(contents_)) {
        return fail(options_.output, *error);
    }
    return true;
}

void RenderRun::printSummary() const {
    if (options_.json) {
        printJsonLine({{"input", options_.input}, {"output", options_.output}},
                      {{"bodies", static_cast<std::uint64_t>(scene_.bodyCount())},
                       {"startFrame", static_cast<std::uint64_t>(range_.first)},
                       {"endFrame", static_cast<std::uint64_t>(range_.last)},
                       {"pictures", static_cast<std::uint64_t>(pictures_)}});
    } else if (!options_.quiet) {
        const std::string first = std::to_string(range_.first);
        const std::string what = kind_ == PictureKind::Still
                                     ? "frame " + first
                                     : "frames " + first + " to " + std::to_string(range_.last) + " in " +
                                           std::to_string(pictures_) + " pictures";
        std::printf("%s: %s, %d %s\n", options_.output.c_str(), what.c_str(), scene_.bodyCount(),
                    scene_.bodyCount() == 1 ? "body" : "bodies");
    }
}

int RenderRun::run() {
    if (const std::optional<Refusal> refusal = checkOptions()) {
        return refuse(*refusal);
    }
    // Tells early what cannot be written.
    if (const std::optional<std::string> error = TargetFile().open(options_.output)) {
        (void)fail(options_.output, *error);
        return status_;
    }
    std::optional<LoadedDocument> document = loadDocument(options_.input, options_.animation);
    if (!document) {
        return exitFailed;
    }
    if (const std::optional<Refusal> refusal = chooseFrames(*document->composition)) {
        return refuse(*refusal);
    }
    if (!options_.quiet) {
        for (const std::string& note : document->notes) {
            complain(options_.input, note);
        }
    }
    // Up to here nothing needs an orderly end.
    heedInterruptions();
    const std::filesystem::path path(options_.input);
    DocumentHost host(std::move(document->composition), path.stem().string(), path.string());
    const HostContext context{host.basic(), host.pluginId()};
    if (readScene(context) && simulate(context)) {
        if (!options_.quiet) {
            printReports(host, options_.input);
        }
        if (save()) {
            printSummary();
        }
    }
    return status_;
}

} // namespace

int runRender(const RenderOptions& options) {
    return RenderRun(options).run();
}

} // namespace jostle::standalone
