#pragma once

#include "simulation/scene.h"

#include <box2d/b2_math.h>

#include <cstdint>
#include <span>
#include <vector>

namespace jostle {

/// A circle of a body, in composition pixels.
struct PlacedCircle {
    b2Vec2 center{0.0f, 0.0f};
    float radius = 0.0f;
    b2Vec2 axis{1.0f, 0.0f}; ///< the body's own x direction, of length 1
};

/// An edge of a body's outline, from corner to corner.
struct OutlineEdge {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
};

/// The fixtures of one body where it stands, in composition pixels.
struct PlacedBody {
    std::vector<b2Vec2> corners;            ///< of all polygons, one after the other
    std::vector<std::uint32_t> polygonEnds; ///< for each polygon the end of its corners
    std::vector<PlacedCircle> circles;
    std::span<const OutlineEdge> outline; ///< the edges of polygons that no two of them share
    b2Vec2 low{0.0f, 0.0f};               ///< bounds, axis by axis
    b2Vec2 high{0.0f, 0.0f};

    [[nodiscard]] bool isEmpty() const { return corners.empty() && circles.empty(); }
    [[nodiscard]] b2Vec2 middle() const { return 0.5f * (low + high); }
};

/// Reads bodies from the world, one after the other, and remembers their outlines as long as their shapes stay.
class BodyShapes {
public:
    /// The shapes of a record's body.
    /// @param index  of the record
    /// @param at     where the body is to stand, metres
    /// @return what holds until the next call; empty if the record has no body or stands nowhere
    const PlacedBody& place(const Scene& scene, std::size_t index, const b2Transform& at);

private:
    struct Outline {
        std::uint64_t signature = 0; ///< of the corners that the edges were found in
        std::vector<OutlineEdge> edges;
    };
    /// An edge by the bits of its ends, which neighbours share.
    struct Key {
        std::uint64_t from = 0;
        std::uint64_t to = 0;
        OutlineEdge edge;
        bool isTaken = false;
    };

    void findOutline(const b2Body& body, Outline& outline);
    void chain(Outline& outline);

    PlacedBody placed_;
    std::vector<Outline> outlines_; ///< by record
    std::vector<Key> keys_;
};

} // namespace jostle
