#include "preview/view_transform.h"

#include <algorithm>
#include <cmath>

namespace jostle {

namespace {

constexpr double compPixelsInHeight = ViewTransform::metresInHeight * double{pixelsPerMetre};

int sliderValue(double zoom) {
    return static_cast<int>(std::clamp(zoom, ViewTransform::leastZoom, ViewTransform::greatestZoom));
}

} // namespace

b2Vec2 ViewTransform::compToPicture(b2Vec2 comp) const {
    return {static_cast<float>(originX() + scale() * double{comp.x}),
            static_cast<float>(originY() + scale() * double{comp.y})};
}

void ViewTransform::zoomToFit() {
    // The margins differ on purpose: 5 percent points beside a wide composition, 20 above a tall one.
    const bool isWide = compWidth / compHeight >= aspect();
    zoom = sliderValue(isWide ? 100.0 * (compPixelsInHeight / compWidth * aspect()) - 5.0
                              : 100.0 * (compPixelsInHeight / compHeight) - 20.0);
    panX = 0.0;
    panY = 0.0;
}

void ViewTransform::fitExactly(double margin) {
    const double scaleX = (width - 2.0 * margin) / compWidth;
    const double scaleY = (height - 2.0 * margin) / compHeight;
    zoom = 100.0 * std::min(scaleX, scaleY) * compPixelsInHeight / height;
    panX = 0.0;
    panY = 0.0;
}

int zoomAfterWheel(double zoom, int delta, bool fast) {
    return sliderValue(zoom + (fast ? 3.0 * delta : 1.0 * delta) / 2.0);
}

int zoomAfterButtonOut(double zoom) {
    return sliderValue(zoom / 2.0);
}

int zoomAfterButtonIn(double zoom) {
    return sliderValue(zoom + 100.0);
}

} // namespace jostle
