// What we rely on of the engine that is compiled here: it reads its tolerances while it runs.

#include <box2d/box2d.h>
#include <gtest/gtest.h>

namespace {

/// Sets the slop, in metres, and the skin of twice that; puts the former values back at the end.
class Tolerances {
public:
    explicit Tolerances(float slop) {
        b2_linearSlop = slop;
        b2_polygonRadius = 2.0f * slop;
    }
    Tolerances(const Tolerances&) = delete;
    Tolerances& operator=(const Tolerances&) = delete;
    ~Tolerances() {
        b2_linearSlop = formerSlop_;
        b2_polygonRadius = formerRadius_;
    }

private:
    float formerSlop_ = b2_linearSlop;
    float formerRadius_ = b2_polygonRadius;
};

TEST(Tolerances, BeginAtTheLibrarysOwnValues) {
    EXPECT_EQ(b2_linearSlop, 0.005f);
    EXPECT_EQ(b2_polygonRadius, 0.01f);
}

// Set() welds vertices that are closer than half the slop: (0, 0) and (0.004, 0) are at a slop of 0.01, where half of
// it is 0.005, and are not at 0.005. This is compiled code of the library, not a header's.
TEST(Tolerances, PolygonsWeldByTheSlopOfTheMoment) {
    const b2Vec2 corners[] = {{0.0f, 0.0f}, {0.004f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    b2PolygonShape shape;
    shape.Set(corners, 4);
    EXPECT_EQ(shape.m_count, 4);

    const Tolerances coarse(0.01f);
    shape.Set(corners, 4);
    EXPECT_EQ(shape.m_count, 3);
}

/// Gap between a box and the ground, in metres, after the solver has pushed the box out of an overlap of the skins.
float restingGap(float startGap) {
    b2World world({0.0f, -10.0f});
    world.SetAllowSleeping(false);
    b2BodyDef definition;
    b2PolygonShape shape;
    shape.SetAsBox(10.0f, 1.0f, {0.0f, -1.0f}, 0.0f);
    world.CreateBody(&definition)->CreateFixture(&shape, 0.0f);

    definition.type = b2_dynamicBody;
    definition.position.Set(0.0f, 0.5f + startGap);
    b2Body* box = world.CreateBody(&definition);
    shape.SetAsBox(0.5f, 0.5f);
    box->CreateFixture(&shape, 1.0f);
    for (int step = 0; step < 300; ++step) {
        world.Step(1.0f / 60.0f, 8, 3);
    }
    return box->GetPosition().y - 0.5f;
}

// Both polygons have a skin of two slops, and the solver stops pushing at one slop of overlap: 2 + 2 - 1 slops stay
// free.
TEST(Tolerances, RestingBodiesKeepThreeSlopsApart) {
    for (const float slop : {0.005f, 0.01f, 0.02f}) {
        SCOPED_TRACE(slop);
        const Tolerances chosen(slop);
        EXPECT_NEAR(restingGap(slop), 3.0f * slop, 0.01f * slop);
    }
}

} // namespace
