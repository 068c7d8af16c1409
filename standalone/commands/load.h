#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

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

/// What a file of that name holds for a new text of a loaded document.
///
/// A name with the extension of the file that was read makes the same kind of file. Otherwise .lottie makes an
/// archive, and any other the text alone. An archive from an archive has all its other entries as they were; one from
/// plain text has nothing but the animation.
/// @return nothing if the archive cannot take the text
[[nodiscard]] std::optional<std::string> fileContents(const LoadedDocument& document, const std::string& path,
                                                      std::string text);

/// Prints one line on standard error: the program, what it is about, and what is wrong.
void complain(const std::string& about, const std::string& message);

} // namespace jostle::standalone
