#pragma once

#include "geometry/projection.h"

#include <box2d/b2_math.h>

namespace jostle {

/// How a picture of some size shows the world: 30 m fill its height at zoom 100, the composition's centre is its middle
/// unless panned. World metres, composition pixels and picture pixels all have x to the right and y down.
struct ViewTransform {
    static constexpr double leastZoom = 1.0; ///< percent, of the slider
    static constexpr double greatestZoom = 2000.0;
    static constexpr double metresInHeight = 30.0;

    double width = 1280.0;      ///< of the picture, pixels, above 0
    double height = 720.0;      ///< of the picture, pixels, above 0
    double zoom = 250.0;        ///< percent, above 0
    double panX = 0.0;          ///< metres
    double panY = 0.0;          ///< metres
    double compWidth = 1920.0;  ///< pixels
    double compHeight = 1080.0; ///< pixels

    /// Width over height of the picture.
    [[nodiscard]] double aspect() const { return width / height; }
    /// Picture pixels in one composition pixel.
    [[nodiscard]] double scale() const {
        return zoom / 100.0 * height / (metresInHeight * static_cast<double>(pixelsPerMetre));
    }

    /// Picture pixels to world metres.
    [[nodiscard]] double worldX(double pixelX) const {
        return (pixelX - width / 2) / ((width / 2) / (metresInHeight / 2 * aspect())) / (zoom / 100.0) - panX;
    }
    [[nodiscard]] double worldY(double pixelY) const {
        return (pixelY - height / 2) / ((height / 2) / (metresInHeight / 2)) / (zoom / 100.0) - panY;
    }
    [[nodiscard]] b2Vec2 world(double pixelX, double pixelY) const {
        return {static_cast<float>(worldX(pixelX)), static_cast<float>(worldY(pixelY))};
    }

    /// World metres to picture pixels.
    [[nodiscard]] double pixelX(double worldX) const {
        return width / 2 + zoom / 100.0 * width / (metresInHeight * aspect()) * (worldX + panX);
    }
    [[nodiscard]] double pixelY(double worldY) const {
        return height / 2 + zoom / 100.0 * height / metresInHeight * (worldY + panY);
    }

    /// How far a pointer moved, in picture pixels, as metres.
    [[nodiscard]] b2Vec2 worldDelta(double deltaX, double deltaY) const {
        const double perPixel = metresInHeight / (zoom / 100.0) / height;
        return {static_cast<float>(perPixel * deltaX), static_cast<float>(perPixel * deltaY)};
    }

    /// Where the composition pixel (0, 0) lies, in picture pixels: a composition point c is seen at
    /// `originX()` + `scale()` * c.x, and so on; what a painter's matrix needs.
    [[nodiscard]] double originX() const { return pixelX(-compWidth / 2 / static_cast<double>(pixelsPerMetre)); }
    [[nodiscard]] double originY() const { return pixelY(-compHeight / 2 / static_cast<double>(pixelsPerMetre)); }

    /// Composition pixels to picture pixels.
    [[nodiscard]] b2Vec2 compToPicture(b2Vec2 comp) const;

    /// Shows the whole composition: the zoom that the window's button gives, truncated to a whole number and kept
    /// within the slider's range, without pan.
    void zoomToFit();
    /// The same to the pixel: the composition touches a margin on the narrower side. For pictures without a slider.
    /// @param margin  picture pixels left free on each side, less than half of the picture
    void fitExactly(double margin);
};

/// The zoom slider's value after a gesture: truncated to a whole number, from 1 to 2000.
/// @param zoom   percent, before it
/// @param delta  of the wheel, in eighths of a degree; positive zooms in
/// @param fast   with Shift held, three times as much
[[nodiscard]] int zoomAfterWheel(double zoom, int delta, bool fast);
[[nodiscard]] int zoomAfterButtonOut(double zoom);
[[nodiscard]] int zoomAfterButtonIn(double zoom);

} // namespace jostle
