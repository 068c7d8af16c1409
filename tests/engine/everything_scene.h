#pragma once

#include "tests/engine/engine_scenes.h"

/// Numbers from a fixed seed, the same with every compiler and library.
class EngineRandom {
public:
    [[nodiscard]] float between(float low, float high);

private:
    std::uint32_t state_ = 12345;
};

/// Folds values into one number.
class EngineHash {
public:
    void add(std::uint64_t value);
    void add(float value);
    void add(const b2World& world);
    [[nodiscard]] std::uint64_t value() const { return state_; }

private:
    std::uint64_t state_ = 0xcbf29ce484222325u;
};

/// Adds a body to the world; the angle is in radians.
b2Body* addEngineBody(b2World& world, b2BodyType type, b2Vec2 position, float angle = 0.0f);

/// Adds one that is a box of density 1; the position is its centre's, and `half` are half its width and height.
b2Body* addEngineBox(b2World& world, b2BodyType type, b2Vec2 position, b2Vec2 half);

/// Gives the body a star of triangles around its origin; radii in metres.
void addStar(b2Body& body, float outerRadius, float innerRadius, int triangles);

/// The scene that does in mid-run all that a program may do to a world: types, sensors, filters and bullets change,
/// fixtures, joints and bodies come and go, contacts are disabled, and the whole world is torn down and built anew.
[[nodiscard]] std::unique_ptr<EngineScene> makeEverythingScene();
