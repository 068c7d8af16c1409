#include "standalone/commands/plugin_session.h"

#include <utility>

#include "standalone/commands/load.h"

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

void printReports(const DocumentHost& host, const std::string& about) {
    for (const std::string& report : host.reports()) {
        complain(about, report);
    }
}

} // namespace jostle::standalone
