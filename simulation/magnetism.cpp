#include "simulation/magnetism.h"

#include "simulation/body_behaviours.h"
#include "simulation/numbers.h"

#include <box2d/b2_body.h>

namespace jostle {

namespace {

constexpr std::int32_t attracts = 1;
constexpr std::int32_t repels = 2;
constexpr float intensityPerNewton = 10.0f; // at one metre

/// F = strength / distance^2 towards the magnet, or away from it. There is no fade at the edge of its reach.
b2Vec2 magnetForce(const BodyRecord& magnet, b2Vec2 toMagnet, float distance) {
    const float strength = bounded(magnet.magnetIntensity) / intensityPerNewton;
    const b2Vec2 force = (strength / (distance * distance)) * toMagnet;
    switch (magnet.magnetismType) {
    case attracts:
        return force;
    case repels:
        return -force;
    default:
        return {0.0f, 0.0f}; // wakes sleepers all the same
    }
}

} // namespace

void findMagnets(const Scene& scene, const TickTimes& times, std::vector<std::int32_t>& magnets) {
    magnets.clear();
    for (std::int32_t i = 0; i < scene.bodyCount(); ++i) {
        const BodyRecord& record = scene.bodies[static_cast<std::size_t>(i)];
        if (record.magnetismType != 0 && !isOutOfTime(record, times)) {
            magnets.push_back(i);
        }
    }
}

void applyMagnets(Scene& scene, std::int32_t index, std::span<const std::int32_t> magnets) {
    BodyRecord& receiver = scene.bodies[static_cast<std::size_t>(index)];
    if (!receiver.acceptMagnetism || receiver.type == BodyType::Dead) {
        return;
    }
    b2Vec2 sum(0.0f, 0.0f);
    for (const std::int32_t i : magnets) {
        const BodyRecord& magnet = scene.bodies[static_cast<std::size_t>(i)];
        b2Vec2 toMagnet = magnet.body->GetWorldCenter() - receiver.body->GetWorldCenter();
        const float distance = toMagnet.Length();
        if (i == index || !(magnet.magnetDistance / pixelsPerMetre > distance)) {
            continue;
        }
        // Two bodies with the same centre have no direction to push each other in, and get no force.
        if (toMagnet.Normalize() > 0.0f) {
            sum += magnetForce(magnet, toMagnet, distance);
        }
        if (receiver.type == BodyType::Dormant) {
            receiver.isDormant = false;
        }
    }
    receiver.body->ApplyForceToCenter(boundedForce(*receiver.body, sum), true);
}

} // namespace jostle
