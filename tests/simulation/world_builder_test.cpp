#include "simulation/world_builder.h"

#include "tests/support/scenes.h"

#include <box2d/b2_fixture.h>
#include <box2d/b2_mouse_joint.h>
#include <box2d/b2_polygon_shape.h>
#include <gtest/gtest.h>

namespace jostle {
namespace {

struct Built {
    explicit Built(Scene& scene) : world(createWorld()) { buildWorld(scene, *world); }
    std::unique_ptr<b2World> world;
};

const b2PolygonShape& firstPolygon(const b2Body& body) {
    return static_cast<const b2PolygonShape&>(*body.GetFixtureList()->GetShape());
}

TEST(WorldBuilder, toleranceIsSlopAndSkin) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1);
    for (const double tolerance : {100.0, 50.0}) {
        scene.globals.tolerance = tolerance;
        const Built built(scene);
        EXPECT_FLOAT_EQ(b2_linearSlop, static_cast<float>(tolerance / 10000.0));
        EXPECT_FLOAT_EQ(firstPolygon(*scene.bodies[0].body).m_radius, static_cast<float>(tolerance / 5000.0));
    }
}

struct TypeCase {
    const char* name;
    BodyType type;
    DormantBehavior dormantBehavior;
    int inPoint;
    b2BodyType worldType;
    bool moves; ///< the record's velocity is in force
    float gravityScale;
    bool isDormant;
};

TEST(WorldBuilder, eachTypeBecomesItsOwn) {
    const auto byGravity = DormantBehavior::UsesGravityScale;
    const auto byStatic = DormantBehavior::UsesStatic;
    const TypeCase cases[] = {
        {"static", BodyType::Static, byGravity, 0, b2_staticBody, false, 0.5f, false},
        {"kinematic", BodyType::Kinematic, byGravity, 0, b2_kinematicBody, true, 0.5f, false},
        {"dynamic", BodyType::Dynamic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dynamic before its in-point is static", BodyType::Dynamic, byGravity, 10, b2_staticBody, false, 0.5f, false},
        {"dormant hangs without gravity, but moves", BodyType::Dormant, byGravity, 0, b2_dynamicBody, true, 0, true},
        {"dormant by preference is static", BodyType::Dormant, byStatic, 0, b2_staticBody, false, 1, true},
        {"AEmatic is dynamic", BodyType::AEmatic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dead is static", BodyType::Dead, byGravity, 0, b2_staticBody, false, 0.5f, false},
    };
    for (const TypeCase& c : cases) {
        SCOPED_TRACE(c.name);
        Scene scene = emptyScene(25);
        scene.preferences.dormantBehavior = c.dormantBehavior;
        BodyRecord& record = addBox(scene, {1, 2}, 2, 1, c.type);
        record.inPoint = c.inPoint;
        record.gravityScale = 0.5f;
        record.linearVelocityMagnitude = 3;
        record.linearVelocityDirection = 90;
        record.angularVelocity = 4;
        const Built built(scene);
        const b2Body& body = *record.body;
        EXPECT_EQ(body.GetType(), c.worldType);
        EXPECT_NEAR(body.GetLinearVelocity().y, c.moves ? 3.0f : 0.0f, 1e-6f);
        EXPECT_EQ(body.GetAngularVelocity(), c.moves ? 4.0f : 0.0f);
        EXPECT_EQ(body.GetGravityScale(), c.gravityScale);
        EXPECT_EQ(record.isDormant, c.isDormant);
        EXPECT_EQ(record.userData->isStatic, c.type == BodyType::Static);
        EXPECT_EQ(record.userData->outOfTime, c.type == BodyType::Dead || c.inPoint > 0);
        // 2 m by 1 m at 1 kg per square metre; a box's inertia is m (w^2 + h^2) / 12.
        EXPECT_FLOAT_EQ(body.GetMass(), c.worldType == b2_dynamicBody ? 2.0f : 0.0f);
        EXPECT_FLOAT_EQ(body.GetInertia(), c.worldType == b2_dynamicBody ? 10.0f / 12.0f : 0.0f);
        EXPECT_EQ(scene.groundBody != nullptr, c.type == BodyType::AEmatic);
        EXPECT_EQ(built.world->GetBodyCount(), c.type == BodyType::AEmatic ? 2 : 1);
        EXPECT_EQ(record.aematicJoint != nullptr, c.type == BodyType::AEmatic);
    }
}

TEST(WorldBuilder, bodiesPointBackAtTheirRecords) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1);
    addBox(scene, {3, 0}, 1, 1, BodyType::AEmatic);
    const Built built(scene);
    // In reverse, with the ground body last.
    b2Body* body = built.world->GetBodyList();
    for (const int index : {1, 0, -1}) {
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(scene.findBodyRecord(body), index);
        if (index >= 0) {
            const auto pointer = body->GetFixtureList()->GetUserData().pointer;
            EXPECT_EQ(reinterpret_cast<const BodyUserData*>(pointer)->bodyIndex, index);
        }
        body = body->GetNext();
    }
    const Scene copy = scene;
    EXPECT_NE(copy.bodies[0].userData.get(), scene.bodies[0].userData.get()) << "a snapshot owns its own";
}

TEST(WorldBuilder, mouseJointIsASpringOfTheGivenFrequency) {
    Scene scene = emptyScene(25);
    BodyRecord& record = addBox(scene, {1, 2}, 2, 1, BodyType::AEmatic);
    record.aematicAnchor = {0.5f, 0};
    record.aematicTension = 2;
    record.aematicDamping = 0.25f;
    const Built built(scene);
    const auto& joint = static_cast<const b2MouseJoint&>(*record.aematicJoint);
    EXPECT_EQ(joint.GetTarget(), b2Vec2(1.5f, 2));
    EXPECT_EQ(joint.GetMaxForce(), 2000.0f);
    // m = 2 kg, omega = 2 pi f = 12.566371: k = m omega^2, d = 2 m zeta omega.
    EXPECT_NEAR(joint.GetStiffness(), 315.8273f, 1e-3f);
    EXPECT_NEAR(joint.GetDamping(), 12.566371f, 1e-4f);
}

} // namespace
} // namespace jostle
