#include "standalone/commands/result.h"

#include <cstddef>
#include <filesystem>
#include <string_view>

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

/// Whether a file of that name is the document's text and no archive of it.
bool holdsTextAlone(const LoadedDocument& document, const std::string& path) {
    const std::string extension = extensionOf(path);
    const bool asRead = extension == extensionOf(document.path);
    return asRead ? !document.archive : extension != ".lottie";
}

/// What is written goes to the file in blocks.
class TargetSink : public TextSink {
public:
    explicit TargetSink(TargetFile& target) : TextSink(std::size_t{1} << 18), target_(target) {}
    ~TargetSink() override { flush(); }

private:
    void drain(std::string_view block) override { target_.write(block); }

    TargetFile& target_;
};

} // namespace

std::optional<Refusal> writeResult(const LoadedDocument& document, DocumentHost& host, const std::string& path,
                                   TargetFile& target) {
    if (!host.balance().allReturned()) {
        return Refusal{document.path,
                       "internal fault, nothing was saved: not given back to the host: " + host.balance().text()};
    }
    if (holdsTextAlone(document, path)) {
        TargetSink sink(target);
        writeLottie(*document.source, host.outcome(), sink);
        return std::nullopt;
    }
    const std::string text = writeLottie(*document.source, host.outcome());
    const std::optional<std::string> archive =
        document.archive ? withEntryReplaced(document.archive->bytes, document.archive->entry, text) : newArchive(text);
    if (!archive) {
        return Refusal{path, "the archive has a directory that cannot be rewritten; give -o a name ending in .json"};
    }
    target.write(*archive);
    return std::nullopt;
}

} // namespace jostle::standalone
