#include "standalone/commands/load.h"

#include <cstdio>
#include <utility>

#include "persistence/target_file.h"
#include "standalone/lottie/archive.h"

namespace jostle::standalone {

std::optional<LoadedDocument> loadDocument(const std::string& path, const std::string& animation) {
    FileText file = readFile(path, maximumJsonBytes);
    if (!file.error.empty()) {
        complain(path, file.error);
        return std::nullopt;
    }
    LoadedDocument document{path, {}, {}, {}, {}};
    std::string shownName = path;
    if (isArchive(file.text)) {
        ArchivedAnimation found = readArchive(file.text, animation, maximumJsonBytes);
        if (!found.error.empty()) {
            complain(path, found.error);
            return std::nullopt;
        }
        document.archive = SourceArchive{std::move(file.text), found.entry};
        document.notes = std::move(found.notes);
        file.text = std::move(found.text);
        shownName += " (" + found.entry + ")";
    } else if (!animation.empty()) {
        complain(path, "is no archive, so there is no animation to choose; leave out --animation");
        return std::nullopt;
    }
    ReadResult read = readLottie(std::move(file.text), shownName);
    if (!read) {
        std::fprintf(stderr, "jostle: %s\n", read.error.c_str()); // names the file itself
        return std::nullopt;
    }
    if (read.composition->layers.empty()) {
        complain(path, "the composition has no layers; there is nothing to make bodies of");
        return std::nullopt;
    }
    document.source = std::move(read.source);
    document.composition = std::move(read.composition);
    document.notes.insert(document.notes.end(), read.notes.begin(), read.notes.end());
    return document;
}

} // namespace jostle::standalone
