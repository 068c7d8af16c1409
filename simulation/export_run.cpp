#include "simulation/export_run.h"

#include <algorithm>
#include <cstddef>

namespace jostle {

namespace {

// Samples go to each body's lists when the run is over: to write to two lists of every body in every frame would fill
// the caches that the solver lives in. Until then they are kept in blocks, which never have to be copied to grow, and
// are small enough for their memory to be taken again for the keyframes.
constexpr std::size_t bytesInBlock = 96 * 1024;

// How many bodies are handed their samples at a time: these lie side by side in each frame.
constexpr std::size_t bodiesAtOnce = 16;

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
    const std::size_t blockSize =
        count * std::max<std::size_t>(bytesInBlock / sizeof(Sample) / std::max<std::size_t>(count, 1), 1);
    if (blocks_.empty() || blocks_.back().size() >= blockSize)
        blocks_.emplace_back().reserve(blockSize);
    std::vector<Sample>& block = blocks_.back();
    for (std::size_t k = 0; k < count; ++k) {
        const b2Body& next = *bodies_[std::min(k + bodiesAhead, count - 1)];
        __builtin_prefetch(&next.GetTransform());
        __builtin_prefetch(&next.GetWorldCenter() + 1); // behind which the angle is
        const b2Body& body = *bodies_[k];
        block.push_back({scene.worldToPixels(body.GetPosition()), radiansToDegrees(body.GetAngle())});
    }
    isComplete_ = frame == endFrame_;
}

/// Hands a body its samples of one block.
void ExportRun::append(const std::vector<Sample>& block, std::size_t k) {
    ExportResult& result = results_[k];
    const std::size_t before = result.positions.size();
    const std::size_t after = before + block.size() / results_.size();
    result.positions.resize(after);
    result.rotations.resize(after);
    b2Vec2* position = result.positions.data() + before;
    float* rotation = result.rotations.data() + before;
    for (std::size_t i = k; i < block.size(); i += results_.size()) {
        *position++ = block[i].position;
        *rotation++ = block[i].rotation;
    }
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
    for (std::size_t first = 0; first < count; first += bodiesAtOnce) {
        const std::size_t last = std::min(first + bodiesAtOnce, count);
        for (const std::vector<Sample>& block : blocks_) {
            for (std::size_t k = first; k < last; ++k)
                append(block, k);
        }
    }
    blocks_.clear();
    return results_;
}

} // namespace jostle
