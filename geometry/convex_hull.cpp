#include "geometry/convex_hull.h"

#include <cstddef>

namespace jostle {

namespace {

std::size_t startPoint(std::span<const b2Vec2> points) {
    std::size_t start = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const b2Vec2 best = points[start];
        if (points[i].x > best.x || (points[i].x == best.x && points[i].y < best.y)) {
            start = i;
        }
    }
    return start;
}

/// The point after `current` on the hull.
std::size_t nextPoint(std::span<const b2Vec2> points, b2Vec2 current) {
    std::size_t best = 0;
    for (std::size_t j = 1; j < points.size(); ++j) {
        if (points[best] == current) {
            best = j;
            continue;
        }
        const b2Vec2 r = points[best] - current;
        const b2Vec2 v = points[j] - current;
        const float c = b2Cross(r, v);
        if (c < 0.0f || (c == 0.0f && v.Length() > r.Length())) {
            best = j;
        }
    }
    return best;
}

} // namespace

std::vector<b2Vec2> convexHull(std::span<const b2Vec2> points) {
    std::vector<b2Vec2> hullVs;
    if (points.empty()) {
        return hullVs;
    }
    // Rounding can lead the walk past its start, and from then on in a circle; so it also ends at any point that it
    // has been to.
    std::vector<bool> visited(points.size(), false);
    const std::size_t start = startPoint(points);
    std::size_t current = start;
    do {
        visited[current] = true;
        hullVs.push_back(points[current]);
        current = nextPoint(points, points[current]);
    } while (!visited[current] && points[current] != points[start]);
    return hullVs;
}

} // namespace jostle
