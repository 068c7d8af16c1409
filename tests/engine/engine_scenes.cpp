#include "tests/engine/engine_scenes.h"

#include "tests/engine/everything_scene.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace {

/// A static body of edges through the points.
void addWalls(b2World& world, const std::vector<b2Vec2>& points) {
    b2Body* body = addEngineBody(world, b2_staticBody, b2Vec2(0.0f, 0.0f));
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        b2EdgeShape edge;
        edge.SetTwoSided(points[i], points[i + 1]);
        body->CreateFixture(&edge, 0.0f);
    }
}

/// A static bowl: the lower half of a circle, in 32 edges, and upright walls above its rim.
void addBowl(b2World& world, float radius) {
    std::vector<b2Vec2> points = {b2Vec2(-radius, 4.0f * radius)};
    for (int i = 0; i <= 32; ++i) {
        const float angle = std::numbers::pi_v<float> * (1.0f + static_cast<float>(i) / 32.0f);
        points.push_back(b2Vec2(radius * std::cos(angle), radius * std::sin(angle)));
    }
    points.push_back(b2Vec2(radius, 4.0f * radius));
    addWalls(world, points);
}

void fillPyramid(b2World& world, int boxes) {
    addWalls(world, {b2Vec2(-40.0f, 0.0f), b2Vec2(40.0f, 0.0f)});
    int made = 0;
    for (int row = 0, width = 31; made < boxes; ++row, width = std::max(width - 1, 1)) {
        for (int i = 0; i < width && made < boxes; ++i, ++made) {
            const b2Vec2 position(0.45f * (static_cast<float>(i) - 0.5f * static_cast<float>(width)),
                                  0.25f + 0.42f * static_cast<float>(row));
            addEngineBox(world, b2_dynamicBody, position, b2Vec2(0.2f, 0.2f));
        }
    }
}

void fillCircles(b2World& world, int circles) {
    addWalls(world, {b2Vec2(-8.0f, 60.0f), b2Vec2(-8.0f, 0.0f), b2Vec2(8.0f, 0.0f), b2Vec2(8.0f, 60.0f)});
    EngineRandom random;
    for (int i = 0; i < circles; ++i) {
        b2CircleShape shape;
        shape.m_radius = random.between(0.1f, 0.3f);
        const b2Vec2 position(-7.0f + 0.62f * static_cast<float>(i % 23) + random.between(0.0f, 0.05f),
                              0.4f + 0.62f * static_cast<float>(i / 23));
        addEngineBody(world, b2_dynamicBody, position)->CreateFixture(&shape, 1.0f);
    }
}

void fillChain(b2World& world, int pivots, int springs) {
    b2Body* ground = addEngineBody(world, b2_staticBody, b2Vec2(0.0f, 0.0f));
    b2Body* previous = ground;
    for (int i = 0; i < pivots; ++i) {
        const float x = 0.5f * static_cast<float>(i);
        b2Body* body = addEngineBox(world, b2_dynamicBody, b2Vec2(x + 0.25f, 0.0f), b2Vec2(0.3f, 0.06f));
        b2RevoluteJointDef joint;
        joint.Initialize(previous, body, b2Vec2(x, 0.0f));
        world.CreateJoint(&joint);
        previous = body;
    }
    for (int i = 0; i < springs; ++i) {
        const b2Vec2 from(static_cast<float>(i), 10.0f);
        b2Body* body = addEngineBox(world, b2_dynamicBody, from - b2Vec2(0.0f, 2.0f), b2Vec2(0.2f, 0.2f));
        b2DistanceJointDef joint;
        joint.Initialize(ground, body, from, body->GetPosition());
        joint.minLength = 0.0f;
        joint.maxLength = b2_maxFloat;
        b2LinearStiffness(joint.stiffness, joint.damping, 1.0f + 0.05f * static_cast<float>(i), 0.1f, ground, body);
        world.CreateJoint(&joint);
    }
}

