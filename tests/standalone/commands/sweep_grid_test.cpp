#include "standalone/commands/sweep_grid.h"

#include <tuple>

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

using Values = std::vector<std::string>;

TEST(SweepGrid, CountsInDecimals) {
    const std::tuple<const char*, const char*, Values> cases[] = {
        {"a.x=0:0.3:0.1", "a.x", {"0", "0.1", "0.2", "0.3"}},
        {"a.x=0.3:-0.3:-0.3", "a.x", {"0.3", "0", "-0.3"}},
        {"a.x=-0.05:0.05:.05", "a.x", {"-0.05", "0", "0.05"}},
        {"a.x=1:2:0.75", "a.x", {"1", "1.75"}},
        {"a.x=1.50:1.5:9", "a.x", {"1.5"}},
        {"a=b:c.x=1:1:1", "a=b:c.x", {"1"}},
    };
    for (const auto& [text, key, values] : cases) {
        const auto read = parseSweep(text);
        ASSERT_TRUE(std::holds_alternative<SweepAxis>(read)) << text << ": " << std::get<std::string>(read);
        EXPECT_EQ(std::get<SweepAxis>(read).key, key);
        EXPECT_EQ(std::get<SweepAxis>(read).values, values) << text;
    }
}

TEST(SweepGrid, RefusesOtherForms) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"KEY=A:B:STEP",
         {"", "a.x", "ax=1:2:1", "a.x=1:2", "a.x=1:2:3:4", "a.x=1::1", "a.x=1:2:-", "a.x=1:2:.", "a.x=1:2:1e1",
          "a.x=nan:2:1", "a.x=1: 2:1", "a.x=0.0000000001:1:1"}},
        {"step of 0", {"a.x=1:2:0"}},
        {"leads away", {"a.x=1:2:-1", "a.x=2:1:5"}},
        {"1001", {"a.x=0:1:0.001"}},
        {"", {"a.x=0:99999999999999999:1", "a.x=0:999999999999999999:0.000000001"}},
    };
    for (const auto& [says, texts] : cases) {
        for (const char* text : texts) {
            const auto read = parseSweep(text);
            ASSERT_TRUE(std::holds_alternative<std::string>(read)) << text;
            EXPECT_NE(std::get<std::string>(read).find(says), std::string::npos) << std::get<std::string>(read);
        }
    }
}

TEST(SweepGrid, NamesAreSafeAndSpeakOfTheValues) {
    const std::tuple<std::vector<SweepAxis>, std::size_t, std::string> cases[] = {
        {{{"gravity.magnitude", {"5", "6"}}, {"floor.friction", {"0.2", "0.4"}}},
         2,
         "gravity.magnitude=6_floor.friction=0.2.json"},
        {{{"*.density", {"1"}}}, 0, "all.density=1.json"},
        {{{"../a b\\c:\n\"d\".x", {"1"}}}, 0, "_.-a-b-c---d-.x=1.json"},
        {{{"-o.x", {"-1"}}}, 0, "_o.x=-1.json"},
        {{{std::string(200, 'x') + ".y", {"1", "2"}}}, 1, "0002.json"},
    };
    for (const auto& [axes, index, name] : cases)
        EXPECT_EQ(sweepFileName(axes, index), name);
    const std::vector<SweepAxis> axes{{"a.x", Values(40, "1")}, {"a.y", Values(25, "1")}};
    EXPECT_EQ(sweepSize(axes), 1000U);
}

} // namespace
} // namespace jostle::standalone
