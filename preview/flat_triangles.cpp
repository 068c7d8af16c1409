#include "preview/flat_triangles.h"

#include <algorithm>
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

FlatVertex* addPoint(const Point& point, const Placement& place, FlatVertex* out) {
    const b2Vec2 center = place(point.at);
    const float radius = 0.5f * std::max(point.size, 1.0f);
    const float reach = radius + rim;
    const Rgba color = faded(point.color, point.size);
    const auto corner = [&](float x, float y) { return FlatVertex{center + b2Vec2(x, y), color, {x, y}, radius}; };
    return addQuad({corner(-reach, -reach), corner(-reach, reach), corner(reach, -reach), corner(reach, reach)}, out);
}

FlatVertex* addList(const DrawList& list, const Placement& place, FlatVertex* out) {
    for (const Vertex& vertex : list.triangles) {
        *out++ = {place(vertex.at), vertex.color};
    }
    for (const Line& line : list.lines) {
        out = addLine(line, place, out);
    }
    for (const Point& point : list.points) {
        out = addPoint(point, place, out);
    }
    return out;
}

std::size_t verticesOf(const DrawList& list) {
    return list.triangles.size() + quadVertices * (list.lines.size() + list.points.size());
}

} // namespace

void flattenToTriangles(const Drawing& drawing, const ViewTransform& view, std::vector<FlatVertex>& triangles) {
    triangles.resize(verticesOf(drawing.shapes) + verticesOf(drawing.overlays) + verticesOf(drawing.view));
    const Placement composition{{static_cast<float>(view.originX()), static_cast<float>(view.originY())},
                                static_cast<float>(view.scale())};
    FlatVertex* out = addList(drawing.shapes, composition, triangles.data());
    out = addList(drawing.overlays, composition, out);
    addList(drawing.view, {}, out);
}

} // namespace jostle
