#include "standalone/lottie/zip_layout.h"

#include <algorithm>

#include <zlib.h>

namespace jostle::standalone {

namespace {

// Signatures, sizes and offsets of the ZIP format (APPNOTE, sections 4.3.7, 4.3.12 and 4.3.16).
constexpr std::uint32_t localSignature = 0x04034b50, recordSignature = 0x02014b50, endSignature = 0x06054b50;
constexpr std::size_t localSize = 30, recordSize = 46, endSize = 22, longestComment = 0xFFFF;
constexpr std::uint16_t stored = 0, deflated = 8, versionForDeflate = 20;
constexpr std::uint16_t sizesFollow = 1U << 3U, compressionHints = 3U << 1U;
constexpr std::uint16_t firstDay = 0x21; // 1 January 1980

std::uint16_t get16(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[at + i])); };
    return static_cast<std::uint16_t>(byte(0) | byte(1) << 8U);
}

std::uint32_t get32(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint32_t>(get16(bytes, at)) | static_cast<std::uint32_t>(get16(bytes, at + 2)) << 16U;
}

void set16(std::string& bytes, std::size_t at, std::uint16_t value) {
    bytes[at] = static_cast<char>(value & 0xFFU);
    bytes[at + 1] = static_cast<char>(value >> 8U);
}

void set32(std::string& bytes, std::size_t at, std::uint32_t value) {
    set16(bytes, at, static_cast<std::uint16_t>(value & 0xFFFFU));
    set16(bytes, at + 2, static_cast<std::uint16_t>(value >> 16U));
}

struct Packed {
    std::string bytes;
    std::uint32_t sum = 0;
    std::uint32_t size = 0; ///< unpacked
    std::uint16_t method = deflated;
};

Packed deflate(std::string_view contents) {
    Packed out;
    out.size = static_cast<std::uint32_t>(contents.size());
    const auto* input = reinterpret_cast<const Bytef*>(contents.data());
    out.sum = static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), input, contents.size()));
    z_stream stream{};
    // Negative: without the wrapper of zlib's own format. This fails only for want of memory.
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) {
        out.bytes = contents;
        out.method = stored;
        return out;
    }
    out.bytes.resize(deflateBound(&stream, static_cast<uLong>(contents.size())));
    stream.next_in = const_cast<Bytef*>(input); // zlib's interface lacks the const
    stream.avail_in = static_cast<uInt>(contents.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.bytes.data());
    stream.avail_out = static_cast<uInt>(out.bytes.size());
    (void)::deflate(&stream, Z_FINISH); // there is room for all of it
    out.bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

/// Sum, sizes and method in a header, where the sum stands at `at`.
void setSizes(std::string& header, std::size_t at, const Packed& packed) {
    set32(header, at, packed.sum);
    set32(header, at + 4, static_cast<std::uint32_t>(packed.bytes.size()));
    set32(header, at + 8, packed.size);
}

/// Method and flags in a header, where the version stands at `at`: the sizes stand before the data from now on.
void setMethod(std::string& header, std::size_t at, const Packed& packed) {
    set16(header, at, std::max(get16(header, at), versionForDeflate));
    const unsigned flags = get16(header, at + 2) & ~static_cast<unsigned>(sizesFollow | compressionHints);
    set16(header, at + 2, static_cast<std::uint16_t>(flags));
    set16(header, at + 4, packed.method);
}

std::size_t findEnd(std::string_view archive) {
    if (archive.size() < endSize)
        return std::string_view::npos;
    const std::size_t last = archive.size() - endSize;
    const std::size_t first = last > longestComment ? last - longestComment : 0;
    for (std::size_t at = last + 1; at-- > first;) {
        // The comment is all that may follow.
        if (get32(archive, at) == endSignature && at + endSize + get16(archive, at + 20) == archive.size())
            return at;
    }
    return std::string_view::npos;
}

/// Fits each entry's end to the next one's beginning. False if entries overlap or are no entries.
bool findLocalEnds(std::string_view archive, ZipLayout& layout) {
    std::vector<std::size_t> order(layout.records.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return layout.records[a].localBegin < layout.records[b].localBegin;
    });
    for (std::size_t i = 0; i < order.size(); ++i) {
        ZipRecord& record = layout.records[order[i]];
        record.localEnd = i + 1 < order.size() ? layout.records[order[i + 1]].localBegin : layout.directoryBegin;
        if (record.localEnd < record.localBegin || record.localEnd - record.localBegin < localSize ||
            get32(archive, record.localBegin) != localSignature)
            return false;
        const std::size_t header =
            localSize + get16(archive, record.localBegin + 26) + std::size_t{get16(archive, record.localBegin + 28)};
        if (header + record.packedSize > record.localEnd - record.localBegin)
            return false;
    }
    return true;
}

} // namespace

