#pragma once

#include <box2d/b2_math.h>

#include <vector>

namespace jostle {

/// One outline, or one piece of a mesh.
///
/// A closed piece joins its last vertex to its first; an open one is a path. At most one of `isCircle` and
/// `isBox` is set, and with either of them `closed` has no meaning. Vertices are in the pixels of a layer while an
/// outline is read, and in metres relative to the body once it belongs to one.
struct ShapeDef {
    std::vector<b2Vec2> verts;
    std::vector<b2Vec2> inTangents;  ///< incoming Bezier handles, relative to their vertices
    std::vector<b2Vec2> outTangents; ///< outgoing Bezier handles, relative to their vertices
    bool closed = false;
    bool isCircle = false; ///< an exact circle; `verts` holds its four extreme points
    bool isBox = false;    ///< a rectangle of exactly four vertices
    float radius = 0.0f;   ///< metres; with `isCircle` only
};

/// Groups of shapes. A body's list holds one group of pieces, or none.
using ShapeDefList = std::vector<std::vector<ShapeDef>>;

} // namespace jostle
