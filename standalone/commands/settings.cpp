#include "standalone/commands/settings.h"

#include <cstdio>
#include <string>

#include "persistence/settings_file.h"
#include "standalone/commands/load.h"
#include "standalone/commands/message_printer.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/settings_input.h"

namespace jostle::standalone {

namespace {

int writeSettings(const SettingsOptions& options, const std::string& output, const HostContext& context) {
    Scene scene;
    SnapshotStrip snapshots;
    MessagePrinter messages(options.input);
    const ImportReport report = initFromComposition(context, scene, options.quiet ? nullptr : &messages);
    if (report.error != A_Err_NONE) {
        return fail({options.input, "the layers cannot be read (host error " + std::to_string(report.error) + ")"});
    }
    if (scene.bodyCount() == 0 && !options.quiet) {
        complain(options.input,
                 "no layer is a body, so the settings can be laid over nothing; \"jostle inspect\" tells "
                 "why");
    }
    const SettingsTarget target{scene, snapshots, layerAccess(context, scene, report, nullptr)};
    if (!options.settings.empty() && !applySettingsFile(context, options.settings, target, options.quiet)) {
        return exitFailed;
    }
    if (const std::optional<Refusal> refusal = applySets("--set", options.sets, report, target)) {
        return refuse(*refusal);
    }
    MessagePrinter ofOutput(output);
    if (!saveSettings(context, output, nullptr, scene, snapshots, &ofOutput)) {
        return exitFailed;
    }
    if (!options.quiet) {
        std::printf("%s: settings of %d %s, %zu %s\n", output.c_str(), scene.bodyCount(),
                    scene.bodyCount() == 1 ? "body" : "bodies", scene.joints.size(),
                    scene.joints.size() == 1 ? "joint" : "joints");
    }
    return exitDone;
}

} // namespace

int runSettings(const SettingsOptions& options) {
    const std::string output = options.output.value_or(options.input + ".xml");
    if (const std::optional<Refusal> refusal = checkOutput(options.input, output)) {
        return refuse(*refusal);
    }
    std::optional<LoadedDocument> document = loadDocument(options.input, options.animation);
    if (!document) {
        return exitFailed;
    }
    DocumentHost host = hostOf(*document);
    int status = exitFailed;
    (void)runPlugin(host, options.input,
                    [&](const HostContext& context) { status = writeSettings(options, output, context); });
    return status;
}

} // namespace jostle::standalone
