#pragma once

#include "simulation/body_sample.h"
#include "simulation/scene.h"

#include <cstddef>
#include <span>
#include <vector>

namespace jostle {

/// How all bodies stood on each frame from 0 on, as far as it has been simulated.
///
/// Frames come in rising order and are kept once: a simulation from the same records gives the same again. Beyond a
/// limit of memory no more are kept.
class FrameSamples {
public:
    /// @param memoryLimit  bytes that all samples together may take
    explicit FrameSamples(std::size_t memoryLimit = std::size_t{256} << 20) : memoryLimit_(memoryLimit) {}

    void clear() { frames_.clear(); }

    /// Keeps how the bodies stand, if the frame is the next that is missing and there is room.
    /// @param frame  the clock's after a tick, or 0 after a rebuild
    void add(int frame, const Scene& scene);

    /// How many frames are kept: those from 0 to one less than it.
    [[nodiscard]] int count() const { return static_cast<int>(frames_.size()); }
    [[nodiscard]] bool contains(int frame) const { return frame >= 0 && frame < count(); }
    /// One for each record, of a frame that is kept.
    [[nodiscard]] std::span<const BodySample> at(int frame) const { return frames_[static_cast<std::size_t>(frame)]; }

private:
    std::size_t memoryLimit_;
    std::vector<std::vector<BodySample>> frames_;
};

} // namespace jostle
