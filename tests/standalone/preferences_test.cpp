#include "standalone/preferences.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tests/standalone/suites/session.h"
#include "tests/support/own_folder.h"

namespace jostle::standalone {
namespace {

namespace fs = std::filesystem;

constexpr const char* name = "deep/preferences.txt";

struct PreferencesTest : testing::Test, jostle::test::OwnFolder {
    Preferences program() {
        return Preferences(file, [this](std::string text) { reports.push_back(std::move(text)); });
    }

    const fs::path file = path(name);
    std::vector<std::string> reports;
};

TEST_F(PreferencesTest, KeepsEveryKindOfValue) {
    const std::string odd = "a = b]\n\\x41\t [#c] \xC3\xBC";
    Preferences first = program();
    EXPECT_TRUE(first.set("QF Jostle 2", "Auto Load/Save Settings", 1));
    EXPECT_TRUE(first.set(odd, odd, odd));
    EXPECT_TRUE(first.set(odd, "", std::string()));
    EXPECT_TRUE(first.set("numbers", "third", 1.0 / 3));
    EXPECT_FALSE(first.set("numbers", "none", std::nan("")));
    EXPECT_FALSE(fs::exists(file)) << "nothing is written before its time";
    first.flush();
    EXPECT_NE(contents(name).find("\n[QF Jostle 2]\nAuto Load/Save Settings = whole 1\n"), std::string::npos);
    Preferences second = program();
    EXPECT_EQ(second.get("QF Jostle 2", "Auto Load/Save Settings", 0), 1);
    EXPECT_EQ(second.get<std::string>(odd, "", "?"), "");
    EXPECT_EQ(second.get("numbers", "third", 0.0), 0.333333) << "six decimals";
    EXPECT_FALSE(second.has("numbers", "none"));
    EXPECT_EQ(second.get(odd, odd, 4), 4) << "of a wrong type the default";
    EXPECT_EQ(second.get<std::string>(odd, odd, "?"), odd) << "and the value stays";
    EXPECT_TRUE(reports.empty());
}

TEST_F(PreferencesTest, TwoProgramsKeepEachOthersSettings) {
    Preferences one = program(), other = program();
    EXPECT_EQ(one.get("s", "shared", 1), 1) << "a default, not yet written";
    EXPECT_EQ(one.get("s", "default", 3), 3);
    EXPECT_TRUE(one.set("s", "gone", 1));
    EXPECT_TRUE(other.set("s", "shared", 5));
    other.flush();
    EXPECT_TRUE(one.set("s", "ones", 7));
    one.erase("s", "gone");
    one.flush();
    EXPECT_EQ(contents(name).substr(contents(name).find('[')),
              "[s]\ndefault = whole 3\nones = whole 7\nshared = whole 5\n")
        << "a default does not overwrite what was chosen meanwhile";
    EXPECT_EQ(one.get("s", "shared", 0), 5) << "seen from the next writing on";
}

TEST_F(PreferencesTest, LosesNothingWhenTwoWriteAtOnce) {
    constexpr int each = 20;
    const auto run = [&](const char* section) {
        Preferences own(file, [](const std::string& text) { ADD_FAILURE() << text; });
        for (int i = 0; i < each; ++i) {
            EXPECT_TRUE(own.set(section, std::to_string(i), i));
            own.flush();
        }
    };
    std::thread other(run, "1");
    run("2");
    other.join();
    Preferences all = program();
    for (int i = 0; i < 2 * each; ++i)
        EXPECT_TRUE(all.has(i < each ? "1" : "2", std::to_string(i % each))) << i;
    EXPECT_EQ(names("deep").size(), 2u) << "the file and its lock";
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
        put(name, text);
        Preferences preferences = program();
        EXPECT_EQ(preferences.get("s", "key", 3), 3);
        preferences.flush();
        EXPECT_EQ(contents("deep/preferences.txt.broken"), text);
        EXPECT_EQ(reports.size(), 1u);
        EXPECT_EQ(program().get("s", "key", 0), 3);
    }
    // A second one does not take the first one's place.
    put(name, "nothing\n");
    EXPECT_FALSE(program().has("s", "key"));
    EXPECT_EQ(contents("deep/preferences.txt.broken-2"), "nothing\n");
}

TEST_F(PreferencesTest, HoldsInMemoryWhereNothingCanBeWritten) {
    put("deep", "a file where the folder should be");
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
        fs::remove_all(path("deep"));
        fs::create_directories(file);
    }
}

