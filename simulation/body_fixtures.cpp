#include "simulation/body_fixtures.h"

#include "simulation/collision_shape.h"
#include "simulation/numbers.h"

#include <box2d/b2_fixture.h>

#include <array>
#include <cmath>

namespace jostle {

namespace {

constexpr float leastDensity = 0.001f;
constexpr float greatestDensity = 1.0e5f;
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

/// Mass, its first and its second moment about the body's origin, summed in the library's order.
b2MassData massAboutOrigin(b2Body& body) {
    b2MassData sum{0.0f, {0.0f, 0.0f}, 0.0f};
    for (const b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (fixture->GetDensity() > 0.0f) {
            b2MassData one;
            fixture->GetMassData(&one);
            sum.mass += one.mass;
            sum.center += one.mass * one.center;
            sum.I += one.I;
        }
    }
    return sum;
}

/// Whether single precision can tell the body's inertia about its centre of mass. It is a difference of two sums
/// about the origin, which is lost in rounding where a small shape lies far from the body's origin. Bodies that are no
/// more than specks do not turn either.
bool canTurn(b2Body& body) {
    b2MassData sum = massAboutOrigin(body);
    if (!(sum.mass > 0.0f)) {
        return true;
    }
    sum.center *= 1.0f / sum.mass;
    return sum.I - sum.mass * b2Dot(sum.center, sum.center) > std::max(8.0f * b2_epsilon * sum.I, leastInertia);
}

/// Before the library works out a body's mass: what it could not divide by is taken out of its sums.
void prepareMass(b2Body& body) {
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (!canHaveMass(*fixture->GetShape())) {
            fixture->SetDensity(0.0f);
        }
    }
    if (!canTurn(body)) {
        body.SetFixedRotation(true);
    }
}

/// What a body without fixtures weighs; the library would leave it without mass, and thus without weight.
void giveEmptyBodyMass(b2Body& body) {
    if (body.GetType() == b2_dynamicBody && body.GetMass() == 0.0f) {
        const b2MassData oneKilogram{1.0f, {0.0f, 0.0f}, 0.0f};
        body.SetMassData(&oneKilogram);
    }
}

/// A body that ends with an open path turns about its origin; what it weighs and how hard it is to turn stays.
void moveCenterToOrigin(b2Body& body) {
    b2MassData mass = massAboutOrigin(body);
    if (body.GetType() == b2_dynamicBody && mass.mass > 0.0f && mass.I > leastInertia) {
        mass.center.SetZero();
        body.SetMassData(&mass);
    }
}

void setMass(const BodyRecord& record, bool centerAtOrigin) {
    b2Body& body = *record.body;
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        fixture->SetDensity(bounded(record.density, leastDensity, greatestDensity));
    }
    prepareMass(body);
    body.ResetMassData();
    giveEmptyBodyMass(body);
    if (centerAtOrigin) {
        moveCenterToOrigin(body);
    }
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

void changeType(b2Body& body, b2BodyType type) {
    prepareMass(body);
    body.SetType(type);
    giveEmptyBodyMass(body);
}

} // namespace jostle
