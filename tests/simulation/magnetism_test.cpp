#include "simulation/magnetism.h"

#include "tests/support/expect_near.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <tuple>

namespace jostle {
namespace {

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
