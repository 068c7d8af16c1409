#include "standalone/commands/solve.h"

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "host/host_layer_motion.h"
#include "host/keyframe_writer.h"
#include "host/layer_import.h"
#include "persistence/target_file.h"
#include "simulation/simulation_clock.h"
#include "standalone/commands/interruption.h"
#include "standalone/commands/load.h"
#include "standalone/commands/message_printer.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/progress.h"
#include "standalone/commands/result.h"
#include "standalone/commands/samples_file.h"
#include "standalone/commands/separate.h"
#include "standalone/commands/settings_input.h"
#include "standalone/commands/solve_plan.h"
#include "standalone/commands/solve_summary.h"

namespace jostle::standalone {

namespace {

/// The bodies of which not all could be read, as in "layer 3 "ball", layer 5 "box"".
std::string doubtfulLayers(const ImportReport& report) {
    std::string text;
    for (const LayerReport& layer : report.layers) {
        if (layer.outcome == LayerOutcome::Body && (layer.numbersReplaced || layer.error != A_Err_NONE)) {
            text += (text.empty() ? "layer " : ", layer ") + std::to_string(layer.layerIndex + 1) + " \"" + layer.name +
                    "\"";
        }
    }
    return text;
}

/// One run of the command, from its options to its files.
class SolveRun {
public:
    explicit SolveRun(const SolveOptions& options) : options_(options), progress_(options.progress) {}
    int run();

private:
    bool openTargets();
    void solveInHost(const HostContext& context);
    bool applySettings(const HostContext& context);
    bool simulate(const HostContext& context);
    bool bake(const HostContext& context);
    bool save(const LoadedDocument& document, DocumentHost& host);

    int refuse(const Refusal& refusal);
    bool fail(const std::string& about, const std::string& message);
    bool succeeded(const std::string& about, const std::optional<std::string>& error);

