#include "preview/view_transform.h"

#include <gtest/gtest.h>

#include <tuple>

namespace jostle {
namespace {

// In 1280 by 720 pixels 30 m in height make 24 pixels a metre at zoom 100. Pixels from the middle, (640, 360): 24 times
// zoom / 100 times the metres, pan added.
TEST(ViewTransform, worldAndPictureMapOntoEachOther) {
    const std::tuple<const char*, ViewTransform, b2Vec2, b2Vec2> cases[] = {
        {"the world's origin is the middle", {1280, 720, 100, 0, 0}, {0, 0}, {640, 360}},
        {"30 m fill the height, 16/9 of it the width", {1280, 720, 100, 0, 0}, {-80.0f / 3.0f, -15}, {0, 0}},
        {"zoom enlarges about the middle", {1280, 720, 250, 0, 0}, {1, -1}, {700, 300}},
        {"pan is in metres, before zoom", {1280, 720, 250, 1, -2}, {3, 1}, {880, 300}},
        {"a picture twice as wide shows more", {2560, 720, 100, 0, 0}, {10, 0}, {1520, 360}},
    };
    for (const auto& [name, shown, world, picture] : cases) {
        SCOPED_TRACE(name);
        EXPECT_NEAR(shown.pixelX(double{world.x}), double{picture.x}, 1e-4);
        EXPECT_NEAR(shown.pixelY(double{world.y}), double{picture.y}, 1e-4);
        EXPECT_NEAR(shown.worldX(double{picture.x}), double{world.x}, 1e-5);
        EXPECT_NEAR(shown.worldY(double{picture.y}), double{world.y}, 1e-5);
    }
}

TEST(ViewTransform, zoomToFitShowsWideAndTallCompositions) {
    // The size of the composition, that of the picture, and the zoom.
    const std::tuple<const char*, double, double, double, double, int> cases[] = {
        {"as wide as the picture counts as wide: 100 * 3000 / 1920 * 16 / 9 - 5 = 272.8", 1920, 1080, 1280, 720, 272},
        {"tall: 100 * 3000 / 1920 - 20 = 136.25", 1080, 1920, 1280, 720, 136},
        {"a tall picture makes most wide: 100 * 3000 / 1000 * 1 / 2 - 5 = 145", 1000, 1000, 400, 800, 145},
        {"never beyond the slider's end", 10, 10, 1280, 720, 2000},
        {"never below its start: 100 * 3000 / 100000 * 16 / 9 - 5 = 0.3", 100000, 1000, 1280, 720, 1},
    };
    for (const auto& [name, compWidth, compHeight, width, height, zoom] : cases) {
        SCOPED_TRACE(name);
        ViewTransform fitted{width, height, 50, 3, 4, compWidth, compHeight};
        fitted.zoomToFit();
        EXPECT_EQ(fitted.zoom, zoom);
        EXPECT_TRUE(fitted.panX == 0 && fitted.panY == 0);
    }
}

// 1000 by 500 pixels in 400 by 400 with margins of 50: 300 pixels for 1000, so 0.3 each, and 150 in height about 200.
TEST(ViewTransform, fitsExactlyWithinItsMargin) {
    ViewTransform fitted{400, 400, 50, 3, 4, 1000, 500};
    fitted.fitExactly(50);
    EXPECT_NEAR(fitted.scale(), 0.3, 1e-9);
    EXPECT_NEAR(fitted.compToPicture({0, 0}).x, 50.0f, 1e-3f);
    EXPECT_NEAR(fitted.compToPicture({1000, 500}).y, 275.0f, 1e-3f);
}

} // namespace
} // namespace jostle
