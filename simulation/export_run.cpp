#include "simulation/export_run.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace jostle {

namespace {

// Samples go to each body's lists when the run is over: to write to two lists of every body in every frame would fill
// the caches that the solver lives in. Until then they are kept in blocks, which never have to be copied to grow.
constexpr std::size_t framesInBlock = 64;

// How many bodies ahead one is asked for: they lie apart, and a thousand of them do not stay in the first cache.
constexpr std::size_t bodiesAhead = 12;

} // namespace

void ExportRun::begin(const Scene& scene) {
    results_.resize(scene.bodies.size());
    bodies_.resize(scene.bodies.size());
    for (std::size_t k = 0; k < results_.size(); ++k) {
        const BodyRecord& record = scene.bodies[results_.size() - 1 - k];
        results_[k].layerAnchor = record.layerAnchor;
        bodies_[k] = record.body;
    }
}

void ExportRun::sample(int frame, const Scene& scene) {
    if (results_.empty())
        begin(scene);
    const std::size_t count = bodies_.size();
    if (blocks_.empty() || blocks_.back().size() >= framesInBlock * count)
        blocks_.emplace_back().reserve(framesInBlock * count);
    std::vector<Sample>& block = blocks_.back();
    for (std::size_t k = 0; k < count; ++k) {
        __builtin_prefetch(bodies_[std::min(k + bodiesAhead, count - 1)]);
        const b2Body& body = *bodies_[k];
        block.push_back({scene.worldToPixels(body.GetPosition()), radiansToDegrees(body.GetAngle())});
    }
    isComplete_ = frame == endFrame_;
}

const std::vector<ExportResult>& ExportRun::results() {
    const std::size_t count = results_.size();
    std::size_t samples = 0;
    for (const std::vector<Sample>& block : blocks_)
        samples += block.size();
    for (ExportResult& result : results_) {
        result.positions.reserve(result.positions.size() + samples / count);
        result.rotations.reserve(result.rotations.size() + samples / count);
    }
    for (std::vector<Sample>& block : std::exchange(blocks_, {})) {
        for (std::size_t k = 0; k < count; ++k) {
            ExportResult& result = results_[k];
            const std::size_t before = result.positions.size();
            const std::size_t added = block.size() / count;
            result.positions.resize(before + added);
            result.rotations.resize(before + added);
            const Sample* sample = block.data() + k;
            for (std::size_t i = before; i < before + added; ++i, sample += count) {
                result.positions[i] = sample->position;
                result.rotations[i] = sample->rotation;
            }
        }
        block = {};
    }
    return results_;
}

} // namespace jostle
