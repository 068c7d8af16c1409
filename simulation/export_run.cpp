#include "simulation/export_run.h"

#include <algorithm>
#include <cstddef>

namespace jostle {

namespace {

// How many bodies have their samples side by side: many, as memory that was not written for long is quick to write only
// in a row, and not all, so that there is memory to be taken again while the keyframes of one body after the other are
// made.
constexpr std::size_t bodiesInGroup = 128;

// Frames that there is room for from the beginning.
constexpr int mostReserved = 4096;

// How many bodies ahead one is asked for: they lie apart, and a thousand of them do not stay in the first cache.
constexpr std::size_t bodiesAhead = 12;

} // namespace

void ExportRun::begin(const Scene& scene) {
    const std::size_t count = scene.bodies.size();
    for (auto record = scene.bodies.rbegin(); record != scene.bodies.rend(); ++record) {
        bodies_.push_back(record->body);
        anchors_.push_back(record->layerAnchor);
    }
    const auto frames = static_cast<std::size_t>(std::clamp(endFrame_ - startFrame_ + 1, 1, mostReserved));
    for (std::size_t first = 0; first < count; first += bodiesInGroup) {
        Group& group = groups_.emplace_back();
        group.bodies = std::min(bodiesInGroup, count - first);
        group.samples.reserve(frames * group.bodies);
    }
}

void ExportRun::sample(int frame, const Scene& scene) {
    if (bodies_.empty())
        begin(scene);
    std::size_t k = 0;
    for (Group& group : groups_) {
        for (const std::size_t end = k + group.bodies; k < end; ++k) {
            const b2Body& next = *bodies_[std::min(k + bodiesAhead, bodies_.size() - 1)];
            __builtin_prefetch(&next.GetTransform());
            __builtin_prefetch(&next.GetWorldCenter() + 1); // behind which the angle is
            const b2Body& body = *bodies_[k];
            group.samples.push_back({scene.worldToPixels(body.GetPosition()), radiansToDegrees(body.GetAngle())});
        }
    }
    isComplete_ = frame == endFrame_;
}

ExportResult ExportRun::result(std::size_t k) const {
    ExportResult result;
    copyTo(result, k);
    return result;
}

void ExportRun::copyTo(ExportResult& result, std::size_t k) const {
    const Group& group = groups_[k / bodiesInGroup];
    result.layerAnchor = anchors_[k];
    const std::size_t frames = group.samples.size() / group.bodies;
    result.positions.resize(frames);
    result.rotations.resize(frames);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const Sample& sample = group.samples[frame * group.bodies + k % bodiesInGroup];
        result.positions[frame] = sample.position;
        result.rotations[frame] = sample.rotation;
    }
}

void ExportRun::take(std::size_t k, ExportResult& taken) {
    copyTo(taken, k);
    Group& group = groups_[k / bodiesInGroup];
    if (++group.taken == group.bodies)
        group.samples = {};
}

} // namespace jostle
