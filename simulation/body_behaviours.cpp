#include "simulation/body_behaviours.h"

#include "simulation/body_fixtures.h"
#include "simulation/collision_shape.h"
#include "simulation/numbers.h"
#include "simulation/world_builder.h"

#include <box2d/b2_collision.h>
#include <box2d/b2_contact.h>
#include <box2d/b2_fixture.h>
#include <box2d/b2_mouse_joint.h>

#include <cmath>
#include <limits>

namespace jostle {

namespace {

void comeAlive(const BehaviorPreferences& preferences, BodyRecord& record) {
    if (record.type == BodyType::Dynamic) {
        changeType(record, b2_dynamicBody);
        record.body->SetLinearVelocity(initialVelocity(record));
    } else if (record.type == BodyType::Kinematic &&
               preferences.kinematicBehavior == KinematicBehavior::DynamicAtInPoint) {
        changeType(record, b2_dynamicBody);
    }
}

struct Velocities {
    b2Vec2 linear;
    float angular;
};

Velocities layerVelocities(LayerMotion& layers, int layerIndex, const TickTimes& times) {
    return {bounded(layers.velocity(layerIndex, times.simTime, times.stepTime)),
            bounded(layers.angularVelocity(layerIndex, times.simTime, times.stepTime))};
}

/// Moves the point that the spring of an `AEmatic` body pulls to.
void moveTarget(const Scene& scene, const BodyRecord& record, LayerMotion& layers, int layerIndex, double simTime) {
    b2Vec2 point = scene.worldToPixels(record.body->GetLocalPoint(record.aematicWorldAnchor));
    point = layers.pointToComposition(layerIndex, point, simTime);
    const b2Vec2 now = scene.pixelsToWorld(point);
    // On purpose: the second pass starts from what the first one gave, in composition pixels, and not from the
    // point on the layer.
    point = layers.pointToComposition(layerIndex, point, 0.0);
    const b2Vec2 atStart = scene.pixelsToWorld(point);
    auto* joint = static_cast<b2MouseJoint*>(record.aematicJoint);
    joint->SetTarget(bounded(record.aematicWorldAnchor + now - atStart));
}

/// How much larger a layer is than one tick ago, below 0 if it was turned over. Scales count for a thousandth at least,
/// as in the import, so that a layer may start from nothing.
float scaleRatio(float older, float newer) {
    const auto usable = [](float scale) { return std::copysign(std::max(std::abs(bounded(scale)), 0.001f), scale); };
    return usable(newer) / usable(older);
}

/// Our engine has to hear of it before shapes are changed in place; the plain one takes no heed.
template<typename Body>
void prepareShapeChange(Body& body) {
    if constexpr (requires { body.PrepareShapeChange(); }) {
        body.PrepareShapeChange();
    }
}

void scaleFixtures(b2Body& body, b2Vec2 older, b2Vec2 newer) {
    const float ratioX = scaleRatio(older.x, newer.x);
    const float ratioY = scaleRatio(older.y, newer.y);
    if (ratioX == 1.0f && ratioY == 1.0f) {
        return;
    }
    prepareShapeChange(body);
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        scaleShape(*fixture->GetShape(), body.GetLocalCenter(), ratioX, ratioY);
    }
}

void followMotion(const Scene& scene, const BodyRecord& record, int layerIndex, const TickTimes& times,
                  LayerMotion& layers) {
    const Velocities velocities = layerVelocities(layers, layerIndex, times);
    if (record.body->GetType() == b2_kinematicBody) {
        record.body->SetLinearVelocity(velocities.linear);
        record.body->SetAngularVelocity(velocities.angular);
    } else {
        moveTarget(scene, record, layers, layerIndex, times.simTime);
        if (record.rotationAnimated) {
            record.body->SetAngularVelocity(velocities.angular);
        }
    }
    scaleFixtures(*record.body, layers.scale(layerIndex, times.simTime - times.stepTime),
                  layers.scale(layerIndex, times.simTime));
}

bool hasManifoldPoint(const b2ContactEdge& edge) {
    return edge.contact->GetManifold()->pointCount > 0;
}

bool sleeps(const Scene& scene, b2Body& body) {
    const auto* userData = reinterpret_cast<const BodyUserData*>(body.GetUserData().pointer);
    return userData && scene.bodies[static_cast<std::size_t>(userData->bodyIndex)].isDormant;
}

bool overlap(b2Body& a, b2Body& b) {
    if (!a.IsEnabled() || !b.IsEnabled()) {
        return false;
    }
    for (b2Fixture* fixtureA = a.GetFixtureList(); fixtureA; fixtureA = fixtureA->GetNext()) {
        for (b2Fixture* fixtureB = b.GetFixtureList(); fixtureB; fixtureB = fixtureB->GetNext()) {
            // The stored bounds are never smaller than the shapes, and quicker to compare.
            if (b2TestOverlap(fixtureA->GetAABB(0), fixtureB->GetAABB(0)) &&
                b2TestOverlap(fixtureA->GetShape(), 0, fixtureB->GetShape(), 0, a.GetTransform(), b.GetTransform())) {
                return true;
            }
        }
    }
    return false;
}

/// For a sleeper that hangs without gravity.
void wakeWeightless(const Scene& scene, BodyRecord& record) {
    if (!record.isDormant) {
        return;
    }
    for (const b2ContactEdge* edge = record.body->GetContactList(); edge; edge = edge->next) {
        // Two sleepers do not wake each other.
        if (hasManifoldPoint(*edge) && !sleeps(scene, *edge->other)) {
            record.isDormant = false;
            return;
        }
    }
}

/// Whether something reached a sleeper that is static. A static body makes no contact with a kinematic one, hence the
/// test for overlap.
bool isReached(const Scene& scene, const BodyRecord& record) {
    for (const b2ContactEdge* edge = record.body->GetContactList(); edge; edge = edge->next) {
        if (hasManifoldPoint(*edge)) {
            return true;
        }
    }
    if (scene.hasKinematic) {
        for (const BodyRecord& other : scene.bodies) {
            if (other.type == BodyType::Kinematic && overlap(*record.body, *other.body)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

bool isOutOfTime(const BodyRecord& record, const TickTimes& times) {
    const double frame = times.frameDuration * times.timeDivider;
    return record.type == BodyType::Dead || record.inPoint * frame > times.tickTime ||
           times.tickTime > record.outPoint * frame;
}

double nextChange(const BodyRecord& record, const TickTimes& times) {
    const double frame = times.frameDuration * times.timeDivider;
    for (const double change : {record.inPoint * frame, record.outPoint * frame}) {
        if (change >= times.tickTime) {
            return change;
        }
    }
    return std::numeric_limits<double>::infinity();
}

void applyInAndOut(const BehaviorPreferences& preferences, BodyRecord& record, const TickTimes& times) {
    b2Fixture* fixture = record.body->GetFixtureList();
    if (!fixture) {
        return;
    }
    const bool wasOut = record.userData->outOfTime;
    const bool isOut = isOutOfTime(record, times);
    if (wasOut && !isOut) {
        comeAlive(preferences, record);
    } else if (!wasOut && isOut && record.type == BodyType::Dynamic) {
        changeType(record, b2_staticBody);
    }
    record.userData->outOfTime = isOut;
    // All fixtures of a body are alike, and on most ticks nothing changes.
    for (; fixture && fixture->IsSensor() != isOut; fixture = fixture->GetNext()) {
        fixture->SetSensor(isOut);
    }
}

void applyGravityScale(const BodyRecord& record) {
    if (record.type == BodyType::Dormant && !record.isDormant) {
        record.body->SetGravityScale(bounded(record.gravityScale));
    }
}

void followLayer(const Scene& scene, std::int32_t index, int frame, LayerMotion& layers) {
    const auto i = static_cast<std::size_t>(index);
    const BodyRecord& record = scene.bodies[i];
    const bool isKinematic = record.body->GetType() == b2_kinematicBody;
    if ((!isKinematic && record.type != BodyType::AEmatic) || i >= scene.layerIndices.size()) {
        return;
    }
    const int layerIndex = scene.layerIndices[i];
    const TickTimes times = tickTimes(scene, frame);
    if ((layers.lastKeyframeFrame(layerIndex) - 1) * times.frameDuration >= times.simTime) {
        followMotion(scene, record, layerIndex, times, layers);
    } else if (isKinematic) {
        changeType(record, b2_dynamicBody);
        const Velocities last = layerVelocities(layers, layerIndex, tickTimes(scene, frame - 1));
        record.body->SetLinearVelocity(last.linear);
        record.body->SetAngularVelocity(last.angular);
    }
}

void wakeDormant(Scene& scene, BodyRecord& record) {
    if (scene.preferences.dormantBehavior == DormantBehavior::UsesGravityScale) {
        wakeWeightless(scene, record);
    } else if (record.type == BodyType::Dormant && record.body->GetType() == b2_staticBody &&
               isReached(scene, record)) {
        changeType(record, b2_dynamicBody);
        record.isDormant = false;
    }
}

} // namespace jostle
