#include "standalone/window/open.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "standalone/commands/load.h"
#include "standalone/commands/options.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/settings_input.h"
#include "workbench/launch.h"

namespace jostle::standalone {

namespace {

/// Lays the settings of the command over the scene.
/// @return exitDone if all is well; else a line on standard error has told why
int applyOptions(const OpenOptions& options, const HostContext& context, Scene& scene, const ImportReport& report) {
    SnapshotStrip unused;
    const SettingsTarget target{scene, unused, layerAccess(context, scene, report, nullptr)};
    if (!options.settings.empty() && !applySettingsFile(context, options.settings, target, false)) {
        return exitFailed;
    }
    if (const std::optional<Refusal> refusal = applySets("--set", options.sets, report, target)) {
        return refuse(*refusal);
    }
    return exitDone;
}

/// Without a display the library of windows ends the process.
bool hasDisplay() {
#ifdef __linux__
    const auto isSet = [](const char* name) {
        const char* const value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

int showWindow(const OpenOptions& options, DocumentHost& host) {
    LaunchOutcome outcome = LaunchOutcome::NotRead;
    int prepared = exitDone;
    const bool started = runPlugin(host, options.input, [&](const HostContext& context) {
        outcome = launch(context, [&](Scene& scene, const ImportReport& report) {
            prepared = applyOptions(options, context, scene, report);
            return prepared == exitDone;
        });
    });
    if (!started) {
        return exitFailed;
    }
    printReports(host, options.input);
    switch (outcome) {
    case LaunchOutcome::NotRead:
        complain(options.input, "the layers cannot be read");
        return exitFailed;
    case LaunchOutcome::CalledOff:
        return prepared;
    case LaunchOutcome::Closed:
        break;
    }
    if (!host.balance().allReturned()) {
        complain(options.input, "the window kept what it should have given back: " + host.balance().text());
        return exitFailed;
    }
    return exitDone;
}

} // namespace

int runOpen(const OpenOptions& options) {
    if (!hasDisplay()) {
        complain("open", "there is no display to open a window on; \"jostle render\" makes pictures without one");
        return exitFailed;
    }
    std::optional<LoadedDocument> document = loadDocument(options.input, options.animation);
    if (!document) {
        return exitFailed;
    }
    for (const std::string& note : document->notes) {
        complain(options.input, note);
    }
    DocumentHost host = hostOf(*document);
    return showWindow(options, host);
}

} // namespace jostle::standalone
