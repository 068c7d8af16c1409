#include "simulation/world_builder.h"

#include "simulation/numbers.h"
#include "simulation/polygon_shape.h"

#include <box2d/b2_fixture.h>
#include <box2d/b2_mouse_joint.h>
#include <box2d/b2_polygon_shape.h>

#include <cmath>

namespace jostle {

namespace {

constexpr float leastDensity = 0.001f;
constexpr float greatestDensity = 1.0e5f;
constexpr float leastBoxArea = 0.0001f;       // square metres
constexpr float leastTriangleArea = 0.00001f; // square metres
constexpr int denseMeshLimit = 75;            // triangles
constexpr float leastTension = 0.001f;        // hertz
constexpr float greatestTension = 1.0e4f;     // hertz
// The joint's solver squares the square of the lever over the inertia; these two keep that within a float. A body of
// one pixel at the least density has more inertia.
constexpr float longestLever = 1.0e3f;   // metres
constexpr float leastInertia = 1.0e-12f; // kilograms times square metres

void setTolerance(double tolerance) {
    constexpr double leastTolerance = 0.001;
    constexpr double greatestTolerance = 1.0e7;
    // Written so that what is not a number gives the least tolerance.
    const double usable = tolerance >= leastTolerance ? std::min(tolerance, greatestTolerance) : leastTolerance;
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

/// A fixture without its density: the library works out the mass anew for each fixture that has one, which
/// `setMass` does once.
b2FixtureDef fixtureDef(const BodyRecord& record) {
    b2FixtureDef def;
    def.density = 0.0f;
    def.friction = bounded(record.friction, 0.0f); // the library takes roots of it
    def.restitution = bounded(record.restitution);
    def.filter.categoryBits = record.categoryBits;
    def.filter.maskBits = record.maskBits;
    def.userData.pointer = reinterpret_cast<std::uintptr_t>(record.userData.get());
    return def;
}

/// Heron: with s half the sum of the sides, the area is sqrt(s (s-a) (s-b) (s-c)).
float triangleArea(const std::vector<b2Vec2>& v) {
    const float a = b2Distance(v[0], v[1]);
    const float b = b2Distance(v[1], v[2]);
    const float c = b2Distance(v[2], v[0]);
    const float s = 0.5f * (a + b + c);
    return std::sqrt(std::max(0.0f, s * (s - a) * (s - b) * (s - c)));
}

bool isLargeEnough(const ShapeDef& piece) {
    if (piece.isBox) {
        return piece.verts.size() == 4 &&
               b2Distance(piece.verts[0], piece.verts[1]) * b2Distance(piece.verts[1], piece.verts[2]) > leastBoxArea;
    }
    return piece.verts.size() != 3 || triangleArea(piece.verts) > leastTriangleArea;
}

bool createPolygon(const BodyRecord& record, const ShapeDef& piece) {
    b2PolygonShape polygon;
    if (!fillPolygon(piece.verts, polygon)) {
        return false;
    }
    b2FixtureDef def = fixtureDef(record);
    def.shape = &polygon;
    record.body->CreateFixture(&def);
    return true;
}

/// Boxes and closed polygons become fixtures.
void createPieces(BodyRecord& record) {
    int triangles = 0;
    for (const std::vector<ShapeDef>& group : record.outlines) {
        for (const ShapeDef& piece : group) {
            const bool isPolygon = piece.isBox || (piece.closed && !piece.isCircle);
            if (isPolygon && isLargeEnough(piece) && createPolygon(record, piece) && !piece.isBox) {
                ++triangles;
            }
        }
    }
    record.isDenseMesh = triangles > denseMeshLimit;
}

void createFixtures(BodyRecord& record) {
    if (!record.isBox) {
        createPieces(record);
    } else if (!record.outlines.empty() && !record.outlines.front().empty()) {
        (void)createPolygon(record, record.outlines.front().front());
    }
}

/// Whether single precision can tell the body's inertia about its centre of mass. It is a difference of two sums
/// about the origin, which is lost in rounding where a small shape lies far from the body's origin. Bodies that are no
/// more than specks do not turn either.
bool canTurn(b2Body& body) {
    b2MassData sum{0.0f, {0.0f, 0.0f}, 0.0f};
    for (const b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (fixture->GetDensity() > 0.0f) {
            b2MassData one;
            fixture->GetMassData(&one);
            sum.mass += one.mass;
            sum.center += one.mass * one.center;
            sum.I += one.I;
        }
    }
    if (!(sum.mass > 0.0f)) {
        return true;
    }
    sum.center *= 1.0f / sum.mass;
    return sum.I - sum.mass * b2Dot(sum.center, sum.center) > std::max(8.0f * b2_epsilon * sum.I, leastInertia);
}

/// Before the library works out a body's mass: what it could not divide by is taken out of its sums.
void prepareMass(b2Body& body) {
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (!canHaveMass(static_cast<const b2PolygonShape&>(*fixture->GetShape()))) {
            fixture->SetDensity(0.0f);
        }
    }
    if (!canTurn(body)) {
        body.SetFixedRotation(true);
    }
}

/// What a body without fixtures weighs; the library would leave it without mass, and thus without weight.
void giveEmptyBodyMass(b2Body& body) {
    if (body.GetType() == b2_dynamicBody && body.GetMass() == 0.0f) {
        const b2MassData oneKilogram{1.0f, {0.0f, 0.0f}, 0.0f};
        body.SetMassData(&oneKilogram);
    }
}

void setMass(const BodyRecord& record) {
    b2Body& body = *record.body;
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        fixture->SetDensity(bounded(record.density, leastDensity, greatestDensity));
    }
    prepareMass(body);
    body.ResetMassData();
    giveEmptyBodyMass(body);
}

/// The spring that holds an `AEmatic` body at a point which follows its layer.
void createMouseJoint(BodyRecord& record, b2World& world, b2Body& groundBody) {
    record.aematicWorldAnchor = bounded(record.position) + bounded(record.aematicAnchor, longestLever);
    b2MouseJointDef def;
    def.bodyA = &groundBody;
    def.bodyB = record.body;
    def.target = record.aematicWorldAnchor;
    def.maxForce = 1000.0f * record.body->GetMass();
    // Tension 0 holds the point rigidly; just above it the inverse of the stiffness would overflow.
    const float tension =
        record.aematicTension > 0.0f ? bounded(record.aematicTension, leastTension, greatestTension) : 0.0f;
    const float dampingRatio = bounded(record.aematicDamping, 0.0f, greatestTension);
    b2LinearStiffness(def.stiffness, def.damping, tension, dampingRatio, def.bodyA, def.bodyB);
    record.aematicJoint = world.CreateJoint(&def);
    record.body->SetAwake(true);
}

void createBody(Scene& scene, std::int32_t index, b2World& world) {
    BodyRecord& record = scene.bodies[static_cast<std::size_t>(index)];
    record.isDormant = record.type == BodyType::Dormant;
    record.userData->selectable = true;
    record.userData->bodyIndex = index;
    const b2BodyDef def = bodyDef(record, scene.preferences);
    record.body = world.CreateBody(&def);
    record.aematicJoint = nullptr;
    createFixtures(record);
    setMass(record);
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
    }
    scene.groundBody = nullptr;
    if (scene.hasAEmatic) {
        const b2BodyDef def;
        scene.groundBody = world.CreateBody(&def);
    }
    for (std::int32_t i = 0; i < scene.bodyCount(); ++i) {
        createBody(scene, i, world);
    }
}

b2Vec2 initialVelocity(const BodyRecord& record) {
    return polarVector(record.linearVelocityMagnitude, record.linearVelocityDirection);
}

void changeType(b2Body& body, b2BodyType type) {
    prepareMass(body);
    body.SetType(type);
    giveEmptyBodyMass(body);
}

} // namespace jostle
