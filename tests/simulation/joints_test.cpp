#include "simulation/joints.h"

#include "tests/support/expect_near.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <box2d/b2_distance_joint.h>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

namespace jostle {
namespace {

/// In fine steps: a static box at the origin and another one elsewhere, with a joint from the first to the second.
Scene jointScene(JointType type, b2Vec2 position, float size = 1, float gravity = 0) {
    Scene scene = emptyScene(60);
    scene.globals.stepsPerFrame = 10;
    scene.globals.magnitude = gravity;
    addBox(scene, {0, 0}, size, size, BodyType::Static);
    addBox(scene, position, size, size);
    addJoint(scene, type, 0, 1);
    return scene;
}

// The rod pulls at half a metre from the centre of a box of 1 kg and 1/6 kg m^2, so that it feels a mass of
// 1 / (1 + 0.5^2 * 6) = 0.4 kg. Its velocities are those of a blow along the rod: w = -0.5 m v / I. In 30.25 seconds it
// comes back 60 times at 2 Hz, the first time after half a second; so often at 1.983 to 2.017 Hz.
TEST(Joints, aDistanceJointOscillatesAtItsFrequency) {
    for (const int inPoint : {0, 10}) { // a body that comes alive later weighs nothing when its joint is made
        SCOPED_TRACE(inPoint);
        Scene scene = jointScene(JointType::Distance, {2, 0});
        scene.bodies[1].linearVelocityMagnitude = 0.02f;
        scene.bodies[1].angularVelocity = -0.06f;
        scene.bodies[1].inPoint = inPoint;
        scene.joints[0].anchorA = scene.joints[0].anchorB = {0, 0.5f};
        scene.joints[0].frequency = 2;
        Playback run(std::move(scene));
        const auto& rod = static_cast<const b2DistanceJoint&>(*run.scene.joints[0].joint);
        EXPECT_EQ(rod.GetLength(), 2.0f) << "starts relaxed";
        int rises = 0;
        for (int frame = 1; frame <= inPoint + 1815; ++frame) {
            const bool wasShort = rod.GetCurrentLength() < 2.0f;
            run.playTo(frame);
            rises += wasShort && rod.GetCurrentLength() >= 2.0f;
        }
        EXPECT_EQ(rises, 60);
    }
}

TEST(Joints, aDistanceJointBelowTheSlopStartsRelaxed) {
    for (const float frequency : {0.0f, 5.0f}) {
        Scene scene = jointScene(JointType::Distance, {2, 0});
        scene.joints[0].anchorA = {1, 0};
        scene.joints[0].anchorB = {-0.999f, 0}; // a millimetre, a fifth of the slop
        scene.joints[0].frequency = frequency;
        Playback run(std::move(scene), 30);
        EXPECT_NEAR(run.body(1).GetPosition().x, 2.0f, 1e-6f);
        EXPECT_EQ(b2_linearSlop, 0.005f) << "and the slop is what it was";
    }
}

TEST(Joints, limitsHold) {
    // The limits, the motor's speed, and where the body ends: its y and its angle.
    const std::tuple<const char*, JointType, float, float, float, float, float> cases[] = {
        // The axis is (0, 2), so that translations are metres downwards.
        {"a piston falls to its upper limit", JointType::Piston, -0.5f, 1, 0, 1, 0},
        {"its motor lifts it to its lower limit", JointType::Piston, -0.5f, 1, 5, -0.5f, 0},
        {"limits the wrong way round", JointType::Piston, 1, -0.5f, 0, 1, 0},
        // Motors turn body A clockwise, and so body B the other way.
        {"a pivot turns to its upper limit, in degrees", JointType::Pivot, -30, 45, -5, 0, 0.7853982f},
        {"and to its lower one", JointType::Pivot, -30, 45, 5, 0, -0.5235988f},
        {"a distance joint without a frequency is rigid", JointType::Distance, 0, 0, 0, 0, 0},
    };
    for (const auto& [name, type, lower, upper, motorSpeed, y, angle] : cases) {
        SCOPED_TRACE(name);
        Scene scene = jointScene(type, {0, 0}, 0.2f, 10);
        scene.bodies[0].position = {0, -5};
        JointRecord& joint = scene.joints[0];
        joint.axis = {0, 2};
        joint.enableLimit = true;
        joint.lowerTranslation = joint.lowerAngle = lower;
        joint.upperTranslation = joint.upperAngle = upper;
        joint.enableMotor = motorSpeed != 0;
        joint.motorSpeed = motorSpeed;
        joint.maxMotorForce = joint.maxMotorTorque = 1000;
        Playback run(std::move(scene), 120);
        expectNear({run.body(1).GetPosition()}, {{0, y}}, 0.01f);
        EXPECT_NEAR(run.body(1).GetAngle(), angle, 0.04f) << "the library leaves 2 degrees of slop";
    }
}

TEST(Joints, aSpringPullsAndTwistsInTheNextTickAndComesToItsLength) {
    Scene scene = weightlessScene();
    addBox(scene, {0, 0}, 1, 1, BodyType::Static);
    addBox(scene, {3, 0}, 1, 1);
    JointRecord& spring = addJoint(scene, JointType::Spring, 0, 1);
    EXPECT_EQ(spring.damping, 0.5f);
    spring.anchorA = {0, 4}; // from (0, 4) to (3, 0): a length of 5 along (0.6, -0.8)
    spring.springiness = 0.01f;
    spring.desiredLength = 4;
    Playback run(std::move(scene));
    EXPECT_EQ(run.scene.joints[0].joint, nullptr);
    run.playTo(1);
    EXPECT_EQ(run.body(1).GetLinearVelocity(), b2Vec2(0, 0)) << "the force waits for the next tick";
    run.playTo(2);
    // -200 * 0.01 * (5 - 4) = -2 N along (0.6, -0.8), for the first of two steps of 0.02 s: v = 0.02 F / 1 kg. It acts
    // at the other body's anchor, at (-3, 4) from the centre, on its line through the centre: no twist.
    expectNear({run.body(1).GetLinearVelocity()}, {{-0.024f, 0.032f}}, 1e-6f);
    EXPECT_NEAR(run.body(1).GetAngularVelocity(), 0.0f, 1e-5f);
    run.playTo(3000);
    EXPECT_NEAR(b2Distance(run.body(1).GetPosition(), {0, 4}), 4.0f, 1e-3f);

    run.scene.joints[0].anchorB = {1, 0}; // (4, 0): now along (1, -1) / sqrt(2), a length of sqrt(32)
    run.clock.playFromStart();
    run.playTo(2);
    // F = -2 (sqrt(32) - 4) (1, -1) / sqrt(2); at (-3, 4) from the centre, the torque is -3 Fy - 4 Fx = F / sqrt(2).
    const float pull = 2 * (std::sqrt(32.0f) - 4) / std::sqrt(2.0f);
    EXPECT_NEAR(run.body(1).GetAngularVelocity(), 0.02f * 6 * pull, 1e-5f) << "1/6 kg m^2";
}

TEST(Joints, sleepersAreNotPulled) {
    Scene scene = jointScene(JointType::Spring, {3, 0});
    scene.bodies[0].type = scene.bodies[1].type = BodyType::Dormant;
    scene.latchType(BodyType::Dormant);
    addBox(scene, {0, 3}, 1, 1, BodyType::Static);
    addJoint(scene, JointType::Spring, 2, 0);
    Playback run(std::move(scene), 10);
    EXPECT_EQ(run.body(0).GetPosition(), b2Vec2(0, 0));
    run.scene.bodies[1].isDormant = false;
    run.playTo(20);
    EXPECT_GT(run.body(0).GetPosition().x, 0.0f) << "but are if the other body is awake";
}

TEST(Joints, jointsThatNameNoTwoBodiesAreLeftOut) {
    Scene scene = jointScene(JointType::Pivot, {3, 4});
    scene.bodies[0].type = BodyType::Dynamic;
    scene.joints[0].collideConnected = false;
    addJoint(scene, JointType::Pivot, 0, 0);
    addJoint(scene, JointType::Piston, -1, 1);
    addJoint(scene, JointType::Spring, 0, 2);
    addJoint(scene, JointType::Distance, 1000000, 1);
    Playback run(std::move(scene), 3);
    ASSERT_EQ(run.clock.world().GetJointCount(), 1);
    EXPECT_EQ(run.scene.joints[1].joint, nullptr);
    const JointRecord& pivot = run.scene.joints[0];
    ASSERT_NE(pivot.joint, nullptr);
    EXPECT_FALSE(pivot.joint->GetCollideConnected());
    EXPECT_EQ(pivot.userData->centerB, b2Vec2(3, 4));
    EXPECT_FLOAT_EQ(pivot.userData->directionB, std::atan2(4.0f, 3.0f));
    ASSERT_EQ(run.scene.bodies[1].connectedJoints.size(), 1u);
    EXPECT_EQ(run.scene.bodies[1].connectedJoints[0].joint, pivot.joint);
}

} // namespace
} // namespace jostle
