#pragma once

#include "simulation/gravity.h"
#include "simulation/world_builder.h"

#include <memory>
#include <utility>

namespace jostle {

/// The engine alone, with a scene's bodies, gravity and steps a frame: what nobody could do without.
class BareWorld {
public:
    explicit BareWorld(Scene scene) : scene_(std::move(scene)), world_(createWorld()) {
        buildWorld(scene_, *world_);
        world_->SetGravity(panelGravity(scene_.globals));
    }

    void stepFrame() {
        const int steps = scene_.globals.stepsPerFrame;
        const auto stepTime = static_cast<float>(1.0 / scene_.fps / steps);
        for (int i = 0; i < steps; ++i) {
            world_->Step(stepTime, 10, 10);
        }
    }

    [[nodiscard]] Scene& scene() { return scene_; }

private:
    Scene scene_;
    std::unique_ptr<b2World> world_;
};

} // namespace jostle
