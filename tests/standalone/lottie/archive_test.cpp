#include "standalone/lottie/archive.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <zip.h>

namespace jostle::standalone {
namespace {

constexpr std::size_t plenty = std::size_t{1} << 24;

struct Member {
    std::string name;
    std::string contents;
    zip_int32_t method = ZIP_CM_DEFLATE;
    const char* password = nullptr;
};

/// An archive as libzip packs it.
std::string packed(const std::vector<Member>& members) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_source_keep(target);
    zip_t* archive = zip_open_from_source(target, ZIP_TRUNCATE, &error);
    for (const Member& member : members) {
        zip_source_t* source = zip_source_buffer(archive, member.contents.data(), member.contents.size(), 0);
        const auto index =
            static_cast<zip_uint64_t>(zip_file_add(archive, member.name.c_str(), source, ZIP_FL_ENC_UTF_8));
        zip_set_file_compression(archive, index, member.method, 0);
        // 13 May 2019, 15:40:10.
        zip_file_set_dostime(archive, index, 15 << 11 | 40 << 5 | 5, 39 << 9 | 5 << 5 | 13, 0);
        if (member.password)
            zip_file_set_encryption(archive, index, ZIP_EM_AES_128, member.password);
    }
    EXPECT_EQ(zip_close(archive), 0);
    zip_stat_t status;
    zip_source_stat(target, &status);
    std::string bytes(status.size, '\0');
    zip_source_open(target);
    zip_source_read(target, bytes.data(), bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}

/// What libzip finds in an archive: for each entry name, size, packed size, sum, date and method.
std::vector<std::string> listing(const std::string& bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    zip_t* archive = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
    EXPECT_NE(archive, nullptr) << zip_error_strerror(&error);
    std::vector<std::string> lines;
    for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t status;
        zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &status);
        lines.push_back(std::string(status.name) + ' ' + std::to_string(status.size) + ' ' +
                        std::to_string(status.comp_size) + ' ' + std::to_string(status.crc) + ' ' +
                        std::to_string(status.mtime) + ' ' + std::to_string(status.comp_method));
    }
    zip_discard(archive);
    return lines;
}

const std::string oneAnimation = R"({"version":"2","animations":[{"id":"Main Scene"}]})";
const std::string twoAnimations = R"({"animations":[{"id":"one"},{"name":"?"},{"id":"two"}]})";

