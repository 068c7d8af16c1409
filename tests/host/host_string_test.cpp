#include "host/host_string.h"

#include <gtest/gtest.h>

namespace jostle {

namespace {

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
