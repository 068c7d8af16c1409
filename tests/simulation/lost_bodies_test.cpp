#include "simulation/lost_bodies.h"

#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace jostle {
namespace {

// Each piston wants the box 100 km along its own axis, where the other one does not let it go, and both pull at a lever
// of 10 km.
TEST(LostBodies, contradictingPistonsFreezeTheirBodyUntilARestart) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1, BodyType::Static);
    addBox(scene, {3, 0}, 1, 1);
    addBox(scene, {9, 0}, 1, 1); // has nothing to do with it
    for (const b2Vec2 axis : {b2Vec2(1, 0), b2Vec2(std::cos(0.1f), std::sin(0.1f))}) {
        JointRecord& piston = addJoint(scene, JointType::Piston, 0, 1);
        piston.axis = axis;
        piston.anchor = {3, 1.0e4f};
        piston.enableLimit = true;
        piston.lowerTranslation = piston.upperTranslation = 1.0e5f;
    }
    Playback run(std::move(scene));
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(run.body(1).IsEnabled()) << "a restart gives it back";
        run.playTo(20);
        EXPECT_FALSE(run.body(1).IsEnabled());
        EXPECT_LT(run.body(1).GetPosition().Length(), 1.0e8f) << "false for what is no number";
        EXPECT_TRUE(run.body(1).GetLinearVelocity().IsValid());
        const b2Vec2 frozen = run.body(1).GetPosition();
        run.playTo(25);
        EXPECT_EQ(run.body(1).GetPosition(), frozen);
        EXPECT_NEAR(run.body(2).GetPosition().y, 5.1f, 1e-3f) << "g h^2 n (n + 1) / 2, of 50 steps of 0.02 s";
        run.clock.restart();
    }
}

} // namespace
} // namespace jostle
