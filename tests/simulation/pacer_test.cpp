#include "simulation/pacer.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

TEST(WallPacer, waitsOffWhatIsLeftOfAFrame) {
    // Milliseconds of the first tick and the second, and what is slept between them; 0 for not at all.
    const std::tuple<const char*, std::int32_t, std::int32_t, bool, int, float> cases[] = {
        {"a quick tick waits 40 - 15 ms", 1000, 1015, false, 25, 25},
        {"a slow one does not", 1000, 1050, false, 0, 20},
        {"at just the rate it does not", 1000, 1040, false, 0, 25},
        {"no time at all counts as a microsecond", 1000, 1000, false, 39, 25},
        {"a single step forgets the pause before it", 1000, 9000, true, 39, 25},
        {"a clock set back shows no rate", 1000, 500, false, 0, 0},
        {"a clock that wraps goes on", std::numeric_limits<std::int32_t>::max(),
         std::numeric_limits<std::int32_t>::min() + 9, false, 30, 25},
    };
    for (const auto& [name, from, to, isSingleStep, sleep, rate] : cases) {
        SCOPED_TRACE(name);
        std::int32_t now = from;
        std::vector<int> sleeps;
        WallPacer pacer([&] { return now; }, [&](int milliseconds) { sleeps.push_back(milliseconds); });
        pacer.pace(25, false);
        EXPECT_EQ(sleeps, std::vector<int>{39}) << "the first tick has none before it";
        now = to;
        sleeps.clear();
        pacer.pace(25, isSingleStep);
        EXPECT_EQ(sleeps, sleep > 0 ? std::vector<int>{sleep} : std::vector<int>{});
        EXPECT_FLOAT_EQ(pacer.rate(), rate);
    }
}

TEST(WallPacer, timersFireAFifthFaster) {
    EXPECT_EQ(tickIntervalMs(25), 33);    // 40 / 1.21 = 33.06
    EXPECT_EQ(tickIntervalMs(29.97), 27); // 33.37 is rounded to 33; 33 / 1.21 = 27.27
    EXPECT_EQ(tickIntervalMs(60), 14);    // 16.67 is rounded to 17; 17 / 1.21 = 14.05
}

} // namespace
} // namespace jostle
