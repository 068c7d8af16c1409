#include "geometry/projection.h"

namespace jostle {

b2Vec2 projectPoint(b2Vec2 point, const Matrix4& matrix) {
    const double px = static_cast<double>(point.x);
    const double py = static_cast<double>(point.y);
    const auto column = [&](int j) { return px * matrix.m[0][j] + py * matrix.m[1][j] + matrix.m[3][j]; };
    double x = column(0);
    double y = column(1);
    const double w = column(3);
    if (w != 0.0) {
        x /= w;
        y /= w;
    }
    return {static_cast<float>(x), static_cast<float>(y)};
}

float toBodyX(float x, int compWidth) {
    return (x - static_cast<float>(compWidth) / 2.0f) / pixelsPerMetre;
}

float toBodyY(float y, int compHeight) {
    return (y - static_cast<float>(compHeight) / 2.0f) / pixelsPerMetre;
}

b2Vec2 toWorld(b2Vec2 pixels) {
    return {pixels.x / pixelsPerMetre, pixels.y / pixelsPerMetre};
}

} // namespace jostle
