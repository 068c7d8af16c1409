#include "preview/scene_frame.h"

#include "simulation/body_behaviours.h"

namespace jostle {

bool isOutOfTime(const SceneFrame& frame, std::size_t index) {
    const BodyRecord& record = frame.scene.bodies[index];
    return frame.frame < 0 ? record.userData->outOfTime : isOutOfTime(record, tickTimes(frame.scene, frame.frame));
}

BodySample sampleOf(const SceneFrame& frame, std::size_t index) {
    return frame.samples.empty() ? sampleOf(frame.scene.bodies[index]) : frame.samples[index];
}

b2Transform placeOf(const SceneFrame& frame, std::size_t index) {
    return frame.samples.empty() ? frame.scene.bodies[index].body->GetTransform() : frame.samples[index].place();
}

} // namespace jostle
