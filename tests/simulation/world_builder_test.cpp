#include "simulation/world_builder.h"

#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <box2d/b2_mouse_joint.h>
#include <gtest/gtest.h>

#include <tuple>

namespace jostle {
namespace {

TEST(WorldBuilder, toleranceIsSlopAndSkin) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1);
    scene.globals.tolerance = 100; // ten thousand times the slop; the skin is twice as thick
    const Playback built(std::move(scene));
    EXPECT_FLOAT_EQ(b2_linearSlop, 0.01f);
    EXPECT_FLOAT_EQ(polygonOf(built.body()).m_radius, 0.02f);
}

TEST(WorldBuilder, eachTypeBecomesItsOwn) {
    const auto byGravity = DormantBehavior::UsesGravityScale;
    const auto byStatic = DormantBehavior::UsesStatic;
    // The record's type, its dormancy by preference, its in-point; the body's type, whether the record's velocity is in
    // force, the scale of gravity, and whether the body is dormant.
    const std::tuple<const char*, BodyType, DormantBehavior, int, b2BodyType, bool, float, bool> cases[] = {
        {"static", BodyType::Static, byGravity, 0, b2_staticBody, false, 0.5f, false},
        {"kinematic", BodyType::Kinematic, byGravity, 0, b2_kinematicBody, true, 0.5f, false},
        {"dynamic", BodyType::Dynamic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dynamic before its in-point is static", BodyType::Dynamic, byGravity, 10, b2_staticBody, false, 0.5f, false},
        {"dormant hangs without gravity, but moves", BodyType::Dormant, byGravity, 0, b2_dynamicBody, true, 0, true},
        {"dormant by preference is static", BodyType::Dormant, byStatic, 0, b2_staticBody, false, 1, true},
        {"AEmatic is dynamic", BodyType::AEmatic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dead is static", BodyType::Dead, byGravity, 0, b2_staticBody, false, 0.5f, false},
    };
    for (const auto& [name, type, dormantBehavior, inPoint, worldType, moves, gravityScale, isDormant] : cases) {
        SCOPED_TRACE(name);
        Scene scene = emptyScene(25);
        scene.preferences.dormantBehavior = dormantBehavior;
        BodyRecord& added = addBox(scene, {1, 2}, 2, 1, type);
        added.inPoint = inPoint;
        added.gravityScale = 0.5f;
        added.friction = 0.3f;
        added.restitution = 0.7f;
        added.linearVelocityMagnitude = 3;
        added.linearVelocityDirection = 90;
        added.angularVelocity = 4;
        const Playback built(std::move(scene));
        const BodyRecord& record = built.scene.bodies[0];
        const b2Body& body = *record.body;
        EXPECT_EQ(body.GetType(), worldType);
        EXPECT_NEAR(body.GetLinearVelocity().y, moves ? 3.0f : 0.0f, 1e-6f);
        EXPECT_EQ(body.GetAngularVelocity(), moves ? 4.0f : 0.0f);
        EXPECT_EQ(body.GetGravityScale(), gravityScale);
        EXPECT_EQ(body.GetFixtureList()->GetFriction(), 0.3f);
        EXPECT_EQ(body.GetFixtureList()->GetRestitution(), 0.7f);
        EXPECT_EQ(record.isDormant, isDormant);
        EXPECT_EQ(record.userData->outOfTime, type == BodyType::Dead || inPoint > 0);
    }
}

TEST(WorldBuilder, bodiesPointBackAtTheirRecordsAndFollowersHangOnSprings) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1);
    BodyRecord& record = addBox(scene, {1, 2}, 2, 1, BodyType::AEmatic);
    record.aematicAnchor = {0.5f, 0};
    record.aematicTension = 2;
    record.aematicDamping = 0.25f;
    Playback built(std::move(scene));
    int index = 1; // in reverse, with the ground body last
    for (b2Body* body = built.clock.world().GetBodyList(); body; body = body->GetNext()) {
        EXPECT_EQ(built.scene.findBodyRecord(body), index--);
    }
    EXPECT_EQ(index, -2);
    const auto pointer = built.body(1).GetFixtureList()->GetUserData().pointer;
    EXPECT_EQ(reinterpret_cast<const BodyUserData*>(pointer)->bodyIndex, 1);
    const Scene copy = built.scene;
    EXPECT_NE(copy.bodies[0].userData.get(), built.scene.bodies[0].userData.get()) << "a snapshot owns its own";
    const auto& joint = static_cast<const b2MouseJoint&>(*built.scene.bodies[1].aematicJoint);
    EXPECT_EQ(joint.GetTarget(), b2Vec2(1.5f, 2));
    EXPECT_EQ(joint.GetMaxForce(), 2000.0f);
    // m = 2 kg, omega = 2 pi f = 12.566371: k = m omega^2, d = 2 m zeta omega.
    EXPECT_NEAR(joint.GetStiffness(), 315.8273f, 1e-3f);
    EXPECT_NEAR(joint.GetDamping(), 12.566371f, 1e-4f);
}

} // namespace
} // namespace jostle
