#include "tests/engine/everything_scene.h"

#include <optional>

namespace {

/// Makes the polygons of a body larger in place. Our engine has to hear of it before; the plain one takes no heed.
template<typename Body>
void growPolygons(Body& body) {
    if constexpr (requires { body.PrepareShapeChange(); }) {
        body.PrepareShapeChange();
    }
    for (b2Fixture* fixture = body.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
        if (fixture->GetType() == b2Shape::e_polygon) {
            auto* polygon = static_cast<b2PolygonShape*>(fixture->GetShape());
            for (int i = 0; i < polygon->m_count; ++i) {
                polygon->m_vertices[i] *= 1.15f;
            }
            polygon->m_centroid *= 1.15f;
        }
    }
}

/// One round of the scene: a world and the pieces that change in it.
class Round : public b2ContactListener {
public:
    explicit Round(int number) {
        world_.SetContactListener(this);
        world_.SetSubStepping(number == 2);
        for (int i = 0; i < number; ++i) {
            (void)random_.between(0.0f, 1.0f); // other numbers in every round
        }
        addRoom();
        addPieces();
        addJoints();
    }

    /// Changes that belong to this frame of the round, then two steps.
    void advance(int frame) {
        changeBodies(frame);
        changeFixtures(frame);
        changeJoints(frame);
        if (frame == 50) {
            world_.SetAllowSleeping(false);
        } else if (frame == 60) {
            world_.SetAllowSleeping(true);
            world_.SetContinuousPhysics(false);
        } else if (frame == 65) {
            world_.SetContinuousPhysics(true);
            world_.ShiftOrigin(b2Vec2(0.5f, 0.25f));
        } else if (frame == 70) {
            world_.Step(0.0f, 10, 10);
        }
        for (int step = 0; step < 2; ++step) {
            world_.Step(1.0f / 120.0f, 8, 3);
        }
    }

    void addTo(EngineHash& hash) const {
        hash.add(world_);
        hash.add(heard_.value());
    }

    void BeginContact(b2Contact* contact) override { hear(1, *contact); }
    void EndContact(b2Contact* contact) override { hear(2, *contact); }
    void PreSolve(b2Contact* contact, const b2Manifold* old) override {
        hear(3, *contact);
        heard_.add(static_cast<std::uint64_t>(old->pointCount));
        const std::uint64_t sum = contact->GetFixtureA()->GetBody()->GetUserData().pointer +
                                  contact->GetFixtureB()->GetBody()->GetUserData().pointer;
        if (sum % 29 == 0) {
            contact->SetEnabled(false);
        }
        if (sum % 31 == 0) { // takes effect within the step
            contact->GetFixtureB()->GetBody()->SetBullet(!contact->GetFixtureB()->GetBody()->IsBullet());
        }
    }

    void PostSolve(b2Contact* contact, const b2ContactImpulse* impulse) override {
        hear(4, *contact);
        if (impulse->count > 0) {
            heard_.add(impulse->normalImpulses[0]);
        }
    }

private:
    b2Body* add(b2BodyType type, b2Vec2 position) {
        b2Body* body = addEngineBody(world_, type, position);
        body->GetUserData().pointer = static_cast<std::uintptr_t>(++bodies_);
        return body;
    }

    b2Body* addBox(b2BodyType type, b2Vec2 position, b2Vec2 half) {
        b2Body* body = addEngineBox(world_, type, position, half);
        body->GetUserData().pointer = static_cast<std::uintptr_t>(++bodies_);
        return body;
    }

    // A floor, thin walls, a chain for a slope, a lift that goes up and down, and a field that only feels.
    void addRoom() {
        addBox(b2_staticBody, b2Vec2(0.0f, -0.5f), b2Vec2(12.0f, 0.5f));
        for (const float x : {-12.0f, -6.0f, 12.0f}) {
            addBox(b2_staticBody, b2Vec2(x, 5.0f), b2Vec2(0.02f, 5.0f));
        }
        const b2Vec2 slope[] = {b2Vec2(4.0f, 0.0f), b2Vec2(7.0f, 0.4f), b2Vec2(9.0f, 1.2f), b2Vec2(12.0f, 3.0f)};
        b2ChainShape chain;
        chain.CreateChain(slope, 4, b2Vec2(3.0f, 0.0f), b2Vec2(13.0f, 3.5f));
        add(b2_staticBody, b2Vec2(0.0f, 0.0f))->CreateFixture(&chain, 0.0f);

        lift_ = addBox(b2_kinematicBody, b2Vec2(-3.0f, 0.5f), b2Vec2(1.0f, 0.1f));
        lift_->SetLinearVelocity(b2Vec2(0.0f, 1.0f));
        ghost_ = addBox(b2_staticBody, b2Vec2(1.0f, 1.0f), b2Vec2(1.5f, 0.3f));
        ghost_->GetFixtureList()->SetSensor(true);
    }

