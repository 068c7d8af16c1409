#include "editing/frame_samples.h"

namespace jostle {

void FrameSamples::add(int frame, const Scene& scene) {
    const std::size_t bytes = scene.bodies.size() * sizeof(BodySample);
    if (frame != count() || (frames_.size() + 1) * bytes > memoryLimit_) {
        return;
    }
    std::vector<BodySample>& samples = frames_.emplace_back();
    samples.reserve(scene.bodies.size());
    for (const BodyRecord& record : scene.bodies) {
        samples.push_back(sampleOf(record));
    }
}

} // namespace jostle
