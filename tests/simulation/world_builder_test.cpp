#include "simulation/world_builder.h"

#include "simulation/body_fixtures.h"
#include "simulation/collision_shape.h"
#include "tests/support/expect_near.h"
#include "tests/support/playback.h"
#include "tests/support/scenes.h"

#include <box2d/b2_mouse_joint.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace jostle {
namespace {

TEST(WorldBuilder, eachTypeBecomesItsOwnWithSlopAndSkinOfTheTolerance) {
    const auto byGravity = DormantBehavior::UsesGravityScale;
    const auto byStatic = DormantBehavior::UsesStatic;
    // The record's type, its dormancy by preference, its in-point; the body's type, whether the record's velocity is in
    // force, the scale of gravity, and whether the body is dormant.
    const std::tuple<const char*, BodyType, DormantBehavior, int, b2BodyType, bool, float, bool> cases[] = {
        {"static", BodyType::Static, byGravity, 0, b2_staticBody, false, 0.5f, false},
        {"kinematic", BodyType::Kinematic, byGravity, 0, b2_kinematicBody, true, 0.5f, false},
        {"dynamic", BodyType::Dynamic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dynamic before its in-point is static", BodyType::Dynamic, byGravity, 10, b2_staticBody, false, 0.5f, false},
        {"dormant hangs without gravity, but moves", BodyType::Dormant, byGravity, 0, b2_dynamicBody, true, 0, true},
        {"dormant by preference is static", BodyType::Dormant, byStatic, 0, b2_staticBody, false, 1, true},
        {"AEmatic is dynamic", BodyType::AEmatic, byGravity, 0, b2_dynamicBody, true, 0.5f, false},
        {"dead is static", BodyType::Dead, byGravity, 0, b2_staticBody, false, 0.5f, false},
    };
    for (const auto& [name, type, dormantBehavior, inPoint, worldType, moves, gravityScale, isDormant] : cases) {
        SCOPED_TRACE(name);
        Scene scene = emptyScene(25);
        scene.preferences.dormantBehavior = dormantBehavior;
        scene.globals.tolerance = 100; // ten thousand times the slop; the skin is twice as thick
        BodyRecord& added = addBox(scene, {1, 2}, 2, 1, type);
        added.inPoint = inPoint;
        added.gravityScale = 0.5f;
        added.friction = 0.3f;
        added.restitution = 0.7f;
        added.linearVelocityMagnitude = 3;
        added.linearVelocityDirection = 90;
        added.angularVelocity = 4;
        const Playback built(std::move(scene));
        const BodyRecord& record = built.scene.bodies[0];
        const b2Body& body = *record.body;
        EXPECT_FLOAT_EQ(b2_linearSlop, 0.01f);
        EXPECT_FLOAT_EQ(polygonOf(body).m_radius, 0.02f);
        EXPECT_EQ(body.GetType(), worldType);
        EXPECT_NEAR(body.GetLinearVelocity().y, moves ? 3.0f : 0.0f, 1e-6f);
        EXPECT_EQ(body.GetAngularVelocity(), moves ? 4.0f : 0.0f);
        EXPECT_EQ(body.GetGravityScale(), gravityScale);
        EXPECT_EQ(body.GetFixtureList()->GetFriction(), 0.3f);
        EXPECT_EQ(body.GetFixtureList()->GetRestitution(), 0.7f);
        EXPECT_EQ(record.isDormant, isDormant);
        EXPECT_EQ(record.userData->outOfTime, type == BodyType::Dead || inPoint > 0);
    }
}

TEST(WorldBuilder, bodiesPointBackAtTheirRecordsAndFollowersHangOnSprings) {
    Scene scene = emptyScene(25);
    addBox(scene, {0, 0}, 1, 1);
    BodyRecord& record = addBox(scene, {1, 2}, 2, 1, BodyType::AEmatic);
    record.aematicAnchor = {0.5f, 0};
    record.aematicTension = 2;
    record.aematicDamping = 0.25f;
    Playback built(std::move(scene));
    int index = 1; // in reverse, with the ground body last
    for (b2Body* body = built.clock.world().GetBodyList(); body; body = body->GetNext()) {
        EXPECT_EQ(built.scene.findBodyRecord(body), index--);
    }
    EXPECT_EQ(index, -2);
    const auto pointer = built.body(1).GetFixtureList()->GetUserData().pointer;
    EXPECT_EQ(reinterpret_cast<const BodyUserData*>(pointer)->bodyIndex, 1);
    const Scene copy = built.scene;
    EXPECT_NE(copy.bodies[0].userData.get(), built.scene.bodies[0].userData.get()) << "a snapshot owns its own";
    const auto& joint = static_cast<const b2MouseJoint&>(*built.scene.bodies[1].aematicJoint);
    EXPECT_EQ(joint.GetTarget(), b2Vec2(1.5f, 2));
    EXPECT_EQ(joint.GetMaxForce(), 2000.0f);
    // m = 2 kg, omega = 2 pi f = 12.566371: k = m omega^2, d = 2 m zeta omega.
    EXPECT_NEAR(joint.GetStiffness(), 315.8273f, 1e-3f);
    EXPECT_NEAR(joint.GetDamping(), 12.566371f, 1e-4f);
}

/// A scene of one dynamic body of some pieces.
Scene sceneOf(std::vector<ShapeDef> pieces) {
    Scene scene = emptyScene(25);
    addBody(scene, {0, 0}, std::move(pieces));
    return scene;
}

const ShapeDef triangle = outlineShape({{0, 0}, {1, 0}, {0, 1}}, true);
const ShapeDef path = outlineShape({{1, 0}, {3, 0}, {3, 1}}, false);

TEST(BodyFixtures, whichPiecesBecomeFixtures) {
    const std::tuple<const char*, ShapeDef, int> cases[] = {
        {"a circle of no size", circleShape(0), 0},
        {"a box above the least area", boxShape(0.02f, 0.006f), 1},
        {"a box at 0.0001 square metres and below", boxShape(0.01f, 0.0099f), 0},
        {"a triangle of 0.000008 square metres", outlineShape({{0, 0}, {0.004f, 0}, {0, 0.004f}}, true), 0},
        {"a path has a box a segment", path, 2},
        {"a repeated point of a path is no segment", outlineShape({{0, 0}, {0, 0}, {1, 0}}, false), 1},
        {"a path of one point", outlineShape({{0, 0}}, false), 0},
        {"nothing", outlineShape({}, false), 0},
    };
    for (const auto& [name, piece, fixtures] : cases) {
        SCOPED_TRACE(name);
        const Playback built(sceneOf({piece}));
        EXPECT_EQ(built.clock.world().GetProxyCount(), fixtures);
        EXPECT_GT(built.body().GetMass(), 0.0f) << "a body without fixtures falls all the same";
    }
}

TEST(BodyFixtures, aPathIsAStripOfItsWidthAboutItsOrigin) {
    const Playback built(sceneOf({path}));
    // Fixtures are listed last first: the segment from (1, 0) to (3, 0), 0.015 wide, is the second.
    const b2Fixture& fixture = *built.body().GetFixtureList()->GetNext();
    EXPECT_NEAR(fixture.GetAABB(0).lowerBound.y, -0.0075f - 0.01f, 1e-5f) << "half the width, and the skin";
    EXPECT_NEAR(fixture.GetAABB(0).upperBound.y, 0.0075f + 0.01f, 1e-5f);
    b2MassData first, second;
    fixture.GetMassData(&first);
    built.body().GetFixtureList()->GetMassData(&second);
    EXPECT_NEAR(built.body().GetMass(), 0.015f * 3, 1e-6f);
    EXPECT_EQ(built.body().GetLocalCenter(), b2Vec2(0, 0));
    EXPECT_FLOAT_EQ(built.body().GetInertia(), first.I + second.I);

    // Far from the origin single precision cannot tell the inertia about the true centre, but that about the origin.
    const Playback farAway(sceneOf({outlineShape({{900, 0}, {900.01f, 0}}, false)}));
    EXPECT_GT(farAway.body().GetInertia(), 0.0f) << "turns about its origin";
    EXPECT_FALSE(farAway.body().IsFixedRotation());

    const Playback withTriangle(sceneOf({path, triangle}));
    EXPECT_GT(withTriangle.body().GetLocalCenter().x, 0.3f) << "a piece after the path gives the true centre";
}

TEST(BodyFixtures, massEqualsTheLibrarysOwn) {
    ShapeDef other = boxShape(0.5f, 3);
    ShapeDef circle = circleShape(0.5f);
    for (std::size_t i = 0; i < 4; ++i) {
        other.verts[i] += {2, 1};
        circle.verts[i] += {-1, 2}; // the centre is the mean of these
    }
    Scene scene = sceneOf({boxShape(1, 1), other, circle});
    scene.bodies[0].density = 2.5f;
    const Playback built(std::move(scene));
    b2Body& body = built.body();
    const float mass = body.GetMass();
    const float inertia = body.GetInertia();
    const b2Vec2 center = body.GetLocalCenter();
    body.ResetMassData();
    EXPECT_FLOAT_EQ(mass, body.GetMass());
    EXPECT_FLOAT_EQ(mass, 2.5f * (1 + 1.5f + 0.25f * b2_pi));
    EXPECT_FLOAT_EQ(inertia, body.GetInertia());
    expectNear({center}, {body.GetLocalCenter()}, 1e-6f);
}

TEST(BodyFixtures, moreThan75TrianglesAreADenseMesh) {
    for (const std::size_t count : {75u, 76u}) {
        std::vector<ShapeDef> pieces(count, triangle);
        pieces.push_back(boxShape(1, 1));
        EXPECT_EQ(Playback(sceneOf(pieces)).scene.bodies[0].isDenseMesh, count > 75);
    }
}

std::vector<b2Vec2> verticesOf(const b2PolygonShape& polygon) {
    return {polygon.m_vertices, polygon.m_vertices + polygon.m_count};
}

TEST(CollisionShape, keepsVerticesAndPointsNormalsOutwards) {
    // The last is so narrow that the library would weld it at its usual slop.
    for (const float width : {2.0f, 0.001f}) {
        const std::vector<b2Vec2> square{{0, 0}, {width, 0}, {width, 2}, {0, 2}};
        for (const auto& vertices : {square, std::vector<b2Vec2>(square.rbegin(), square.rend())}) {
            b2PolygonShape polygon;
            ASSERT_TRUE(fillPolygon(vertices, polygon));
            EXPECT_EQ(verticesOf(polygon), square) << "either way round";
            expectNear({polygon.m_normals, polygon.m_normals + 4}, {{0, -1}, {1, 0}, {0, 1}, {-1, 0}}, 0);
            expectNear({polygon.m_centroid}, {{width / 2, 1}}, 1e-6f);
        }
    }
}

TEST(CollisionShape, refusesWhatTheLibraryCannotTake) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::pair<const char*, std::vector<b2Vec2>> cases[] = {
        {"two vertices", {{0, 0}, {1, 0}}},
        {"nine vertices", {{0, 0}, {1, 0}, {2, 1}, {3, 2}, {3, 3}, {2, 4}, {1, 4}, {0, 3}, {-1, 2}}},
        {"a repeated vertex", {{0, 0}, {1, 0}, {1, 0}, {0, 1}}},
        {"all on a line", {{0, 0}, {1, 1}, {2, 2}}},
        {"area below the float epsilon", {{0, 0}, {0.0002f, 0}, {0, 0.0002f}}},
        {"not a number", {{0, 0}, {nan, 0}, {0, 1}}},
        {"infinitely far", {{0, 0}, {std::numeric_limits<float>::infinity(), 0}, {0, 1}}},
        {"too far for masses to be worked out", {{0, 0}, {1.0e9f, 0}, {0, 1}}},
    };
    for (const auto& [name, vertices] : cases) {
        SCOPED_TRACE(name);
        b2PolygonShape polygon;
        EXPECT_FALSE(fillPolygon(vertices, polygon));
        EXPECT_EQ(polygon.m_count, 0);
    }
}

TEST(CollisionShape, scalesAboutAPivotAndKeepsNormalsSquare) {
    const float third = 1.0f / 3.0f;
    const b2Vec2 slant = {3.0f / std::sqrt(13.0f), 2.0f / std::sqrt(13.0f)};
    const b2Vec2 diagonal = {-std::sqrt(0.5f), std::sqrt(0.5f)};
    const std::tuple<b2Vec2, std::vector<b2Vec2>, std::vector<b2Vec2>, b2Vec2> cases[] = {
        // x' = 1 + (x - 1) * 2, y' = 3 y; the long side then runs along (-2, 3), and (3, 2) stands square on it.
        {{2, 3}, {{-1, 0}, {1, 0}, {-1, 3}}, {{0, -1}, slant, {-1, 0}}, {-third, 1}},
        // x' = 2 - x turns the triangle over; the library wants it the other way round then.
        {{-1, 1}, {{2, 1}, {1, 0}, {2, 0}}, {diagonal, {0, -1}, {1, 0}}, {5 * third, third}},
    };
    for (const auto& [ratio, vertices, normals, centroid] : cases) {
        SCOPED_TRACE(ratio.x);
        b2PolygonShape polygon;
        ASSERT_TRUE(fillPolygon(triangle.verts, polygon));
        scaleShape(polygon, {1, 0}, ratio.x, ratio.y);
        EXPECT_EQ(verticesOf(polygon), vertices);
        expectNear({polygon.m_normals, polygon.m_normals + 3}, normals, 1e-6f);
        expectNear({polygon.m_centroid}, {centroid}, 1e-6f);
    }
    b2CircleShape circle;
    ASSERT_TRUE(fillCircle({1, 0}, 2, circle));
    scaleShape(circle, {0, 0}, -1.5f, 1.0f);
    EXPECT_EQ(circle.m_radius, 3.0f);
}

} // namespace
} // namespace jostle
