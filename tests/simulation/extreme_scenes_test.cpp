// Whatever finite numbers the records hold, nothing in the world may become infinite or no number at all.

#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

#include <box2d/b2_body.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace jostle {
namespace {

/// Draws the values of records: plain ones, those at the ends of the panels' ranges, and those beyond.
class Extremes {
public:
    explicit Extremes(unsigned seed) : engine_(seed) {}

    int upTo(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
    bool coin() { return upTo(2) == 0; }

    float number() {
        constexpr float huge = std::numeric_limits<float>::max();
        constexpr float values[] = {0.0f, 1.0f,        0.5f,        2.0f, 100.0f, 1e-3f,    1e-6f,  1e-30f,
                                    1e4f, 16777200.0f, 16777200.0f, huge, -1.0f,  -1000.0f, -1e-4f, -16777200.0f};
        return values[upTo(16)];
    }
    /// Metres; mostly near the middle, so that bodies meet.
    b2Vec2 place() { return upTo(6) == 0 ? b2Vec2(number(), number()) : b2Vec2(coordinate(), coordinate()); }
    float coordinate() { return static_cast<float>(upTo(400) - 200) / 100.0f; }
    /// Metres; from a tenth of a millimetre to a kilometre.
    float size() { return std::pow(10.0f, static_cast<float>(upTo(29)) / 4.0f - 4.0f); }

private:
    std::mt19937 engine_;
};

ShapeDef randomShape(Extremes& draw) {
    const float size = draw.size();
    ShapeDef shape = boxShape(size, draw.coin() ? size : draw.size());
    const b2Vec2 offset = draw.upTo(3) == 0 ? draw.place() : b2Vec2(0, 0);
    for (b2Vec2& v : shape.verts) {
        v += offset;
    }
    const int kind = draw.upTo(4);
    shape.isBox = kind == 0;
    shape.isCircle = kind == 1;
    shape.radius = size;
    shape.closed = kind == 2;
    if (kind == 2) {
        shape.verts.resize(3);
    }
    return shape;
}

void fillBody(Extremes& draw, BodyRecord& record) {
    record.isBox = draw.upTo(4) == 0;
    record.outlines = {{}};
    for (int i = draw.upTo(4); i >= 0; --i) {
        record.outlines[0].push_back(randomShape(draw));
    }
    record.inPoint = draw.upTo(3) == 0 ? draw.upTo(10) : 0;
    record.outPoint = draw.upTo(3) == 0 ? draw.upTo(200) : endlessOutPoint;
    record.aematicAnchor = draw.place();
    for (float* field :
         {&record.angle, &record.linearVelocityMagnitude, &record.linearVelocityDirection, &record.angularVelocity,
          &record.linearDamping, &record.angularDamping, &record.aematicDamping, &record.aematicTension,
          &record.density, &record.friction, &record.restitution, &record.gravityScale, &record.magnetIntensity,
          &record.magnetDistance, &record.openShapeLineWidth}) {
        if (draw.upTo(3) == 0) {
            *field = draw.number();
        }
    }
    record.fixedRotation = draw.upTo(5) == 0;
    record.magnetismType = draw.upTo(3);
}

JointRecord randomJoint(Extremes& draw, int bodies) {
    JointRecord joint = newJoint(static_cast<JointType>(draw.upTo(4)), draw.upTo(bodies + 1) - 1, draw.upTo(bodies));
    joint.anchorA = draw.place();
    joint.anchorB = draw.place();
    joint.anchor = draw.place();
    joint.axis = draw.place();
    joint.collideConnected = draw.coin();
    joint.enableLimit = draw.coin();
    joint.enableMotor = draw.coin();
    for (float* field : {&joint.frequency, &joint.damping, &joint.lowerAngle, &joint.upperAngle, &joint.motorSpeed,
                         &joint.maxMotorTorque, &joint.lowerTranslation, &joint.upperTranslation, &joint.maxMotorForce,
                         &joint.springiness, &joint.desiredLength}) {
        *field = draw.number();
    }
    return joint;
}

/// Layers that jump about, and shrink to nothing.
class WildLayers final : public LayerMotion {
public:
    explicit WildLayers(unsigned seed) : draw_(seed) {}
    int lastKeyframeFrame(int) override { return 50; }
    b2Vec2 velocity(int, double, double) override { return draw_.place(); }
    float angularVelocity(int, double, double) override { return draw_.number(); }
    b2Vec2 pointToComposition(int, b2Vec2 pixels, double) override { return pixels + draw_.place(); }
    b2Vec2 scale(int, double) override { return {draw_.number(), draw_.number()}; }
    b2Vec2 gravity(int, double) override { return draw_.place(); }

private:
    Extremes draw_;
};

Scene randomScene(unsigned seed) {
    Extremes draw(seed);
    Scene scene = emptyScene(25);
    scene.globals.stepsPerFrame = draw.upTo(11);
    scene.globals.magnitude = draw.number();
    scene.globals.direction = draw.number();
    scene.globals.takeValueFrom = draw.upTo(4) == 0;
    scene.globals.timeDivider = draw.coin() ? 1.0 : draw.number();
    scene.globals.tolerance = draw.coin() ? 50.0 : draw.number();
    scene.preferences.kinematicBehavior = static_cast<KinematicBehavior>(draw.upTo(2));
    scene.preferences.dormantBehavior = static_cast<DormantBehavior>(draw.upTo(2));
    const int bodies = 2 + draw.upTo(10);
    for (int i = 0; i < bodies; ++i) {
        fillBody(draw, addBox(scene, draw.place(), 1, 1, static_cast<BodyType>(draw.upTo(6))));
    }
    for (int i = draw.upTo(12); i > 0; --i) {
        scene.joints.push_back(randomJoint(draw, bodies));
    }
    return scene;
}

TEST(ExtremeScenes, stayFinite) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        Scene scene = randomScene(seed);
        WildLayers layers(seed);
        FreePacer pacer;
        SimulationClock clock(scene, layers, pacer);
        clock.playFromStart();
        while (clock.frame() < 200) {
            clock.tick();
            for (const BodyRecord& record : scene.bodies) {
                const b2Body& body = *record.body;
                ASSERT_TRUE(body.GetPosition().IsValid() && b2IsValid(body.GetAngle()) &&
                            body.GetLinearVelocity().IsValid() && b2IsValid(body.GetAngularVelocity()))
                    << "body " << record.number << ", frame " << clock.frame();
            }
        }
    }
}

} // namespace
} // namespace jostle
