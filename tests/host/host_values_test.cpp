#include <tuple>

#include <gtest/gtest.h>

#include "host/host_string.h"
#include "host/host_time.h"

namespace jostle {

namespace {

TEST(HostTime, RoundsHalvesAwayFromZero) {
    for (const auto& [seconds, value] :
         {std::pair{0.0, 0}, {1.0, 100000}, {0.000025, 3}, {-0.000025, -3}, {1e9, 2147483647}}) {
        EXPECT_EQ(hostTimeOf(seconds).value, value) << seconds;
        EXPECT_EQ(hostTimeOf(seconds).scale, 100000u);
    }
}

TEST(HostTime, TimesOfFramesLeadBackToTheirFrames) {
    // The last scale is that of odd rates: 100000 frames of it do not fit 32 bits as they are.
    for (const A_Time duration : {A_Time{1, 25}, A_Time{100, 2997}, A_Time{1000, 23976}, A_Time{65536, 3934347}}) {
        for (const int frame : {0, 1, 61, 99, 3599, 100000, -3})
            EXPECT_EQ(wholeFrames(framesOf(timeOfFrame(duration, frame), duration) + 1e-4 * (frame < 0 ? -1 : 1)),
                      frame)
                << duration.value << ", frame " << frame;
    }
    EXPECT_EQ(wholeFrames(9.9999999999), 10);
    EXPECT_EQ(wholeFrames(-9.9999999999), -10);
    EXPECT_EQ(wholeFrames(-9.9), -9);
    EXPECT_EQ(framesUpTo(10.0000000001), 10);
    EXPECT_EQ(framesUpTo(10.1), 11);
    EXPECT_EQ(framesOf({5, 0}, {1, 25}), 0.0);
}

TEST(HostString, IsUtf8) {
    const std::tuple<const char*, std::u16string, const char*> cases[] = {
        {"one to four bytes", u"x\u00e9\u4e2d\U0001F600", "x\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80"},
        {"half a pair", std::u16string{u'a', char16_t{0xD83D}, u'b'},
         "a\xEF\xBF\xBD"
         "b"},
        {"half a pair at the end", std::u16string{char16_t{0xD83D}}, "\xEF\xBF\xBD"},
    };
    for (const auto& [name, units, text] : cases)
        EXPECT_EQ(utf8From(units.data(), units.size()), text) << name;
}

} // namespace

} // namespace jostle