TEST_F(PreferencesTest, ALinkLeadsToTheFile) {
    put("elsewhere.txt", "[s]\nkey = whole 1\n");
    fs::create_directories(file.parent_path());
    fs::create_symlink(path("elsewhere.txt"), file);
    Preferences preferences = program();
    EXPECT_TRUE(preferences.set("s", "key", 2));
    preferences.flush();
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_NE(contents("elsewhere.txt").find("key = whole 2"), std::string::npos);
}

TEST_F(PreferencesTest, TheEnvironmentNamesTheFile) {
    const char* const variables[] = {"JOSTLE_PREFERENCES", "XDG_CONFIG_HOME", "HOME"};
    std::vector<std::string> before; // empty is as good as not there
    for (const char* variable : variables)
        before.emplace_back(std::getenv(variable) == nullptr ? "" : std::getenv(variable));
    const auto set = [&](const std::vector<std::string>& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            ::setenv(variables[i], values[i].c_str(), 1);
        return defaultPreferencesFile();
    };
    EXPECT_EQ(set({"/p/own.txt", "/c", "/h"}), "/p/own.txt");
    EXPECT_EQ(set({"", "/c", "/h"}), "/c/jostle/preferences.txt");
    EXPECT_EQ(set({"", "relative", "/h"}), "/h/.config/jostle/preferences.txt");
    EXPECT_EQ(set({"", "", ""}), "");
    set(before);
}

// That what a plug-in sets is there in its next run: UserPreferencesTest.AreKeptFromOneRunToTheNext.
TEST_F(PreferencesTest, TextsForAPluginFitItsBuffer) {
    DocumentHost host(test::richDocument().composition, "", "", file);
    AEGP_SuiteHandler suites(host.basic());
    const auto& store = *suites.get<AEGP_PersistentDataSuite3>();
    const AEGP_PersistentBlobH blob = test::got(store.AEGP_GetApplicationBlob);
    A_char buffer[8] = "?";
    EXPECT_EQ(store.AEGP_SetString(blob, "s", "path", "seven77"), A_Err_NONE);
    EXPECT_EQ(store.AEGP_GetString(blob, "s", "path", nullptr, 8, buffer, nullptr), A_Err_NONE);
    EXPECT_STREQ(buffer, "seven77");
    EXPECT_EQ(test::got(store.AEGP_GetString, blob, "s", "path", nullptr, 7u, &buffer[0]), 8u);
    EXPECT_STREQ(buffer, "") << "it does not fit";
    EXPECT_NE(store.AEGP_GetString(blob, "s", "path", nullptr, 7, buffer, nullptr), A_Err_NONE);
    EXPECT_EQ(store.AEGP_DeleteEntry(blob, "s", "path"), A_Err_NONE);
    EXPECT_EQ(test::got(store.AEGP_GetString, blob, "s", "path", nullptr, 8u, &buffer[0]), 1u);
    EXPECT_FALSE(test::got(store.AEGP_DoesKeyExist, blob, "s", "path"));
    EXPECT_NE(store.AEGP_SetFpLong(blob, "s", "zoom", std::nan("")), A_Err_NONE);
    EXPECT_NE(test::asked(store.AEGP_GetLong, nullptr, "s", "count", 0).first, A_Err_NONE);
}

} // namespace
} // namespace jostle::standalone
