#include "standalone/commands/plugin_session.h"

#include <filesystem>
#include <utility>

namespace jostle::standalone {

namespace {

// The entry point is a plain function, so what it is to launch waits here for the moment of the call.
Launch& pendingLaunch() {
    static Launch launch;
    return launch;
}

A_Err entryPoint(SPBasicSuite* basic, A_long major, A_long minor, AEGP_PluginID pluginId, AEGP_GlobalRefcon*) {
    return enterPlugin(basic, major, minor, pluginId, std::exchange(pendingLaunch(), nullptr));
}

} // namespace

bool runPlugin(DocumentHost& host, Launch launch) {
    bool launched = false;
    pendingLaunch() = [&launched, run = std::move(launch)](const HostContext& context) {
        launched = true;
        run(context);
    };
    if (host.start(entryPoint) != A_Err_NONE || host.menuItems().empty()) {
        return false;
    }
    host.updateMenus();
    return host.chooseCommand(host.menuItems().front().command) && launched;
}

DocumentHost hostOf(LoadedDocument& document) {
    const std::filesystem::path path(document.path);
    return {std::move(document.composition), path.stem().string(), path.string()};
}

bool runPlugin(DocumentHost& host, const std::string& about, Launch launch) {
    const bool isRun = runPlugin(host, std::move(launch));
    if (!isRun) {
        complain(about, host.reports().empty() ? "the plug-in did not start" : host.reports().front());
    }
    return isRun;
}

void printReports(const DocumentHost& host, const std::string& about) {
    for (const std::string& report : host.reports()) {
        complain(about, report);
    }
}

} // namespace jostle::standalone
