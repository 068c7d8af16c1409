#include "geometry/polygon_tests.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace jostle {

bool segmentsIntersect(b2Vec2 a, b2Vec2 b, b2Vec2 c, b2Vec2 d) {
    // With P = a + ua (b - a) = c + ub (d - c), both parameters have this denominator.
    const float den = (d.y - c.y) * (b.x - a.x) - (d.x - c.x) * (b.y - a.y);
    if (std::abs(den) < 0.0001f) {
        return false;
    }
    const float ua = ((d.x - c.x) * (a.y - c.y) - (d.y - c.y) * (a.x - c.x)) / den;
    const float ub = ((b.x - a.x) * (a.y - c.y) - (b.y - a.y) * (a.x - c.x)) / den;
    return 0.0f < ua && ua < 1.0f && 0.0f < ub && ub < 1.0f;
}

namespace {

/// Whether segmentsIntersect() may hold for edge ab and one of the edges between the points (xs[j], ys[j]) and the
/// next. It surely does not if this is false. Without branches and divisions, so that compilers make vector code of it.
bool mayIntersectAny(b2Vec2 a, b2Vec2 b, std::span<const float> xs, std::span<const float> ys) {
    const float abX = b.x - a.x;
    const float abY = b.y - a.y;
    int hits = 0;
    for (std::size_t j = 0; j + 1 < xs.size(); ++j) {
        const float cdX = xs[j + 1] - xs[j];
        const float cdY = ys[j + 1] - ys[j];
        const float acX = a.x - xs[j];
        const float acY = a.y - ys[j];
        const float den = cdY * abX - cdX * abY;
        const float ua = cdX * acY - cdY * acX;
        const float ub = abX * acY - abY * acX;
        // A quotient is between 0 and 1 only if its numerator is between 0 and the denominator.
        const float size = std::abs(den);
        const float sign = den < 0.0f ? -1.0f : 1.0f;
        hits += static_cast<int>(size >= 0.0001f) & static_cast<int>(sign * ua > 0.0f) &
                static_cast<int>(sign * ua < size) & static_cast<int>(sign * ub > 0.0f) &
                static_cast<int>(sign * ub < size);
    }
    return hits != 0;
}

/// Compares all pairs of edges.
bool crossesInPairs(std::span<const b2Vec2> verts) {
    const std::size_t count = verts.size();
    std::vector<float> xs;
    std::vector<float> ys;
    for (std::size_t i = 0; i <= count; ++i) {
        xs.push_back(verts[i % count].x);
        ys.push_back(verts[i % count].y);
    }
    // Neighbours pass: a shared end makes a parameter exactly 0 or 1.
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const b2Vec2 a = verts[i];
        const b2Vec2 b = verts[i + 1];
        if (!mayIntersectAny(a, b, std::span(xs).subspan(i + 1), std::span(ys).subspan(i + 1))) {
            continue;
        }
        for (std::size_t j = i + 1; j < count; ++j) {
            if (segmentsIntersect(a, b, verts[j], verts[(j + 1) % count])) {
                return true;
            }
        }
    }
    return false;
}

/// Compares pairs of edges whose boxes meet, from left to right.
bool crossesInBoxes(std::span<const b2Vec2> verts) {
    struct Edge {
        b2Vec2 a, b, lower, upper;
    };
    std::vector<Edge> edges;
    for (std::size_t i = 0; i < verts.size(); ++i) {
        const b2Vec2 a = verts[i];
        const b2Vec2 b = verts[(i + 1) % verts.size()];
        if (a.IsValid() && b.IsValid()) {
            edges.push_back({a, b, b2Min(a, b), b2Max(a, b)});
        }
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.lower.x < b.lower.x; });
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const Edge& e = edges[i];
        for (std::size_t j = i + 1; j < edges.size() && edges[j].lower.x <= e.upper.x; ++j) {
            const Edge& f = edges[j];
            if (f.lower.y <= e.upper.y && e.lower.y <= f.upper.y && segmentsIntersect(e.a, e.b, f.a, f.b)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

bool isSelfIntersecting(std::span<const b2Vec2> verts) {
    constexpr std::size_t mostInPairs = 100;
    return verts.size() >= 3 && (verts.size() <= mostInPairs ? crossesInPairs(verts) : crossesInBoxes(verts));
}

bool isReversed(std::span<const b2Vec2> verts) {
    const std::size_t count = verts.size();
    if (count < 3) {
        return false;
    }
    std::ptrdiff_t turns = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const b2Vec2 corner = verts[(i + 1) % count];
        const double z = static_cast<double>(b2Cross(corner - verts[i], verts[(i + 2) % count] - corner));
        if (z > 0.0) {
            ++turns;
        } else if (z < 0.0) {
            --turns;
        }
    }
    return turns < 0;
}

bool pointInPolygon(b2Vec2 point, std::span<const b2Vec2> verts) {
    bool inside = false;
    for (std::size_t i = 0; i < verts.size(); ++i) {
        const b2Vec2 p1 = verts[i];
        const b2Vec2 p2 = verts[i + 1 < verts.size() ? i + 1 : 0];
        if (point.y > std::min(p1.y, p2.y) && point.y <= std::max(p1.y, p2.y) && point.x <= std::max(p1.x, p2.x) &&
            p1.y != p2.y && (p1.x == p2.x || point.x <= (point.y - p1.y) * (p2.x - p1.x) / (p2.y - p1.y) + p1.x)) {
            inside = !inside;
        }
    }
    return inside;
}

} // namespace jostle
