#include "standalone/window/open.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <utility>

#include "persistence/overrides.h"
#include "standalone/commands/layer_names.h"
#include "standalone/commands/load.h"
#include "standalone/commands/options.h"
#include "standalone/commands/plugin_session.h"
#include "workbench/launch.h"

namespace jostle::standalone {

namespace {

/// @return whether all were set; if not, a line on standard error has told why
bool applySets(const std::vector<std::string>& sets, const ImportReport& report, Scene& scene) {
    const std::vector<NamedLayer> layers = namedLayers(report);
    for (const std::string& text : sets) {
        const std::optional<SettingOverride> setting = parseOverride(text);
        if (!setting) {
            complain("--set " + text, "is not KEY=VALUE with a key such as floor.type or gravity.magnitude");
            return false;
        }
        if (const std::optional<std::string> error = applyOverride(*setting, scene, layers)) {
            complain("--set " + text, *error);
            return false;
        }
    }
    return true;
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
    const bool started = runPlugin(host, [&](const HostContext& context) {
        outcome = launch(context, [&options](Scene& scene, const ImportReport& report) {
            return applySets(options.sets, report, scene);
        });
    });
    if (!started) {
        complain(options.input, host.reports().empty() ? "the plug-in did not start" : host.reports().front());
        return exitFailed;
    }
    printReports(host, options.input);
    switch (outcome) {
    case LaunchOutcome::NotRead:
        complain(options.input, "the layers cannot be read");
        return exitFailed;
    case LaunchOutcome::CalledOff:
        return exitWrongUse;
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
    const std::filesystem::path path(options.input);
    DocumentHost host(std::move(document->composition), path.stem().string(), path.string());
    return showWindow(options, host);
}

} // namespace jostle::standalone