TEST(Archive, IsReadOrRefusedWithAReason) {
    const auto of = [](const std::string& text) {
        return packed({{"manifest.json", oneAnimation}, {"a/Main Scene.json", text}});
    };
    const std::string whole = of(std::string(5000, 'x'));
    std::string damaged = whole;
    damaged[whole.find("Main Scene.json") + 20] ^= 0x55;
    const std::string two = packed({{"manifest.json", twoAnimations}, {"a/two.json", "2"}, {"a/one.json", "1"}});
    // The text or the error, the animation asked for, and how many notes there are.
    const std::tuple<const char*, std::string, const char*, const char*, const char*, std::size_t> cases[] = {
        {"second layout", packed({{"manifest.json", oneAnimation}, {"a/Main Scene.json", "{2}"}}), "{2}", "", "", 0},
        {"first layout", packed({{"animations/Main Scene.json", "{1}"}, {"manifest.json", oneAnimation}}), "{1}", "",
         "", 0},
        {"stored", packed({{"manifest.json", oneAnimation, ZIP_CM_STORE}, {"a/Main Scene.json", "{}", ZIP_CM_STORE}}),
         "{}", "", "", 0},
        {"made anew", newArchive("{3}"), "{3}", "", "", 0},
        {"first of two", two, "1", "", "", 1},
        {"second of two", two, "2", "", "two", 0},
        {"empty document", of(""), "", "", "", 0},
        {"no archive", "PK and nothing more", "", "cannot be opened", "", 0},
        {"cut off", whole.substr(0, whole.size() / 2), "", "cannot be opened", "", 0},
        {"damaged", damaged, "", "is damaged", "", 0},
        {"no manifest", packed({{"a/x.json", "{}"}}), "", "no manifest.json", "", 0},
        {"manifest is no JSON", packed({{"manifest.json", "{"}}), "", "no JSON object", "", 0},
        {"manifest lists none", packed({{"manifest.json", "{}"}, {"a/x.json", "{}"}}), "", "lists no animation", "", 0},
        {"animation is missing", packed({{"manifest.json", oneAnimation}}), "", "lacks its animation \"Main Scene\"",
         "", 0},
        {"no such animation", two, "", R"(it has "one", "two")", "three", 0},
        {"encrypted", packed({{"manifest.json", oneAnimation}, {"a/Main Scene.json", "{}", ZIP_CM_DEFLATE, "secret"}}),
         "", "is encrypted", "", 0},
        {"bomb", of(std::string(plenty + 1, ' ')), "", "unpacks to more than 16 MB", "", 0},
        {"bomb in the manifest", packed({{"manifest.json", std::string(plenty, ' ')}}), "", "unpacks to more than 4 MB",
         "", 0},
    };
    for (const auto& [name, bytes, text, error, id, notes] : cases) {
        SCOPED_TRACE(name);
        const ArchivedAnimation found = readArchive(bytes, id, plenty);
        EXPECT_EQ(found.error.empty(), *error == 0) << found.error;
        EXPECT_NE(found.error.find(error), std::string::npos) << found.error;
        EXPECT_EQ(found.text, text);
        EXPECT_EQ(found.notes.size(), notes);
    }
    // The size that a bomb announces may be a lie.
    std::string liar = of(std::string(plenty + 9, ' '));
    liar.replace(liar.rfind("a/Main Scene.json") - 46 + 24, 4, std::string("\1\0\0\0", 4));
    EXPECT_NE(readArchive(liar, "", plenty).error, "");
}

TEST(Archive, KeepsAllButTheEntryThatIsReplaced) {
    // A date that no calendar has: some programs write it, and it has to stay.
    std::string source = packed({{"i/one.png", std::string(300, 'p')},
                                 {"manifest.json", oneAnimation, ZIP_CM_STORE},
                                 {"a/Main Scene.json", "{\"old\": 1}"},
                                 {"t/theme.json", "{}", ZIP_CM_STORE}});
    source.replace(10, 4, std::string(4, '\0'));
    source.replace(source.rfind("i/one.png") - 46 + 12, 4, std::string(4, '\0'));
    const std::string entry = readArchive(source, "", plenty).entry;
    EXPECT_EQ(withEntryReplaced(source, entry, "{\"old\": 1}"), source) << "equal contents change nothing";
    for (const std::string& contents : {std::string("{}"), std::string(100000, 'n'), std::string()}) {
        const std::optional<std::string> result = withEntryReplaced(source, entry, contents);
        ASSERT_TRUE(result);
        EXPECT_EQ(result, withEntryReplaced(source, entry, contents));
        EXPECT_EQ(readArchive(*result, "", plenty).text, contents);
        std::vector<std::string> before = listing(source), after = listing(*result);
        ASSERT_EQ(after.size(), before.size());
        EXPECT_NE(after[2], before[2]);
        before.erase(before.begin() + 2);
        after.erase(after.begin() + 2);
        EXPECT_EQ(after, before);
        const std::size_t kept = source.find("a/Main Scene.json") - 30; // the entry's header
        EXPECT_EQ(result->substr(0, kept), source.substr(0, kept));
        EXPECT_NE(result->find(source.substr(source.find("t/theme.json") - 30, 30 + 12 + 2)), std::string::npos);
        EXPECT_EQ(result->substr(result->rfind("i/one.png") - 46 + 12, 4), std::string(4, '\0'));
    }
    EXPECT_EQ(withEntryReplaced(source, "a/other.json", "{}"), std::nullopt);
    EXPECT_EQ(withEntryReplaced(source + "more", entry, "{}"), std::nullopt);
    EXPECT_EQ(listing(newArchive("{}")).size(), 2U) << "one made anew is whole for others too";
}

} // namespace
} // namespace jostle::standalone
