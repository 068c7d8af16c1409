#pragma once

#include "geometry/projection.h"
#include "geometry/shape_def.h"

#include <box2d/b2_math.h>

#include <vector>

namespace jostle {

/// The transforms of the groups that enclose an element of a vector shape, summed up.
struct AccumulatedTransform {
    b2Vec2 anchor = {0.0f, 0.0f};   ///< pixels
    b2Vec2 position = {0.0f, 0.0f}; ///< pixels
    b2Vec2 scale = {1.0f, 1.0f};
    double rotation = 0.0; ///< degrees

    /// Adds one group: anchors, positions and rotations add, scales multiply.
    void add(const AccumulatedTransform& group);
};

/// What all elements of a layer have in common.
struct LayerFrame {
    Matrix4 matrix; ///< layer pixels to composition pixels
    float pixelAspectRatio = 1.0f;
    b2Vec2 scale = {1.0f, 1.0f}; ///< the layer's own
    float angle = 0.0f;          ///< the layer's rotation in radians
};

/// An outline and where it stands.
struct PlacedShape {
    ShapeDef shape;                 ///< in composition pixels
    b2Vec2 shapePos = {0.0f, 0.0f}; ///< composition pixels
    float shapeAngle = 0.0f;        ///< radians; that of the enclosing groups
};

struct RectParameters {
    b2Vec2 size = {0.0f, 0.0f};     ///< pixels
    b2Vec2 position = {0.0f, 0.0f}; ///< of the middle, in pixels of the enclosing group
    float roundness = 0.0f;         ///< radius of the corners in pixels; held below half of the short side
};

/// A rectangle; with `isBox` if its corners are sharp, else flattened.
[[nodiscard]] PlacedShape makeRect(const RectParameters& rect, const AccumulatedTransform& accumulated,
                                   const LayerFrame& layer, int subdivisions);

struct EllipseParameters {
    b2Vec2 size = {0.0f, 0.0f};     ///< both diameters in pixels
    b2Vec2 position = {0.0f, 0.0f}; ///< of the middle, in pixels of the enclosing group
};

/// An ellipse; with `isCircle` if its diameters are equal and so are the layer's scales, else flattened.
[[nodiscard]] PlacedShape makeEllipse(const EllipseParameters& ellipse, const AccumulatedTransform& accumulated,
                                      const LayerFrame& layer, int subdivisions);

struct StarParameters {
    int type = 1;                   ///< 1 is a star, all else a polygon
    double pointCount = 5.0;        ///< cut to an integer; none below 1, and 10,000 at most
    b2Vec2 position = {0.0f, 0.0f}; ///< of the middle, in pixels of the enclosing group
    double rotation = 0.0;          ///< degrees
    double outerRadius = 0.0;       ///< pixels, as the other one
    double innerRadius = 0.0;       ///< of stars only, as its roundness
    double outerRoundness = 0.0;    ///< percent
    double innerRoundness = 0.0;
};

/// A star or a polygon; flattened only if it has roundness.
[[nodiscard]] PlacedShape makeStar(const StarParameters& star, const AccumulatedTransform& accumulated,
                                   const LayerFrame& layer, int subdivisions);

/// A vector path as a host gives it.
struct FreePath {
    struct Vertex {
        b2Vec2 position = {0.0f, 0.0f}; ///< layer pixels
        b2Vec2 inHandle = {0.0f, 0.0f}; ///< relative to the position
        b2Vec2 outHandle = {0.0f, 0.0f};
    };
    std::vector<Vertex> vertices;
    int segmentCount = 0; ///< as many vertices are read from a closed path, one more from an open one
    bool closed = true;
};

struct PlacedPath {
    PlacedShape placed;           ///< with `isCircle`, `isBox` or flattened; without vertices if there are no segments
    ShapeDef raw;                 ///< the same outline in layer pixels
    b2Vec2 anchor = {0.0f, 0.0f}; ///< layer pixels, with the groups' scale
};

/// A free path, recognised as a circle or a box where it is one.
[[nodiscard]] PlacedPath makeFreePath(const FreePath& path, const AccumulatedTransform& accumulated,
                                      const LayerFrame& layer, int subdivisions);

} // namespace jostle
