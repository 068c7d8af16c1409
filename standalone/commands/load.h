#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "standalone/document/composition.h"
#include "standalone/lottie/reader.h"

namespace jostle::standalone {

/// A document as read from a file.
struct LoadedDocument {
    std::shared_ptr<const LottieSource> source;
    std::unique_ptr<Composition> composition;
    std::vector<std::string> notes; ///< what a person should know about the file though it is no error
};

/// Reads a Lottie file. On failure prints one line on standard error and returns nothing.
/// @param path  UTF-8
[[nodiscard]] std::optional<LoadedDocument> loadDocument(const std::string& path);

/// Prints one line on standard error: the program, what it is about, and what is wrong.
void complain(const std::string& about, const std::string& message);

} // namespace jostle::standalone
