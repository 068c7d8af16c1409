#include "persistence/settings_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "persistence/user_preferences.h"
#include "tests/persistence/loading.h"
#include "tests/support/own_folder.h"

namespace jostle {
namespace {

struct SettingsFileTest : testing::Test, test::OwnFolder {
    [[nodiscard]] HostContext context() const { return {host_.basic(), host_.pluginId()}; }
    [[nodiscard]] SettingsTarget target() { return {loading_.scene, loading_.strip, {}}; }
    LoadResult load(const std::string& name, bool isRemembered = true) {
        return loadSettings(context(), path(name), isRemembered, target(), &loading_.messages);
    }
    bool save(const std::string& name, const char* key = nullptr) {
        return saveSettings(context(), path(name), key, loading_.scene, loading_.strip, &loading_.messages);
    }

    standalone::DocumentHost host_{emptyDocument(), "scene", "", path("preferences.txt")};
    Loading loading_;
};

TEST_F(SettingsFileTest, ComesBackAndIsRemembered) {
    loading_.body().density = 3;
    const char* const name = "\xC3\xA4\xE5\xBF\xAB.xml"; // not plain ASCII
    ASSERT_TRUE(save(name, mostRecentFileKey));
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, path(name));
    loading_.body().density = 1;
    ASSERT_TRUE(save("b.xml"));
    EXPECT_EQ(load(name, false), LoadResult::Complete);
    EXPECT_EQ(loading_.body().density, 3);
    EXPECT_EQ(load("b.xml"), LoadResult::Complete);
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, path("b.xml"));
    EXPECT_EQ(loading_.messages.texts, std::vector<std::string>{});
}

TEST_F(SettingsFileTest, ThatCannotBeReadOrWrittenIsReported) {
    put("no.xml", "<JostleSettings/>");
    EXPECT_EQ(load("missing.xml"), LoadResult::Unreadable);
    EXPECT_EQ(load("no.xml"), LoadResult::GlobalsMissing);
    EXPECT_FALSE(save("no/such/a.xml", autoSavedFileKey));
    EXPECT_EQ(load(""), LoadResult::Unreadable);
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, "");
    EXPECT_EQ(readPreferences(context()).autoSavedSettingsFile, "");
    ASSERT_EQ(loading_.messages.texts.size(), 4u);
    EXPECT_EQ(loading_.messages.texts[0],
              "The settings file '" + path("missing.xml") + "' cannot be found or its format is not supported.");
    const std::string unwritten = "The settings file '" + path("no/such/a.xml") + "' cannot be written: ";
    EXPECT_TRUE(loading_.messages.texts[2].starts_with(unwritten)) << loading_.messages.texts[2];
    EXPECT_EQ(loading_.messages.texts[3], "The settings file '" + path() + "' is a directory; name a file in it.");
}

TEST_F(SettingsFileTest, WhatCouldNotBeReadIsNotWritten) {
    loading_.strip.replace(std::vector<QuickPreset>(1000), 2);
    EXPECT_TRUE(save("a.xml"));
    loading_.strip.add({}, 2);
    EXPECT_FALSE(save("a.xml"));
    EXPECT_EQ(loading_.messages.texts,
              std::vector<std::string>{"The settings file '" + path("a.xml") +
                                       "' would have 1001 snapshots, of which a scene of 2 bodies can have 1000, and "
                                       "could not be read; remove snapshots and save again."});
    EXPECT_EQ(load("a.xml"), LoadResult::Complete) << "the first is still there";
}

TEST_F(SettingsFileTest, SavedOnQuittingIsLoadedAtTheStartIfWanted) {
    loading_.body().density = 3;
    EXPECT_FALSE(autoLoadSettings(context(), target(), &loading_.messages)) << "not unless it was asked for";
    for (const bool isWanted : {false, true}) {
        loading_.body().density = 3;
        autoSaveSettings(context(), path(), isWanted, loading_.scene, loading_.strip, &loading_.messages);
        EXPECT_TRUE(std::filesystem::exists(path(".jostle_autosave.xml")));
        loading_.body().density = 1;
        EXPECT_EQ(autoLoadSettings(context(), target(), &loading_.messages), isWanted);
        EXPECT_EQ(loading_.body().density, isWanted ? 3 : 1);
    }
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, "");
    EXPECT_EQ(loading_.messages.texts, std::vector<std::string>{});
}

} // namespace
} // namespace jostle
