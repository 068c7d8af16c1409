#include "simulation/joints.h"

#include "simulation/numbers.h"

#include <box2d/b2_body.h>
#include <box2d/b2_distance_joint.h>
#include <box2d/b2_prismatic_joint.h>
#include <box2d/b2_revolute_joint.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace jostle {

namespace {

// For a joint that is free to stretch. The library divides it by the time of a step, which must not overflow.
constexpr float unboundedLength = 1.0e9f; // metres

struct Bodies {
    b2Body* a;
    b2Body* b;
};

float directionOf(b2Vec2 v) {
    return std::atan2(v.y, v.x);
}

/// The limits of a joint in rising order, which the library insists on.
std::pair<float, float> limits(float lower, float upper) {
    return std::minmax({bounded(lower), bounded(upper)});
}

float inverse(float value) {
    return value > 0.0f ? 1.0f / value : 0.0f;
}

/// One over the mass that a body has where a joint pulls at it: 1 / m + (r x u)^2 / I, with r the lever from the centre
/// of mass and u the unit vector of the pull. 0 for a body that nothing moves.
float inverseMassAt(const b2Body& body, b2Vec2 worldPoint, b2Vec2 direction) {
    const b2Vec2 center = body.GetLocalCenter();
    const float inertia = body.GetInertia() - body.GetMass() * b2Dot(center, center);
    const float turn = b2Cross(worldPoint - body.GetWorldCenter(), direction);
    return inverse(body.GetMass()) + inverse(inertia) * turn * turn;
}

/// A spring of frequency f and damping ratio z between masses whose inverses along it add up to 1 / m has the
/// stiffness k = m w^2 and the damping d = 2 m z w, with w = 2 pi f.
void tune(const JointRecord& record, float stepTime) {
    auto& joint = static_cast<b2DistanceJoint&>(*record.joint);
    b2Vec2 direction = joint.GetAnchorB() - joint.GetAnchorA();
    direction.Normalize();
    const float mass = inverse(inverseMassAt(*joint.GetBodyA(), joint.GetAnchorA(), direction) +
                               inverseMassAt(*joint.GetBodyB(), joint.GetAnchorB(), direction));
    const float omega = 2.0f * b2_pi * bounded(record.frequency, 0.0f);
    const float stiffness = mass * omega * omega;
    // The panel takes negative damping, which would feed the swing until it is infinite.
    const float damping = 2.0f * mass * bounded(record.damping, 0.0f) * omega;
    // The solver divides by this. A spring too soft for a float does nothing.
    const bool isTooSoft = !(stepTime * (damping + stepTime * stiffness) > 1.0e-30f);
    joint.SetStiffness(isTooSoft ? 0.0f : stiffness);
    joint.SetDamping(damping);
}

bool hasFrequency(const JointRecord& record) {
    return record.type == JointType::Distance && record.frequency > 0.0f;
}

b2DistanceJointDef distanceDef(const JointRecord& record, Bodies bodies) {
    b2DistanceJointDef def;
    def.bodyA = bodies.a;
    def.bodyB = bodies.b;
    def.localAnchorA = bounded(record.anchorA);
    def.localAnchorB = bounded(record.anchorB);
    // Measured here, so that the joint starts relaxed whatever it was before.
    def.length = b2Distance(bodies.a->GetWorldPoint(def.localAnchorA), bodies.b->GetWorldPoint(def.localAnchorB));
    def.minLength = hasFrequency(record) ? 0.0f : def.length;
    def.maxLength = hasFrequency(record) ? unboundedLength : def.length;
    return def;
}

/// What the preview draws a pivot from.
void storePivotGeometry(const JointRecord& record, Bodies bodies) {
    JointUserData& geometry = *record.userData;
    geometry.centerA = bodies.a->GetWorldCenter();
    geometry.centerB = bodies.b->GetWorldCenter();
    geometry.directionA = directionOf(geometry.centerA - record.anchor);
    geometry.directionB = directionOf(geometry.centerB - record.anchor);
}

b2RevoluteJointDef pivotDef(const JointRecord& record, Bodies bodies) {
    constexpr float radiansPerDegree = 0.017453293f;
    b2RevoluteJointDef def;
    def.Initialize(bodies.a, bodies.b, bounded(record.anchor));
    def.enableLimit = record.enableLimit;
    std::tie(def.lowerAngle, def.upperAngle) =
        limits(record.lowerAngle * radiansPerDegree, record.upperAngle * radiansPerDegree);
    def.enableMotor = record.enableMotor;
    def.motorSpeed = -bounded(record.motorSpeed);
    def.maxMotorTorque = bounded(record.maxMotorTorque, 0.0f);
    return def;
}

b2PrismaticJointDef pistonDef(const JointRecord& record, Bodies bodies) {
    b2Vec2 axis = bounded(record.axis);
    if (axis.Normalize() == 0.0f) {
        axis.Set(1.0f, 0.0f); // without a direction there is no piston; this one holds at least
    }
    b2PrismaticJointDef def;
    def.Initialize(bodies.a, bodies.b, bounded(record.anchor), axis);
    def.enableLimit = record.enableLimit;
    std::tie(def.lowerTranslation, def.upperTranslation) = limits(record.lowerTranslation, record.upperTranslation);
    def.enableMotor = record.enableMotor;
    def.motorSpeed = -bounded(record.motorSpeed);
    def.maxMotorForce = bounded(record.maxMotorForce, 0.0f);
    return def;
}

template<class Def>
b2Joint* createJoint(const JointRecord& record, Def def, b2World& world) {
    def.collideConnected = record.collideConnected;
    def.userData.pointer = reinterpret_cast<std::uintptr_t>(record.userData.get());
    return world.CreateJoint(&def);
}

/// The library lengthens what is shorter than the linear slop, but only where it reads it, on construction. With no
/// slop meanwhile the joint starts relaxed at any length.
b2Joint* createDistanceJoint(const JointRecord& record, Bodies bodies, b2World& world) {
    const float slop = std::exchange(b2_linearSlop, 0.0f);
    b2Joint* joint = createJoint(record, distanceDef(record, bodies), world);
    b2_linearSlop = slop;
    return joint;
}

b2Joint* createJoint(const JointRecord& record, Bodies bodies, b2World& world) {
    switch (record.type) {
    case JointType::Distance:
        return createDistanceJoint(record, bodies, world);
    case JointType::Pivot:
        storePivotGeometry(record, bodies);
        return createJoint(record, pivotDef(record, bodies), world);
    case JointType::Piston:
        return createJoint(record, pistonDef(record, bodies), world);
    case JointType::Spring:
        break;
    }
    return nullptr;
}

} // namespace

void createJoints(Scene& scene, b2World& world) {
    for (BodyRecord& body : scene.bodies) {
        body.connectedJoints.clear();
    }
    for (JointRecord& record : scene.joints) {
        record.joint = nullptr;
        if (scene.joinsTwoBodies(record)) {
            BodyRecord& a = scene.bodies[static_cast<std::size_t>(record.bodyAId)];
            BodyRecord& b = scene.bodies[static_cast<std::size_t>(record.bodyBId)];
            record.joint = createJoint(record, Bodies{a.body, b.body}, world);
            a.connectedJoints.push_back(record);
            b.connectedJoints.push_back(record);
        }
    }
}

void tuneFrequencies(const Scene& scene, float stepTime) {
    for (const JointRecord& record : scene.joints) {
        if (record.joint && hasFrequency(record)) {
            tune(record, stepTime);
        }
    }
}

} // namespace jostle
