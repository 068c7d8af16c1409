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

    standalone::DocumentHost host_{emptyDocument(), "scene", "", path("preferences.txt")};
    Loading loading_;
};

TEST_F(SettingsFileTest, ComesBackAndIsRemembered) {
    loading_.body().density = 3;
    // Not plain ASCII.
    const std::string file = path("\xC3\xA4\xE5\xBF\xAB.xml");
    ASSERT_TRUE(saveSettings(context(), file, mostRecentFileKey, loading_.scene, loading_.strip, &loading_.messages));
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, file);
    loading_.body().density = 1;
    ASSERT_TRUE(saveSettings(context(), path("b.xml"), nullptr, loading_.scene, loading_.strip, nullptr));
    EXPECT_EQ(loadSettings(context(), file, false, target(), &loading_.messages), LoadResult::Complete);
    EXPECT_EQ(loading_.body().density, 3);
    EXPECT_EQ(loadSettings(context(), path("b.xml"), true, target(), &loading_.messages), LoadResult::Complete);
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, path("b.xml"));
    EXPECT_EQ(loading_.messages.texts, std::vector<std::string>{});
}

TEST_F(SettingsFileTest, ThatCannotBeReadOrWrittenIsReported) {
    put("no.xml", "<JostleSettings/>");
    EXPECT_EQ(loadSettings(context(), path("missing.xml"), true, target(), &loading_.messages), LoadResult::Unreadable);
    EXPECT_EQ(loadSettings(context(), path("no.xml"), true, target(), &loading_.messages), LoadResult::GlobalsMissing);
    EXPECT_EQ(readPreferences(context()).mostRecentSettingsFile, "");
    EXPECT_FALSE(saveSettings(context(), path("no/such/a.xml"), autoSavedFileKey, loading_.scene, loading_.strip,
                              &loading_.messages));
    EXPECT_EQ(readPreferences(context()).autoSavedSettingsFile, "");
    EXPECT_EQ(loadSettings(context(), path(), true, target(), &loading_.messages), LoadResult::Unreadable);
    ASSERT_EQ(loading_.messages.texts.size(), 4u);
    EXPECT_EQ(loading_.messages.texts[0],
              "The settings file '" + path("missing.xml") + "' cannot be found or its format is not supported.");
    EXPECT_EQ(
        loading_.messages.texts[2].rfind("The settings file '" + path("no/such/a.xml") + "' cannot be written: ", 0),
        0u)
        << loading_.messages.texts[2];
    EXPECT_EQ(loading_.messages.texts[3], "The settings file '" + path() + "' is a directory; name a file in it.");
}

TEST_F(SettingsFileTest, WhatCouldNotBeReadIsNotWritten) {
    const auto save = [&] {
        return saveSettings(context(), path("a.xml"), nullptr, loading_.scene, loading_.strip, &loading_.messages);
    };
    loading_.strip.replace(std::vector<QuickPreset>(1000), 2);
    EXPECT_TRUE(save());
    loading_.strip.add({}, 2);
    EXPECT_FALSE(save());
    EXPECT_EQ(loading_.messages.texts,
              std::vector<std::string>{"The settings file '" + path("a.xml") +
                                       "' would have 1001 snapshots, of which a scene of 2 bodies can have 1000, and "
                                       "could not be read; remove snapshots and save again."});
    EXPECT_EQ(loadSettings(context(), path("a.xml"), false, target(), nullptr), LoadResult::Complete)
        << "the first is still there";
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
