#pragma once

#include <box2d/b2_math.h>

#include <cstdint>
#include <vector>

namespace jostle {

/// A colour with its opacity, each 0 to 255; not multiplied.
struct Rgba {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    friend bool operator==(const Rgba&, const Rgba&) = default;
};

/// The same colour at another opacity.
/// @param alpha  0 to 1
[[nodiscard]] constexpr Rgba withAlpha(Rgba color, float alpha) {
    color.alpha = static_cast<std::uint8_t>(alpha * 255.0f + 0.5f);
    return color;
}

/// A corner of a triangle.
struct Vertex {
    b2Vec2 at{0.0f, 0.0f};
    Rgba color;
};

/// A filled circle, in its place among the triangles.
struct Disc {
    b2Vec2 center{0.0f, 0.0f};
    float radius = 0.0f; ///< in units of the list
    Rgba color;
    std::uint32_t cornersBefore = 0; ///< of triangles that are painted before it
};

/// The line of a circle.
struct Ring {
    b2Vec2 center{0.0f, 0.0f};
    float radius = 0.0f; ///< in units of the list
    Rgba color;
    float width = 1.0f; ///< pixels of the picture, whatever the zoom
};

/// A straight stroke with butt ends.
struct Line {
    b2Vec2 from{0.0f, 0.0f};
    b2Vec2 to{0.0f, 0.0f};
    Rgba color;
    float width = 1.0f; ///< pixels of the picture, whatever the zoom
};

/// A dot.
struct Point {
    b2Vec2 at{0.0f, 0.0f};
    Rgba color;
    float size = 5.0f; ///< diameter in pixels of the picture, whatever the zoom
};

/// What a painter draws: first all triangles with the discs among them, then all rings, all lines, and all points, each
/// in their order and blended by their alpha. x to the right, y down. The arrays keep their memory from frame to frame.
struct DrawList {
    std::vector<Vertex> triangles; ///< three for each triangle, in either direction of turning
    /// How many corners there were when a surface began. Triangles of one surface and colour may be painted as one
    /// area, so that no seam shows between them; those of different ones cover each other.
    std::vector<std::uint32_t> surfaces;
    std::vector<Disc> discs;
    std::vector<Ring> rings;
    std::vector<Line> lines;
    std::vector<Point> points;

    void clear() {
        triangles.clear();
        surfaces.clear();
        discs.clear();
        rings.clear();
        lines.clear();
        points.clear();
    }

    void triangle(b2Vec2 a, b2Vec2 b, b2Vec2 c, Rgba color) {
        triangles.push_back({a, color});
        triangles.push_back({b, color});
        triangles.push_back({c, color});
    }
    void beginSurface() { surfaces.push_back(static_cast<std::uint32_t>(triangles.size())); }
    void disc(b2Vec2 center, float radius, Rgba color) {
        discs.push_back({center, radius, color, static_cast<std::uint32_t>(triangles.size())});
    }
    void ring(b2Vec2 center, float radius, Rgba color, float width) { rings.push_back({center, radius, color, width}); }
    void line(b2Vec2 from, b2Vec2 to, Rgba color, float width) { lines.push_back({from, to, color, width}); }
    void point(b2Vec2 at, Rgba color, float size) { points.push_back({at, color, size}); }
};

/// All of one frame, painted in the order of the fields over the background.
struct Drawing {
    Rgba background{38, 38, 38, 255};
    DrawList shapes;   ///< bodies; composition pixels
    DrawList overlays; ///< what lies over them: joints, links, bounds, paths; composition pixels
    DrawList view;     ///< what keeps its place in the picture; picture pixels from the top left corner

    void clear() {
        shapes.clear();
        overlays.clear();
        view.clear();
    }
};

} // namespace jostle
