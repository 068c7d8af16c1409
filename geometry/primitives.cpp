#include "geometry/primitives.h"

#include "geometry/outline.h"
#include "geometry/point_set.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace jostle {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

/// Handle of a quarter circle of radius 1.
constexpr float quarterHandle = 0.5522847498f;

/// The 32-bit value of pi, which is what points of stars are placed by.
constexpr float starPi = 3.14159265358979f;

/// Far above what makes sense, and low enough that a damaged file cannot fill the memory.
constexpr double mostStarPoints = 10'000.0;

b2Vec2 multiply(b2Vec2 a, b2Vec2 b) {
    return {a.x * b.x, a.y * b.y};
}

/// A point of the innermost group in composition pixels. No rotation of the groups enters here.
b2Vec2 project(b2Vec2 point, const AccumulatedTransform& accumulated, const Matrix4& matrix) {
    return projectPoint(accumulated.position + multiply(accumulated.scale, point - accumulated.anchor), matrix);
}

/// The element's place, before the pixel aspect ratio, and its angle.
PlacedShape place(b2Vec2 position, const AccumulatedTransform& accumulated, const Matrix4& matrix) {
    PlacedShape placed;
    placed.shapeAngle = static_cast<float>(accumulated.rotation * radiansPerDegree);
    const b2Vec2 pivot = projectPoint(accumulated.position, matrix);
    placed.shapePos = rotateAround(project(position, accumulated, matrix), pivot, placed.shapeAngle);
    return placed;
}

void reserveVertices(ShapeDef& shape, std::size_t count) {
    for (std::vector<b2Vec2>* list : {&shape.verts, &shape.inTangents, &shape.outTangents}) {
        list->reserve(count);
    }
}

/// Adds a vertex and its handles, all turned by the shape's angle.
void addTurned(PlacedShape& placed, b2Vec2 vertex, b2Vec2 in, b2Vec2 out) {
    placed.shape.verts.push_back(rotateAround(vertex, placed.shapePos, placed.shapeAngle));
    placed.shape.inTangents.push_back(rotateAround(in, b2Vec2_zero, placed.shapeAngle));
    placed.shape.outTangents.push_back(rotateAround(out, b2Vec2_zero, placed.shapeAngle));
}

/// Handles for the corners of one kind: along the line between the neighbours of each.
///
/// @param first, step  which of the outline's vertices are of the kind
void roundCorners(ShapeDef& shape, std::size_t first, std::size_t step, double radius, double roundness) {
    if (roundness == 0.0) {
        return;
    }
    const std::size_t count = shape.verts.size();
    const auto length = static_cast<float>(radius / 2.0 * roundness / 100.0);
    for (std::size_t i = first; i < count; i += step) {
        b2Vec2 d = shape.verts[(i + step) % count] - shape.verts[(i + count - step) % count];
        d.Normalize();
        shape.inTangents[i] = -length * d;
        shape.outTangents[i] = length * d;
    }
}

/// A path's outline while its vertices are read: as transformed, and as given.
class PathReader {
public:
    PathReader(const AccumulatedTransform& accumulated, const LayerFrame& layer)
        : accumulated_(accumulated), layer_(layer) {}

    void read(const FreePath::Vertex& vertex) {
        const b2Vec2 world = project(vertex.position, accumulated_, layer_.matrix);
        const b2Vec2 position = {world.x * layer_.pixelAspectRatio, world.y};
        if (!seen_.insert(position)) {
            return;
        }
        transformed.verts.push_back(position);
        transformed.inTangents.push_back(turn(vertex.inHandle));
        transformed.outTangents.push_back(turn(vertex.outHandle));
        raw.verts.push_back(vertex.position);
        raw.inTangents.push_back(vertex.inHandle);
        raw.outTangents.push_back(vertex.outHandle);
    }

    void removeLast() {
        for (ShapeDef* shape : {&transformed, &raw}) {
            shape->verts.pop_back();
            shape->inTangents.pop_back();
            shape->outTangents.pop_back();
        }
    }

