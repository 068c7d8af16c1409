#include "persistence/overrides.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace jostle {
namespace {

// Layers: a ball, a null, a layer whose name is a number, two with one name, one with dots in its name.
const std::array layers{NamedLayer{"ball", ""}, NamedLayer{"carrier", "a null"}, NamedLayer{"1", ""},
                        NamedLayer{"twin", ""}, NamedLayer{"twin", ""},          NamedLayer{"a.b=c", ""}};

Scene sceneOfLayers() {
    Scene scene;
    for (int i = 0; i < static_cast<int>(layers.size()); ++i) {
        if (layers[static_cast<std::size_t>(i)].whyNoBody.empty()) {
            scene.bodies.emplace_back();
            scene.layerIndices.push_back(i);
        }
    }
    return scene;
}

std::optional<std::string> apply(const char* text, Scene& scene) {
    const std::optional<SettingOverride> setting = parseOverride(text);
    return setting ? applyOverride(*setting, scene, layers) : "no KEY=VALUE";
}

TEST(Overrides, AreWrittenWhereTheyPoint) {
    // Records: 0 ball (layer 1), 1 "1" (layer 3), 2 and 3 twin (layers 4, 5), 4 "a.b=c" (layer 6).
    const std::pair<const char*, bool (*)(const Scene&)> cases[] = {
        {"ball.type=Static", [](const Scene& s) { return s.bodies[0].type == BodyType::Static; }},
        {"ball.type=dead", [](const Scene& s) { return s.bodies[0].type == BodyType::Dead; }},
        {"ball.type=1", [](const Scene& s) { return s.bodies[0].type == BodyType::Kinematic && s.hasKinematic; }},
        {"ball.TYPE=4", [](const Scene& s) { return s.hasAEmatic && !s.hasDormant; }},
        {"ball.magnetismType=repels", [](const Scene& s) { return s.hasMagnets && s.bodies[0].magnetismType == 2; }},
        {"1.density=2", [](const Scene& s) { return s.bodies[1].density == 2 && s.bodies[0].density == 1; }},
        {"3.density=2", [](const Scene& s) { return s.bodies[1].density == 2; }},
        {"twin.friction=0", [](const Scene& s) { return s.bodies[2].friction == 0 && s.bodies[3].friction == 0; }},
        {"*.restitution=0.8",
         [](const Scene& s) { return s.bodies[0].restitution == 0.8f && s.bodies[4].restitution == 0.8f; }},
        {"a.b=c.density=2", [](const Scene& s) { return s.bodies[4].density == 2; }},
        {"ball.fixedRotation=true", [](const Scene& s) { return s.bodies[0].fixedRotation; }},
        {"ball.positionY=-3.5", [](const Scene& s) { return s.bodies[0].position.y == -3.5f; }},
        {"solver.stepsPerFrame=10", [](const Scene& s) { return s.globals.stepsPerFrame == 10; }},
        {"solver.timeDivider=+2", [](const Scene& s) { return s.globals.timeDivider == 2; }},
        {"gravity.magnitude=-1e1", [](const Scene& s) { return s.globals.magnitude == -10; }},
        {"gravity.takeValueFrom=on", [](const Scene& s) { return s.globals.takeValueFrom; }},
        {"gravity.layerIndex=5", [](const Scene& s) { return s.globals.layerIndex == 5; }},
    };
    for (const auto& [text, holds] : cases) {
        Scene scene = sceneOfLayers();
        EXPECT_EQ(apply(text, scene), std::nullopt) << text;
        EXPECT_TRUE(holds(scene)) << text;
    }
}

TEST(Overrides, RefusalsSayWhatWouldBeRight) {
    // With some words of the message.
    constexpr std::pair<const char*, const char*> cases[] = {
        {"ball", "KEY=VALUE"},
        {"type=Static", "KEY=VALUE"},
        {".type=Static", "KEY=VALUE"},
        {"ball.=1", "KEY=VALUE"},
        {"bal.type=Static", "did you mean \"ball\""},
        {"gravty.magnitude=1", "did you mean \"gravity\""},
        {"99.density=1", "its number from 1 to 6"},
        {"0.density=1", "its number from 1 to 6"},
        {"ball.densty=1", "did you mean \"density\""},
        {"ball.zzzzzzzz=1", "there are type, density"},
        {"carrier.type=Static", "is no body: it is a null"},
        {"ball.type=Statik", "Static, Kinematic, Dynamic, Dormant, AEmatic, Dead, or 0 to 5"},
        {"ball.type=6", "0 to 5"},
        {"ball.density=nan", "a number from 0.001 to 16777200"},
        {"ball.density=1e400", "a number from"},
        {"ball.density=", "a number from"},
        {"solver.stepsPerFrame=2.5", "a whole number from 1 to 10"},
        {"solver.stepsPerFrame=11", "a whole number from 1 to 10"},
        {"solver.timeDivider=0", "0.01"},
        {"ball.fixedRotation=2", "0 or 1"},
        {"gravity.layerIndex=6", "there are 6"},
    };
    for (const auto& [text, says] : cases) {
        SCOPED_TRACE(text);
        Scene scene = sceneOfLayers();
        const std::optional<std::string> message = apply(text, scene);
        ASSERT_TRUE(message.has_value());
        EXPECT_NE(message->find(says), std::string::npos) << *message;
        EXPECT_EQ(scene.bodies[0].type, BodyType::Dynamic);
        EXPECT_EQ(scene.bodies[0].density, 1);
        EXPECT_EQ(scene.globals.stepsPerFrame, 2);
        EXPECT_EQ(scene.globals.layerIndex, 0);
    }
}

TEST(Overrides, OfAllBodiesAreCheckedWhenThereAreNone) {
    Scene empty;
    EXPECT_EQ(applyOverride({"*", "density", "2"}, empty, {}), std::nullopt);
    EXPECT_NE(applyOverride({"*", "density", "x"}, empty, {}), std::nullopt);
}

} // namespace
} // namespace jostle
