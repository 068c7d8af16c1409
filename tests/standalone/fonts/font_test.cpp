#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include "standalone/fonts/font_style.h"
#include "standalone/fonts/shaping.h"

namespace jostle::standalone {
namespace {

constexpr double unitsPerEm = 2048; // of the DejaVu fonts

using Point = std::pair<double, double>;

/// Control points of an outline's curves, as cubic ones, in font units, y down; of straight lines their ends.
struct Walk {
    std::vector<Point> points;
    Point last;

    int moveTo(Point to) {
        last = to;
        return 0;
    }
    int lineTo(Point to) {
        points.push_back(to);
        return moveTo(to);
    }
    /// The same curve with one control point more: those are two thirds of the way from the ends to the only one.
    int quadraticTo(Point control, Point to) {
        for (const Point& end : {last, to})
            points.emplace_back(std::lerp(end.first, control.first, 2.0 / 3),
                                std::lerp(end.second, control.second, 2.0 / 3));
        return lineTo(to);
    }
    static Walk& of(void* self) { return *static_cast<Walk*>(self); }
};
Point pointAt(const FT_Vector* place) {
    return {static_cast<double>(place->x) / 64, static_cast<double>(place->y) / -64};
}

/// What FreeType alone says of DejaVu Sans, in font units.
class Reference {
public:
    Reference() {
        EXPECT_EQ(FT_Init_FreeType(&library_), 0);
        EXPECT_EQ(FT_New_Face(library_, JOSTLE_TEST_FONTS "/DejaVuSans.ttf", 0, &face_), 0);
        EXPECT_EQ(face_->units_per_EM, unitsPerEm);
        // A pixel to a unit: unscaled outlines would be rounded to whole units.
        EXPECT_EQ(FT_Set_Pixel_Sizes(face_, 0, face_->units_per_EM), 0);
    }
    ~Reference() { FT_Done_FreeType(library_); }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    FT_GlyphSlot glyph(char32_t character) const {
        EXPECT_EQ(FT_Load_Char(face_, character, FT_LOAD_NO_HINTING), 0);
        return face_->glyph;
    }
    double advance(char32_t character) const { return static_cast<double>(glyph(character)->metrics.horiAdvance) / 64; }
    std::size_t contours(char32_t character) const {
        return static_cast<std::size_t>(glyph(character)->outline.n_contours);
    }
    double kerning(char32_t left, char32_t right) const {
        FT_Vector kerning{};
        FT_Get_Kerning(face_, FT_Get_Char_Index(face_, left), FT_Get_Char_Index(face_, right), FT_KERNING_UNSCALED,
                       &kerning);
        return static_cast<double>(kerning.x);
    }

    std::vector<Point> controlPoints(char32_t character) const {
        const FT_Outline_Funcs callbacks{
            [](const FT_Vector* to, void* walk) { return Walk::of(walk).moveTo(pointAt(to)); },
            [](const FT_Vector* to, void* walk) { return Walk::of(walk).lineTo(pointAt(to)); },
            [](const FT_Vector* by, const FT_Vector* to, void* walk) {
                return Walk::of(walk).quadraticTo(pointAt(by), pointAt(to));
            },
            nullptr,
            0,
            0};
        Walk walk{};
        EXPECT_EQ(FT_Outline_Decompose(&glyph(character)->outline, &callbacks, &walk), 0);
        return walk.points;
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

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

    static std::vector<Point> controlPoints(const GlyphContours& contours) {
        std::vector<Point> points;
        for (const GlyphContour& contour : contours) {
            Point last{contour.x, contour.y};
            for (const CurveTo& curve : contour.curves) {
                if (last != Point{curve.firstX, curve.firstY}) {
                    points.emplace_back(curve.firstX, curve.firstY);
                    points.emplace_back(curve.secondX, curve.secondY);
                }
                points.push_back(last = {curve.x, curve.y});
            }
        }
        for (Point& point : points)
            point = {point.first * unitsPerEm / fontSizeOfOutlines, point.second * unitsPerEm / fontSizeOfOutlines};
        return points;
    }

    FontLibrary library_{JOSTLE_TEST_FONTS};
    FontChoice& fonts_;
    Reference reference_;
};

TEST_F(FontTest, OutlinesAreTheFontsOwn) {
    const std::pair<char32_t, const char*> cases[] = {{'l', "l"}, {'o', "o"}, {'g', "g"}, {0xE9, "\u00E9"}};
    for (const auto& [character, text] : cases) {
        const std::vector<Point> expected = reference_.controlPoints(character);
        const std::vector<Point> found = controlPoints(*shape(text).clusters.at(0).glyphs.at(0).outline);
        ASSERT_EQ(found.size(), expected.size()) << text;
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i].first, expected[i].first, 1e-9) << text << ", point " << i;
            EXPECT_NEAR(found[i].second, expected[i].second, 1e-9) << text << ", point " << i;
        }
    }
}

TEST_F(FontTest, LettersAreSetAsTheFontSays) {
    const Reference& font = reference_;
    ASSERT_LT(font.kerning('A', 'V'), 0);
    EXPECT_DOUBLE_EQ(width(shape("AV")), font.advance('A') + font.advance('V') + font.kerning('A', 'V'));
    EXPECT_DOUBLE_EQ(width(shape("e\u0301")), font.advance(0xE9)) << "a mark stands over its letter";
    EXPECT_EQ(shape("e\u0301x").clusters.size(), 2U);
    // The ligature of f and i is also a character of its own.
    ASSERT_NE(font.contours(0xFB01), font.contours('f') + font.contours('i'));
    EXPECT_EQ(contours(shape("fi")), font.contours(0xFB01));
    EXPECT_EQ(contours(shape("fi", {false, false})), font.contours('f') + font.contours('i')) << "spaced out";
    EXPECT_TRUE(shape("").clusters.empty());
}

TEST_F(FontTest, CharactersOfNoFontTakeNoRoom) {
    const ShapedText text = shape("A\x01\uE123");
    EXPECT_TRUE(text.lacksCharacters);
    EXPECT_DOUBLE_EQ(width(text), reference_.advance('A'));
    EXPECT_EQ(text.clusters.size(), 3U);
    EXPECT_EQ(contours(text), reference_.contours('A'));
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

TEST(FontLibraryTest, OpensAFontOnceAndFindsTheNearest) {
    FontLibrary library(JOSTLE_TEST_FONTS);
    FontChoice& bold = library.choose({"DejaVu Sans", "Bold", ""});
    EXPECT_EQ(&bold, &library.choose({"DejaVu Sans", "Bold", ""}));
    EXPECT_EQ(bold.title(0), "DejaVu Sans Bold");
    EXPECT_EQ(library.choose({"'dejavu  sans', serif", "bold", ""}).title(0), "DejaVu Sans Bold");
    EXPECT_EQ(library.choose({"", "", "DejaVuSerif-Bold"}).title(0), "DejaVu Serif Bold");
    EXPECT_FALSE(library.choose({"DejaVu Sans", "Thin Italic", ""}).isExact());
    EXPECT_FALSE(FontLibrary("/nowhere").choose({"DejaVu Sans", "", ""}));
}

TEST(FontStyleTest, ComesFromItsName) {
    const std::pair<const char*, std::tuple<int, bool, int>> cases[] = {
        {"", {400, false, 100}},
        {"Regular", {400, false, 100}},
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
