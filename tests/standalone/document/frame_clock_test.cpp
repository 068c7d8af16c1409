#include "standalone/document/frame_clock.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

void expectTime(const HostTime& time, std::int32_t value, std::uint32_t scale) {
    EXPECT_EQ(time.value, value);
    EXPECT_EQ(time.scale, scale);
}

double seconds(const HostTime& time) {
    return static_cast<double>(time.value) / time.scale;
}

TEST(FrameClock, DurationIsTheOneTheRateWasMadeFrom) {
    const std::tuple<const char*, double, std::int32_t, std::uint32_t> cases[] = {
        {"whole rate", 25, 1, 25},
        {"29.97 in sixteen bits", 29.9700012207031, 100, 2997},
        {"23.976 in sixteen bits", 23.9759979248047, 1000, 23976},
        {"12.5 needs a tenth", 12.5, 10, 125},
        {"no plain fraction", 60.0333709716797, 65536, 3934347},
        {"a rate near 0 is no scale of 0", 0.001, 1000, 1},
        {"a rate beyond 32 bits stays within", 1e12, 1, 4294967295u},
    };
    for (const auto& [name, rate, value, scale] : cases) {
        SCOPED_TRACE(name);
        expectTime(FrameClock(rate).frameDuration(), value, scale);
    }
}

TEST(FrameClock, SnapsWhatWasMeantWhole) {
    EXPECT_EQ(FrameClock::snap(61.0000024845809), 61);
    EXPECT_EQ(FrameClock::snap(99.99989), 100);
    EXPECT_EQ(FrameClock::snap(-0.0009), 0);
    EXPECT_EQ(FrameClock::snap(12.5), 12.5);
    EXPECT_EQ(FrameClock::snap(10.0011), 10.0011);
    EXPECT_EQ(FrameClock::snap(10000.019), 10000); // 2e-6 times itself is 0.02
}

TEST(FrameClock, NoFrameIsLostOnTheWayToATimeAndBack) {
    for (const double rate : {24.0, 25.0, 29.9700012207031, 23.9759979248047, 60.0333709716797, 24.002}) {
        const FrameClock clock(rate);
        for (int frame = -50; frame < 30000; ++frame) {
            const HostTime time = clock.timeOf(frame);
            ASSERT_EQ(clock.frameAt(time), frame) << rate;
            // Callers divide by the duration and cut.
            const double quotient = seconds(time) / seconds(clock.frameDuration());
            ASSERT_EQ(std::floor(quotient + 1e-9), frame) << rate;
        }
    }
}

TEST(FrameClock, TimesBeyondTheScale) {
    expectTime(FrameClock(25).timeOf(12.5), 125, 250);
    // 3 000 000 frames times 1000 / 23976 do not fit; both divided by 24 do.
    expectTime(FrameClock(23.9759979248047).timeOf(3e6), 125000000, 999);
    expectTime(FrameClock(25).timeOf(1e300), 2147483647, 1);
    EXPECT_NEAR(seconds(FrameClock(24).timeOf(1.0 / 3)), 1.0 / 72, 1e-9) << "a third of a frame has no exact time";
    EXPECT_NEAR(seconds(FrameClock(25).timeOf(1e10)), 4e8, 1);
    EXPECT_EQ(FrameClock(25).frameAt({100, 0}), 0);
}

} // namespace
} // namespace jostle::standalone