    ShapeDef transformed;
    ShapeDef raw;

private:
    [[nodiscard]] b2Vec2 turn(b2Vec2 handle) const {
        return rotateAround(multiply(multiply(handle, accumulated_.scale), layer_.scale), b2Vec2_zero, layer_.angle);
    }

    const AccumulatedTransform& accumulated_;
    const LayerFrame& layer_;
    PointSet seen_;
};

PathReader readPath(const FreePath& path, const AccumulatedTransform& accumulated, const LayerFrame& layer) {
    PathReader reader(accumulated, layer);
    if (path.segmentCount < 1) {
        return reader;
    }
    const std::size_t count = std::min(path.vertices.size(), static_cast<std::size_t>(path.segmentCount) +
                                                                 static_cast<std::size_t>(!path.closed));
    for (std::size_t i = 0; i < count; ++i) {
        reader.read(path.vertices[i]);
    }
    // On purpose: a last vertex that repeats the first has been dropped by now, and takes the one before it along.
    if (count > 0 && b2Distance(path.vertices[0].position, path.vertices[count - 1].position) < 1.1920929e-07f) {
        reader.removeLast();
    }
    return reader;
}

} // namespace

void AccumulatedTransform::add(const AccumulatedTransform& group) {
    // On purpose: a plain sum. A group's rotation does not swing what stands in it.
    anchor += group.anchor;
    position += group.position;
    scale = multiply(scale, group.scale);
    rotation += group.rotation;
}

PlacedShape makeRect(const RectParameters& rect, const AccumulatedTransform& accumulated, const LayerFrame& layer,
                     int subdivisions) {
    const b2Vec2 size = multiply(rect.size, accumulated.scale);
    PlacedShape placed = place(rect.position, accumulated, layer.matrix);
    placed.shapePos.x *= layer.pixelAspectRatio;
    placed.shape.closed = true;
    const b2Vec2 c = placed.shapePos;
    const float left = c.x - size.x / 2.0f;
    const float right = c.x + size.x / 2.0f;
    const float top = c.y - size.y / 2.0f;
    const float bottom = c.y + size.y / 2.0f;

    if (!(rect.roundness > 0.0f)) {
        placed.shape.isBox = true;
        for (const b2Vec2 corner :
             {b2Vec2(left, top), b2Vec2(right, top), b2Vec2(right, bottom), b2Vec2(left, bottom)}) {
            placed.shape.verts.push_back(rotateAround(corner, c, placed.shapeAngle));
        }
        return placed;
    }
    const float shortSide = std::min(right - left, bottom - top);
    // A sliver of edge stays between the corners of the short side.
    const float r = rect.roundness > shortSide / 2.0f ? shortSide / 2.0f - 0.001f : rect.roundness;
    const float k = r * quarterHandle;
    const b2Vec2 none = b2Vec2_zero;
    reserveVertices(placed.shape, 8);
    addTurned(placed, {left + r, top}, {-k, 0}, none);
    addTurned(placed, {right - r, top}, none, {k, 0});
    addTurned(placed, {right, top + r}, {0, -k}, none);
    addTurned(placed, {right, bottom - r}, none, {0, k});
    addTurned(placed, {right - r, bottom}, {k, 0}, none);
    addTurned(placed, {left + r, bottom}, none, {-k, 0});
    addTurned(placed, {left, bottom - r}, {0, k}, none);
    addTurned(placed, {left, top + r}, none, {0, -k});
    flatten(placed.shape, subdivisions);
    return placed;
}

