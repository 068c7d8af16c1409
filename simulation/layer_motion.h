#pragma once

#include <box2d/b2_math.h>

namespace jostle {

/// What a body asks of its layer while the simulation runs.
///
/// Layers are named by their index in the composition, from 0. Times are seconds on the composition's axis, and may be
/// negative (one frame before the first is read); whoever answers rounds them to a time scale of its own. Nothing
/// here fails: a layer that cannot be read stands still, unscaled, and gives no gravity.
class LayerMotion {
public:
    virtual ~LayerMotion() = default;

    /// The frame of the last keyframe of the layer's anchor point, position, scale and rotation and of those of all
    /// its parents, rounded up; 100000 if one of them has an expression, -1 if none is animated.
    virtual int lastKeyframeFrame(int layerIndex) = 0;

    /// Metres per second: how far the layer's anchor point moves in the composition from `simTime` to `simTime` plus
    /// `stepTime`, over `stepTime`.
    virtual b2Vec2 velocity(int layerIndex, double simTime, double stepTime) = 0;

    /// Radians per second over the same interval, the shorter way round.
    virtual float angularVelocity(int layerIndex, double simTime, double stepTime) = 0;

    /// A point in layer pixels, as composition pixels.
    virtual b2Vec2 pointToComposition(int layerIndex, b2Vec2 pixels, double timeSeconds) = 0;

    /// The layer's scale, 1 being 100 percent.
    virtual b2Vec2 scale(int layerIndex, double timeSeconds) = 0;

    /// The layer's position in pixels, which is gravity in metres per second squared.
    virtual b2Vec2 gravity(int layerIndex, double timeSeconds) = 0;
};

/// Layers without any animation, for scenes that have none.
class StillLayers final : public LayerMotion {
public:
    int lastKeyframeFrame(int) override { return -1; }
    b2Vec2 velocity(int, double, double) override { return {0.0f, 0.0f}; }
    float angularVelocity(int, double, double) override { return 0.0f; }
    b2Vec2 pointToComposition(int, b2Vec2 pixels, double) override { return pixels; }
    b2Vec2 scale(int, double) override { return {1.0f, 1.0f}; }
    b2Vec2 gravity(int, double) override { return {0.0f, 0.0f}; }
};

} // namespace jostle
