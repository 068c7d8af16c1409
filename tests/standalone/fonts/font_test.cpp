#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "standalone/fonts/font_style.h"
#include "standalone/fonts/shaping.h"

namespace jostle::standalone {
namespace {

// DejaVu Sans as its tables have it, in units of which 2048 are the size: x to the right and y up.
constexpr double unitsPerEm = 2048;
constexpr double advanceOfA = 1401, advanceOfV = 1401, kerningOfAV = -131, advanceOfEAcute = 1260;
constexpr std::size_t contoursOfA = 2, contoursOfF = 1, contoursOfI = 2, contoursOfFi = 2, contoursOfEAcute = 3;

using Point = std::pair<double, double>;

class FontTest : public testing::Test {
protected:
    FontTest() : fonts_{library_.choose({"DejaVu Sans", "Book", "DejaVuSans"})} { EXPECT_TRUE(fonts_.isExact()); }

    ShapedText shape(const char* text, const ShapingStyle& style = {}) { return shapeLine(text, fonts_, style); }
    static double width(const ShapedText& text) {
        double sum = 0;
        for (const ShapedCluster& cluster : text.clusters)
            sum += cluster.advance;
        return sum * unitsPerEm / fontSizeOfOutlines;
    }
    static std::size_t contours(const ShapedText& text) {
        std::size_t count = 0;
        for (const ShapedCluster& cluster : text.clusters) {
            for (const ShapedGlyph& glyph : cluster.glyphs)
                count += glyph.outline->size();
        }
        return count;
    }

    FontLibrary library_{JOSTLE_TEST_FONTS};
    FontChoice& fonts_;
};

// The tail of J is made of parabolas about (403, -166), (198, -410), (91, -240) and (201, -90): control points of
// their own stand two thirds of the way there from the ends, of which those between two parabolas are half way
// between these points.
TEST_F(FontTest, OutlinesAreTheFontsOwn) {
    // Ends of straight lines, and of curves the control points before them.
    const std::vector<Point> expected{{403, 1493},       {403, 104},
                                      {403, -76},        {2213 / 6.0, -620 / 3.0},
                                      {300.5, -288},     {1393 / 6.0, -1108 / 3.0},
                                      {367 / 3.0, -410}, {-29, -410},
                                      {-106, -410},      {-106, -240},
                                      {-43, -240},       {139 / 3.0, -240},
                                      {328 / 3.0, -215}, {146, -165},
                                      {548 / 3.0, -115}, {201, -76 / 3.0},
                                      {201, 104},        {201, 1493}};
    std::vector<Point> found;
    const ShapedText shaped = shape("J");
    for (const GlyphContour& contour : *shaped.clusters.at(0).glyphs.at(0).outline) {
        Point last{contour.x, contour.y};
        for (const CurveTo& curve : contour.curves) {
            if (last != Point{curve.firstX, curve.firstY})
                found.insert(found.end(), {{curve.firstX, curve.firstY}, {curve.secondX, curve.secondY}});
            found.push_back(last = {curve.x, curve.y});
        }
    }
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].first * unitsPerEm / fontSizeOfOutlines, expected[i].first, 1e-9) << i;
        EXPECT_NEAR(found[i].second * unitsPerEm / fontSizeOfOutlines, -expected[i].second, 1e-9) << i;
    }
}

TEST_F(FontTest, LettersAreSetAsTheFontSays) {
    EXPECT_DOUBLE_EQ(width(shape("AV")), advanceOfA + advanceOfV + kerningOfAV);
    EXPECT_DOUBLE_EQ(width(shape("e\u0301")), advanceOfEAcute) << "a mark stands over its letter";
    EXPECT_EQ(contours(shape("e\u0301")), contoursOfEAcute);
    EXPECT_EQ(shape("e\u0301x").clusters.size(), 2U);
    EXPECT_EQ(contours(shape("fi")), contoursOfFi) << "a ligature";
    EXPECT_EQ(contours(shape("fi", {false, false})), contoursOfF + contoursOfI) << "spaced out";
    EXPECT_TRUE(shape("").clusters.empty());
}

TEST_F(FontTest, CharactersOfNoFontTakeNoRoom) {
    const ShapedText text = shape("A\x01\uE123");
    EXPECT_TRUE(text.lacksCharacters);
    EXPECT_DOUBLE_EQ(width(text), advanceOfA);
    EXPECT_EQ(text.clusters.size(), 3U);
    EXPECT_EQ(contours(text), contoursOfA);
}

TEST_F(FontTest, RunsFromRightToLeftStandInTheirPlaces) {
    // From left to right, bytes of the text.
    const std::pair<const char*, std::vector<std::size_t>> cases[] = {
        {"ab", {0, 1}},
        {"\u05D0\u05D1", {2, 0}},
        {"a \u05D0\u05D1 b", {0, 1, 6, 4, 2, 7}}, // the blank after Hebrew counts as Hebrew
        {"\u05D0 ab \u05D1", {6, 3, 4, 5, 2, 0}}, // a line that begins with Hebrew runs that way
    };
    for (const auto& [text, expected] : cases) {
        std::vector<std::size_t> begins;
        for (const ShapedCluster& cluster : shape(text).clusters)
            begins.push_back(cluster.begin);
        EXPECT_EQ(begins, expected) << text;
    }
}

// Which font is the nearest, and that there may be none: TextOutlines.WithoutGlyphsComeFromAFontAndNotesNameIt.
TEST(FontLibraryTest, OpensAFontOnce) {
    FontLibrary library(JOSTLE_TEST_FONTS);
    EXPECT_EQ(&library.choose({"DejaVu Sans", "Bold", ""}), &library.choose({"DejaVu Sans", "Bold", ""}));
}

TEST(FontStyleTest, ComesFromItsName) {
    const std::pair<const char*, std::tuple<int, bool, int>> cases[] = {
        {"", {400, false, 100}},
        {"Extra-Bold Italic", {800, true, 100}},
        {"Condensed Light Oblique", {300, true, 75}},
        {"500", {500, false, 100}},
        {"ultra_light", {200, false, 100}},
    };
    for (const auto& [name, style] : cases) {
        const FontStyle found = styleNamed(name);
        EXPECT_EQ(std::tuple(found.weight, found.slanted, found.width), style) << name;
    }
}

} // namespace
} // namespace jostle::standalone
