#include "editing/picking.h"

#include <box2d/b2_body.h>
#include <box2d/b2_fixture.h>
#include <box2d/b2_shape.h>

namespace jostle {

namespace {

bool covers(const b2Body& body, const b2Transform& place, b2Vec2 point) {
    for (const b2Fixture* fixture = body.GetFixtureList(); fixture != nullptr; fixture = fixture->GetNext()) {
        if (fixture->GetShape()->TestPoint(place, point)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::int32_t pickBody(const Scene& scene, b2Vec2 point, std::span<const BodySample> samples) {
    for (std::int32_t i = 0; i < scene.bodyCount(); ++i) { // the topmost layer comes first
        const BodyRecord& record = scene.bodies[static_cast<std::size_t>(i)];
        if (!record.userData->selectable || record.body == nullptr) {
            continue;
        }
        const b2Transform place =
            samples.empty() ? record.body->GetTransform() : samples[static_cast<std::size_t>(i)].place();
        if (covers(*record.body, place, point)) {
            return i;
        }
    }
    return -1;
}

} // namespace jostle