    const SolveOptions& options_;
    Progress progress_;
    std::string output_;
    FrameRange range_;
    TargetFile target_;
    TargetFile samplesTarget_;
    Scene scene_;
    ImportReport report_;
    std::optional<ExportRun> exportRun_;
    std::vector<WrittenStance> stances_; ///< by record
    int status_ = exitDone;
};

int SolveRun::refuse(const Refusal& refusal) {
    complain(refusal.about, refusal.message);
    return status_ = exitWrongUse;
}

// Always false, as is what cannot go on.
bool SolveRun::fail(const std::string& about, const std::string& message) {
    progress_.abandon();
    complain(about, message);
    status_ = exitFailed;
    return false;
}

bool SolveRun::succeeded(const std::string& about, const std::optional<std::string>& error) {
    return !error || fail(about, *error);
}

bool SolveRun::openTargets() {
    return succeeded(output_, target_.open(output_)) &&
           (options_.samples.empty() || succeeded(options_.samples, samplesTarget_.open(options_.samples)));
}

bool SolveRun::applySettings(const HostContext& context) {
    SnapshotStrip unused;
    const SettingsTarget target{scene_, unused, layerAccess(context, scene_, report_, nullptr)};
    if (!options_.settings.empty() && !applySettingsFile(context, options_.settings, target, options_.quiet)) {
        status_ = exitFailed;
        return false;
    }
    for (const auto& [option, settings] :
         {std::pair{"--set", &options_.sets}, std::pair{"--sweep", &options_.trials}}) {
        if (const std::optional<Refusal> refusal = applySets(option, *settings, report_, target)) {
            refuse(*refusal);
            return false;
        }
    }
    return true;
}

bool SolveRun::simulate(const HostContext& context) {
    HostLayerMotion motion(context);
    FreePacer pacer;
    SimulationClock clock(scene_, motion, pacer);
    progress_.begin("Solving", range_.last + 1, "frames");
    clock.startExport(*exportRun_);
    while (clock.isRunning() && !interrupted()) {
        if (options_.watch && exportRun_->contains(clock.frame())) {
            options_.watch(scene_, clock.frame());
        }
        clock.tick();
        progress_.update(clock.frame());
    }
    if (interrupted()) {
        return fail(options_.input, "interrupted while solving; nothing was written");
    }
    progress_.end();
    return exportRun_->isComplete() || fail(options_.input, "the simulation ended before the last frame");
}

bool SolveRun::bake(const HostContext& context) {
    HostChain chain(context);
    const jostle::Composition composition =
        options_.inPlace ? activeComposition(chain) : duplicateActiveComposition(chain);
    progress_.begin("Keyframing", scene_.bodyCount(), "layers");
    const bool keepsSamples = !options_.samples.empty();
    const auto samplesOf = [&](std::size_t k, ExportResult& samples) {
        if (keepsSamples)
            samples = exportRun_->result(k);
        else
            exportRun_->take(k, samples);
    };
    const KeyframeJob job{scene_, samplesOf, range_.first, range_.last, options_.motionBlur, options_.reduce};
    WriteReport written = writeKeyframes(chain, composition, job, [this](int done, int) {
        progress_.update(done);
        return !interrupted();
    });
    if (written.outcome == WriteOutcome::Cancelled) {
        return fail(options_.input, "interrupted while keyframing; nothing was written");
    }
    if (written.outcome == WriteOutcome::Failed) {
        return fail(options_.input, "the keyframes cannot be written (host error " + std::to_string(written.error) +
                                        " after " + std::to_string(written.layersWritten) +
                                        " layers); nothing was saved");
    }
    progress_.end();
    stances_ = std::move(written.stances);
    if (written.layersMended > 0) {
        complain(options_.input,
                 std::to_string(written.layersMended) +
                     " layers came to positions that are no finite numbers; they stand still from there");
    }
    return true;
}

void SolveRun::solveInHost(const HostContext& context) {
    MessagePrinter printer(options_.input);
    MessageSink* const messages = options_.quiet ? nullptr : &printer;
    if (options_.separate) {
        const SeparationReport separated = separateAll(context, &printer);
        if (separated.error != A_Err_NONE) {
            (void)fail(options_.input, "the layers cannot be separated (host error " + std::to_string(separated.error) +
                                           "); nothing was saved");
            return;
        }
        if (!options_.quiet) {
            printUnmasked(separated, options_.input);
        }
    }
    report_ = initFromComposition(context, scene_, messages);
    if (report_.error != A_Err_NONE) {
        (void)fail(options_.input, "the layers cannot be read (host error " + std::to_string(report_.error) + ")");
        return;
    }
    const std::string doubtful = doubtfulLayers(report_);
    if (!doubtful.empty() && !options_.quiet) {
        complain(options_.input, "defaults were taken for what could not be read of " + doubtful);
    }
    exportRun_.emplace(range_.first, range_.last);
    if (!applySettings(context) || !options_.trials.empty()) {
        return;
    }
    // Without a body the composition stays as it is, and the result is the input to the byte.
    if (openTargets() && scene_.bodyCount() > 0 && simulate(context)) {
        (void)bake(context);
    }
}

bool SolveRun::save(const LoadedDocument& document, DocumentHost& host) {
    if (const std::optional<Refusal> refusal = writeResult(document, host, output_, target_)) {
        return fail(refusal->about, refusal->message);
    }
    // The samples go first: whoever sees the new result finds the samples that belong to it.
    const bool samplesSaved =
        options_.samples.empty() ||
        succeeded(options_.samples, samplesTarget_.commit(samplesText(scene_, *exportRun_, host.outcome(), stances_)));
    return samplesSaved && succeeded(output_, target_.commit());
}

int SolveRun::run() {
    if (const std::optional<Refusal> refusal = choosePaths(options_, output_)) {
        return refuse(*refusal);
    }
    std::optional<LoadedDocument> document = loadDocument(options_.input, options_.animation);
    if (!document) {
        return exitFailed;
    }
    if (const std::optional<Refusal> refusal = chooseRange(options_, *document->composition, range_)) {
        return refuse(*refusal);
    }
    if (!options_.quiet) {
        for (const std::string& note : document->notes) {
            complain(options_.input, note);
        }
    }
    // Up to here nothing needs an orderly end.
    heedInterruptions();
    DocumentHost host = hostOf(*document);
    if (!runPlugin(host, options_.input, [this](const HostContext& context) { solveInHost(context); })) {
        return exitFailed;
    }
    if (status_ != exitDone || !options_.trials.empty()) {
        return status_;
    }
    if (!options_.quiet) {
        printReports(host, options_.input);
    }
    if (save(*document, host)) {
        const SolveSummary summary{options_.input,
                                   output_,
                                   scene_.bodyCount(),
                                   static_cast<int>(report_.layers.size()) - scene_.bodyCount(),
                                   range_,
                                   bakedKeyCount(host.outcome())};
        printSummary(summary, options_);
    }
    return status_;
}

} // namespace

int runSolve(const SolveOptions& options) {
    return SolveRun(options).run();
}

} // namespace jostle::standalone
