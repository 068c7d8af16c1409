#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jostle::standalone {

/// Whether a file is an archive: told by its first bytes, whatever its name.
[[nodiscard]] inline bool isArchive(std::string_view bytes) {
    return bytes.starts_with("PK");
}

/// What was found in an archive.
struct ArchivedAnimation {
    std::string error;              ///< what is wrong and what to do, in one line; empty if the animation was read
    std::string entry;              ///< its name in the archive, as it stands there
    std::string text;               ///< the document, unpacked
    std::vector<std::string> notes; ///< what a user should know, a sentence in one line each
};

/// Unpacks an animation of a dotLottie archive, of either layout.
///
/// Refused are archives that are damaged, encrypted or packed in a way that cannot be read, those without the
/// animation, and documents larger than `mostBytes`, however small they are packed.
/// @param id         of the manifest; empty for the first animation
/// @param mostBytes  largest document that is unpacked
[[nodiscard]] ArchivedAnimation readArchive(std::string_view bytes, std::string_view id, std::size_t mostBytes);

/// The archive with other contents in one entry, which is deflated and keeps its place and date. All else stays byte
/// for byte, but for the offsets in the archive's directory; with equal contents that too.
/// @param entry  as readArchive gave it
/// @return nothing if the archive's directory is of a kind that cannot be changed safely
[[nodiscard]] std::optional<std::string> withEntryReplaced(std::string_view archive, std::string_view entry,
                                                           std::string_view contents);

/// A new archive of one animation, always the same bytes for the same document. Images beside the document are not
/// packed into it.
[[nodiscard]] std::string newArchive(std::string_view document);

} // namespace jostle::standalone
