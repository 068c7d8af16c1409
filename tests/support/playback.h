#pragma once

#include "simulation/simulation_clock.h"

#include <box2d/b2_body.h>
#include <box2d/b2_fixture.h>
#include <box2d/b2_polygon_shape.h>

#include <utility>

namespace jostle {

/// A scene with its clock, which nothing holds back. Built, and played to a frame or stopped at frame 0.
template<class Layers = StillLayers>
struct Playback {
    explicit Playback(Scene s, int frame = 0, auto... layerArguments)
        : layers(layerArguments...), scene(std::move(s)), clock(scene, layers, pacer) {
        clock.restart();
        if (frame > 0) {
            playTo(frame);
        }
    }

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

/// The shape of the body's last piece, which must be a polygon.
inline const b2PolygonShape& polygonOf(const b2Body& body) {
    return static_cast<const b2PolygonShape&>(*body.GetFixtureList()->GetShape());
}

} // namespace jostle
