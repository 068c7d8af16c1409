#pragma once

#include <string>

#include "host/entry.h"
#include "standalone/commands/load.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

/// A host over a document, as a project of the file's name.
/// @param document  without its composition from then on
[[nodiscard]] DocumentHost hostOf(LoadedDocument& document);

/// Does what a person with a compositing host does: starts the host with the plug-in, opens the Composition menu and
/// chooses the plug-in's command, which runs `launch`.
/// @return whether `launch` ran; if not, the host's reports say why
[[nodiscard]] bool runPlugin(DocumentHost& host, Launch launch);

/// The same; if `launch` did not run, a line on standard error says why.
/// @param about  what it concerns, such as the input's name
[[nodiscard]] bool runPlugin(DocumentHost& host, const std::string& about, Launch launch);

/// Prints what the host had to tell its user on standard error, such as the font taken for one that is missing.
/// @param about  what it concerns, such as the input's name
void printReports(const DocumentHost& host, const std::string& about);

} // namespace jostle::standalone
