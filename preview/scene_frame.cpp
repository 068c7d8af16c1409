#include "preview/scene_frame.h"

#include <box2d/b2_body.h>

namespace jostle {

b2Transform placeOf(const SceneFrame& frame, std::size_t index) {
    if (index < frame.poses.size()) {
        return {frame.poses[index].position, b2Rot(frame.poses[index].angle)};
    }
    return frame.scene.bodies[index].body->GetTransform();
}

} // namespace jostle
