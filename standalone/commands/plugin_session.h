#pragma once

#include <string>

#include "host/entry.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

/// Does what a person with a compositing host does: starts the host with the plug-in, opens the Composition menu and
/// chooses the plug-in's command, which runs `launch`.
/// @return whether `launch` ran; if not, the host's reports say why
[[nodiscard]] bool runPlugin(DocumentHost& host, Launch launch);

/// Prints what the host had to tell its user on standard error, such as the font taken for one that is missing.
/// @param about  what it concerns, such as the input's name
void printReports(const DocumentHost& host, const std::string& about);

} // namespace jostle::standalone
