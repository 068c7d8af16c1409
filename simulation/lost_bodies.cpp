#include "simulation/lost_bodies.h"

#include <box2d/b2_body.h>

#include <cmath>

namespace jostle {

namespace {

/// Metres, or radians. Records begin within a tenth of it, and no free body gets so far: the library moves none by more
/// than 2 m or a quarter turn in a step.
constexpr float farthest = 1.0e7f;

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
    // A joint with a body that is left out has no effect, so that a body which does not move may stay.
    body.SetEnabled(body.GetType() != b2_dynamicBody || !body.GetJointList());
}

} // namespace

void LostBodies::remember(const Scene& scene, const b2World& world) {
    places_.resize(world.GetJointCount() > 0 ? scene.bodies.size() : 0);
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const b2Body& body = *scene.bodies[i].body;
        places_[i] = {body.GetPosition(), body.GetAngle()};
    }
}

void LostBodies::recover(const Scene& scene) {
    for (std::size_t i = 0; i < places_.size(); ++i) {
        b2Body& body = *scene.bodies[i].body;
        if (isLost(body) && body.IsEnabled()) {
            putBack(body, places_[i].position, places_[i].angle);
        }
    }
}

} // namespace jostle
