#include "simulation/world_builder.h"

#include "simulation/body_fixtures.h"
#include "simulation/joints.h"
#include "simulation/numbers.h"

#include <box2d/b2_mouse_joint.h>

#include <algorithm>
#include <cmath>

namespace jostle {

namespace {

constexpr float leastTension = 0.001f; // hertz; the panel's least is 0.01

void setTolerance(double tolerance) {
    constexpr double leastTolerance = 0.001;
    // Written so that what is not a number gives the least tolerance. Near it, and near the greatest that a panel
    // takes, the library is slow: continuous collision seeks the time of each impact to a quarter of the slop, which
    // single precision cannot tell a metre from the middle, and goes through all of its iterations for every contact.
    const double usable = tolerance >= leastTolerance ? std::min(tolerance, double{settingLimit}) : leastTolerance;
    b2_linearSlop = static_cast<float>(usable / 10000.0);
    b2_polygonRadius = 2.0f * b2_linearSlop;
}

b2BodyType worldType(const BodyRecord& record, const BehaviorPreferences& preferences) {
    switch (record.type) {
    case BodyType::Kinematic:
        return b2_kinematicBody;
    case BodyType::Dynamic:
        // Comes alive at its in-point.
        return record.userData->outOfTime ? b2_staticBody : b2_dynamicBody;
    case BodyType::Dormant:
        return preferences.dormantBehavior == DormantBehavior::UsesStatic ? b2_staticBody : b2_dynamicBody;
    case BodyType::AEmatic:
        return b2_dynamicBody;
    case BodyType::Static:
    case BodyType::Dead:
        break;
    }
    return b2_staticBody;
}

b2BodyDef bodyDef(const BodyRecord& record, const BehaviorPreferences& preferences) {
    b2BodyDef def;
    def.type = worldType(record, preferences);
    def.position = bounded(record.position);
    def.angle = bounded(record.angle);
    if (def.type != b2_staticBody) {
        def.linearVelocity = initialVelocity(record);
        def.angularVelocity = bounded(record.angularVelocity);
    }
    // Negative damping would speed bodies up without limit.
    def.linearDamping = bounded(record.linearDamping, 0.0f);
    def.angularDamping = bounded(record.angularDamping, 0.0f);
    def.fixedRotation = record.fixedRotation;
    // A sleeper gets its own scale from the first tick after it woke.
    if (record.type != BodyType::Dormant) {
        def.gravityScale = bounded(record.gravityScale);
    } else if (preferences.dormantBehavior == DormantBehavior::UsesGravityScale) {
        def.gravityScale = 0.0f;
    }
    def.userData.pointer = reinterpret_cast<std::uintptr_t>(record.userData.get());
    return def;
}

/// Metres. The solver multiplies squares of the lever over the body's inertia I with each other: r^4 / I^2 must not
/// overflow. A box of one metre may have any; a speck of the least inertia is left a kilometre.
float longestLever(const b2Body& body) {
    const b2Vec2 center = body.GetLocalCenter();
    const float inertia = body.GetInertia() - body.GetMass() * b2Dot(center, center);
    return inertia > 0.0f ? std::min(settingLimit, 1.0e9f * std::sqrt(inertia)) : settingLimit;
}

/// The spring that holds an `AEmatic` body at a point which follows its layer.
void createMouseJoint(BodyRecord& record, b2World& world, b2Body& groundBody) {
    record.aematicWorldAnchor = bounded(record.position) + bounded(record.aematicAnchor, longestLever(*record.body));
    b2MouseJointDef def;
    def.bodyA = &groundBody;
    def.bodyB = record.body;
    def.target = record.aematicWorldAnchor;
    def.maxForce = 1000.0f * record.body->GetMass();
    // Tension 0 gives the joint no spring, which then holds the point rigidly; just above it the inverse of the
    // stiffness would overflow.
    const float tension =
        record.aematicTension > 0.0f ? bounded(record.aematicTension, leastTension, settingLimit) : 0.0f;
    const float dampingRatio = bounded(record.aematicDamping, 0.0f);
    b2LinearStiffness(def.stiffness, def.damping, tension, dampingRatio, def.bodyA, def.bodyB);
    record.aematicJoint = world.CreateJoint(&def);
    record.body->SetAwake(true);
}

/// What the preview and the picking read of a body that stands at frame 0.
void deriveFlags(const BodyRecord& record, std::int32_t index) {
    BodyUserData& flags = *record.userData;
    flags.selectable = true;
    flags.isStatic = record.type == BodyType::Static;
    flags.outOfTime = record.type == BodyType::Dead || record.inPoint > 0;
    flags.isMagnet = record.magnetismType == 1 || record.magnetismType == 2;
    flags.isRepulsive = record.magnetismType == 2;
    flags.magnetDistance = record.magnetDistance;
    flags.bodyIndex = index;
}

void createBody(Scene& scene, std::int32_t index, b2World& world) {
    BodyRecord& record = scene.bodies[static_cast<std::size_t>(index)];
    record.isDormant = record.type == BodyType::Dormant;
    deriveFlags(record, index);
    const b2BodyDef def = bodyDef(record, scene.preferences);
    record.body = world.CreateBody(&def);
    record.aematicJoint = nullptr;
    createFixtures(record);
    if (record.type == BodyType::AEmatic) {
        createMouseJoint(record, world, *scene.groundBody);
    }
}

} // namespace

std::unique_ptr<b2World> createWorld() {
    auto world = std::make_unique<b2World>(b2Vec2(0.0f, 10.0f));
    world->SetAllowSleeping(false);
    world->SetWarmStarting(true);
    return world;
}

void buildWorld(Scene& scene, b2World& world) {
    setTolerance(scene.globals.tolerance);
    for (const BodyRecord& record : scene.bodies) {
        scene.latchType(record.type);
        scene.latchMagnetism(record.magnetismType);
    }
    scene.groundBody = nullptr;
    if (scene.hasAEmatic) {
        const b2BodyDef def;
        scene.groundBody = world.CreateBody(&def);
    }
    for (std::int32_t i = 0; i < scene.bodyCount(); ++i) {
        createBody(scene, i, world);
    }
    createJoints(scene, world);
}

b2Vec2 initialVelocity(const BodyRecord& record) {
    return polarVector(record.linearVelocityMagnitude, record.linearVelocityDirection);
}

} // namespace jostle
