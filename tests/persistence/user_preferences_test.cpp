#include "persistence/user_preferences.h"

#include <gtest/gtest.h>

#include "tests/host/document.h"
#include "tests/host/failing_suites.h"
#include "tests/support/own_folder.h"

namespace jostle {
namespace {

struct UserPreferencesTest : testing::Test, test::OwnFolder {
    /// One run of the program.
    template<class Work>
    void run(Work work) const {
        standalone::DocumentHost host(emptyDocument(), "scene", "", path("preferences.txt"));
        work(HostContext{host.basic(), host.pluginId()});
        EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
    }
};

TEST_F(UserPreferencesTest, AreKeptFromOneRunToTheNext) {
    run([](const HostContext& context) {
        UserPreferences preferences = readPreferences(context);
        EXPECT_EQ(preferences.pivotJointColor, (ByteColor{84, 255, 84})); // 0.33 * 255 = 84.15
        preferences.uiTheme = 2;
        preferences.selectionStrokeWidth = 3.5;
        preferences.selectedJointColor = {1, 2, 3};
        preferences.dormantBehavior = 1;
        preferences.mostRecentSettingsFile = "not by the dialog";
        writePreferences(context, preferences);
    });
    for (const char* line : {"Pivot Joint Color Red = whole 84\n", "Selected Joint Blue = whole 3\n",
                             "Selection Stroke Width = number 3.500000\n", "UI Theme = whole 2\n"}) {
        EXPECT_NE(contents("preferences.txt").find(line), std::string::npos) << line << "in\n"
                                                                             << contents("preferences.txt");
    }
    run([](const HostContext& context) {
        const UserPreferences preferences = readPreferences(context);
        EXPECT_EQ(preferences.uiTheme, 2);
        EXPECT_EQ(preferences.selectionStrokeWidth, 3.5);
        EXPECT_EQ(preferences.selectedJointColor, (ByteColor{1, 2, 3}));
        EXPECT_EQ(preferences.behavior().dormantBehavior, DormantBehavior::UsesStatic);
        EXPECT_EQ(preferences.mostRecentSettingsFile, "");
    });
}

TEST_F(UserPreferencesTest, OutOfRangeAreBroughtWithin) {
    put("preferences.txt", "# Settings of Jostle, version 1\n\n[QF Jostle 2]\nLevels of Undo = whole -5\n"
                           "UI Theme = whole 9\nJoint Stroke Width = number 0.0\nKinematic Behavior = whole 77\n");
    run([](const HostContext& context) {
        const UserPreferences preferences = readPreferences(context);
        EXPECT_EQ(preferences.levelsOfUndo, 0);
        EXPECT_EQ(preferences.uiTheme, 2);
        EXPECT_EQ(preferences.jointStrokeWidth, 0.1);
        EXPECT_EQ(preferences.behavior().kinematicBehavior, KinematicBehavior::DynamicAtInPoint);
    });
}

TEST_F(UserPreferencesTest, WithoutAStoreAreTheDefaults) {
    run([](const HostContext& context) {
        const FailingSuites refused(context.basic, 1); // no suite is handed out
        EXPECT_EQ(readPreferences({refused.basic(), context.pluginId}).levelsOfUndo, 100);
    });
}

} // namespace
} // namespace jostle