    void addPieces() {
        for (int i = 0; i < 24; ++i) {
            b2Body* body = add(b2_dynamicBody, b2Vec2(-4.5f + 1.3f * static_cast<float>(i % 8),
                                                      2.0f + 1.3f * static_cast<float>(i / 8)));
            addStar(*body, random_.between(0.4f, 0.6f), 0.3f, 16);
            stars_.push_back(body);
        }
        for (int i = 0; i < 40; ++i) {
            const b2Vec2 position(-4.0f + 1.15f * static_cast<float>(i % 10), 6.5f + 0.8f * static_cast<float>(i / 10));
            // In lines of their own: the order of arguments is free.
            const float halfWidth = random_.between(0.1f, 0.3f);
            const float halfHeight = random_.between(0.1f, 0.3f);
            b2Body* body = addBox(b2_dynamicBody, position, b2Vec2(halfWidth, halfHeight));
            if (i % 3 == 0) {
                b2CircleShape shape;
                shape.m_radius = 0.25f;
                shape.m_p.Set(0.2f, 0.0f);
                body->CreateFixture(&shape, 1.0f);
            }
            boxes_.push_back(body);
        }
    }

    void addJoints() {
        b2RevoluteJointDef hinge;
        hinge.Initialize(boxes_[0], boxes_[1], boxes_[0]->GetPosition());
        hinge.collideConnected = false;
        hinge_ = world_.CreateJoint(&hinge);
        b2WeldJointDef weld;
        weld.Initialize(stars_[0], stars_[1], stars_[0]->GetPosition());
        weld.collideConnected = true;
        world_.CreateJoint(&weld);
        b2Body* door = addBox(b2_dynamicBody, b2Vec2(8.0f, 5.0f), b2Vec2(0.1f, 1.0f));
        b2PrismaticJointDef slide;
        slide.Initialize(lift_, door, door->GetPosition(), b2Vec2(1.0f, 0.0f));
        slide.lowerTranslation = -2.0f;
        slide.upperTranslation = 2.0f;
        slide.enableLimit = true;
        world_.CreateJoint(&slide);
    }

    void shoot(b2Vec2 from, b2Vec2 velocity, bool bullet) {
        b2Body* body = add(b2_dynamicBody, from);
        body->SetBullet(bullet);
        b2CircleShape shape;
        shape.m_radius = 0.05f;
        b2FixtureDef definition;
        definition.shape = &shape;
        definition.density = 20.0f;
        definition.restitution = 0.5f;
        body->CreateFixture(&definition);
        body->SetLinearVelocity(velocity);
    }

