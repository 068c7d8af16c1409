#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jostle::standalone {

/// One line of an archive's directory, and where it and its entry stand.
struct ZipRecord {
    std::string_view name;
    std::size_t recordBegin = 0, recordEnd = 0; ///< in the directory
    std::size_t localBegin = 0, localEnd = 0;   ///< header, data and what follows them, up to the next entry
    std::uint32_t packedSize = 0;
};

/// Where the parts of a ZIP archive stand, for copying them as they are.
struct ZipLayout {
    std::vector<ZipRecord> records; ///< in the order of the directory
    std::size_t directoryBegin = 0;
    std::size_t directoryEnd = 0;
    std::size_t endRecord = 0; ///< after the directory, up to the end of the archive
};

/// The layout of an archive; nothing if it is damaged, or of the large kind with 64-bit offsets. Views refer to it.
[[nodiscard]] std::optional<ZipLayout> zipLayout(std::string_view archive);

/// The archive with a record's contents replaced, deflated.
[[nodiscard]] std::string replaced(std::string_view archive, const ZipLayout& layout, std::size_t record,
                                   std::string_view contents);

/// A name and what is to be packed under it.
struct ZipMember {
    std::string_view name;
    std::string_view contents;
};

/// An archive of these members, deflated, dated to the first day that archives know.
[[nodiscard]] std::string packed(const std::vector<ZipMember>& members);

} // namespace jostle::standalone
