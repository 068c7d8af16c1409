#include "standalone/document/printable.h"

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

TEST(Printable, IsOneLineThatMovesNoCursor) {
    struct Case {
        const char* name;
        std::string_view text, line;
    };
    constexpr Case cases[] = {
        {"nothing to do", "a b", "a b"},
        {"nothing at all", "", ""},
        {"line breaks and indents", "a\r\n\t  b", "a b"},
        {"an escape", "\x1B[2Jx\x7Fy", " [2Jx y"},
        {"a zero", {"a\0b", 3}, "a b"},
        {"controls of two bytes", "a\xC2\x80\xC2\x9F z", "a z"},
        {"characters beside them stay", "\xC2\xA0\xC3\xA9\xC2\xBF", "\xC2\xA0\xC3\xA9\xC2\xBF"},
        {"half a character at the end", "a\xC2", "a\xC2"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(printable(c.text), c.line) << c.name;
}

} // namespace
} // namespace jostle::standalone