    void changeBodies(int frame) {
        if (frame % 10 == 3) {
            shoot(b2Vec2(-11.0f, 1.0f + 0.1f * static_cast<float>(frame % 40)), b2Vec2(150.0f, 20.0f), true);
            shoot(b2Vec2(11.0f, 6.0f), b2Vec2(-200.0f, -30.0f), frame % 20 == 3);
        }
        if (frame % 30 == 0) {
            lift_->SetLinearVelocity(-lift_->GetLinearVelocity());
        }
        static constexpr struct {
            int turn; // of 16 frames
            int age;  // frames since the star was the one of its frame
            void (*change)(b2Body&);
        } changes[] = {
            {1, 0, [](b2Body& star) { star.SetType(b2_staticBody); }},
            {2, 1, [](b2Body& star) { star.SetType(b2_dynamicBody); }},
            {4, 0, [](b2Body& star) { star.SetEnabled(false); }},
            {6, 2, [](b2Body& star) { star.SetEnabled(true); }},
            {7, 0, [](b2Body& star) { star.SetType(b2_kinematicBody); }},
            {9, 2, [](b2Body& star) { star.SetType(b2_dynamicBody); }},
            {10, 0, [](b2Body& star) { star.SetBullet(!star.IsBullet()); }},
            {11, 0, [](b2Body& star) { star.SetAwake(false); }},
            {12, 0,
             [](b2Body& star) { star.SetTransform(star.GetPosition() + b2Vec2(0.0f, 0.3f), star.GetAngle() + 0.2f); }},
            {13, 0, [](b2Body& star) { star.SetAwake(true); }},
        };
        for (const auto& c : changes) {
            if (frame % 16 == c.turn) {
                c.change(*stars_[static_cast<std::size_t>(frame - c.age) % stars_.size()]);
            }
        }
        if (frame % 25 == 24 && boxes_.size() > 10) {
            world_.DestroyBody(boxes_.back());
            boxes_.pop_back();
        }
    }

    void changeFixtures(int frame) {
        b2Body& star = *stars_[static_cast<std::size_t>(7 * frame) % stars_.size()];
        if (frame % 9 == 5) {
            for (b2Fixture* fixture = star.GetFixtureList(); fixture; fixture = fixture->GetNext()) {
                fixture->SetSensor(!fixture->IsSensor());
            }
        }
        if (frame % 40 == 20) {
            ghost_->GetFixtureList()->SetSensor(!ghost_->GetFixtureList()->IsSensor());
        }
        if (frame % 11 == 6) {
            b2Filter filter = star.GetFixtureList()->GetFilterData();
            filter.maskBits = filter.maskBits == 0xffff ? 0x0002 : 0xffff;
            star.GetFixtureList()->SetFilterData(filter);
        }
        if (frame % 12 == 7) {
            growPolygons(*boxes_[static_cast<std::size_t>(frame) % boxes_.size()]);
        }
        if (frame % 13 == 8 && star.GetFixtureList()->GetNext()) {
            star.DestroyFixture(star.GetFixtureList());
        }
        if (frame % 17 == 9) {
            b2PolygonShape shape;
            shape.SetAsBox(0.1f, 0.5f);
            star.CreateFixture(&shape, 1.0f);
        }
    }

    void changeJoints(int frame) {
        if (frame % 20 == 5) {
            b2DistanceJointDef definition;
            definition.Initialize(stars_[4], stars_[5], stars_[4]->GetPosition(), stars_[5]->GetPosition());
            definition.collideConnected = false;
            pair_ = world_.CreateJoint(&definition);
        } else if (frame % 20 == 15 && pair_) {
            world_.DestroyJoint(pair_);
            pair_ = nullptr;
        }
        if (frame == 45) {
            world_.DestroyJoint(hinge_);
        }
    }

    void hear(std::uint64_t what, b2Contact& contact) {
        heard_.add(what);
        heard_.add(std::uint64_t{contact.GetFixtureA()->GetBody()->GetUserData().pointer});
        heard_.add(std::uint64_t{contact.GetFixtureB()->GetBody()->GetUserData().pointer});
    }

    b2World world_{b2Vec2(0.0f, -10.0f)};
    EngineRandom random_;
    EngineHash heard_;
    std::uint64_t bodies_ = 0;
    b2Body* lift_ = nullptr;
    b2Body* ghost_ = nullptr;
    std::vector<b2Body*> stars_;
    std::vector<b2Body*> boxes_;
    b2Joint* pair_ = nullptr;
    b2Joint* hinge_ = nullptr;
};

class Everything : public EngineScene {
public:
    void advance() override {
        if (frame_ % roundFrames == 0) {
            round_.emplace(frame_ / roundFrames % 4);
        }
        round_->advance(frame_ % roundFrames);
        ++frame_;
    }

    [[nodiscard]] std::uint64_t hash() const override {
        EngineHash hash;
        round_->addTo(hash);
        return hash.value();
    }

private:
    static constexpr int roundFrames = 100;
    int frame_ = 0;
    std::optional<Round> round_;
};

} // namespace

std::unique_ptr<EngineScene> makeEverythingScene() {
    return std::make_unique<Everything>();
}
