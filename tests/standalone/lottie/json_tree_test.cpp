#include "standalone/lottie/json_tree.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "standalone/lottie/json_string.h"

namespace jostle::standalone {
namespace {

/// A tree with the text it refers to.
struct Parsed {
    std::string text;
    JsonTree tree;
    std::optional<JsonError> error;

    explicit Parsed(std::string_view json) : text{json}, error{tree.parse(text)} {}
    JsonValue root() const { return tree.root(); }
};

// How lists hold numbers or entries, and what stands where, is looked at by the tests of the reader and the writer.
TEST(JsonTree, WrongTypesGiveDefaults) {
    const Parsed p(R"({"s":"5","n":4.0,"h":4.5,"t":true,"z":null,"big":1e300,"e":1e999,"tiny":-1e-999,"long":)" +
                   std::string("1") + std::string(400, '0') + "e-400,\"k\":1,\"k\":2,\"\\u0061b\":3}");
    ASSERT_FALSE(p.error);
    const JsonValue root = p.root();
    const std::pair<const char*, int> integers[] = {{"s", 9}, {"n", 4},       {"h", 9},    {"big", 9}, {"e", 9},
                                                    {"k", 2}, {"missing", 9}, {"long", 1}, {"ab", 3},  {"tiny", 0}};
    for (const auto& [name, value] : integers)
        EXPECT_EQ(root[name].integer(9), value) << name;
    EXPECT_EQ(root["s"].number(9), 9);
    EXPECT_EQ(root["e"].number(9), 9);
    EXPECT_EQ(*root["e"].number(), HUGE_VAL);
    EXPECT_EQ(root["n"].boolean(true), true);
    EXPECT_EQ(root["n"].string("none"), "none");
    EXPECT_TRUE(root["t"].flag());
    EXPECT_FALSE(root["z"].flag());
    EXPECT_EQ(root["n"]["deeper"]["yet"].number(9), 9);
    EXPECT_EQ(root["missing"].type(), JsonType::Missing);
}

TEST(JsonTree, StringsAreUtf8) {
    const std::string longer(100, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {R"(\u00e9\/\n\")", "\xC3\xA9/\n\""},
        {R"(\ud83d\ude00)", "\xF0\x9F\x98\x80"},
        {R"(\ude00)", "\xEF\xBF\xBD"}, // half a pair
        {R"(a\u0000b)", {"a\0b", 3}},
        {longer, longer}, // what stands before the first quote must not be looked at: there is nothing
    };
    for (const auto& [content, value] : cases) {
        const Parsed p('"' + content + '"');
        ASSERT_FALSE(p.error) << content;
        EXPECT_EQ(p.root().string(), value);
    }
    EXPECT_EQ(unescaped("\xFFz\xC3"), "\xEF\xBF\xBDz\xEF\xBF\xBD") << "no UTF-8";
    std::string quoted;
    appendQuoted(quoted, "a\"\\\x01\xC3\xA9");
    EXPECT_EQ(quoted, "\"a\\\"\\\\\\u0001\xC3\xA9\"");
}

TEST(JsonTree, RefusesWhatIsNoJson) {
    // What it says, and the line and column; a column of 0 is not looked at.
    const std::tuple<const char*, std::string, const char*, std::size_t, std::size_t> cases[] = {
        {"empty", "", "empty", 1, 1},
        {"cut off", "{\"a\":[1,2", "Missing a comma", 1, 10},
        {"not a number", "{\n  \"a\": NaN}", "Invalid value", 2, 8},
        {"text behind", "{} x", "after the end", 1, 4},
        {"zero byte behind", std::string("{}\0 ", 4), "after the end", 1, 3},
        {"zero byte within", std::string("{\"a\0\":1}", 8), "not valid JSON", 1, 0},
        {"201 levels", std::string(201, '[') + std::string(201, ']'), "deeper than 200", 1, 201},
        {"very many levels", std::string(1000000, '['), "deeper than 200", 1, 201},
        {"unclosed string", "\xEF\xBB\xBF[\"\xC3\xA9", "not valid JSON", 1, 0},
        {"no sign of a number", "[1e999,1-2]", "not valid JSON", 1, 0},
        {"a leading zero", "[1e999,012]", "not valid JSON", 1, 0},
        {"two points", "[1e999,1.5.5]", "not valid JSON", 1, 0},
        {"no exponent", "[1e999,1e]", "not valid JSON", 1, 0},
        {"half an escape", "[\"\\u12", "not valid JSON", 1, 0},
    };
    for (const auto& [name, text, says, line, column] : cases) {
        SCOPED_TRACE(name);
        const Parsed p(text);
        ASSERT_TRUE(p.error);
        EXPECT_NE(p.error->what.find(says), std::string::npos) << p.error->what;
        EXPECT_FALSE(p.root());
        const TextPlace place = placeInText(p.text, p.error->offset);
        EXPECT_EQ(place.line, line);
        EXPECT_TRUE(column == 0 || place.column == column) << place.column;
    }
    EXPECT_FALSE(Parsed(std::string(200, '[') + std::string(200, ']')).error);
    EXPECT_FALSE(Parsed("\xEF\xBB\xBF{\"a\":1}").error) << "a byte-order mark is skipped";
}

} // namespace
} // namespace jostle::standalone
