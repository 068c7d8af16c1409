#pragma once

#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

namespace jostle::test {

/// A scene with a body in each state and a joint of each kind, none of which has moved yet, and its clock.
class Gallery {
public:
    Gallery() {
        scene.compWidth = 1280;
        scene.compHeight = 720;
        addStates();
        addJoints();
        clock.restart();
        clock.tick();
    }

    Scene scene = emptyScene(25);
    StillLayers layers;
    FreePacer pacer;
    SimulationClock clock{scene, layers, pacer};

    enum Body : std::size_t {
        Live,
        Selected,
        Static,
        Kinematic,
        Dormant,
        AEmatic,
        Dead,
        Later,
        Attracts,
        Repels,
        Ball,
        Star,
        firstJointed
    };

private:
    static void paint(BodyRecord& body, std::size_t index) {
        // Eight colours that stay apart for colour-blind eyes, by M. Okabe and K. Ito.
        constexpr std::array<Rgb, 8> colors{
            Rgb{0.90f, 0.62f, 0.00f}, Rgb{0.34f, 0.71f, 0.91f}, Rgb{0.00f, 0.62f, 0.45f}, Rgb{0.94f, 0.89f, 0.26f},
            Rgb{0.00f, 0.45f, 0.70f}, Rgb{0.84f, 0.37f, 0.00f}, Rgb{0.80f, 0.47f, 0.65f}, Rgb{0.60f, 0.60f, 0.60f}};
        body.userData->color = colors.at(index % colors.size());
    }

    /// A star of five rays as a fan of triangles about its middle.
    static std::vector<ShapeDef> star(float radius) {
        std::vector<b2Vec2> rim;
        for (int i = 0; i < 10; ++i) {
            const float angle = b2_pi * (static_cast<float>(i) / 5.0f - 0.5f);
            const float reach = i % 2 == 0 ? radius : 0.45f * radius;
            rim.push_back({reach * std::cos(angle), reach * std::sin(angle)});
        }
        std::vector<ShapeDef> triangles;
        for (std::size_t i = 0; i < rim.size(); ++i) {
            triangles.push_back(outlineShape({{0, 0}, rim[i], rim[(i + 1) % rim.size()]}, true));
        }
        return triangles;
    }

    BodyRecord& box(float x, float y, float width, float height, BodyType type) {
        BodyRecord& body = addBox(scene, {x, y}, width, height, type);
        paint(body, scene.bodies.size() - 1);
        return body;
    }

    void addStates() {
        box(-5.6f, -2.4f, 0.9f, 0.9f, BodyType::Dynamic).angle = 0.3f;
        box(-4.0f, -2.4f, 0.9f, 0.9f, BodyType::Dynamic).userData->selected = true;
        box(-2.4f, -2.4f, 1.0f, 0.5f, BodyType::Static);
        box(-0.8f, -2.4f, 0.9f, 0.9f, BodyType::Kinematic);
        box(0.8f, -2.4f, 0.9f, 0.9f, BodyType::Dormant).angle = 0.4f;
        box(2.4f, -2.4f, 0.9f, 0.9f, BodyType::AEmatic).aematicAnchor = {0.3f, -0.3f};
        box(4.0f, -2.4f, 0.9f, 0.9f, BodyType::Dead);
        box(5.5f, -2.4f, 0.9f, 0.9f, BodyType::Dynamic).inPoint = 10;
        for (const int magnetism : {1, 2}) {
            BodyRecord& magnet = box(magnetism == 1 ? -5.2f : -2.6f, -0.2f, 0.6f, 0.6f, BodyType::Dynamic);
            magnet.magnetismType = magnetism;
        }
        BodyRecord& ball = addBody(scene, {-0.4f, -0.2f}, {circleShape(0.6f)});
        ball.angle = 0.7f;
        paint(ball, 1);
        BodyRecord& mesh = addBody(scene, {1.6f, -0.2f}, star(0.8f), BodyType::Dormant);
        paint(mesh, 3);
    }

    void addJoints() {
        for (int i = 0; i < 8; ++i) {
            const float x = -5.4f + 1.55f * static_cast<float>(i);
            const auto a = scene.bodyCount();
            box(x, 1.5f, 0.6f, 0.4f, i % 2 == 0 ? BodyType::Static : BodyType::Dynamic);
            box(x + 0.5f, 2.9f, 0.7f, 0.5f, BodyType::Dynamic);
            JointRecord& joint = addJoint(scene, static_cast<JointType>(i / 2), a, a + 1);
            joint.anchor = {x, 2.1f};
            joint.axis = {0.5f, 1.4f};
            joint.enableLimit = i % 2 == 1;
            joint.enableMotor = i % 2 == 1;
            joint.motorSpeed = 2.0f;
            joint.lowerAngle = -30.0f;
            joint.upperAngle = 45.0f;
            joint.lowerTranslation = -0.3f;
            joint.upperTranslation = 0.3f;
            joint.frequency = i == 1 ? 2.0f : 0.0f;
            joint.selected = i == 7;
        }
    }
};

} // namespace jostle::test
