#include "standalone/commands/result.h"

#include <filesystem>
#include <utility>

#include "standalone/lottie/archive.h"
#include "standalone/lottie/writer.h"

namespace jostle::standalone {

namespace {

/// The extension of a file name in small letters, with its dot.
std::string extensionOf(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return extension;
}

} // namespace

std::optional<Refusal> makeResult(const LoadedDocument& document, DocumentHost& host, const std::string& path,
                                  std::string& contents) {
    if (!host.balance().allReturned()) {
        return Refusal{document.path,
                       "internal fault, nothing was saved: not given back to the host: " + host.balance().text()};
    }
    contents = writeLottie(*document.source, host.outcome());
    const std::string extension = extensionOf(path);
    const bool asRead = extension == extensionOf(document.path);
    if (asRead ? !document.archive : extension != ".lottie") {
        return std::nullopt;
    }
    std::optional<std::string> archive =
        document.archive ? withEntryReplaced(document.archive->bytes, document.archive->entry, contents)
                         : newArchive(contents);
    if (!archive) {
        return Refusal{path, "the archive has a directory that cannot be rewritten; give -o a name ending in .json"};
    }
    contents = std::move(*archive);
    return std::nullopt;
}

} // namespace jostle::standalone
