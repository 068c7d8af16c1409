#include <gtest/gtest.h>

#include "host/host_string.h"
#include "host/host_time.h"

namespace jostle {

namespace {

TEST(HostTime, RoundsHalvesAwayFromZero) {
    struct Case {
        double seconds;
        A_long value;
    };
    constexpr Case cases[] = {{0, 0}, {1, 100000}, {0.000025, 3}, {-0.000025, -3}, {-0.04, -4000}, {1e9, 2147483647}};
    for (const Case& c : cases) {
        EXPECT_EQ(hostTimeOf(c.seconds).value, c.value) << c.seconds;
        EXPECT_EQ(hostTimeOf(c.seconds).scale, 100000u);
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
    struct Case {
        const char* name;
        std::u16string units;
        const char* text;
    };
    const Case cases[] = {
        {"ASCII", u"box", "box"},
        {"two and three bytes", u"\u00e9\u4e2d", "\xC3\xA9\xE4\xB8\xAD"},
        {"a pair of surrogates", u"\U0001F600", "\xF0\x9F\x98\x80"},
        {"half a pair", std::u16string{u'a', char16_t{0xD83D}, u'b'},
         "a\xEF\xBF\xBD"
         "b"},
        {"half a pair at the end", std::u16string{char16_t{0xD83D}}, "\xEF\xBF\xBD"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(utf8From(c.units.data(), c.units.size()), c.text) << c.name;
}

} // namespace

} // namespace jostle
