#include "host/entry.h"

#include <gtest/gtest.h>

#include "tests/host/document.h"

namespace jostle {

namespace {

int launches = 0;

A_Err enter(SPBasicSuite* basic, A_long major, A_long minor, AEGP_PluginID id, AEGP_GlobalRefcon*) {
    return enterPlugin(basic, major, minor, id,
                       [basic](const HostContext& context) { launches += context.basic == basic ? 1 : 100; });
}

TEST(Entry, PutsACommandIntoTheMenuThatLaunches) {
    HostedDocument hosted(emptyDocument());
    ASSERT_EQ(hosted.host.start(&enter), A_Err_NONE);
    hosted.host.updateMenus();
    ASSERT_EQ(hosted.host.menuItems().size(), 1u);
    const standalone::MenuItem& item = hosted.host.menuItems()[0];
    EXPECT_EQ(item.name, "Jostle 2...");
    EXPECT_EQ(item.menu, AEGP_Menu_COMPOSITION);
    EXPECT_TRUE(item.enabled);
    EXPECT_FALSE(hosted.host.chooseCommand(item.command + 1));
    EXPECT_TRUE(hosted.host.chooseCommand(item.command));
    EXPECT_EQ(launches, 1);
}

TEST(Entry, ReportsAHostWithoutTheSuitesItNeeds) {
    SPBasicSuite bare;
    bare.AcquireSuite = [](const char*, std::int32_t, const void**) -> SPErr { return 1; };
    EXPECT_EQ(enter(&bare, 0, 0, 1, nullptr), A_Err_MISSING_SUITE);
}

} // namespace

} // namespace jostle
