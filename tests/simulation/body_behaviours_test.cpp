#include "simulation/body_behaviours.h"

#include "tests/support/expect_near.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <box2d/b2_mouse_joint.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace jostle {
namespace {

/// A layer that moves right at one metre a second and turns at one radian a second up to its last keyframe, and grows
/// by its whole size each second.
class MovingLayer final : public LayerMotion {
public:
    int lastKeyframe = 100000;
    double lastVelocityTime = -1.0;

    int lastKeyframeFrame(int) override { return lastKeyframe; }
    b2Vec2 velocity(int, double simTime, double) override {
        lastVelocityTime = simTime;
        return {1.0f, 0.0f};
    }
    float angularVelocity(int, double, double) override { return 1.0f; }
    b2Vec2 pointToComposition(int, b2Vec2 pixels, double seconds) override {
        return pixels + b2Vec2(100.0f + 100.0f * static_cast<float>(seconds), 0.0f);
    }
    b2Vec2 scale(int, double seconds) override { return {static_cast<float>(std::max(0.0, seconds)), 1.0f}; }
    b2Vec2 gravity(int, double) override { return {100.0f, 0.0f}; }
};

TEST(BodyBehaviours, aDynamicBodyLivesFromInPointToOutPoint) {
    Scene scene = weightlessScene();
    scene.globals.timeDivider = 2; // so that it lives from tick 20 to tick 40, at half a metre a tick
    BodyRecord& record = addBox(scene, {0, 0}, 1, 1);
    record.inPoint = 10;
    record.outPoint = 20;
    record.linearVelocityMagnitude = 25; // a metre a frame
    Playback<MovingLayer> run(std::move(scene));
    // The initial velocity waits for the in-point; ticks 20 to 40 are both included.
    for (const auto& [tick, lives, x] : {std::tuple{20, false, 0.0f}, {21, true, 0.5f}, {50, false, 10.5f}}) {
        run.playTo(tick);
        EXPECT_EQ(run.body().GetType() == b2_dynamicBody && !run.body().GetFixtureList()->IsSensor(), lives);
        EXPECT_NEAR(run.body().GetPosition().x, x, 1e-4f);
    }
}

TEST(BodyBehaviours, aKinematicBodyFollowsAndThenFliesOff) {
    const auto afterLast = KinematicBehavior::DynamicAfterLastKeyframe;
    const std::tuple<const char*, KinematicBehavior, int, int> cases[] = {
        {"while (last keyframe - 1) frames is at least the time", afterLast, 6, 6},
        {"without keyframes it does not follow at all", afterLast, -1, 0},
        {"at its in-point at the latest, by preference", KinematicBehavior::DynamicAtInPoint, 6, 3},
    };
    for (const auto& [name, behavior, lastKeyframe, followed] : cases) {
        SCOPED_TRACE(name);
        Scene scene = weightlessScene();
        scene.preferences.kinematicBehavior = behavior;
        addBox(scene, {0, 0}, 1, 1, BodyType::Kinematic).inPoint = 3;
        Playback<MovingLayer> run(std::move(scene));
        run.layers.lastKeyframe = lastKeyframe;
        run.playTo(followed);
        EXPECT_EQ(run.body().GetType(), b2_kinematicBody);
        EXPECT_NEAR(run.body().GetPosition().x, 0.04 * followed, 1e-5);
        EXPECT_NEAR(run.body().GetAngle(), 0.04 * followed, 1e-5);
        run.playTo(followed + 1);
        EXPECT_EQ(run.body().GetType(), b2_dynamicBody);
        EXPECT_DOUBLE_EQ(run.layers.lastVelocityTime, (followed - 1) * 0.04) << "the speed of one frame back";
        run.playTo(20);
        EXPECT_NEAR(run.body().GetPosition().x, 20 * 0.04f, 1e-4f);

        run.scene.layerIndices.clear();
        run.clock.restart();
        run.playTo(20);
        EXPECT_EQ(run.body().GetPosition().x, 0.0f) << "without a layer there is nothing to follow";
    }
}

TEST(BodyBehaviours, fixturesGrowWithTheLayer) {
    Scene scene = weightlessScene();
    addBox(scene, {0, 0}, 1, 1, BodyType::Kinematic);
    addBody(scene, {0, 0}, {circleShape(1)}, BodyType::Kinematic);
    Playback<MovingLayer> run(std::move(scene));
    // The scale along x is the time. From nothing, taken as a thousandth, to 0.04 on frame 1 is a factor of 40; from
    // there it grows by 10 to frame 10. Circles take it for their radius.
    for (const auto& [frame, factor] : {std::pair{1, 1.0f}, {2, 40.0f}, {11, 400.0f}}) {
        run.playTo(frame);
        EXPECT_NEAR(polygonOf(run.body()).m_vertices[1].x - polygonOf(run.body()).m_vertices[0].x, factor, 1e-2f);
        EXPECT_NEAR(run.body(1).GetFixtureList()->GetShape()->m_radius, factor, 1e-2f);
    }
}

TEST(BodyBehaviours, anAEmaticTargetIsMovedByTheDifferenceOfTwoPasses) {
    Scene scene = weightlessScene();
    addBox(scene, {2, 3}, 1, 1, BodyType::AEmatic).rotationAnimated = true;
    Playback<MovingLayer> run(std::move(scene), 10);
    // Each pass adds a metre, and the first one its time in metres: A = P + 1 + t, and B, which starts from A, is
    // A + 1. Whatever P is, the target is the anchor plus A - B, a metre to the left of it.
    const auto& joint = static_cast<const b2MouseJoint&>(*run.scene.bodies[0].aematicJoint);
    expectNear({joint.GetTarget()}, {{1, 3}});
    EXPECT_LT(run.body().GetPosition().x, 2.0f) << "the spring pulls to the target";
    EXPECT_NEAR(run.body().GetAngularVelocity(), 1.0f, 0.2f);
}

TEST(BodyBehaviours, gravityMayComeFromALayer) {
    Scene scene = emptyScene(25);
    scene.globals.takeValueFrom = true;
    addBox(scene, {0, 0}, 1, 1);
    Playback<MovingLayer> run(std::move(scene), 1);
    EXPECT_NEAR(run.body().GetLinearVelocity().x, 4.0f, 1e-5f) << "100 metres per second squared for a 25th";
}

TEST(BodyBehaviours, aDormantBodyWakesAtATouchOfOneThatIsAwake) {
    for (const auto behavior : {DormantBehavior::UsesGravityScale, DormantBehavior::UsesStatic}) {
        SCOPED_TRACE(static_cast<int>(behavior));
        Scene scene = emptyScene(25);
        scene.preferences.dormantBehavior = behavior;
        addBox(scene, {0, 0}, 1, 1, BodyType::Dormant);
        addBox(scene, {0.9f, 0}, 1, 1, BodyType::Dormant); // overlaps the first
        addBox(scene, {-10, 0}, 1, 1, BodyType::Dormant);
        addBox(scene, {-10, -2}, 1, 1); // falls on the third
        Playback<MovingLayer> run(std::move(scene), 30);
        EXPECT_TRUE(run.scene.bodies[0].isDormant) << "two sleepers do not wake each other";
        EXPECT_TRUE(run.scene.bodies[1].isDormant);
        EXPECT_FALSE(run.scene.bodies[2].isDormant);
        EXPECT_EQ(run.body(2).GetType(), b2_dynamicBody);
        EXPECT_EQ(run.body(2).GetGravityScale(), 1.0f);
        EXPECT_GT(run.body(2).GetPosition().y, 1.0f) << "the woken one falls";
    }
}

TEST(BodyBehaviours, aStaticSleeperWakesWhereAKinematicBodyOverlapsIt) {
    Scene scene = weightlessScene();
    scene.preferences.dormantBehavior = DormantBehavior::UsesStatic;
    addBox(scene, {2, 0}, 1, 1, BodyType::Dormant);
    addBox(scene, {0, 0}, 0.001f, 0.5f, BodyType::Kinematic); // its width in metres is the time: see MovingLayer
    addBox(scene, {2, 9}, 1, 1, BodyType::Dormant);
    Playback<MovingLayer> run(std::move(scene));
    // The layer's growth of 1000 a second makes the blade's right edge stand at t + t / 2: at 1.5 after a second.
    for (const bool awake : {false, true}) {
        run.playTo(awake ? 30 : 20);
        EXPECT_EQ(run.scene.bodies[0].isDormant, !awake);
        EXPECT_EQ(run.body(0).GetType() == b2_dynamicBody, awake);
        EXPECT_TRUE(run.scene.bodies[2].isDormant) << "only the one that is overlapped";
    }
}

/// A magnet at the origin that reaches a metre, and a body of 1 kg to the right of it.
Scene magnetScene(float distance, std::int32_t magnetismType) {
    Scene scene = weightlessScene();
    addBox(scene, {0, 0}, 0.2f, 0.2f, BodyType::Static).magnetismType = magnetismType;
    addBox(scene, {distance, 0}, 0.1f, 0.1f).density = 100;
    return scene;
}

TEST(Magnetism, forceFallsWithTheSquareAndEndsAtTheReach) {
    const auto nothing = [](Scene&) {};
    // The distance, the magnet's type, and newtons to the right; the intensity of 10 is 1 N at 1 m.
    const std::tuple<const char*, float, std::int32_t, float, void (*)(Scene&)> cases[] = {
        {"just in reach", 0.99f, 1, -1 / 0.9801f, nothing},
        {"just out of reach", 1.01f, 1, 0, nothing},
        {"half the distance, four times the force", 0.5f, 1, -4, nothing},
        {"repels", 0.5f, 2, 4, nothing},
        {"a type that is no type", 0.5f, 3, 0, nothing},
        {"no direction where the centres coincide", 0, 1, 0, nothing},
        {"does not accept it", 0.5f, 1, 0, [](Scene& s) { s.bodies[1].acceptMagnetism = false; }},
        {"the magnet is dead", 0.5f, 1, 0, [](Scene& s) { s.bodies[0].type = BodyType::Dead; }},
        {"the magnet is out of time", 0.5f, 1, 0, [](Scene& s) { s.bodies[0].inPoint = 5; }},
        {"is the only magnet itself", 0.5f, 0, 0, [](Scene& s) { s.bodies[1].magnetismType = 1; }},
    };
    for (const auto& [name, distance, type, force, change] : cases) {
        SCOPED_TRACE(name);
        Scene scene = magnetScene(distance, type);
        change(scene);
        Playback run(std::move(scene), 1);
        expectNear({run.body(1).GetLinearVelocity()}, {{0.02f * force, 0}}, 1e-6f); // one of two steps of 0.02 s
    }
}

TEST(Magnetism, aMagnetInReachWakesASleeper) {
    for (const float distance : {0.9f, 1.1f}) {
        Scene scene = magnetScene(distance, 2);
        scene.bodies[1].type = BodyType::Dormant;
        Playback run(std::move(scene));
        run.clock.tick();
        EXPECT_TRUE(run.scene.bodies[1].isDormant) << "not while the clock stands still";
        run.playTo(1);
        EXPECT_EQ(run.scene.bodies[1].isDormant, distance > 1);
        EXPECT_EQ(run.body(1).GetGravityScale(), distance > 1 ? 0.0f : 1.0f);
    }
}

} // namespace
} // namespace jostle
