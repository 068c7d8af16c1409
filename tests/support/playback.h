#pragma once

#include "simulation/simulation_clock.h"

#include <box2d/b2_body.h>

#include <utility>

namespace jostle {

/// A scene with its clock, which nothing holds back. Built, and stopped at frame 0.
template<class Layers = StillLayers>
struct Playback {
    explicit Playback(Scene s) : scene(std::move(s)), clock(scene, layers, pacer) { clock.restart(); }

    void playTo(int frame) {
        clock.play();
        while (clock.frame() < frame) {
            clock.tick();
        }
    }
    [[nodiscard]] b2Body& body(std::size_t i = 0) const { return *scene.bodies[i].body; }

    Layers layers;
    FreePacer pacer;
    Scene scene;
    SimulationClock clock;
};

} // namespace jostle
