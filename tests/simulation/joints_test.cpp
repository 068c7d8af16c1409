#include "simulation/joints.h"

#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <box2d/b2_distance_joint.h>
#include <gtest/gtest.h>

#include <cmath>

namespace jostle {
namespace {

/// Without gravity, in fine steps.
Scene quietScene() {
    Scene scene = emptyScene(60);
    scene.globals.stepsPerFrame = 10;
    scene.globals.magnitude = 0;
    return scene;
}

/// Seconds from one rise through zero to the next, as the mean over four.
template<class Signal>
double period(Playback<>& run, Signal signal) {
    double first = 0;
    int rises = 0;
    double before = signal();
    for (int frame = run.clock.frame() + 1; rises < 5 && frame < 2000; ++frame) {
        run.playTo(frame);
        const double after = signal();
        if (before < 0 && after >= 0) {
            const double time = (frame - after / (after - before)) / 60.0;
            first = rises == 0 ? time : first;
            if (++rises == 5) {
                return (time - first) / 4;
            }
        }
        before = after;
    }
    return 0;
}

TEST(Joints, aPivotIsAPendulum) {
    Scene scene = quietScene();
    scene.globals.magnitude = 10;
    addBox(scene, {3, 3}, 1, 1, BodyType::Static);
    // Hangs a metre below the origin, a tenth of a radian to the side.
    addBox(scene, {std::sin(0.1f), std::cos(0.1f)}, 0.2f, 0.2f);
    addJoint(scene, JointType::Pivot, 0, 1);
    Playback run(std::move(scene));
    // T = 2 pi sqrt((L^2 + w^2 / 6) / (g L)), and 1 + 0.1^2 / 16 of it at this amplitude.
    const double expected = 2 * b2_pi * std::sqrt((1 + 0.04 / 6) / 10) * 1.000625;
    EXPECT_NEAR(period(run, [&] { return run.body(1).GetPosition().x; }), expected, 0.005 * expected);
    EXPECT_NEAR(run.body(1).GetPosition().Length(), 1.0f, 0.005f);
}

TEST(Joints, aDistanceJointOscillatesAtItsFrequency) {
    // The rod pulls at half a metre from the centre of a box of 1 kg and 1/6 kg m^2, so that it feels a mass of
    // 1 / (1 + 0.5^2 * 6) = 0.4 kg. Its velocities are those of a blow along the rod: w = -0.5 m v / I.
    for (const int inPoint : {0, 10}) { // a body that comes alive later weighs nothing when its joint is made
        SCOPED_TRACE(inPoint);
        Scene scene = quietScene();
        addBox(scene, {0, 0}, 1, 1, BodyType::Static);
        BodyRecord& box = addBox(scene, {2, 0}, 1, 1);
        box.linearVelocityMagnitude = 0.02f;
        box.angularVelocity = -0.06f;
        box.inPoint = inPoint;
        JointRecord& joint = addJoint(scene, JointType::Distance, 0, 1);
        joint.anchorA = joint.anchorB = {0, 0.5f};
        joint.frequency = 2;
        Playback run(std::move(scene));
        const auto& rod = static_cast<const b2DistanceJoint&>(*run.scene.joints[0].joint);
        EXPECT_EQ(rod.GetLength(), 2.0f) << "starts relaxed";
        EXPECT_NEAR(period(run, [&] { return rod.GetCurrentLength() - 2.0f; }), 0.5, 0.01);
    }
}

TEST(Joints, aDistanceJointBelowTheSlopStartsRelaxed) {
    for (const float frequency : {0.0f, 5.0f}) {
        Scene scene = quietScene();
        addBox(scene, {0, 0}, 1, 1, BodyType::Static);
        addBox(scene, {2, 0}, 1, 1);
        JointRecord& joint = addJoint(scene, JointType::Distance, 0, 1);
        joint.anchorA = {1, 0};
        joint.anchorB = {-0.999f, 0}; // a millimetre, a fifth of the slop
        joint.frequency = frequency;
        Playback run(std::move(scene));
        run.playTo(30);
        EXPECT_NEAR(run.body(1).GetPosition().x, 2.0f, 1e-6f);
        EXPECT_EQ(b2_linearSlop, 0.005f) << "and the slop is what it was";
    }
}

TEST(Joints, motorsTurnBodyAClockwise) {
    for (const std::size_t turning : {0u, 1u}) {
        Scene scene = quietScene();
        addBox(scene, {0, 0}, 1, 1, BodyType::Static);
        addBox(scene, {0, 0}, 1, 1, BodyType::Static);
        scene.bodies[turning].type = BodyType::Dynamic;
        JointRecord& joint = addJoint(scene, JointType::Pivot, 0, 1);
        joint.enableMotor = true;
        joint.motorSpeed = 3;
        joint.maxMotorTorque = 1000;
        joint.collideConnected = false;
        Playback run(std::move(scene));
        run.playTo(10);
        // Positive angles are clockwise on the screen, as y points down.
        EXPECT_NEAR(run.body(turning).GetAngularVelocity(), turning == 0 ? 3 : -3, 1e-3f);
    }
}

TEST(Joints, limitsHold) {
    const struct {
        const char* name;
        JointType type;
        float lower, upper, motorSpeed, x, y, angle;
    } cases[] = {
        // The axis is (0, 2), so that translations are metres downwards.
        {"a piston falls to its upper limit", JointType::Piston, -0.5f, 1, 0, 0, 1, 0},
        {"its motor lifts it to its lower limit", JointType::Piston, -0.5f, 1, 5, 0, -0.5f, 0},
        {"limits the wrong way round", JointType::Piston, 1, -0.5f, 0, 0, 1, 0},
        {"a pivot turns to its upper limit, in degrees", JointType::Pivot, -30, 45, -5, 0, 0, 0.7853982f},
        {"and to its lower one", JointType::Pivot, -30, 45, 5, 0, 0, -0.5235988f},
        {"a distance joint without a frequency is rigid", JointType::Distance, 0, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Scene scene = quietScene();
        scene.globals.magnitude = 10;
        addBox(scene, {0, -5}, 1, 1, BodyType::Static);
        addBox(scene, {0, 0}, 0.2f, 0.2f);
        JointRecord& joint = addJoint(scene, c.type, 0, 1);
        joint.axis = {0, 2};
        joint.enableLimit = true;
        joint.lowerTranslation = joint.lowerAngle = c.lower;
        joint.upperTranslation = joint.upperAngle = c.upper;
        joint.enableMotor = c.motorSpeed != 0;
        joint.motorSpeed = c.motorSpeed;
        joint.maxMotorForce = joint.maxMotorTorque = 1000;
        Playback run(std::move(scene));
        run.playTo(120);
        EXPECT_NEAR(run.body(1).GetPosition().x, c.x, 0.01f);
        EXPECT_NEAR(run.body(1).GetPosition().y, c.y, 0.01f);
        EXPECT_NEAR(run.body(1).GetAngle(), c.angle, 0.04f) << "the library leaves 2 degrees of slop";
    }
}

TEST(Joints, aSpringComesToItsLength) {
    Scene scene = quietScene();
    addBox(scene, {0, 0}, 0.2f, 0.2f);
    addBox(scene, {2, 1}, 0.2f, 0.2f);
    for (BodyRecord& record : scene.bodies) {
        record.density = 25; // 1 kg
    }
    JointRecord& spring = addJoint(scene, JointType::Spring, 0, 1);
    EXPECT_EQ(spring.damping, 0.5f);
    spring.springiness = 0.1f;
    spring.desiredLength = 1.5f;
    Playback run(std::move(scene));
    EXPECT_EQ(run.scene.joints[0].joint, nullptr);
    run.playTo(2000);
    EXPECT_NEAR(b2Distance(run.body(0).GetPosition(), run.body(1).GetPosition()), 1.5f, 1e-3f);
}

TEST(Joints, aSpringPullsAndTwistsInTheNextTick) {
    Scene scene = emptyScene(25);
    scene.globals.magnitude = 0;
    addBox(scene, {0, 0}, 1, 1, BodyType::Static);
    addBox(scene, {3, 0}, 1, 1);
    JointRecord& spring = addJoint(scene, JointType::Spring, 0, 1);
    spring.anchorA = {0, 4}; // from (0, 4) to (3, 0): a length of 5 along (0.6, -0.8)
    spring.springiness = 0.01f;
    spring.desiredLength = 4;
    Playback run(std::move(scene));
    run.playTo(1);
    EXPECT_EQ(run.body(1).GetLinearVelocity(), b2Vec2(0, 0)) << "the force waits for the next tick";
    run.playTo(2);
    // -200 * 0.01 * (5 - 4) = -2 N along (0.6, -0.8), for the first of two steps of 0.02 s: v = 0.02 F / 1 kg. It acts
    // at the other body's anchor, at (-3, 4) from the centre, on its line through the centre: no twist.
    EXPECT_NEAR(run.body(1).GetLinearVelocity().x, -0.024f, 1e-6f);
    EXPECT_NEAR(run.body(1).GetLinearVelocity().y, 0.032f, 1e-6f);
    EXPECT_NEAR(run.body(1).GetAngularVelocity(), 0.0f, 1e-5f);

    run.scene.joints[0].anchorB = {1, 0}; // (4, 0): now along (1, -1) / sqrt(2), a length of sqrt(32)
    run.clock.playFromStart();
    run.playTo(2);
    // F = -2 (sqrt(32) - 4) (1, -1) / sqrt(2); at (-3, 4) from the centre, the torque is -3 Fy - 4 Fx = F / sqrt(2).
    const float pull = 2 * (std::sqrt(32.0f) - 4) / std::sqrt(2.0f);
    EXPECT_NEAR(run.body(1).GetAngularVelocity(), 0.02f * 6 * pull, 1e-5f) << "1/6 kg m^2";
}

TEST(Joints, sleepersAreNotPulled) {
    Scene scene = quietScene();
    addBox(scene, {0, 0}, 1, 1, BodyType::Dormant);
    addBox(scene, {3, 0}, 1, 1, BodyType::Dormant);
    addBox(scene, {0, 3}, 1, 1, BodyType::Static);
    addJoint(scene, JointType::Spring, 0, 1);
    addJoint(scene, JointType::Spring, 2, 0);
    Playback run(std::move(scene));
    run.playTo(10);
    EXPECT_EQ(run.body(0).GetPosition(), b2Vec2(0, 0));
    run.scene.bodies[1].isDormant = false;
    run.playTo(20);
    EXPECT_GT(run.body(0).GetPosition().x, 0.0f) << "but are if the other body is awake";
}

TEST(Joints, jointsThatNameNoTwoBodiesAreLeftOut) {
    Scene scene = quietScene();
    addBox(scene, {0, 0}, 1, 1);
    addBox(scene, {3, 4}, 1, 1);
    addJoint(scene, JointType::Pivot, 0, 0);
    addJoint(scene, JointType::Piston, -1, 1);
    addJoint(scene, JointType::Spring, 0, 2);
    addJoint(scene, JointType::Distance, 1000000, 1);
    addJoint(scene, JointType::Pivot, 0, 1).collideConnected = false;
    Playback run(std::move(scene));
    run.playTo(3);
    ASSERT_EQ(run.clock.world().GetJointCount(), 1);
    const JointRecord& pivot = run.scene.joints[4];
    ASSERT_NE(pivot.joint, nullptr);
    EXPECT_EQ(run.scene.joints[0].joint, nullptr);
    EXPECT_FALSE(pivot.joint->GetCollideConnected());
    EXPECT_EQ(pivot.joint->GetUserData().pointer, reinterpret_cast<std::uintptr_t>(pivot.userData.get()));
    EXPECT_EQ(pivot.userData->centerB, b2Vec2(3, 4));
    EXPECT_FLOAT_EQ(pivot.userData->directionB, std::atan2(4.0f, 3.0f));
    ASSERT_EQ(run.scene.bodies[1].connectedJoints.size(), 1u);
    EXPECT_EQ(run.scene.bodies[1].connectedJoints[0].joint, pivot.joint);
}

} // namespace
} // namespace jostle
