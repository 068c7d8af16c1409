#include "host/entry.h"

#include <gtest/gtest.h>

#include "tests/host/document.h"

namespace jostle {

namespace {

int launches = 0;
HostContext launchedWith;

A_Err enter(SPBasicSuite* basic, A_long major, A_long minor, AEGP_PluginID id, AEGP_GlobalRefcon*) {
    return enterPlugin(basic, major, minor, id, [](const HostContext& context) {
        ++launches;
        launchedWith = context;
    });
}

TEST(Entry, PutsACommandIntoTheMenuThatLaunches) {
    HostedDocument hosted(emptyDocument());
    ASSERT_EQ(hosted.host.start(&enter), A_Err_NONE);
    ASSERT_EQ(hosted.host.menuItems().size(), 1u);
    EXPECT_EQ(hosted.host.menuItems()[0].name, "Jostle 2...");
    EXPECT_EQ(hosted.host.menuItems()[0].menu, AEGP_Menu_COMPOSITION);
    hosted.host.updateMenus();
    EXPECT_TRUE(hosted.host.menuItems()[0].enabled);

    launches = 0;
    const AEGP_Command command = hosted.host.menuItems()[0].command;
    EXPECT_FALSE(hosted.host.chooseCommand(command + 1));
    EXPECT_EQ(launches, 0);
    EXPECT_TRUE(hosted.host.chooseCommand(command));
    EXPECT_EQ(launches, 1);
    EXPECT_EQ(launchedWith.basic, hosted.host.basic());
}

TEST(Entry, ReportsAHostWithoutTheSuitesItNeeds) {
    SPBasicSuite bare;
    bare.AcquireSuite = [](const char*, std::int32_t, const void**) -> SPErr { return 1; };
    EXPECT_EQ(enter(&bare, 0, 0, 1, nullptr), A_Err_MISSING_SUITE);
}

} // namespace

} // namespace jostle
