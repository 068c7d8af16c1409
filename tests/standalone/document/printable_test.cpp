#include "standalone/document/printable.h"

#include <tuple>

#include <gtest/gtest.h>

namespace jostle::standalone {
namespace {

TEST(Printable, IsOneLineThatMovesNoCursor) {
    using namespace std::string_view_literals;
    constexpr std::tuple<const char*, std::string_view, std::string_view> cases[] = {
        {"nothing to do", "a b", "a b"},
        {"nothing at all", "", ""},
        {"line breaks and indents", "a\r\n\t  b", "a b"},
        {"an escape", "\x1B[2Jx\x7Fy", " [2Jx y"},
        {"a zero", "a\0b"sv, "a b"},
        {"controls of two bytes", "a\xC2\x80\xC2\x9F z", "a z"},
        {"characters beside them stay", "\xC2\xA0\xC3\xA9\xC2\xBF", "\xC2\xA0\xC3\xA9\xC2\xBF"},
        {"half a character at the end", "a\xC2", "a\xC2"},
    };
    for (const auto& [name, text, line] : cases)
        EXPECT_EQ(printable(text), line) << name;
}

} // namespace
} // namespace jostle::standalone
