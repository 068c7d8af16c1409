#include "preview/scene_frame.h"

#include "simulation/body_behaviours.h"

#include <box2d/b2_body.h>

namespace jostle {

bool isOutOfTime(const SceneFrame& frame, std::size_t index) {
    const BodyRecord& record = frame.scene.bodies[index];
    if (index < frame.poses.size()) {
        return frame.poses[index].outOfTime;
    }
    return frame.frame < 0 ? record.userData->outOfTime : isOutOfTime(record, tickTimes(frame.scene, frame.frame));
}

b2Transform placeOf(const SceneFrame& frame, std::size_t index) {
    if (index < frame.poses.size()) {
        return {frame.poses[index].position, b2Rot(frame.poses[index].angle)};
    }
    return frame.scene.bodies[index].body->GetTransform();
}

} // namespace jostle
