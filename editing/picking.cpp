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
        b2Transform place = record.body->GetTransform();
        if (!samples.empty()) {
            const BodySample& sample = samples[static_cast<std::size_t>(i)];
            place.Set(sample.position, sample.angle);
        }
        if (covers(*record.body, place, point)) {
            return i;
        }
    }
    return -1;
}

} // namespace jostle
