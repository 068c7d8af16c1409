#include "preview/view_transform.h"

#include <gtest/gtest.h>

namespace jostle {
namespace {

/// 1280 by 720 pixels, so that 30 m in height make 24 pixels a metre at zoom 100.
ViewTransform view(double zoom, double panX, double panY) {
    ViewTransform made;
    made.zoom = zoom;
    made.panX = panX;
    made.panY = panY;
    return made;
}

struct PointCase {
    const char* name;
    ViewTransform view;
    b2Vec2 world;   ///< metres
    b2Vec2 picture; ///< pixels
};

// Pixels from the middle, (640, 360): 24 times zoom / 100 times the metres, pan added.
const PointCase pointCases[] = {
    {"the world's origin is the middle", view(100, 0, 0), {0, 0}, {640, 360}},
    {"y grows downwards", view(100, 0, 0), {0, 15}, {640, 720}},
    {"30 m fill the height, 16/9 of it the width", view(100, 0, 0), {-80.0f / 3.0f, -15}, {0, 0}},
    {"zoom enlarges about the middle", view(250, 0, 0), {1, -1}, {700, 300}},
    {"pan is in metres, before zoom", view(250, 1, -2), {3, 1}, {880, 300}},
    {"a picture twice as wide shows more", {2560, 720, 100, 0, 0}, {10, 0}, {1520, 360}},
};

TEST(ViewTransform, worldAndPictureMapOntoEachOther) {
    for (const PointCase& c : pointCases) {
        SCOPED_TRACE(c.name);
        EXPECT_NEAR(c.view.pixelX(double{c.world.x}), double{c.picture.x}, 1e-4);
        EXPECT_NEAR(c.view.pixelY(double{c.world.y}), double{c.picture.y}, 1e-4);
        EXPECT_NEAR(c.view.worldX(double{c.picture.x}), double{c.world.x}, 1e-5);
        EXPECT_NEAR(c.view.worldY(double{c.picture.y}), double{c.world.y}, 1e-5);
    }
}

// 30 m / 2.5 over 720 pixels are 1/60 m a pixel, on both axes.
TEST(ViewTransform, aPointerMovesByMetresOfTheZoom) {
    const b2Vec2 delta = view(250, 7, 7).worldDelta(60, -120);
    EXPECT_NEAR(delta.x, 1.0f, 1e-5f);
    EXPECT_NEAR(delta.y, -2.0f, 1e-5f);
}

// The composition's middle, (960, 540), is the world's origin; 100 of its pixels are a metre, 60 pixels at zoom 250.
TEST(ViewTransform, compositionPixelsStandWhereTheirMetresDo) {
    const ViewTransform shown = view(250, 1, -2);
    const b2Vec2 picture = shown.compToPicture({960.0f + 300.0f, 540.0f + 100.0f});
    EXPECT_NEAR(picture.x, 880.0f, 1e-3f);
    EXPECT_NEAR(picture.y, 300.0f, 1e-3f);
    EXPECT_NEAR(shown.pictureToComp(picture).x, 1260.0f, 1e-2f);
    EXPECT_NEAR(shown.pictureToComp(picture).y, 640.0f, 1e-2f);
}

struct FitCase {
    const char* name;
    double compWidth;
    double compHeight;
    double width;
    double height;
    double zoom;
};

constexpr FitCase fitCases[] = {
    {"as wide as the picture counts as wide: 100 * 3000 / 1920 * 16 / 9 - 5 = 272.8", 1920, 1080, 1280, 720, 272},
    {"wider: 100 * 3000 / 4000 * 16 / 9 - 5 = 128.3", 4000, 500, 1280, 720, 128},
    {"tall: 100 * 3000 / 1920 - 20 = 136.25", 1080, 1920, 1280, 720, 136},
    {"a tall picture makes most wide: 100 * 3000 / 1000 * 1 / 2 - 5 = 145", 1000, 1000, 400, 800, 145},
    {"never beyond the slider's end", 10, 10, 1280, 720, 2000},
    {"never below its start: 100 * 3000 / 100000 * 16 / 9 - 5 = 0.3", 100000, 1000, 1280, 720, 1},
};

TEST(ViewTransform, zoomToFitShowsWideAndTallCompositions) {
    for (const FitCase& c : fitCases) {
        SCOPED_TRACE(c.name);
        ViewTransform fitted{c.width, c.height, 50, 3, 4, c.compWidth, c.compHeight};
        fitted.zoomToFit();
        EXPECT_EQ(fitted.zoom, c.zoom);
        EXPECT_EQ(fitted.panX, 0);
        EXPECT_EQ(fitted.panY, 0);
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

TEST(ViewTransform, gesturesZoomByWholeStepsWithinTheSlider) {
    EXPECT_EQ(zoomAfterWheel(250, 120, false), 310);
    EXPECT_EQ(zoomAfterWheel(250, 120, true), 430);
    EXPECT_EQ(zoomAfterWheel(10, -120, false), 1);
    EXPECT_EQ(zoomAfterWheel(1990, 120, false), 2000);
    EXPECT_EQ(zoomAfterButtonOut(251), 125);
    EXPECT_EQ(zoomAfterButtonOut(1), 1);
    EXPECT_EQ(zoomAfterButtonIn(250), 350);
    EXPECT_EQ(zoomAfterButtonIn(1950), 2000);
}

} // namespace
} // namespace jostle
