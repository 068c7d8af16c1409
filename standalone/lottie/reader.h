#pragma once

#include <memory>
#include <string>
#include <vector>

#include "standalone/document/composition.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// The text a composition was read from. Never moved once read: the tree refers to the text.
struct LottieSource {
    std::string text;
    std::string fileName;
    JsonTree tree;
};

/// What reading a document came to.
struct ReadResult {
    std::string error; ///< what is wrong, where, and what to do, in one line; empty if all was read
    std::shared_ptr<const LottieSource> source;
    std::unique_ptr<Composition> composition;
    std::vector<std::string> notes; ///< what a user should know, a sentence in one line each

    explicit operator bool() const { return composition != nullptr; }
};

/// Reads a Lottie document.
///
/// What the format leaves out or has of a wrong type takes its default. Refused are texts that are not JSON or nested
/// too deep, documents without layers, frame rate or size, transforms with numbers beyond transformNumberLimit, and
/// what its slots blow up beyond slotBytesLimit.
/// @param text      UTF-8, with or without a byte-order mark
/// @param fileName  for messages only
[[nodiscard]] ReadResult readLottie(std::string text, std::string fileName);

} // namespace jostle::standalone
