#include "simulation/world_builder.h"

#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

#include <box2d/b2_fixture.h>
#include <box2d/b2_mouse_joint.h>
#include <box2d/b2_polygon_shape.h>
#include <gtest/gtest.h>

#include <limits>

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

TEST(WorldBuilder, verticesCloserThanTheSlopAreNotWelded) {
    Scene scene = emptyScene(25);
    scene.globals.tolerance = 1000.0; // a slop of 0.1 m, so that the library would weld below 0.05 m
    BodyRecord& record = addBox(scene, {0, 0}, 1, 1);
    record.isBox = false;
    ShapeDef sliver;
    sliver.closed = true;
    sliver.verts = {{0, 0}, {0.01f, 0}, {0, 1}};
    record.outlines = {{sliver}};
    {
        const Built built(scene);
        ASSERT_NE(scene.bodies[0].body->GetFixtureList(), nullptr);
        const b2PolygonShape& polygon = firstPolygon(*scene.bodies[0].body);
        ASSERT_EQ(polygon.m_count, 3);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(polygon.m_vertices[i], sliver.verts[i]);
        }
    }
    scene.globals.tolerance = 50.0;
    const Built restored(scene);
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
        record.userData->outOfTime = c.inPoint > 0;
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
    const b2Body* body = built.world->GetBodyList();
    for (const int index : {1, 0}) {
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(scene.findBodyRecord(body), index);
        const auto* userData = reinterpret_cast<const BodyUserData*>(
            const_cast<b2Fixture*>(body->GetFixtureList())->GetUserData().pointer);
        EXPECT_EQ(userData, scene.bodies[static_cast<std::size_t>(index)].userData.get());
        EXPECT_EQ(userData->bodyIndex, index);
        body = body->GetNext();
    }
    EXPECT_EQ(body, scene.groundBody);
    EXPECT_EQ(scene.findBodyRecord(body), -1);
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

TEST(WorldBuilder, massEqualsTheLibrarysOwn) {
    Scene scene = emptyScene(25);
    BodyRecord& record = addBox(scene, {0, 0}, 1, 1);
    record.isBox = false;
    record.density = 2.5f;
    ShapeDef other = boxShape(0.5f, 3);
    for (b2Vec2& v : other.verts) {
        v += {2, 1};
    }
    record.outlines = {{boxShape(1, 1), other}};
    const Built built(scene);

    b2World plain({0, 0});
    b2BodyDef def;
    def.type = b2_dynamicBody;
    b2Body& body = *plain.CreateBody(&def);
    b2PolygonShape box;
    box.SetAsBox(0.5f, 0.5f);
    body.CreateFixture(&box, 2.5f);
    box.SetAsBox(0.25f, 1.5f, {2, 1}, 0);
    body.CreateFixture(&box, 2.5f);

    EXPECT_FLOAT_EQ(record.body->GetMass(), body.GetMass());
    EXPECT_FLOAT_EQ(record.body->GetInertia(), body.GetInertia());
    EXPECT_FLOAT_EQ(record.body->GetLocalCenter().x, body.GetLocalCenter().x);
    EXPECT_FLOAT_EQ(record.body->GetLocalCenter().y, body.GetLocalCenter().y);
}

TEST(WorldBuilder, skipsSmallPiecesAndCountsTriangles) {
    Scene scene = emptyScene(25);
    BodyRecord& record = addBox(scene, {0, 0}, 1, 1);
    record.isBox = false;
    ShapeDef triangle;
    triangle.closed = true;
    triangle.verts = {{0, 0}, {1, 0}, {0, 1}};
    ShapeDef speck = triangle;
    speck.verts = {{0, 0}, {0.004f, 0}, {0, 0.004f}}; // 0.000008 square metres
    record.outlines = {{boxShape(0.01f, 0.009f), speck, boxShape(0.02f, 0.009f)}};
    record.outlines.front().insert(record.outlines.front().end(), 76, triangle);
    {
        const Built built(scene);
        EXPECT_EQ(built.world->GetProxyCount(), 77);
        EXPECT_TRUE(record.isDenseMesh);
    }
    record.outlines.front().pop_back();
    const Built built(scene);
    EXPECT_FALSE(record.isDenseMesh) << "75 triangles are no dense mesh yet";
}

TEST(WorldBuilder, aBodyWithoutFixturesStillFalls) {
    Scene scene = emptyScene(25);
    BodyRecord& record = addBox(scene, {0, 0}, 1, 1);
    record.outlines.clear();
    const Built built(scene);
    EXPECT_EQ(record.body->GetMass(), 1.0f);
}

TEST(WorldBuilder, extremeRecordsStayFinite) {
    constexpr float huge = std::numeric_limits<float>::max();
    Scene scene = emptyScene(25);
    scene.globals.magnitude = 1e300;
    scene.globals.stepsPerFrame = 1;
    for (int i = 0; i < 6; ++i) {
        BodyRecord& record = addBox(scene, {0.1f * static_cast<float>(i), 0}, 1, 1, static_cast<BodyType>(i));
        record.linearVelocityMagnitude = huge;
        record.linearVelocityDirection = -huge;
        record.angularVelocity = huge;
        record.linearDamping = i % 2 ? huge : -25;
        record.angularDamping = -huge;
        record.density = i % 2 ? huge : 0;
        record.friction = -1;
        record.restitution = huge;
        record.gravityScale = -huge;
        record.aematicAnchor = {huge, 0};
        record.aematicTension = huge;
        record.aematicDamping = -huge;
        record.angle = huge;
    }
    scene.bodies[5].position = {huge, -huge};
    // A speck ten metres from its body's origin: its inertia is lost in rounding.
    BodyRecord& record = addBox(scene, {5, 5}, 0.01f, 0.01f);
    for (b2Vec2& v : record.outlines[0][0].verts) {
        v += {-10, -10};
    }
    StillLayers layers;
    FreePacer pacer;
    for (const double divider : {0.0, 1.0, 1e300}) {
        scene.globals.timeDivider = divider;
        SimulationClock clock(scene, layers, pacer);
        clock.playFromStart();
        while (clock.frame() < 20) {
            clock.tick();
        }
        for (const BodyRecord& body : scene.bodies) {
            SCOPED_TRACE(body.number);
            EXPECT_TRUE(body.body->GetPosition().IsValid());
            EXPECT_TRUE(body.body->GetLinearVelocity().IsValid());
            EXPECT_TRUE(b2IsValid(body.body->GetAngle()));
        }
    }
}

} // namespace
} // namespace jostle
