#include "simulation/body_fixtures.h"

#include "simulation/collision_shape.h"
#include "simulation/numbers.h"

#include <box2d/b2_fixture.h>

#include <array>
#include <cmath>

namespace jostle {

namespace {

constexpr float leastDensity = 0.001f;        // the panel's least; without any, a body would have no mass
constexpr float leastBoxArea = 0.0001f;       // square metres
constexpr float leastTriangleArea = 0.00001f; // square metres
constexpr int denseMeshLimit = 75;            // triangles
// Kilograms times square metres. A body of one pixel at the least density has more.
constexpr float leastInertia = 1.0e-12f;

/// What the pieces of a body leave behind for the steps after them.
struct Pieces {
    int triangles = 0;
    bool endWithPath = false;
};

/// A fixture without its density: the library works out the mass anew for each fixture that has one, which
/// `setMass` does once.
b2FixtureDef fixtureDef(const BodyRecord& record) {
    b2FixtureDef def;
    def.density = 0.0f;
    def.friction = bounded(record.friction, 0.0f); // the library takes roots of it
    def.restitution = bounded(record.restitution);
    def.filter.categoryBits = record.categoryBits;
    def.filter.maskBits = record.maskBits;
    def.userData.pointer = reinterpret_cast<std::uintptr_t>(record.userData.get());
    return def;
}

/// Heron: with s half the sum of the sides, the area is sqrt(s (s-a) (s-b) (s-c)).
float triangleArea(const std::vector<b2Vec2>& v) {
    const float a = b2Distance(v[0], v[1]);
    const float b = b2Distance(v[1], v[2]);
    const float c = b2Distance(v[2], v[0]);
    const float s = 0.5f * (a + b + c);
    return std::sqrt(std::max(0.0f, s * (s - a) * (s - b) * (s - c)));
}

bool isLargeEnough(const ShapeDef& piece) {
    if (piece.isBox) {
        return piece.verts.size() == 4 &&
               b2Distance(piece.verts[0], piece.verts[1]) * b2Distance(piece.verts[1], piece.verts[2]) > leastBoxArea;
    }
    return piece.verts.size() != 3 || triangleArea(piece.verts) > leastTriangleArea;
}

void createFixture(const BodyRecord& record, const b2Shape& shape) {
    b2FixtureDef def = fixtureDef(record);
    def.shape = &shape;
    record.body->CreateFixture(&def);
}

bool createPolygon(const BodyRecord& record, std::span<const b2Vec2> vertices) {
    b2PolygonShape polygon;
    if (!fillPolygon(vertices, polygon)) {
        return false;
    }
    createFixture(record, polygon);
    return true;
}

bool createCircle(const BodyRecord& record, const ShapeDef& piece) {
    if (piece.verts.empty()) {
        return false;
    }
    b2Vec2 sum(0.0f, 0.0f);
    for (const b2Vec2& v : piece.verts) {
        sum += v;
    }
    b2CircleShape circle;
    if (!fillCircle((1.0f / static_cast<float>(piece.verts.size())) * sum, piece.radius, circle)) {
        return false;
    }
    createFixture(record, circle);
    return true;
}

/// A box along each segment, half of it on either side.
void createPath(const BodyRecord& record, const std::vector<b2Vec2>& path) {
    const float width = record.openShapeLineWidth;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        b2Vec2 across = (path[i + 1] - path[i]).Skew(); // (-dy, dx)
        across.Normalize();
        across *= width;
        const b2Vec2 p = path[i] - 0.5f * across;
        const b2Vec2 q = path[i + 1] - 0.5f * across;
        (void)createPolygon(record, std::array{p, q, q + across, p + across});
    }
}

void createPiece(const BodyRecord& record, const ShapeDef& piece, Pieces& made) {
    if (piece.isCircle) {
        made.endWithPath = !createCircle(record, piece) && made.endWithPath;
    } else if (!piece.isBox && !piece.closed) {
        createPath(record, piece.verts);
        made.endWithPath = true;
    } else if (isLargeEnough(piece) && createPolygon(record, piece.verts)) {
        made.endWithPath = false;
        made.triangles += piece.isBox ? 0 : 1;
    }
}

Pieces createPieces(BodyRecord& record) {
    Pieces made;
    for (const std::vector<ShapeDef>& group : record.outlines) {
        for (const ShapeDef& piece : group) {
            createPiece(record, piece, made);
        }
    }
    record.isDenseMesh = made.triangles > denseMeshLimit;
    return made;
}

/// Sets a dynamic body's mass from its shapes, summed in the library's order.
///
/// The library's own sum divides by the area of every shape, which scaling may have flattened since, and by an inertia
/// that is the difference of two sums about the body's origin, which single precision loses where a small shape lies
/// far from it. Flattened shapes weigh nothing here, and a body whose inertia cannot be told is not turned by blows. A
/// body without fixtures weighs 1 kg, so that it falls like any other.
/// @param centerAtOrigin  the body turns about its origin; what it weighs and how hard it is to turn there stays
void setMass(const BodyRecord& record, bool centerAtOrigin) {
    b2MassData sum{0.0f, {0.0f, 0.0f}, 0.0f}; // about the body's origin
    for (b2Fixture* fixture = record.body->GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        fixture->SetDensity(bounded(record.density, leastDensity, settingLimit));
        if (canHaveMass(*fixture->GetShape())) {
            b2MassData one;
            fixture->GetMassData(&one);
            sum.mass += one.mass;
            sum.center += one.mass * one.center;
            sum.I += one.I;
        }
    }
    if (centerAtOrigin || !(sum.mass > 0.0f)) {
        sum.center.SetZero();
    } else {
        sum.center *= 1.0f / sum.mass;
    }
    const float inertia = sum.I - sum.mass * b2Dot(sum.center, sum.center);
    if (!(inertia > std::max(8.0f * b2_epsilon * sum.I, leastInertia))) {
        sum.I = 0.0f; // infinitely hard to turn
    }
    record.body->SetMassData(&sum);
}

} // namespace

void createFixtures(BodyRecord& record) {
    Pieces made;
    if (!record.isBox) {
        made = createPieces(record);
    } else if (!record.outlines.empty() && !record.outlines.front().empty()) {
        (void)createPolygon(record, record.outlines.front().front().verts);
    }
    setMass(record, made.endWithPath);
}

void changeType(const BodyRecord& record, b2BodyType type) {
    // The library works out a mass of its own meanwhile, which must find nothing to divide by.
    for (b2Fixture* fixture = record.body->GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        fixture->SetDensity(0.0f);
    }
    record.body->SetType(type);
    setMass(record, false);
}

} // namespace jostle
