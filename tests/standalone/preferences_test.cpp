#include "standalone/preferences.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

namespace fs = std::filesystem;

class PreferencesTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "jostle-preferences-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        file = folder / "deep" / "preferences.txt";
    }
    void TearDown() override { fs::remove_all(folder); }

    Preferences program() {
        return Preferences(file, [this](std::string text) { reports.push_back(std::move(text)); });
    }
    void writeFile(const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    static std::string contents(const fs::path& of) {
        std::ifstream stream(of, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    fs::path folder, file;
    std::vector<std::string> reports;
};

TEST_F(PreferencesTest, KeepsEveryKindOfValue) {
    const std::string odd = "a = b]\n\\x41\t [#c] \xC3\xBC";
    Preferences first = program();
    EXPECT_TRUE(first.set("QF Jostle 2", "Auto Load/Save Settings", 1));
    EXPECT_TRUE(first.set("QF Jostle 2", "Auto Saved Settings File", "/home/\xC3\xBC ser/x.set"));
    EXPECT_TRUE(first.set(odd, odd, odd));
    EXPECT_TRUE(first.set(odd, "", std::string()));
    EXPECT_TRUE(first.set("numbers", "third", 1.0 / 3));
    EXPECT_FALSE(first.set("numbers", "none", std::nan("")));
    EXPECT_FALSE(fs::exists(file)) << "nothing is written before its time";
    first.flush();
    Preferences second = program();
    EXPECT_EQ(second.get("QF Jostle 2", "Auto Load/Save Settings", 0), 1);
    EXPECT_EQ(second.get<std::string>(odd, odd, "?"), odd);
    EXPECT_EQ(second.get<std::string>(odd, "", "?"), "");
    EXPECT_EQ(second.get("numbers", "third", 0.0), 0.333333) << "six decimals";
    EXPECT_FALSE(second.has("numbers", "none"));
    EXPECT_NE(contents(file).find("\n[QF Jostle 2]\nAuto Load/Save Settings = whole 1\n"), std::string::npos);
    EXPECT_EQ(second.get(odd, odd, 4), 4) << "of a wrong type the default";
    EXPECT_EQ(second.get<std::string>(odd, odd, "?"), odd) << "and the value stays";
    EXPECT_TRUE(reports.empty());
}

TEST_F(PreferencesTest, TwoProgramsKeepEachOthersSettings) {
    Preferences one = program(), other = program();
    EXPECT_EQ(one.get("s", "shared", 1), 1) << "a default, not yet written";
    EXPECT_TRUE(one.set("s", "gone", 1));
    EXPECT_TRUE(other.set("s", "shared", 5));
    EXPECT_TRUE(other.set("s", "others", 6));
    other.flush();
    EXPECT_TRUE(one.set("s", "ones", 7));
    one.erase("s", "gone");
    one.flush();
    Preferences later = program();
    EXPECT_EQ(later.get("s", "shared", 0), 5) << "a default does not overwrite what was chosen meanwhile";
    EXPECT_EQ(later.get("s", "others", 0), 6);
    EXPECT_EQ(later.get("s", "ones", 0), 7);
    EXPECT_FALSE(later.has("s", "gone"));
    EXPECT_EQ(one.get("s", "others", 0), 6) << "seen from the next writing on";
}

TEST_F(PreferencesTest, LosesNothingWhenTwoWriteAtOnce) {
    constexpr int each = 20;
    const auto run = [&](int program) {
        Preferences own(file, [](const std::string& text) { ADD_FAILURE() << text; });
        for (int i = 0; i < each; ++i) {
            EXPECT_TRUE(own.set("program " + std::to_string(program), std::to_string(i), i));
            own.flush();
        }
    };
    std::thread other(run, 1);
    run(2);
    other.join();
    Preferences all = program();
    for (int i = 0; i < each; ++i) {
        EXPECT_EQ(all.get("program 1", std::to_string(i), -1), i);
        EXPECT_EQ(all.get("program 2", std::to_string(i), -1), i);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 2) << "the file and its lock";
}

TEST_F(PreferencesTest, SetsABrokenFileAside) {
    const char* const broken[] = {
        "key = whole 1\n", "[s]\nkey whole 1\n",      "[s]\nkey = whole 1x\n",   "[s]\nkey = whole 99999999999\n",
        "{\"json\": 1}\n", "[s]\nkey = text \\y41\n", "[s]\nkey = number inf\n", "[s]\nkey = real 1\n",
    };
    for (const char* text : broken) {
        SCOPED_TRACE(text);
        reports.clear();
        fs::remove_all(file.parent_path());
        writeFile(text);
        Preferences preferences = program();
        EXPECT_EQ(preferences.get("s", "key", 3), 3);
        preferences.flush();
        EXPECT_EQ(contents(file.string() + ".broken"), text);
        EXPECT_EQ(reports.size(), 1u);
        EXPECT_EQ(program().get("s", "key", 0), 3);
    }
    // A second one does not take the first one's place.
    writeFile("nothing\n");
    EXPECT_FALSE(program().has("s", "key"));
    EXPECT_EQ(contents(file.string() + ".broken-2"), "nothing\n");
}

TEST_F(PreferencesTest, HoldsInMemoryWhereNothingCanBeWritten) {
    std::ofstream(folder / "deep") << "a file where the folder should be";
    for (const bool isFolder : {false, true}) {
        SCOPED_TRACE(isFolder);
        Preferences preferences = program();
        for (int round = 1; round < 4; ++round) {
            EXPECT_TRUE(preferences.set("s", "key", round));
            preferences.flush();
            EXPECT_EQ(preferences.get("s", "key", 0), round);
        }
        EXPECT_EQ(fs::is_directory(file), isFolder) << "what is no file is left alone";
        EXPECT_EQ(reports.size(), 1u) << "told once";
        reports.clear();
        fs::remove_all(folder / "deep");
        fs::create_directories(file);
    }
}

TEST_F(PreferencesTest, ALinkLeadsToTheFile) {
    const fs::path target = folder / "elsewhere.txt";
    fs::create_directories(file.parent_path());
    std::ofstream(target) << "[s]\nkey = whole 1\n";
    fs::create_symlink(target, file);
    Preferences preferences = program();
    EXPECT_TRUE(preferences.set("s", "key", 2));
    preferences.flush();
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_NE(contents(target).find("key = whole 2"), std::string::npos);
}

TEST_F(PreferencesTest, TheEnvironmentNamesTheFile) {
    const char* const names[] = {"JOSTLE_PREFERENCES", "XDG_CONFIG_HOME", "HOME"};
    std::vector<std::string> before; // empty is as good as not there
    for (const char* name : names)
        before.emplace_back(std::getenv(name) == nullptr ? "" : std::getenv(name));
    const auto set = [&](const std::vector<std::string>& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            ::setenv(names[i], values[i].c_str(), 1);
        return defaultPreferencesFile();
    };
    EXPECT_EQ(set({"/p/own.txt", "/c", "/h"}), "/p/own.txt");
    EXPECT_EQ(set({"", "/c", "/h"}), "/c/jostle/preferences.txt");
    EXPECT_EQ(set({"", "relative", "/h"}), "/h/.config/jostle/preferences.txt");
    EXPECT_EQ(set({"", "", ""}), "");
    set(before);
}

TEST_F(PreferencesTest, ServeThePersistentDataSuite) {
    for (const bool again : {false, true}) {
        SCOPED_TRACE(again);
        DocumentHost host(test::smallDocument(), "", "", file);
        AEGP_SuiteHandler suites(host.basic());
        const auto& store = *suites.get<AEGP_PersistentDataSuite3>();
        const AEGP_PersistentBlobH blob = test::got(store.AEGP_GetApplicationBlob);
        EXPECT_EQ(test::got(store.AEGP_DoesKeyExist, blob, "s", "count") != 0, again) << "the host wrote at its end";
        EXPECT_EQ(test::got(store.AEGP_GetLong, blob, "s", "count", 12), 12);
        EXPECT_EQ(test::got(store.AEGP_GetFpLong, blob, "s", "zoom", again ? 1 : 2.5), 2.5) << "the default was kept";
        A_char buffer[8] = "?";
        EXPECT_EQ(store.AEGP_SetString(blob, "s", "path", "seven77"), A_Err_NONE);
        EXPECT_EQ(store.AEGP_GetString(blob, "s", "path", nullptr, 8, buffer, nullptr), A_Err_NONE);
        EXPECT_STREQ(buffer, "seven77");
        EXPECT_EQ(test::got(store.AEGP_GetString, blob, "s", "path", nullptr, 7u, &buffer[0]), 8u);
        EXPECT_STREQ(buffer, "") << "it does not fit";
        EXPECT_NE(store.AEGP_GetString(blob, "s", "path", nullptr, 7, buffer, nullptr), A_Err_NONE);
        EXPECT_EQ(store.AEGP_DeleteEntry(blob, "s", "path"), A_Err_NONE);
        EXPECT_EQ(test::got(store.AEGP_GetString, blob, "s", "path", nullptr, 8u, &buffer[0]), 1u);
        EXPECT_NE(store.AEGP_SetFpLong(blob, "s", "zoom", std::nan("")), A_Err_NONE);
        EXPECT_NE(test::asked(store.AEGP_GetLong, nullptr, "s", "count", 0).first, A_Err_NONE);
        EXPECT_TRUE(host.reports().empty());
    }
}

} // namespace
} // namespace jostle::standalone
