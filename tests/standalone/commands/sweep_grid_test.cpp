#include "standalone/commands/sweep_grid.h"

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

using Values = std::vector<std::string>;

TEST(SweepGrid, CountsInDecimals) {
    struct Case {
        const char* text;
        const char* key;
        Values values;
    };
    const Case cases[] = {
        {"gravity.magnitude=5:7:1", "gravity.magnitude", {"5", "6", "7"}},
        {"a.x=0:0.3:0.1", "a.x", {"0", "0.1", "0.2", "0.3"}},
        {"a.x=0.3:-0.3:-0.3", "a.x", {"0.3", "0", "-0.3"}},
        {"a.x=-0.05:0.05:.05", "a.x", {"-0.05", "0", "0.05"}},
        {"a.x=1:2:0.75", "a.x", {"1", "1.75"}},
        {"a.x=1.50:1.5:9", "a.x", {"1.5"}},
        {"a=b.x=1:1:1", "a=b.x", {"1"}},
        {"a:b.x=1:1:1", "a:b.x", {"1"}},
    };
    for (const Case& c : cases) {
        const auto read = parseSweep(c.text);
        ASSERT_TRUE(std::holds_alternative<SweepAxis>(read)) << c.text << ": " << std::get<std::string>(read);
        EXPECT_EQ(std::get<SweepAxis>(read).key, c.key);
        EXPECT_EQ(std::get<SweepAxis>(read).values, c.values) << c.text;
    }
}

TEST(SweepGrid, RefusesOtherForms) {
    struct Case {
        const char* text;
        const char* says;
    };
    const Case cases[] = {
        {"", "KEY=A:B:STEP"},
        {"a.x", "KEY=A:B:STEP"},
        {"ax=1:2:1", "KEY=A:B:STEP"},
        {"a.x=1:2", "KEY=A:B:STEP"},
        {"a.x=1:2:3:4", "KEY=A:B:STEP"},
        {"a.x=1::1", "KEY=A:B:STEP"},
        {"a.x=1:2:-", "KEY=A:B:STEP"},
        {"a.x=1:2:.", "KEY=A:B:STEP"},
        {"a.x=1:2:1e1", "KEY=A:B:STEP"},
        {"a.x=nan:2:1", "KEY="},
        {"a.x=1: 2:1", "KEY="},
        {"a.x=0.0000000001:1:1", "KEY="},
        {"a.x=1:2:0", "step of 0"},
        {"a.x=1:2:-1", "leads away"},
        {"a.x=2:1:5", "leads away"},
        {"a.x=0:1:0.001", "1001"},
        {"a.x=0:99999999999999999:1", ""},
        {"a.x=0:999999999999999999:0.000000001", ""},
    };
    for (const Case& c : cases) {
        const auto read = parseSweep(c.text);
        ASSERT_TRUE(std::holds_alternative<std::string>(read)) << c.text;
        EXPECT_NE(std::get<std::string>(read).find(c.says), std::string::npos) << std::get<std::string>(read);
    }
}

TEST(SweepGrid, NamesAreSafeAndSpeakOfTheValues) {
    struct Case {
        std::vector<SweepAxis> axes;
        std::size_t index;
        std::string name;
    };
    const Case cases[] = {
        {{{"gravity.magnitude", {"5", "6"}}, {"floor.friction", {"0.2", "0.4"}}},
         2,
         "gravity.magnitude=6_floor.friction=0.2.json"},
        {{{"*.density", {"1"}}}, 0, "all.density=1.json"},
        {{{"../a b\\c:\n\"d\".x", {"1"}}}, 0, "_.-a-b-c---d-.x=1.json"},
        {{{"-o.x", {"-1"}}}, 0, "_o.x=-1.json"},
        {{{std::string(200, 'x') + ".y", {"1", "2"}}}, 1, "0002.json"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(sweepFileName(c.axes, c.index), c.name);
    }
    const std::vector<SweepAxis> axes{{"a.x", Values(40, "1")}, {"a.y", Values(25, "1")}};
    EXPECT_EQ(sweepSize(axes), 1000U);
}

} // namespace
} // namespace jostle::standalone
