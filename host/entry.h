#pragma once

#include <functional>

#include "host/chain.h"

namespace jostle {

/// Runs the plug-in on the active composition, until its user is done with it.
using Launch = std::function<void(const HostContext&)>;

/// What the plug-in's entry point does: registers the menu command "Jostle 2..." at the bottom of the host's
/// Composition menu. The host then runs `launch` whenever the user chooses it, and keeps it enabled exactly while a
/// composition is active.
///
/// To be called inside the host's call of the entry point, once for each host: what a second call hands over replaces
/// the first. If it fails the host shows a report and the plug-in stays loaded without a command.
/// @return the host's first error
A_Err enterPlugin(SPBasicSuite* basic, A_long majorVersion, A_long minorVersion, AEGP_PluginID pluginId, Launch launch);

} // namespace jostle
