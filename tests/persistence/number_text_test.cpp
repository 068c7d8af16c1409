#include "persistence/number_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace jostle {
namespace {

TEST(NumberText, IsReadAsTheConversionsOfCDoAndStaysFinite) {
    // No number goes beyond 16777200, the largest of the panels.
    constexpr std::tuple<const char*, std::int32_t, float> cases[] = {
        {"", 0, 0},
        {" \t\n+12", 12, 12},
        {"-7x", -7, -7},
        {"1.75", 1, 1.75f},
        {".5", 0, 0.5f},
        {"1,5", 1, 1},
        {"- 3", 0, 0},
        {"+-3", 0, 0},
        {"1e3", 1, 1000},
        {"1e", 1, 1},
        {"-2.5E-1z", -2, -0.25f},
        {"0x1p4", 0, 16},
        {"0X.8", 0, 0.5f},
        {"0x", 0, 0},
        {"0x-1", 0, 0},
        {"0xinf", 0, 0},
        {"inf", 0, 16777200},
        {"-Infinity", 0, -16777200},
        {"nan", 0, 0},
        {"2147483648", 2147483647, 16777200},
        {"-99999999999999999999999", std::numeric_limits<std::int32_t>::min(), -16777200},
        {"1e999", 1, 16777200},
        {"1e-999", 1, 0},
        {"0.0000001e-400", 0, 0},
        {"1e-99999999999999999999", 1, 0},
        {"0x1p99999", 0, 16777200},
        {"0x1p-99999", 0, 0},
        {"0x0.00000001p1100", 0, 16777200},
        {"16777201", 16777201, 16777200},
    };
    for (const auto& [text, integer, real] : cases) {
        EXPECT_EQ(integerOf(text), integer) << text;
        EXPECT_EQ(realOf(text), real) << text;
    }
}

TEST(NumberText, RealNumbersAreWrittenFromSinglePrecisionWithSixDecimals) {
    constexpr std::pair<double, const char*> cases[] = {
        {0.3, "0.300000"},
        {-0.25, "-0.250000"},
        {0.0000004, "0.000000"},
        {49.6, "49.599998"}, // the float nearest to it is 49.59999847...
        {16777200, "16777200.000000"},
        {1e300, "16777200.000000"},
        {-std::numeric_limits<double>::infinity(), "-16777200.000000"},
        {std::numeric_limits<double>::quiet_NaN(), "0.000000"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(realText(value), text);
}

} // namespace
} // namespace jostle
