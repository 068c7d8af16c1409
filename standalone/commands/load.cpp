#include "standalone/commands/load.h"

#include <cstdio>
#include <utility>

#include "standalone/commands/target_file.h"
#include "standalone/document/printable.h"

namespace jostle::standalone {

std::optional<LoadedDocument> loadDocument(const std::string& path) {
    FileText file = readFile(path, maximumJsonBytes);
    if (!file.error.empty()) {
        complain(path, file.error);
        return std::nullopt;
    }
    if (file.text.starts_with("PK")) {
        complain(path, "is an archive (.lottie); unpack it and give the animation in it (.json)");
        return std::nullopt;
    }
    ReadResult read = readLottie(std::move(file.text), path);
    if (!read) {
        std::fprintf(stderr, "jostle: %s\n", read.error.c_str()); // names the file itself
        return std::nullopt;
    }
    if (read.composition->layers.empty()) {
        complain(path, "the composition has no layers; there is nothing to make bodies of");
        return std::nullopt;
    }
    return LoadedDocument{std::move(read.source), std::move(read.composition), std::move(read.notes)};
}

void complain(const std::string& about, const std::string& message) {
    std::fprintf(stderr, "jostle: %s: %s\n", printable(about).c_str(), printable(message).c_str());
}

} // namespace jostle::standalone
