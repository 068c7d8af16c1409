#include "geometry/assemble.h"

#include "geometry/convex_hull.h"
#include "geometry/polygon_tests.h"
#include "geometry/projection.h"
#include "geometry/triangulate.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace jostle {

namespace {

bool isPrimitive(const ShapeDef& shape) {
    return shape.isCircle || shape.isBox;
}

ShapeDef closedOutline(std::vector<b2Vec2> verts) {
    ShapeDef shape;
    shape.verts = std::move(verts);
    shape.closed = true;
    return shape;
}

bool hullApplies(const ShapeDefList& groups) {
    if (groups.empty() || groups.front().empty()) {
        return false;
    }
    const ShapeDef& first = groups.front().front();
    return (groups.size() > 1 && groups.front().size() > 1) || (first.closed && !isPrimitive(first));
}

void wrapEach(ShapeDefList& groups) {
    for (std::vector<ShapeDef>& group : groups) {
        for (ShapeDef& shape : group) {
            if (!isPrimitive(shape)) {
                shape = closedOutline(convexHull(shape.verts));
            }
        }
    }
}

void wrapTogether(ShapeDefList& groups) {
    std::vector<b2Vec2> points;
    for (const std::vector<ShapeDef>& group : groups) {
        for (const ShapeDef& shape : group) {
            points.insert(points.end(), shape.verts.begin(), shape.verts.end());
        }
    }
    groups.clear();
    if (!points.empty()) {
        groups.push_back({closedOutline(convexHull(points))});
    }
}

ShapeDef reversed(ShapeDef shape) {
    if (!isReversed(shape.verts)) {
        std::reverse(shape.verts.begin(), shape.verts.end());
    }
    return shape;
}

} // namespace

void wrapInHulls(OutlineSource source, ShapeDefList& groups) {
    if (source == OutlineSource::Masks) {
        wrapEach(groups);
    } else if (source == OutlineSource::Text || hullApplies(groups)) {
        wrapTogether(groups);
    }
}

BodySpace maskBodySpace(b2Vec2 layerAnchor, float pixelAspectRatio, b2Vec2 layerScale) {
    return {{layerAnchor.x * pixelAspectRatio, layerAnchor.y}, layerScale};
}

BodySpace textBodySpace(b2Vec2 world, float compPixelAspectRatio) {
    return {{world.x * compPixelAspectRatio, world.y}, {1.0f, 1.0f}};
}

BodySpace vectorBodySpace(b2Vec2 shapePos, b2Vec2 layerScale, bool lastIsFreePath) {
    return {shapePos, lastIsFreePath ? b2Vec2(1.0f, 1.0f) : layerScale};
}

ShapeDefList buildShapeList(const std::vector<ShapeDef>& circleShapes, const std::vector<ShapeDef>& boxShapes,
                            const std::vector<ShapeDef>& closedShapes, const std::vector<ShapeDef>& openShapes,
                            bool& meshWarning, bool& triangulationFailed) {
    std::vector<Triangle> triangles;
    triangulationFailed = triangulate(closedShapes, triangles);
    meshWarning = triangles.size() > meshWarningLimit;

    std::vector<ShapeDef> tempShapes = circleShapes;
    std::transform(boxShapes.begin(), boxShapes.end(), std::back_inserter(tempShapes), reversed);
    tempShapes.insert(tempShapes.end(), openShapes.begin(), openShapes.end());
    for (const Triangle& triangle : triangles) {
        tempShapes.push_back(reversed(closedOutline({triangle.begin(), triangle.end()})));
    }
    ShapeDefList list;
    list.push_back(std::move(tempShapes));
    return list;
}

BodyMesh assemble(const std::vector<ShapeDef>& circleShapes, const std::vector<ShapeDef>& boxShapes,
                  const ShapeDefList& groups, const BodySpace& space) {
    std::vector<ShapeDef> closedShapes;
    std::vector<ShapeDef> openShapes;
    for (const std::vector<ShapeDef>& group : groups) {
        for (const ShapeDef& shape : group) {
            // Fonts have outlines of one or two points, which enclose nothing and are no failure either.
            const bool isVoid = shape.closed && shape.verts.size() < 3;
            if (!isPrimitive(shape) && !isVoid) {
                (shape.closed ? closedShapes : openShapes).push_back(shape);
            }
        }
    }
    BodyMesh mesh;
    mesh.shapes =
        buildShapeList(circleShapes, boxShapes, closedShapes, openShapes, mesh.meshWarning, mesh.triangulationFailed);
    for (ShapeDef& shape : mesh.shapes.front()) {
        for (b2Vec2& vert : shape.verts) {
            vert.x = space.scale.x * (vert.x - space.origin.x) / pixelsPerMetre;
            vert.y = space.scale.y * (vert.y - space.origin.y) / pixelsPerMetre;
        }
        std::reverse(shape.verts.begin(), shape.verts.end());
    }
    return mesh;
}

} // namespace jostle
