#include "host/entry.h"

#include <gtest/gtest.h>

#include "tests/host/document.h"

namespace jostle {

namespace {

A_Err enter(SPBasicSuite* basic, A_long major, A_long minor, AEGP_PluginID id, AEGP_GlobalRefcon*) {
    return enterPlugin(basic, major, minor, id, nullptr);
}

// That the command launches is seen wherever the program does anything.
TEST(Entry, PutsACommandIntoTheMenuOfCompositions) {
    HostedDocument hosted(emptyDocument());
    ASSERT_EQ(hosted.host.start(&enter), A_Err_NONE);
    ASSERT_EQ(hosted.host.menuItems().size(), 1u);
    EXPECT_EQ(hosted.host.menuItems()[0].name, "Jostle 2...");
    EXPECT_EQ(hosted.host.menuItems()[0].menu, AEGP_Menu_COMPOSITION);
}

TEST(Entry, ReportsAHostWithoutTheSuitesItNeeds) {
    SPBasicSuite bare;
    bare.AcquireSuite = [](const char*, std::int32_t, const void**) -> SPErr { return 1; };
    EXPECT_EQ(enter(&bare, 0, 0, 1, nullptr), A_Err_MISSING_SUITE);
}

} // namespace

} // namespace jostle