PlacedShape makeEllipse(const EllipseParameters& ellipse, const AccumulatedTransform& accumulated,
                        const LayerFrame& layer, int subdivisions) {
    const b2Vec2 size = multiply(ellipse.size, accumulated.scale);
    PlacedShape placed = place(ellipse.position, accumulated, layer.matrix);
    placed.shapePos.x *= layer.pixelAspectRatio;
    const b2Vec2 c = placed.shapePos;
    const float a = size.x / 2.0f;
    const float b = size.y / 2.0f;
    const float kx = a * quarterHandle;
    const float ky = b * quarterHandle;
    reserveVertices(placed.shape, 4);
    addTurned(placed, {c.x, c.y - b}, {-kx, 0}, {kx, 0});
    addTurned(placed, {c.x + a, c.y}, {0, -ky}, {0, ky});
    addTurned(placed, {c.x, c.y + b}, {kx, 0}, {-kx, 0});
    addTurned(placed, {c.x - a, c.y}, {0, ky}, {0, -ky});

    if (std::abs(size.x - size.y) < 0.001f && layer.scale.x == layer.scale.y) {
        placed.shape.isCircle = true;
        placed.shape.radius = layer.scale.x * a / pixelsPerMetre;
    } else {
        placed.shape.closed = true;
        flatten(placed.shape, subdivisions);
    }
    return placed;
}

PlacedShape makeStar(const StarParameters& star, const AccumulatedTransform& accumulated, const LayerFrame& layer,
                     int subdivisions) {
    // On purpose: unlike that of rectangles and ellipses, this place does not know the pixel aspect ratio.
    PlacedShape placed = place(star.position, accumulated, layer.matrix);
    ShapeDef& shape = placed.shape;
    shape.closed = true;
    const int n = star.pointCount >= 1.0 ? static_cast<int>(std::min(star.pointCount, mostStarPoints)) : 0;
    const bool isStar = star.type == 1;
    const double pi = static_cast<double>(starPi);
    const double scale = static_cast<double>(accumulated.scale.x);
    const double outerRadius = star.outerRadius * scale;
    const double innerRadius = star.innerRadius * scale;
    const double rotation = star.rotation * radiansPerDegree + static_cast<double>(placed.shapeAngle);
    const auto addPoint = [&](double radius, double angle) {
        shape.verts.emplace_back(static_cast<float>(static_cast<double>(placed.shapePos.x) + radius * std::cos(angle)),
                                 static_cast<float>(static_cast<double>(placed.shapePos.y) + radius * std::sin(angle)));
    };
    for (int i = 0; i < n; ++i) {
        const double angle = static_cast<double>(i) / n * 2.0 * pi - pi / 2.0 + rotation;
        addPoint(outerRadius, angle);
        if (isStar) {
            addPoint(innerRadius, angle + static_cast<double>(starPi / static_cast<float>(n)));
        }
    }
    if (star.outerRoundness == 0.0 && (!isStar || star.innerRoundness == 0.0)) {
        return placed;
    }
    shape.inTangents.assign(shape.verts.size(), b2Vec2_zero);
    shape.outTangents.assign(shape.verts.size(), b2Vec2_zero);
    roundCorners(shape, 0, isStar ? 2 : 1, outerRadius, star.outerRoundness);
    if (isStar) {
        roundCorners(shape, 1, 2, innerRadius, star.innerRoundness);
    }
    flatten(shape, subdivisions);
    return placed;
}

PlacedPath makeFreePath(const FreePath& path, const AccumulatedTransform& accumulated, const LayerFrame& layer,
                        int subdivisions) {
    PathReader reader = readPath(path, accumulated, layer);
    PlacedPath result;
    result.placed.shape = std::move(reader.transformed);
    result.placed.shapeAngle = static_cast<float>(accumulated.rotation * radiansPerDegree);
    result.raw = std::move(reader.raw);
    ShapeDef& shape = result.placed.shape;

    float r = 0.0f;
    if (path.closed && matchesCircle(shape, r) && layer.scale.x == layer.scale.y &&
        accumulated.scale.x == accumulated.scale.y) {
        shape.isCircle = true;
        shape.radius = accumulated.scale.x * r / pixelsPerMetre;
    } else if (path.closed && matchesBox(shape)) {
        shape.isBox = true;
    } else {
        shape.closed = path.closed;
        result.raw.closed = path.closed;
        flatten(shape, subdivisions);
        flatten(result.raw, subdivisions);
    }
    result.placed.shapePos = shapeCentroid(shape.verts, !path.closed);
    result.anchor = multiply(accumulated.scale, shapeCentroid(result.raw.verts, !path.closed));
    return result;
}

} // namespace jostle
