// Whatever finite numbers the records hold, nothing in the world may become infinite or no number at all.

#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace jostle {
namespace {

/// Draws the values of records: plain ones, those at the ends of the panels' ranges, and those beyond. As layers it
/// jumps about and shrinks to nothing.
class Extremes final : public LayerMotion {
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

    int lastKeyframeFrame(int) override { return 50; }
    b2Vec2 velocity(int, double, double) override { return place(); }
    float angularVelocity(int, double, double) override { return number(); }
    b2Vec2 pointToComposition(int, b2Vec2 pixels, double) override { return pixels + place(); }
    b2Vec2 scale(int, double) override { return {number(), number()}; }
    b2Vec2 gravity(int, double) override { return place(); }

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
    shape.verts.resize(shape.closed ? 3 : 4);
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
        *field = draw.upTo(3) == 0 ? draw.number() : *field;
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
        Playback<Extremes> run(randomScene(seed), 0, seed);
        for (int frame = 1; frame <= 200; ++frame) {
            run.playTo(frame);
            for (const BodyRecord& record : run.scene.bodies) {
                const b2Body& body = *record.body;
                ASSERT_TRUE(body.GetPosition().IsValid() && b2IsValid(body.GetAngle()) &&
                            body.GetLinearVelocity().IsValid() && b2IsValid(body.GetAngularVelocity()))
                    << "body " << record.number << ", frame " << frame;
            }
        }
    }
}

// Each piston wants the box 100 km along its own axis, where the other one does not let it go, and both pull at a lever
// of 10 km.
TEST(ExtremeScenes, contradictingPistonsFreezeTheirBodyUntilARestart) {
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
