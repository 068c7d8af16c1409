#include "standalone/lottie/archive.h"

#include <algorithm>
#include <memory>

#include <zip.h>

#include "standalone/document/printable.h"
#include "standalone/lottie/json_tree.h"
#include "standalone/lottie/zip_layout.h"

namespace jostle::standalone {

namespace {

constexpr std::size_t mostManifestBytes = std::size_t{4} << 20;
constexpr const char* manifestName = "manifest.json";

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ArchiveHandle = std::unique_ptr<zip_t, CloseArchive>;

struct CloseFile {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

/// An archive opened for reading, or why it cannot be.
struct Opened {
    ArchiveHandle handle;
    std::string error;
};

Opened open(std::string_view bytes) {
    zip_error_t error;
    zip_error_init(&error);
    Opened opened;
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source) {
        opened.handle.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
        if (!opened.handle)
            zip_source_free(source);
    }
    if (!opened.handle)
        opened.error = zip_error_strerror(&error);
    zip_error_fini(&error);
    return opened;
}

/// Contents of an entry, or why there are none.
struct Unpacked {
    std::string text;
    std::string error;
};

std::string tooLarge(std::size_t mostBytes) {
    return "unpacks to more than " + std::to_string(mostBytes >> 20U) + " MB";
}

// The announced size is not to be trusted: what is read is counted.
Unpacked unpack(zip_t* archive, zip_uint64_t index, std::size_t mostBytes) {
    zip_stat_t status;
    if (zip_stat_index(archive, index, 0, &status) != 0)
        return {{}, zip_strerror(archive)};
    if ((status.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && status.encryption_method != ZIP_EM_NONE)
        return {{}, "is encrypted; save the archive without a password"};
    if ((status.valid & ZIP_STAT_SIZE) != 0 && status.size > mostBytes)
        return {{}, tooLarge(mostBytes)};
    const std::unique_ptr<zip_file_t, CloseFile> file(zip_fopen_index(archive, index, 0));
    if (!file)
        return {{}, std::string("cannot be unpacked (") + zip_strerror(archive) + "); export the archive again"};
    Unpacked unpacked;
    std::string& text = unpacked.text;
    constexpr std::size_t step = std::size_t{1} << 20;
    for (std::size_t filled = 0;;) {
        text.resize(std::min(filled + step, mostBytes + 1));
        const zip_int64_t count = zip_fread(file.get(), text.data() + filled, text.size() - filled);
        if (count < 0)
            return {{}, std::string("is damaged (") + zip_file_strerror(file.get()) + "); export the archive again"};
        filled += static_cast<std::size_t>(count);
        if (count == 0) {
            text.resize(filled);
            return unpacked;
        }
        if (filled > mostBytes)
            return {{}, tooLarge(mostBytes)};
    }
}

std::string quoted(std::string_view name) {
    return '"' + printable(name) + '"';
}

/// The identifiers of the manifest, in its order.
std::vector<std::string> animationIds(const JsonValue& manifest) {
    std::vector<std::string> ids;
    const JsonValue list = manifest["animations"];
    if (list.isArray()) {
        forEachChild(list, [&](const JsonValue& animation) {
            if (animation["id"].type() == JsonType::String)
                ids.push_back(animation["id"].string());
        });
    }
    return ids;
}

/// Which animation is meant; sets the error or the notes of `result`.
std::string chooseId(const std::vector<std::string>& ids, std::string_view wanted, ArchivedAnimation& result) {
    std::string others;
    for (const std::string& id : ids) {
        if (others.size() < 200)
            others += (others.empty() ? "" : ", ") + quoted(id);
    }
    if (ids.empty()) {
        result.error = "the archive's manifest lists no animation; export the archive again";
    } else if (wanted.empty()) {
        if (ids.size() > 1)
            result.notes.push_back("The archive holds " + std::to_string(ids.size()) + " animations (" + others +
                                   "); " + quoted(ids.front()) + " was taken.");
        return ids.front();
    } else if (std::find(ids.begin(), ids.end(), wanted) == ids.end()) {
        result.error = "the archive has no animation " + quoted(wanted) + "; it has " + others;
    }
    return std::string(wanted);
}

void readInto(ArchivedAnimation& result, std::string_view bytes, std::string_view wanted, std::size_t mostBytes) {
    const Opened archive = open(bytes);
    if (!archive.handle) {
        result.error = "the archive cannot be opened (" + archive.error + "); export it again";
        return;
    }
    const zip_int64_t manifestIndex = zip_name_locate(archive.handle.get(), manifestName, 0);
    if (manifestIndex < 0) {
        result.error =
            "the archive has no manifest.json, so it is no Lottie archive; give one that is, or a .json file";
        return;
    }
    const Unpacked manifest =
        unpack(archive.handle.get(), static_cast<zip_uint64_t>(manifestIndex), std::min(mostBytes, mostManifestBytes));
    JsonTree tree;
    if (!manifest.error.empty()) {
        result.error = "manifest.json " + manifest.error;
        return;
    }
    if (tree.parse(manifest.text) || !tree.root().isObject()) {
        result.error = "manifest.json of the archive is no JSON object; export the archive again";
        return;
    }
    const std::string id = chooseId(animationIds(tree.root()), wanted, result);
    if (!result.error.empty())
        return;
    for (const std::string& name : {"a/" + id + ".json", "animations/" + id + ".json"}) {
        const zip_int64_t index = zip_name_locate(archive.handle.get(), name.c_str(), 0);
        if (index < 0)
            continue;
        const auto place = static_cast<zip_uint64_t>(index);
        Unpacked animation = unpack(archive.handle.get(), place, mostBytes);
        if (!animation.error.empty())
            result.error = quoted(name) + " in the archive " + animation.error;
        result.text = std::move(animation.text);
        result.entry = zip_get_name(archive.handle.get(), place, ZIP_FL_ENC_RAW);
        return;
    }
    result.error = "the archive lacks its animation " + quoted(id) + " (a/ or animations/); export the archive again";
}

} // namespace

ArchivedAnimation readArchive(std::string_view bytes, std::string_view id, std::size_t mostBytes) {
    ArchivedAnimation result;
    readInto(result, bytes, id, mostBytes);
    return result;
}

std::optional<std::string> withEntryReplaced(std::string_view archive, std::string_view entry,
                                             std::string_view contents) {
    const Opened opened = open(archive);
    const std::optional<ZipLayout> layout = zipLayout(archive);
    constexpr std::size_t greatestArchive = 0xFFFFFFF0U; // with 32-bit offsets
    if (!opened.handle || !layout || archive.size() + contents.size() > greatestArchive ||
        zip_get_num_entries(opened.handle.get(), 0) != static_cast<zip_int64_t>(layout->records.size()))
        return std::nullopt;
    for (std::size_t i = 0; i < layout->records.size(); ++i) {
        if (layout->records[i].name != entry)
            continue;
        const Unpacked present = unpack(opened.handle.get(), i, contents.size());
        if (present.error.empty() && present.text == contents)
            return std::string(archive);
        std::string result = replaced(archive, *layout, i, contents);
        return result.size() <= greatestArchive ? std::optional(std::move(result)) : std::nullopt;
    }
    return std::nullopt;
}

std::string newArchive(std::string_view document) {
    constexpr std::string_view manifest = R"({"version":"1","generator":"jostle","animations":[{"id":"animation"}]})";
    return packed({{manifestName, manifest}, {"animations/animation.json", document}});
}

} // namespace jostle::standalone
