#pragma once

#include <box2d/b2_world.h>

#include <vector>

namespace jostle {

/// Keeps a world whose joints contradict each other finite.
///
/// The library brings joints together at the end of each step with moves of any length. Where they cannot be met (two
/// pistons of different axes on one body, limits kilometres away), the moves can grow without end within one step. A
/// body that was lost in this way goes back to where the step found it, at rest. A dynamic one with joints is frozen:
/// it is left out of the simulation, and its joints with it, until the world is built anew.
class LostBodies {
public:
    /// To be called before each step. Does nothing in a world without joints.
    void remember(const b2World& world);
    /// To be called after that step of the same world.
    void recover(b2World& world);

private:
    struct Place {
        b2Vec2 position; ///< metres
        float angle;     ///< radians
    };
    std::vector<Place> places_; ///< one for each body, in the order of the world's list, or empty
};

} // namespace jostle
