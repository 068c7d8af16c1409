#include "simulation/joints.h"
#include "simulation/numbers.h"

#include <box2d/b2_body.h>

namespace jostle {

namespace {

constexpr float springConstant = 200.0f; // newtons per metre at a springiness of 1
constexpr float dampingConstant = 5.0f;  // newton seconds per metre at a damping of 1

bool sleeps(const BodyRecord& record) {
    return record.type == BodyType::Dormant && record.isDormant;
}

bool isAtRest(const BodyRecord& a, const BodyRecord& b) {
    return (sleeps(a) && (sleeps(b) || b.type == BodyType::Static)) || (sleeps(b) && a.type == BodyType::Static);
}

b2Vec2 pointVelocity(const b2Body& body, b2Vec2 localPoint) {
    return body.GetLinearVelocity() + b2Cross(body.GetAngularVelocity(), body.GetWorldVector(localPoint));
}

/// F = (-200 s (L - L0) - 5 c (r . d)) d, with d the unit vector from a to b, L their distance and r the velocity of b
/// against a.
void applySpring(const JointRecord& spring, b2Body& bodyA, b2Body& bodyB) {
    const b2Vec2 anchorA = bounded(spring.anchorA);
    const b2Vec2 anchorB = bounded(spring.anchorB);
    const b2Vec2 a = bodyA.GetWorldPoint(anchorA);
    const b2Vec2 b = bodyB.GetWorldPoint(anchorB);
    b2Vec2 direction = b - a;
    const b2Vec2 velocity = pointVelocity(bodyB, anchorB) - pointVelocity(bodyA, anchorA);
    const float length = direction.Normalize();
    const float magnitude = -springConstant * bounded(spring.springiness) * (length - bounded(spring.desiredLength)) -
                            dampingConstant * bounded(spring.damping) * b2Dot(velocity, direction);
    const b2Vec2 force = magnitude * direction;
    // On purpose: each body takes its force at the other body's anchor. This exchange of points gives springs their
    // slight twist.
    bodyB.ApplyForce(boundedForce(bodyB, force), a, true);
    bodyA.ApplyForce(boundedForce(bodyA, -force), b, true);
}

} // namespace

void applySprings(const Scene& scene) {
    for (const JointRecord& joint : scene.joints) {
        if (joint.type != JointType::Spring || !scene.joinsTwoBodies(joint)) {
            continue;
        }
        const BodyRecord& a = scene.bodies[static_cast<std::size_t>(joint.bodyAId)];
        const BodyRecord& b = scene.bodies[static_cast<std::size_t>(joint.bodyBId)];
        if (!isAtRest(a, b)) {
            applySpring(joint, *a.body, *b.body);
        }
    }
}

} // namespace jostle
