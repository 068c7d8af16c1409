#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/commands/refusal.h"
#include "standalone/document/composition.h"
#include "standalone/lottie/reader.h"

namespace jostle::standalone {

/// The archive that a document was read from, as it was.
struct SourceArchive {
    std::string bytes;
    std::string entry; ///< the document's name in it
};

/// A document as read from a file.
struct LoadedDocument {
    std::string path;                     ///< UTF-8
    std::optional<SourceArchive> archive; ///< nothing if the file is the document itself
    std::shared_ptr<const LottieSource> source;
    std::unique_ptr<Composition> composition;
    std::vector<std::string> notes; ///< what a person should know about the file though it is no error
};

/// Reads a Lottie file, plain or an archive. On failure prints one line on standard error and returns nothing.
/// @param path       UTF-8
/// @param animation  which animation of an archive, by its identifier; empty for the first
[[nodiscard]] std::optional<LoadedDocument> loadDocument(const std::string& path, const std::string& animation = {});

} // namespace jostle::standalone
