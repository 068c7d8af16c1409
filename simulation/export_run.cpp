#include "simulation/export_run.h"

#include <box2d/b2_body.h>

#include <algorithm>
#include <cstdint>

namespace jostle {

namespace {

// Samples go to each body's lists several frames at a time: to write to two lists of every body in every frame would
// fill the caches that the solver lives in.
constexpr std::size_t framesAtOnce = 16;

} // namespace

void ExportRun::begin(const Scene& scene) {
    // Nearly every run is shorter. A longer one grows by doubling, and so far from every frame, where room for the
    // longest range would take a gigabyte for a thousand bodies that may be stopped at once.
    constexpr std::int64_t firstBlock = 4096;
    const std::int64_t frames = static_cast<std::int64_t>(endFrame_) - startFrame_ + 1;
    const auto count = static_cast<std::size_t>(std::min(frames, firstBlock));
    results_.resize(scene.bodies.size());
    recent_.reserve(std::min(count, framesAtOnce) * results_.size());
    for (std::size_t k = 0; k < results_.size(); ++k) {
        results_[k].positions.reserve(count);
        results_[k].rotations.reserve(count);
        results_[k].layerAnchor = scene.bodies[results_.size() - 1 - k].layerAnchor;
    }
}

void ExportRun::handOut() {
    const std::size_t count = results_.size();
    for (std::size_t k = 0; k < count; ++k) {
        for (std::size_t i = k; i < recent_.size(); i += count) {
            results_[k].positions.push_back(recent_[i].position);
            results_[k].rotations.push_back(recent_[i].rotation);
        }
    }
    recent_.clear();
}

void ExportRun::sample(int frame, const Scene& scene) {
    if (results_.empty()) {
        begin(scene);
    }
    for (auto record = scene.bodies.rbegin(); record != scene.bodies.rend(); ++record) {
        recent_.push_back(
            {scene.worldToPixels(record->body->GetPosition()), radiansToDegrees(record->body->GetAngle())});
    }
    isComplete_ = frame == endFrame_;
    if (recent_.size() >= framesAtOnce * results_.size()) {
        handOut();
    }
}

const std::vector<ExportResult>& ExportRun::results() {
    handOut();
    return results_;
}

} // namespace jostle
