#include "simulation/export_run.h"

#include <box2d/b2_body.h>

#include <algorithm>
#include <cstdint>

namespace jostle {

void ExportRun::reserve(const Scene& scene) {
    // Nearly every run is shorter. A longer one grows by doubling, and so far from every frame, where room for the
    // longest range would take a gigabyte for a thousand bodies that may be stopped at once.
    constexpr std::int64_t firstBlock = 4096;
    const std::int64_t frames = static_cast<std::int64_t>(endFrame_) - startFrame_ + 1;
    const auto count = static_cast<std::size_t>(std::min(frames, firstBlock));
    results_.resize(scene.bodies.size());
    for (ExportResult& result : results_) {
        result.positions.reserve(count);
        result.rotations.reserve(count);
    }
}

void ExportRun::sample(int frame, const Scene& scene) {
    const bool isFirst = results_.empty();
    if (isFirst) {
        reserve(scene);
    }
    const std::size_t count = results_.size();
    for (std::size_t k = 0; k < count; ++k) {
        const BodyRecord& record = scene.bodies[count - 1 - k];
        ExportResult& result = results_[k];
        result.positions.push_back(scene.worldToPixels(record.body->GetPosition()));
        result.rotations.push_back(radiansToDegrees(record.body->GetAngle()));
        if (isFirst) {
            result.layerAnchor = record.layerAnchor;
        }
    }
    isComplete_ = frame == endFrame_;
}

} // namespace jostle
