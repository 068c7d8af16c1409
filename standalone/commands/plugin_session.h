#pragma once

#include "host/entry.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

/// Does what a person with a compositing host does: starts the host with the plug-in, opens the Composition menu and
/// chooses the plug-in's command, which runs `launch`.
/// @return whether `launch` ran; if not, the host's reports say why
[[nodiscard]] bool runPlugin(DocumentHost& host, Launch launch);

} // namespace jostle::standalone