void fillCompounds(b2World& world, int bodies) {
    const int columns = 10;
    addBowl(world, 9.0f);
    EngineRandom random;
    for (int i = 0; i < bodies; ++i) {
        const b2Vec2 position(1.3f * (static_cast<float>(i % columns) - 4.5f) + random.between(-0.1f, 0.1f),
                              -5.0f + 1.3f * static_cast<float>(i / columns));
        b2Body* body = addEngineBody(world, b2_dynamicBody, position, random.between(0.0f, 3.0f));
        addStar(*body, 0.6f, 0.4f, 40);
    }
}

/// Two boxes that touch, are put apart for two steps, and are put back: the world's first pair of polygons that are
/// known to stay apart, and no longer do though they stand where they began.
class FirstPairScene : public EngineScene {
public:
    FirstPairScene() {
        world_.SetGravity(b2Vec2(0.0f, 0.0f));
        addBox(0.0f);
        moved_ = addBox(together);
    }

    void advance() override {
        if (frame_ == 1 || frame_ == 3) {
            moved_->SetTransform(b2Vec2(frame_ == 1 ? 1.06f : together, 0.0f), 0.0f);
        }
        ++frame_;
        world_.Step(1.0f / 60.0f, 10, 10);
    }

private:
    static constexpr float together = 1.0f; // metres between the centres

    b2Body* addBox(float x) {
        b2Body* const body = addEngineBody(world_, b2_dynamicBody, b2Vec2(x, 0.0f), 0.0f);
        b2PolygonShape box;
        box.SetAsBox(0.5f, 0.5f);
        body->CreateFixture(&box, 1.0f);
        return body;
    }

    b2Body* moved_ = nullptr;
    int frame_ = 0;
};

/// Stars in a bowl and a listener that changes other bodies and shapes while contacts are being updated, so that
/// contacts which would be passed over in that step no longer may be. It makes no bullets and puts nothing to sleep:
/// with sensors that switch within a step, the engine as it comes would then solve contacts without points.
class MeddlerScene : public EngineScene, b2ContactListener {
public:
    MeddlerScene() {
        world_.SetContactListener(this);
        addBowl(world_, 3.0f);
        for (int i = 0; i < 40; ++i) {
            const b2Vec2 position(0.9f * (static_cast<float>(i % 5) - 2.0f), -1.5f + 0.9f * static_cast<float>(i / 5));
            stars_.push_back(addEngineBody(world_, b2_dynamicBody, position, random_.between(0.0f, 3.0f)));
            addStar(*stars_.back(), 0.5f, 0.3f, 12);
        }
    }

    void advance() override {
        EngineScene::advance();
        for (b2Body* star : stars_) {
            for (b2Fixture* fixture = star->GetFixtureList(); fixture; fixture = fixture->GetNext()) {
                fixture->SetSensor(false);
            }
        }
    }

    [[nodiscard]] std::uint64_t hash() const override {
        EngineHash hash;
        hash.add(world_);
        hash.add(heard_.value());
        return hash.value();
    }

    void BeginContact(b2Contact* contact) override { meddle(*contact, 1); }
    void EndContact(b2Contact* contact) override { meddle(*contact, 2); }
    void PreSolve(b2Contact* contact, const b2Manifold*) override {
        meddle(*contact, 3);
        if (random_.between(0.0f, 1.0f) < 0.02f) {
            contact->SetEnabled(false);
        }
    }

private:
    void meddle(const b2Contact& contact, std::uint64_t what) {
        heard_.add(what);
        heard_.add(contact.GetFixtureA()->GetBody()->GetPosition().x);
        heard_.add(contact.GetFixtureB()->GetBody()->GetPosition().y);
        b2Body& star = *stars_[static_cast<std::size_t>(random_.between(0.0f, 39.9f))];
        b2Fixture* fixture = star.GetFixtureList();
        for (int i = static_cast<int>(random_.between(0.0f, 11.9f)); i > 0; --i) {
            fixture = fixture->GetNext();
        }
        const float choice = random_.between(0.0f, 1.0f);
        if (choice < 0.02f) {
            fixture->SetSensor(true); // not back: contacts of sensors have no points to solve
        } else if (choice < 0.04f) {
            b2Filter filter = fixture->GetFilterData();
            filter.groupIndex = static_cast<std::int16_t>(filter.groupIndex == 0 ? -1 : 0);
            fixture->SetFilterData(filter);
        } else if (choice < 0.06f) {
            star.SetAwake(true);
        }
    }

