#pragma once

#include "simulation/scene.h"

#include <box2d/b2_body.h>
#include <box2d/b2_math.h>
#include <box2d/b2_mouse_joint.h>

namespace jostle {

/// How a body stood on a frame: all that is shown of it but what its record tells.
struct BodySample {
    b2Vec2 position{0.0f, 0.0f}; ///< metres
    float angle = 0.0f;          ///< radians
    bool isDormant = false;      ///< still waiting to be woken
    b2Vec2 pull{0.0f, 0.0f};     ///< metres in the world: where the spring of an `AEmatic` body pulled to

    [[nodiscard]] b2Transform place() const { return {position, b2Rot(angle)}; }
};

/// How a body stands now. Its record must have a body.
[[nodiscard]] inline BodySample sampleOf(const BodyRecord& record) {
    const auto* const spring = static_cast<const b2MouseJoint*>(record.aematicJoint);
    return {record.body->GetPosition(), record.body->GetAngle(), record.isDormant,
            spring != nullptr ? spring->GetTarget() : b2Vec2(0.0f, 0.0f)};
}

} // namespace jostle
