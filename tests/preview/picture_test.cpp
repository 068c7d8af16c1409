#include "preview/gif_writer.h"
#include "preview/image_painter.h"
#include "preview/palette.h"
#include "tests/support/own_folder.h"

#include <gif_lib.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

namespace jostle {
namespace {

constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba blue{0, 0, 255, 255};
constexpr QRgb black = 0xFF000000;

/// 64 by 64 pixels, one for each of the composition's.
ViewTransform plainView() {
    ViewTransform view{64, 64, 100, 0, 0, 64, 64};
    view.fitExactly(0);
    return view;
}

Drawing onBlack() {
    Drawing drawing;
    drawing.background = {0, 0, 0, 255};
    return drawing;
}

TEST(ImagePainter, aTriangleCoversItsInsideAndHalfOfItsSlantedEdge) {
    Drawing drawing = onBlack();
    drawing.shapes.triangle({10, 10}, {50, 10}, {10, 50}, red);
    const QImage image = paintedImage(drawing, plainView());
    ASSERT_EQ(image.size(), QSize(64, 64));
    EXPECT_EQ(image.pixel(10, 10), 0xFFFF0000);
    EXPECT_EQ(image.pixel(28, 28), 0xFFFF0000); // corner (29, 29) is inside x + y < 60
    EXPECT_EQ(image.pixel(9, 20), black);
    EXPECT_EQ(image.pixel(31, 31), black);
    EXPECT_NEAR(qRed(image.pixel(29, 30)), 128, 8); // cut in halves by x + y = 60
}

TEST(ImagePainter, trianglesThatTouchShowNoSeam) {
    Drawing drawing = onBlack();
    drawing.shapes.triangle({10, 10}, {50, 10}, {50, 50}, withAlpha(red, 0.5f));
    drawing.shapes.triangle({10, 10}, {10, 50}, {50, 50}, withAlpha(red, 0.5f)); // turns the other way
    const QImage image = paintedImage(drawing, plainView());
    for (int i = 11; i < 49; ++i) {
        EXPECT_EQ(image.pixel(i, i), image.pixel(20, 40)) << i;
    }
    EXPECT_NEAR(qRed(image.pixel(20, 40)), 128, 1);
}

TEST(ImagePainter, surfacesOfOneColourCoverEachOtherAndOverlaysAll) {
    Drawing drawing = onBlack();
    drawing.overlays.triangle({0, 0}, {30, 0}, {0, 30}, blue);
    for (int i = 0; i < 2; ++i) {
        drawing.shapes.beginSurface();
        drawing.shapes.triangle({10, 10}, {50, 10}, {50, 50}, withAlpha(red, 0.5f));
    }
    drawing.shapes.line({0, 10}, {64, 10}, red, 4.0f);
    const QImage image = paintedImage(drawing, plainView());
    EXPECT_NEAR(qRed(image.pixel(40, 20)), 191, 1); // 255 * (1 - 0.5 * 0.5)
    EXPECT_EQ(image.pixel(5, 10), 0xFF0000FF);
}

TEST(ImagePainter, widthsAndSizesArePixelsOfThePictureAtAnyZoom) {
    ViewTransform view = plainView();
    view.zoom *= 4; // about the middle, (32, 32)
    Drawing drawing = onBlack();
    drawing.shapes.line({28, 30}, {36, 30}, red, 2.0f); // at y = 24, from x = 16 to 48
    drawing.shapes.point({32, 36}, blue, 6.0f);         // at (32, 48)
    drawing.view.line({0, 60}, {10, 60}, red, 2.0f);
    const QImage image = paintedImage(drawing, view);
    for (const auto& [y, color] : {std::pair(22, black), {23, 0xFFFF0000}, {24, 0xFFFF0000}, {25, black}}) {
        EXPECT_EQ(image.pixel(20, y), color) << y;
    }
    EXPECT_EQ(image.pixel(15, 24), black);
    EXPECT_EQ(image.pixel(32, 46), 0xFF0000FF);
    EXPECT_EQ(image.pixel(32, 44), black);
    EXPECT_EQ(image.pixel(5, 60), 0xFFFF0000);
    EXPECT_EQ(image.pixel(11, 60), black);
}

TEST(ImagePainter, discsLieAmongTheTrianglesAndRingsOverThem) {
    ViewTransform view = plainView();
    view.zoom *= 2; // about the middle, (32, 32)
    Drawing drawing = onBlack();
    DrawList& list = drawing.shapes;
    list.triangle({16, 16}, {48, 16}, {16, 48}, red);
    list.disc({32, 32}, 10, blue); // 20 pixels
    list.triangle({32, 32}, {48, 32}, {32, 48}, red);
    list.ring({32, 32}, 10, {255, 255, 255, 255}, 2.0f);
    const QImage image = paintedImage(drawing, view);
    // The ring lies from 19 to 21 pixels about (32, 32).
    for (const auto& [x, green, blueChannel] : {std::tuple(9, 0, 0), {11, 255, 255}, {12, 255, 255}, {14, 0, 255}}) {
        EXPECT_NEAR(qGreen(image.pixel(x, 31)), green, 8) << x;
        EXPECT_NEAR(qBlue(image.pixel(x, 31)), blueChannel, 8) << x;
    }
    EXPECT_EQ(image.pixel(36, 36), 0xFFFF0000);
}

TEST(ImagePainter, whatIsNowhereOrFarAwayDoesNoHarm) {
    const float nan = std::nanf("");
    Drawing drawing = onBlack();
    drawing.shapes.triangle({nan, 0}, {64, 0}, {0, 64}, red);
    drawing.shapes.line({nan, 0}, {64, 64}, red, 2.0f);
    drawing.shapes.point({0, nan}, red, 9.0f);
    drawing.shapes.disc({0, 32}, nan, red);
    drawing.shapes.ring({nan, 32}, 4, red, 2.0f);
    drawing.shapes.ring({32, 1e9f}, 1e9f - 16, red, 2.0f);
    drawing.shapes.line({-1e9f, 32}, {1e9f, 32}, blue, 2.0f);
    const QImage image = paintedImage(drawing, plainView());
    EXPECT_EQ(image.pixel(5, 5), black);
    EXPECT_EQ(image.pixel(5, 31), 0xFF0000FF);
}

using Pixels = std::vector<std::uint32_t>;

// Decoded by the library, composed by hand.
TEST(GifWriter, framesComeBackAndHoldWhatChanged) {
    const Pixels first(12, 0xFF102030);
    Pixels second = first;
    second[5] = 0xFFF0A050; // 4 columns: (1, 1)
    second[6] = 0xFF262626;
    second[10] = 0xFF00FF00; // (2, 2)
    // Each frame's delay and what it holds: (1, 1) to (2, 2) changes, and a frame has a pixel at least.
    const std::tuple<Pixels, int, int> frames[] = {{first, 4, 12}, {second, 3, 4}, {second, 5, 1}};
    GifWriter writer(4, 3);
    for (const auto& [pixels, delay, area] : frames) {
        EXPECT_TRUE(writer.add(pixels, delay));
    }
    const test::OwnFolder folder;
    folder.put("film.gif", writer.finish());
    int error = 0;
    GifFileType* const file = DGifOpenFileName(folder.path("film.gif").c_str(), &error);
    ASSERT_TRUE(file && DGifSlurp(file) == GIF_OK && file->ImageCount == 3);
    Pixels canvas(12);
    for (int i = 0; i < 3; ++i) {
        const SavedImage& image = file->SavedImages[i];
        const GifImageDesc& part = image.ImageDesc;
        GraphicsControlBlock control{};
        DGifSavedExtensionToGCB(file, i, &control);
        for (int k = 0; k < part.Width * part.Height; ++k) {
            if (image.RasterBits[k] != control.TransparentColor) {
                const GifColorType c = part.ColorMap->Colors[image.RasterBits[k]];
                const int at = (part.Top + k / part.Width) * 4 + part.Left + k % part.Width;
                canvas.at(static_cast<std::size_t>(at)) = qRgb(c.Red, c.Green, c.Blue);
            }
        }
        EXPECT_EQ(std::tuple(canvas, control.DelayTime, part.Width * part.Height), frames[i]) << i;
    }
    DGifCloseFile(file, &error);
}

TEST(GifWriter, hasNothingWithoutFramesAndAfterOneOfAnotherSize) {
    GifWriter writer(4, 3);
    EXPECT_FALSE(writer.add(Pixels(11), 4));
    EXPECT_TRUE(writer.finish().empty() && GifWriter(4, 3).finish().empty());
}

// 4096 colours in steps of 16: a palette of 255 has boxes of 17 colours, so none need be farther than a few steps away.
TEST(Palette, manyColoursComeNear) {
    Pixels pixels;
    for (std::uint32_t i = 0; i < 4096; ++i) {
        pixels.push_back((i >> 8U) << 20U | (i >> 4U & 15U) << 12U | (i & 15U) << 4U);
    }
    Palette palette;
    palette.fit(pixels, 255);
    EXPECT_LE(palette.colors().size(), 255U);
    for (const std::uint32_t pixel : pixels) {
        const std::uint32_t taken = palette.colors()[palette.indexOf(pixel)];
        for (const unsigned shift : {0U, 8U, 16U}) {
            const int far = static_cast<int>(pixel >> shift & 0xFFU) - static_cast<int>(taken >> shift & 0xFFU);
            ASSERT_LE(std::abs(far), 48) << pixel;
        }
    }
}

} // namespace
} // namespace jostle
