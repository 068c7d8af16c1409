#pragma once

#include <QImage>

#include <cstdlib>

namespace jostle::test {

/// The mean difference of all channels of two pictures of one size, as a part of the whole range.
inline double difference(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * 255.0 * a.width() * a.height());
}

} // namespace jostle::test
