#pragma once

#include "simulation/scene.h"

#include <box2d/b2_world.h>

#include <vector>

namespace jostle {

/// Keeps a world whose joints contradict each other finite.
///
/// The library brings joints together at the end of each step with moves of any length. Where they cannot be met (two
/// pistons of different axes on one body, limits kilometres away), the moves can grow without end within one step. A
/// body that was lost in this way goes back to where the step found it, at rest. A dynamic one with joints is left out
/// of the simulation from then on, and its joints with it.
class LostBodies {
public:
    /// To be called before each step. Does nothing for a scene without joints in the world.
    void remember(const Scene& scene, const b2World& world);
    /// To be called after that step.
    void recover(const Scene& scene);

private:
    struct Place {
        b2Vec2 position; ///< metres
        float angle;     ///< radians
    };
    std::vector<Place> places_; ///< one for each record, or empty
};

} // namespace jostle