std::optional<ZipLayout> zipLayout(std::string_view archive) {
    ZipLayout layout;
    layout.endRecord = findEnd(archive);
    if (layout.endRecord == std::string_view::npos || archive.size() > 0xFFFFFFF0U)
        return std::nullopt;
    const std::size_t count = get16(archive, layout.endRecord + 10);
    const std::size_t length = get32(archive, layout.endRecord + 12);
    layout.directoryBegin = get32(archive, layout.endRecord + 16);
    layout.directoryEnd = layout.directoryBegin + length;
    // All on one disk, and nothing between the directory and its end, where the large kind has its own.
    if (get32(archive, layout.endRecord + 4) != 0 || layout.directoryEnd != layout.endRecord ||
        get16(archive, layout.endRecord + 8) != count)
        return std::nullopt;
    std::size_t at = layout.directoryBegin;
    while (layout.records.size() < count) {
        if (layout.directoryEnd - at < recordSize || get32(archive, at) != recordSignature)
            return std::nullopt;
        const std::size_t nameLength = get16(archive, at + 28);
        const std::size_t size = recordSize + nameLength + get16(archive, at + 30) + get16(archive, at + 32);
        if (layout.directoryEnd - at < size)
            return std::nullopt;
        ZipRecord record;
        record.name = archive.substr(at + recordSize, nameLength);
        record.recordBegin = at;
        record.recordEnd = at + size;
        record.packedSize = get32(archive, at + 20);
        record.localBegin = get32(archive, at + 42);
        at += size;
        layout.records.push_back(record);
    }
    if (at != layout.directoryEnd || !findLocalEnds(archive, layout))
        return std::nullopt;
    return layout;
}

std::string replaced(std::string_view archive, const ZipLayout& layout, std::size_t record, std::string_view contents) {
    const ZipRecord& entry = layout.records[record];
    const Packed packed = deflate(contents);
    const std::size_t headerLength =
        localSize + get16(archive, entry.localBegin + 26) + std::size_t{get16(archive, entry.localBegin + 28)};
    std::string header(archive.substr(entry.localBegin, headerLength));
    setMethod(header, 4, packed);
    setSizes(header, 14, packed);

    std::string out(archive.substr(0, entry.localBegin));
    out += header;
    out += packed.bytes;
    const std::size_t newEnd = out.size();
    out += archive.substr(entry.localEnd, layout.directoryBegin - entry.localEnd);
    const auto moved = [&](std::size_t offset) {
        return static_cast<std::uint32_t>(offset < entry.localEnd ? offset : offset - entry.localEnd + newEnd);
    };
    for (std::size_t i = 0; i < layout.records.size(); ++i) {
        const ZipRecord& other = layout.records[i];
        std::string line(archive.substr(other.recordBegin, other.recordEnd - other.recordBegin));
        if (i == record) {
            setMethod(line, 6, packed);
            setSizes(line, 16, packed);
        }
        set32(line, 42, moved(other.localBegin));
        out += line;
    }
    std::string end(archive.substr(layout.endRecord));
    set32(end, 16, moved(layout.directoryBegin));
    return out + end;
}

std::string packed(const std::vector<ZipMember>& members) {
    std::string out, directory;
    for (const ZipMember& member : members) {
        const Packed contents = deflate(member.contents);
        std::string header(localSize, '\0');
        set32(header, 0, localSignature);
        setMethod(header, 4, contents);
        set16(header, 12, firstDay);
        setSizes(header, 14, contents);
        set16(header, 26, static_cast<std::uint16_t>(member.name.size()));
        // A record is the same once more, with the maker's version before and its own members after.
        std::string record(6, '\0');
        set32(record, 0, recordSignature);
        set16(record, 4, versionForDeflate);
        record += header.substr(4);
        record.resize(recordSize);
        set32(record, 42, static_cast<std::uint32_t>(out.size()));
        (out += header).append(member.name).append(contents.bytes);
        (directory += record).append(member.name);
    }
    std::string end(endSize, '\0');
    set32(end, 0, endSignature);
    set16(end, 8, static_cast<std::uint16_t>(members.size()));
    set16(end, 10, static_cast<std::uint16_t>(members.size()));
    set32(end, 12, static_cast<std::uint32_t>(directory.size()));
    set32(end, 16, static_cast<std::uint32_t>(out.size()));
    return out + directory + end;
}

} // namespace jostle::standalone
