#pragma once

#include <optional>
#include <string>

#include "persistence/target_file.h"
#include "standalone/commands/load.h"
#include "standalone/commands/solve_plan.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

/// Writes what the result's file shall hold, the document as the host now has it. To commit it is left to do.
///
/// A name with the extension of the file that was read makes the same kind of file. Otherwise .lottie makes an
/// archive, and any other the text alone. An archive from an archive has all its other entries as they were; one from
/// plain text has nothing but the animation.
/// @param path    the result's name, UTF-8
/// @param target  open, with nothing written yet
/// @return nothing if it may be committed; else why not
[[nodiscard]] std::optional<Refusal> writeResult(const LoadedDocument& document, DocumentHost& host,
                                                 const std::string& path, TargetFile& target);

} // namespace jostle::standalone
