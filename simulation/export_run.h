#pragma once

#include "simulation/scene.h"

#include <box2d/b2_body.h>
#include <box2d/b2_math.h>

#include <cstddef>
#include <vector>

namespace jostle {

/// What one body did during a run: one entry for each sampled frame.
struct ExportResult {
    std::vector<b2Vec2> positions;  ///< composition pixels
    std::vector<float> rotations;   ///< degrees
    b2Vec2 layerAnchor{0.0f, 0.0f}; ///< layer pixels; the record's at the first sampled frame
};

/// The samples of one run of the simulation, from a start frame to an end frame, both included.
///
/// Handed to `SimulationClock::startExport`, which calls `sample` on each frame of the range. Whoever drives the clock
/// then writes the keyframes.
class ExportRun {
public:
    ExportRun(int startFrame, int endFrame) : startFrame_(startFrame), endFrame_(endFrame) {}

    [[nodiscard]] int startFrame() const { return startFrame_; }
    [[nodiscard]] int endFrame() const { return endFrame_; }

    /// Whether a frame is to be sampled.
    [[nodiscard]] bool contains(int frame) const { return startFrame_ <= frame && frame <= endFrame_; }

    /// Appends where every body stands now.
    /// @param frame  one of the range; the last one completes the run
    /// @param scene  its bodies must be built, and stay the same ones through a run
    void sample(int frame, const Scene& scene);

    /// Whether the end frame has been sampled.
    [[nodiscard]] bool isComplete() const { return isComplete_; }

    /// Number of the sampled bodies; 0 before the first sample.
    [[nodiscard]] std::size_t bodyCount() const { return bodies_.size(); }

    /// What a body did, in the order of the world's body list: k belongs to record `bodyCount()` - 1 - k.
    [[nodiscard]] ExportResult result(std::size_t k) const;

    /// The same, for the last time: once all bodies that it shares memory with are taken, that is free.
    /// @param taken  receives it; keeps the memory that it has
    void take(std::size_t k, ExportResult& taken);

private:
    struct Sample {
        b2Vec2 position;
        float rotation;
    };

    /// The samples of some bodies: for each frame one of each.
    struct Group {
        std::vector<Sample> samples;
        std::size_t bodies = 0;
        std::size_t taken = 0; ///< of these bodies
    };

    void begin(const Scene& scene);
    void copyTo(ExportResult& result, std::size_t k) const;

    int startFrame_;
    int endFrame_;
    bool isComplete_ = false;
    std::vector<const b2Body*> bodies_; ///< in the order of the results
    std::vector<b2Vec2> anchors_;       ///< of their layers
    std::vector<Group> groups_;
};

} // namespace jostle
