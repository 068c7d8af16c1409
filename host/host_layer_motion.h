#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "host/chain.h"
#include "host/composition.h"
#include "host/layer_transform.h"
#include "simulation/layer_motion.h"

namespace jostle {

/// Answers what bodies ask of their layers from the host's active composition.
///
/// To be made for one run of the simulation: layers and streams are looked up once, and what cannot change during a
/// run is read once, so the composition must stay as it is meanwhile. A read that fails leaves the last value that
/// was got; velocities are zero then. Without an active composition every layer stands still.
class HostLayerMotion final : public LayerMotion {
public:
    explicit HostLayerMotion(const HostContext& context);
    ~HostLayerMotion() override;

    int lastKeyframeFrame(int layerIndex) override;
    b2Vec2 velocity(int layerIndex, double simTime, double stepTime) override;
    float angularVelocity(int layerIndex, double simTime, double stepTime) override;
    b2Vec2 pointToComposition(int layerIndex, b2Vec2 pixels, double timeSeconds) override;
    b2Vec2 scale(int layerIndex, double timeSeconds) override;
    b2Vec2 gravity(int layerIndex, double timeSeconds) override;

private:
    struct Source;

    /// Null if there is no such layer.
    Source* source(int layerIndex);
    Matrix4 toWorld(Source& source, A_Time time);
    b2Vec2 anchor(Source& source, A_Time time);
    b2Vec2 anchorInComposition(Source& source, A_Time time);
    int findLastKeyframe(Layer layer);

    HostChain chain_; ///< first, so that it outlives the streams
    Composition composition_;
    A_Time frameDuration_{};
    double pixelAspect_ = 1.0;
    std::vector<std::unique_ptr<Source>> sources_; ///< by layer index; null until first asked for
};

} // namespace jostle
