#include "simulation/lost_bodies.h"

#include <box2d/b2_body.h>

#include <cmath>
#include <cstddef>

namespace jostle {

namespace {

/// Metres, or radians. Records begin within a sixth of it, and no free body gets so far: the library moves none by more
/// than 2 m or a quarter turn in a step.
constexpr float farthest = 1.0e8f;

/// Whatever goes wrong within a step shows in where the body ends.
bool isLost(const b2Body& body) {
    const b2Vec2 position = body.GetPosition();
    // Written so that what is not a number is lost.
    return !(std::abs(position.x) <= farthest && std::abs(position.y) <= farthest &&
             std::abs(body.GetAngle()) <= farthest);
}

void putBack(b2Body& body, b2Vec2 position, float angle) {
    body.SetEnabled(false); // drops its contacts, and what they remember of the last step
    body.SetTransform(position, angle);
    // The solver can leave even a static body with a velocity that is no number, and only others may be given one.
    const bool isStatic = body.GetType() == b2_staticBody;
    if (isStatic) {
        body.SetType(b2_kinematicBody);
    }
    body.SetLinearVelocity({0.0f, 0.0f});
    body.SetAngularVelocity(0.0f);
    if (isStatic) {
        body.SetType(b2_staticBody);
    }
    // Joints that lost a body once would lose it again in every step, and shake whatever it touches. Frozen, it stands
    // where the picture was last right, and its joints rest with it. Others may stay.
    body.SetEnabled(body.GetType() != b2_dynamicBody || !body.GetJointList());
}

} // namespace

void LostBodies::remember(const b2World& world) {
    places_.resize(world.GetJointCount() > 0 ? static_cast<std::size_t>(world.GetBodyCount()) : 0);
    const b2Body* body = world.GetBodyList();
    for (Place& place : places_) {
        place = {body->GetPosition(), body->GetAngle()};
        body = body->GetNext();
    }
}

void LostBodies::recover(b2World& world) {
    b2Body* body = world.GetBodyList();
    for (const Place& place : places_) {
        if (isLost(*body) && body->IsEnabled()) {
            putBack(*body, place.position, place.angle);
        }
        body = body->GetNext();
    }
}

} // namespace jostle
