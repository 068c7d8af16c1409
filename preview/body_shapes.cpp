#include "preview/body_shapes.h"

#include <box2d/b2_body.h>
#include <box2d/b2_circle_shape.h>
#include <box2d/b2_fixture.h>
#include <box2d/b2_polygon_shape.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <tuple>

namespace jostle {

namespace {

/// World metres to composition pixels, with a body's place: a point p of the body lies at (x . p, y . p) + origin.
struct Placement {
    b2Vec2 x;
    b2Vec2 y;
    b2Vec2 origin;

    Placement(const Scene& scene, const b2Transform& at)
        : x(pixelsPerMetre * at.q.c, -pixelsPerMetre * at.q.s),
          y(pixelsPerMetre * at.q.s, pixelsPerMetre * at.q.c),
          origin(scene.worldToPixels(at.p)) {}

    [[nodiscard]] b2Vec2 operator()(b2Vec2 p) const { return {b2Dot(x, p) + origin.x, b2Dot(y, p) + origin.y}; }
};

/// The bits of a point; both zeros give the same.
std::uint64_t bitsOf(b2Vec2 p) {
    const auto high = std::uint64_t{std::bit_cast<std::uint32_t>(p.x + 0.0f)};
    return high << 32U | std::uint64_t{std::bit_cast<std::uint32_t>(p.y + 0.0f)};
}

std::uint64_t stirred(std::uint64_t hash, std::uint64_t value) {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15ULL; // 2^64 over the golden ratio
    return (std::rotl(hash, 5) ^ value) * factor;
}

const b2PolygonShape& polygonOf(const b2Fixture& fixture) {
    return static_cast<const b2PolygonShape&>(*fixture.GetShape());
}

void widen(PlacedBody& placed, b2Vec2 low, b2Vec2 high) {
    placed.low = b2Min(placed.low, low);
    placed.high = b2Max(placed.high, high);
}

} // namespace

const PlacedBody& BodyShapes::place(const Scene& scene, std::size_t index, const b2Transform& at) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    placed_.corners.clear();
    placed_.polygonEnds.clear();
    placed_.circles.clear();
    placed_.outline = {};
    placed_.low = {infinity, infinity};
    placed_.high = {-infinity, -infinity};
    const b2Body* const body = scene.bodies[index].body;
    if (!body || !at.p.IsValid() || !std::isfinite(at.q.s) || !std::isfinite(at.q.c)) {
        return placed_;
    }
    const Placement toPixels(scene, at);
    std::uint64_t signature = 1;
    for (const b2Fixture* fixture = body->GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (fixture->GetType() == b2Shape::e_circle) {
            const auto& circle = static_cast<const b2CircleShape&>(*fixture->GetShape());
            const float radius = pixelsPerMetre * circle.m_radius;
            const b2Vec2 center = toPixels(circle.m_p);
            placed_.circles.push_back({center, radius, {at.q.c, at.q.s}});
            widen(placed_, center - b2Vec2(radius, radius), center + b2Vec2(radius, radius));
        } else if (fixture->GetType() == b2Shape::e_polygon) {
            const b2PolygonShape& polygon = polygonOf(*fixture);
            for (int i = 0; i < polygon.m_count; ++i) {
                const b2Vec2 corner = toPixels(polygon.m_vertices[i]);
                signature = stirred(signature, bitsOf(polygon.m_vertices[i]));
                placed_.corners.push_back(corner);
                widen(placed_, corner, corner);
            }
            placed_.polygonEnds.push_back(static_cast<std::uint32_t>(placed_.corners.size()));
            signature = stirred(signature, static_cast<std::uint64_t>(polygon.m_count));
        }
    }
    if (outlines_.size() < scene.bodies.size()) {
        outlines_.resize(scene.bodies.size());
    }
    Outline& outline = outlines_[index];
    if (outline.signature != signature) {
        findOutline(*body, outline);
        outline.signature = signature;
    }
    placed_.outline = outline.edges;
    return placed_;
}

// Neighbours in a mesh share both ends of an edge to the bit, so each edge that comes once is one of the outline.
void BodyShapes::findOutline(const b2Body& body, Outline& outline) {
    keys_.clear();
    std::uint32_t first = 0;
    for (const b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (fixture->GetType() != b2Shape::e_polygon) {
            continue;
        }
        const b2PolygonShape& polygon = polygonOf(*fixture);
        const auto count = static_cast<std::uint32_t>(polygon.m_count);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t next = (i + 1) % count;
            keys_.push_back(
                {bitsOf(polygon.m_vertices[i]), bitsOf(polygon.m_vertices[next]), {first + i, first + next}});
        }
        first += count;
    }
    const auto ends = [](const Key& key) { return std::minmax({key.from, key.to}); };
    std::sort(keys_.begin(), keys_.end(), [&](const Key& a, const Key& b) {
        return std::pair(ends(a), a.edge.from) < std::pair(ends(b), b.edge.from);
    });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < keys_.size();) {
        std::size_t next = i + 1;
        while (next < keys_.size() && ends(keys_[next]) == ends(keys_[i])) {
            ++next;
        }
        if (next == i + 1) {
            keys_[kept++] = keys_[i];
        }
        i = next;
    }
    keys_.resize(kept);
    chain(outline);
}

// Puts the edges in an order in which each goes on where the one before it ends, as far as there is such a one, so that
// dashes run around a body.
void BodyShapes::chain(Outline& outline) {
    std::sort(keys_.begin(), keys_.end(),
              [](const Key& a, const Key& b) { return std::tie(a.from, a.edge.from) < std::tie(b.from, b.edge.from); });
    const auto startingAt = [this](std::uint64_t point) {
        auto key = std::lower_bound(keys_.begin(), keys_.end(), point,
                                    [](const Key& a, std::uint64_t wanted) { return a.from < wanted; });
        while (key != keys_.end() && key->from == point && key->isTaken) {
            ++key;
        }
        return key != keys_.end() && key->from == point ? key : keys_.end();
    };
    outline.edges.clear();
    for (auto start = keys_.begin(); start != keys_.end(); ++start) {
        for (auto key = start; key != keys_.end() && !key->isTaken; key = startingAt(key->to)) {
            key->isTaken = true;
            outline.edges.push_back(key->edge);
        }
    }
}

} // namespace jostle
