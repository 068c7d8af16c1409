#pragma once

#include "simulation/scene.h"

#include <utility>
#include <vector>

namespace jostle {

/// Frames that no test comes to: the layers of these scenes live to the end.
constexpr int endlessOutPoint = 100000;

/// A box in metres, its corners in the order in which a layer's bounds are read: clockwise on the screen from the
/// top left.
inline ShapeDef boxShape(float width, float height) {
    ShapeDef shape;
    const float x = width / 2.0f;
    const float y = height / 2.0f;
    shape.verts = {{-x, -y}, {x, -y}, {x, y}, {-x, y}};
    shape.isBox = true;
    return shape;
}

/// A circle about the body's origin.
/// @param radius  metres
inline ShapeDef circleShape(float radius) {
    ShapeDef shape;
    shape.verts = {{0, -radius}, {radius, 0}, {0, radius}, {-radius, 0}};
    shape.isCircle = true;
    shape.radius = radius;
    return shape;
}

/// A piece in the form of a closed outline or an open path.
inline ShapeDef outlineShape(std::vector<b2Vec2> verts, bool closed) {
    ShapeDef shape;
    shape.verts = std::move(verts);
    shape.closed = closed;
    return shape;
}

/// Adds a body of some pieces.
/// @param position  metres, of the body's origin
/// @return the record, until the next one is added
inline BodyRecord& addBody(Scene& scene, b2Vec2 position, std::vector<ShapeDef> pieces,
                           BodyType type = BodyType::Dynamic) {
    const std::int32_t index = scene.bodyCount();
    BodyRecord& record = scene.bodies.emplace_back();
    scene.layerIndices.push_back(index);
    scene.latchType(type);
    record.layerID = index + 1;
    record.number = index + 1;
    record.type = type;
    record.position = position;
    record.outPoint = endlessOutPoint;
    record.outlines = {std::move(pieces)};
    return record;
}

/// Adds a body that is the box of its layer's bounds.
/// @param position  metres, of the box's centre
/// @return the record, until the next one is added
inline BodyRecord& addBox(Scene& scene, b2Vec2 position, float width, float height, BodyType type = BodyType::Dynamic) {
    BodyRecord& record = addBody(scene, position, {boxShape(width, height)}, type);
    record.isBox = true;
    return record;
}

/// Adds a joint with the defaults of its type.
/// @param bodyAId, bodyBId  indices of records
/// @return the record, until the next one is added
inline JointRecord& addJoint(Scene& scene, JointType type, std::int32_t bodyAId, std::int32_t bodyBId) {
    return scene.joints.emplace_back(newJoint(type, bodyAId, bodyBId));
}

/// A scene without bodies, of a whole number of frames per second.
inline Scene emptyScene(int framesPerSecond) {
    Scene scene;
    scene.fps = framesPerSecond;
    scene.frameDurationValue = 1;
    scene.frameDurationScale = static_cast<std::uint32_t>(framesPerSecond);
    scene.compFrames = endlessOutPoint;
    return scene;
}

/// The same without gravity.
inline Scene weightlessScene(int framesPerSecond = 25) {
    Scene scene = emptyScene(framesPerSecond);
    scene.globals.magnitude = 0;
    return scene;
}

// Scenes of some size, at 60 frames per second.

/// 500 boxes of 0.4 m on a floor, in rows of 32 down to 8.
[[nodiscard]] Scene boxPyramid();
/// Bodies of 40 triangles each, 0.8 m across, that fall into a bowl. Their records come after the bowl's.
[[nodiscard]] Scene starsInBowl(int stars = 200);
/// Circles of 0.2 to 0.3 m across that fall into an open box.
[[nodiscard]] Scene circlesInBox(int circles = 1000);
/// A chain of 100 pivots that hangs from one end, level at first, with a weight on a spring at every other link.
[[nodiscard]] Scene chainOfPivots();

} // namespace jostle