    std::vector<b2Body*> stars_;
    EngineRandom random_;
    EngineHash heard_;
};

class FilledScene : public EngineScene {
public:
    explicit FilledScene(std::string_view name, int size) {
        const auto part = [size](int full) { return std::max(1, full * size / 100); };
        if (name == "pyramid") {
            fillPyramid(world_, part(500));
        } else if (name == "circles") {
            fillCircles(world_, part(1000));
        } else if (name == "chain") {
            fillChain(world_, part(100), part(50));
        } else {
            fillCompounds(world_, part(200));
        }
        world_.SetAllowSleeping(name == "compounds-rest");
    }
};

} // namespace

float EngineRandom::between(float low, float high) {
    state_ = state_ * 1664525u + 1013904223u;
    return low + (high - low) * static_cast<float>(state_ >> 8) * (1.0f / 16777216.0f);
}

b2Body* addEngineBody(b2World& world, b2BodyType type, b2Vec2 position, float angle) {
    b2BodyDef definition;
    definition.type = type;
    definition.position = position;
    definition.angle = angle;
    return world.CreateBody(&definition);
}

b2Body* addEngineBox(b2World& world, b2BodyType type, b2Vec2 position, b2Vec2 half) {
    b2Body* body = addEngineBody(world, type, position);
    b2PolygonShape shape;
    shape.SetAsBox(half.x, half.y);
    body->CreateFixture(&shape, 1.0f);
    return body;
}

void addStar(b2Body& body, float outerRadius, float innerRadius, int triangles) {
    const auto corner = [&](int i) {
        const float angle =
            2.0f * std::numbers::pi_v<float> * static_cast<float>(i % triangles) / static_cast<float>(triangles);
        const float radius = i % 2 == 0 ? outerRadius : innerRadius;
        return b2Vec2(radius * std::cos(angle), radius * std::sin(angle));
    };
    for (int i = 0; i < triangles; ++i) {
        const b2Vec2 corners[] = {b2Vec2(0.0f, 0.0f), corner(i), corner(i + 1)};
        b2PolygonShape shape;
        shape.Set(corners, 3);
        body.CreateFixture(&shape, 1.0f);
    }
}

void EngineHash::add(std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) { // FNV-1a
        state_ = (state_ ^ ((value >> shift) & 0xffu)) * 0x100000001b3u;
    }
}

void EngineHash::add(float value) {
    add(std::uint64_t{std::bit_cast<std::uint32_t>(value)});
}

void EngineHash::add(const b2World& world) {
    for (const b2Body* body = world.GetBodyList(); body; body = body->GetNext()) {
        for (const float value :
             {body->GetPosition().x, body->GetPosition().y, body->GetAngle(), body->GetLinearVelocity().x,
              body->GetLinearVelocity().y, body->GetAngularVelocity()}) {
            add(value);
        }
        add(std::uint64_t{body->IsAwake()});
    }
    add(static_cast<std::uint64_t>(world.GetContactCount()));
}

void EngineScene::advance() {
    for (int step = 0; step < 2; ++step) {
        world_.Step(1.0f / 120.0f, 10, 10);
    }
}

std::uint64_t EngineScene::hash() const {
    EngineHash hash;
    hash.add(world_);
    return hash.value();
}

const std::vector<std::string_view>& engineSceneNames() {
    static const std::vector<std::string_view> names = {"pyramid",        "circles",    "chain",      "compounds",
                                                        "compounds-rest", "everything", "first_pair", "meddler"};
    return names;
}

std::unique_ptr<EngineScene> makeEngineScene(std::string_view name, int size) {
    const std::vector<std::string_view>& names = engineSceneNames();
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        return nullptr;
    }
    if (name == "everything") {
        return makeEverythingScene();
    }
    if (name == "first_pair") {
        return std::make_unique<FirstPairScene>();
    }
    if (name == "meddler") {
        return std::make_unique<MeddlerScene>();
    }
    return std::make_unique<FilledScene>(name, size);
}
