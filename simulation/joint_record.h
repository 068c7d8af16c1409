#pragma once

#include "simulation/color.h"
#include "simulation/owned.h"

#include <box2d/b2_joint.h>
#include <box2d/b2_math.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace jostle {

/// How two bodies are joined. The numbers go to the settings file.
enum class JointType : std::int32_t {
    Distance = 0, ///< a rod, or a spring of given frequency, between a point on each
    Pivot = 1,    ///< both turn about a common point
    Piston = 2,   ///< they slide along an axis and do not turn against each other
    Spring = 3,   ///< forces of our own; the physics library does not hold it
};

/// What the user data of a joint points at. It belongs to the joint's record.
struct JointUserData {
    Rgb color{1.0f, 1.0f, 0.0f};
    bool selected = false;

    // Pivots, by world construction: how the preview draws them.
    b2Vec2 centerA{0.0f, 0.0f}; ///< metres in the world, of body A
    b2Vec2 centerB{0.0f, 0.0f};
    float directionA = 0.0f; ///< radians, from the anchor to `centerA`
    float directionB = 0.0f;
};

/// One joint. Lasting, as the records of bodies are, and copied whole. Fields that do not belong to its type have no
/// meaning.
struct JointRecord {
    std::int32_t row = 0; ///< in the table of joints
    JointType type = JointType::Distance;
    b2Joint* joint = nullptr;  ///< the world's; null for a `Spring` and for what could not be built
    b2JointDef jointDef;       ///< reserved
    std::int32_t bodyAId = -1; ///< index in `Scene::bodies`
    std::int32_t bodyBId = -1;
    b2Vec2 anchorA{0.0f, 0.0f}; ///< metres, local to body A; `Distance` and `Spring`
    b2Vec2 anchorAStored{0.0f, 0.0f};
    b2Vec2 anchorB{0.0f, 0.0f}; ///< metres, local to body B
    b2Vec2 anchorBStored{0.0f, 0.0f};
    float frequency = 0.0f;       ///< hertz; `Distance`, rigid at 0
    float damping = 0.0f;         ///< `Distance`: ratio; `Spring`: in 5 newton seconds per metre
    bool collideConnected = true; ///< all but `Spring`
    b2Vec2 anchor{0.0f, 0.0f};    ///< metres in the world; `Pivot` and `Piston`
    b2Vec2 anchorStored{0.0f, 0.0f};
    bool enableLimit = false; ///< `Pivot` and `Piston`
    float lowerAngle = 0.0f;  ///< degrees, of body B against body A; `Pivot`
    float upperAngle = 0.0f;  ///< degrees
    bool enableMotor = false; ///< `Pivot` and `Piston`
    /// Radians per second, or metres per second along the axis, of body A against body B: positive turns A clockwise
    /// on the screen.
    float motorSpeed = 0.0f;
    float maxMotorTorque = 0.0f;   ///< newton metres; `Pivot`
    float lowerTranslation = 0.0f; ///< metres, of body B against body A; `Piston`
    float upperTranslation = 0.0f; ///< metres
    float maxMotorForce = 0.0f;    ///< newtons; `Piston`
    b2Vec2 axis{1.0f, 0.0f};       ///< direction of travel in the world, of any length; `Piston`
    b2Vec2 axisStored{1.0f, 0.0f};
    float springiness = 1.0f;   ///< `Spring`: in 200 newtons per metre
    float desiredLength = 0.0f; ///< metres; `Spring`
    bool selected = false;      ///< in the table of joints
    Owned<JointUserData> userData;
};

/// The colour that a new joint of a type has. A number that names no type, as a file may hold one, has the first.
[[nodiscard]] constexpr Rgb jointColor(JointType type) {
    constexpr std::array<Rgb, 4> colors{Rgb{1.0f, 1.0f, 0.0f}, Rgb{0.33f, 1.0f, 0.33f}, Rgb{0.8f, 0.84f, 0.83f},
                                        Rgb{0.33f, 0.33f, 1.0f}};
    const auto index = static_cast<std::size_t>(type);
    return index < colors.size() ? colors[index] : colors.front();
}

/// A new joint with the defaults of its type.
/// @param bodyAId, bodyBId  indices in `Scene::bodies`
[[nodiscard]] inline JointRecord newJoint(JointType type, std::int32_t bodyAId, std::int32_t bodyBId) {
    JointRecord joint;
    joint.type = type;
    joint.bodyAId = bodyAId;
    joint.bodyBId = bodyBId;
    joint.damping = type == JointType::Spring ? 0.5f : 0.0f;
    joint.userData->color = jointColor(type);
    return joint;
}

} // namespace jostle
