#pragma once

#include "simulation/scene.h"

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

/// Adds a body that is the box of its layer's bounds.
/// @param position  metres, of the box's centre
/// @return the record, until the next one is added
inline BodyRecord& addBox(Scene& scene, b2Vec2 position, float width, float height, BodyType type = BodyType::Dynamic) {
    const std::int32_t index = scene.bodyCount();
    BodyRecord& record = scene.bodies.emplace_back();
    scene.layerIndices.push_back(index);
    scene.latchType(type);
    record.layerID = index + 1;
    record.number = index + 1;
    record.type = type;
    record.position = position;
    record.outPoint = endlessOutPoint;
    record.isBox = true;
    record.outlines = {{boxShape(width, height)}};
    return record;
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

} // namespace jostle
