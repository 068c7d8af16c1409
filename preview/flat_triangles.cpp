#include "preview/flat_triangles.h"

#include "preview/strokes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace jostle {

namespace {

constexpr std::size_t quadVertices = 6;
constexpr float rim = 0.5f; // pixels over which a shape fades beyond its edge

/// From the unit of a list to picture pixels.
struct Placement {
    b2Vec2 origin{0.0f, 0.0f};
    float scale = 1.0f;

    [[nodiscard]] b2Vec2 operator()(b2Vec2 at) const { return origin + scale * at; }
};

Rgba faded(Rgba color, float width) {
    return width < 1.0f ? withAlpha(color, static_cast<float>(color.alpha) / 255.0f * std::max(width, 0.0f)) : color;
}

FlatVertex* addQuad(const FlatVertex (&corners)[4], FlatVertex* out) {
    for (const int corner : {0, 1, 2, 2, 1, 3}) {
        *out++ = corners[corner];
    }
    return out;
}

FlatVertex* addLine(const Line& line, const Placement& place, FlatVertex* out) {
    const b2Vec2 from = place(line.from);
    const b2Vec2 to = place(line.to);
    const b2Vec2 along = to - from;
    const float length = std::sqrt(b2Dot(along, along));
    const float radius = 0.5f * std::max(line.width, 1.0f);
    const float reach = radius + rim;
    const float part = length > 0.0f ? reach / length : 0.0f;
    const b2Vec2 across(-part * along.y, part * along.x);
    const Rgba color = faded(line.color, line.width);
    return addQuad({{from + across, color, {0.0f, reach}, radius},
                    {from - across, color, {0.0f, -reach}, radius},
                    {to + across, color, {0.0f, reach}, radius},
                    {to - across, color, {0.0f, -reach}, radius}},
                   out);
}

FlatVertex* addDisc(b2Vec2 center, float width, Rgba color, FlatVertex* out) {
    const float radius = 0.5f * std::max(width, 1.0f);
    const float reach = radius + rim;
    const Rgba seen = faded(color, width);
    const auto corner = [&](float x, float y) { return FlatVertex{center + b2Vec2(x, y), seen, {x, y}, radius}; };
    return addQuad({corner(-reach, -reach), corner(-reach, reach), corner(reach, -reach), corner(reach, reach)}, out);
}

constexpr int circleSegments = 32;

/// Corners of a regular polygon about (0, 0) with radius 1.
const std::array<b2Vec2, circleSegments>& unitCircle() {
    static const std::array<b2Vec2, circleSegments> corners = [] {
        std::array<b2Vec2, circleSegments> made{};
        for (std::size_t i = 0; i < made.size(); ++i) {
            made.at(i) = unitVector(2.0f * b2_pi * static_cast<float>(i) / float{circleSegments});
        }
        return made;
    }();
    return corners;
}

/// Whether a ring is so small that its inside is painted along rather than cut out.
bool isSmall(float radius) {
    return radius < 24.0f;
}

FlatVertex* addRing(const Ring& ring, const Placement& place, FlatVertex* out) {
    const b2Vec2 center = place(ring.center);
    const float circle = place.scale * ring.radius;
    const float radius = 0.5f * std::max(ring.width, 1.0f);
    const Rgba color = faded(ring.color, ring.width);
    const auto corner = [&](b2Vec2 offset) { return FlatVertex{center + offset, color, offset, radius, circle}; };
    const float outer = circle + radius + rim;
    if (isSmall(circle)) {
        return addQuad(
            {corner({-outer, -outer}), corner({-outer, outer}), corner({outer, -outer}), corner({outer, outer})}, out);
    }
    // From a polygon around the ring to one within it.
    const float around = outer / std::cos(b2_pi / float{circleSegments});
    const float within = circle - radius - rim;
    for (std::size_t i = 0; i < circleSegments; ++i) {
        const b2Vec2 from = unitCircle().at(i);
        const b2Vec2 to = unitCircle().at((i + 1) % circleSegments);
        out = addQuad({corner(around * from), corner(within * from), corner(around * to), corner(within * to)}, out);
    }
    return out;
}

/// The triangles, each disc once those before it are there.
FlatVertex* addSurfaces(const DrawList& list, const Placement& place, FlatVertex* out) {
    std::size_t next = 0;
    const auto addTriangles = [&](std::size_t end) {
        for (; next < end; ++next) {
            *out++ = {place(list.triangles[next].at), list.triangles[next].color};
        }
    };
    for (const Disc& disc : list.discs) {
        addTriangles(disc.cornersBefore);
        out = addDisc(place(disc.center), 2.0f * place.scale * disc.radius, disc.color, out);
    }
    addTriangles(list.triangles.size());
    return out;
}

FlatVertex* addList(const DrawList& list, const Placement& place, FlatVertex* out) {
    out = addSurfaces(list, place, out);
    for (const Ring& ring : list.rings) {
        out = addRing(ring, place, out);
    }
    for (const Line& line : list.lines) {
        out = addLine(line, place, out);
    }
    for (const Point& point : list.points) {
        out = addDisc(place(point.at), point.size, point.color, out);
    }
    return out;
}

std::size_t verticesOf(const DrawList& list, const Placement& place) {
    std::size_t quads = list.discs.size() + list.lines.size() + list.points.size();
    for (const Ring& ring : list.rings) {
        quads += isSmall(place.scale * ring.radius) ? 1 : circleSegments;
    }
    return list.triangles.size() + quadVertices * quads;
}

} // namespace

void flattenToTriangles(const Drawing& drawing, const ViewTransform& view, std::vector<FlatVertex>& triangles) {
    const Placement composition{{static_cast<float>(view.originX()), static_cast<float>(view.originY())},
                                static_cast<float>(view.scale())};
    triangles.resize(verticesOf(drawing.shapes, composition) + verticesOf(drawing.overlays, composition) +
                     verticesOf(drawing.view, {}));
    FlatVertex* out = addList(drawing.shapes, composition, triangles.data());
    out = addList(drawing.overlays, composition, out);
    addList(drawing.view, {}, out);
}

} // namespace jostle
