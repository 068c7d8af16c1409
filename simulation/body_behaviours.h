#pragma once

#include "simulation/layer_motion.h"
#include "simulation/scene.h"
#include "simulation/tick_times.h"

#include <cstdint>

namespace jostle {

/// Whether a body takes part in nothing on this tick: its layer has not begun or has ended, or its type is `Dead`.
/// In and out points are stretched by the time divider, so that a layer lives for as many ticks more.
[[nodiscard]] bool isOutOfTime(const BodyRecord& record, const TickTimes& times);

/// The first tick, by its `TickTimes::tickTime`, on which a body may begin or cease to be out of time; infinite if
/// none.
[[nodiscard]] double nextChange(const BodyRecord& record, const TickTimes& times);

/// The in-and-out pass: fixtures of bodies that are out are sensors, and a `Dynamic` body is static while it is out.
/// To be made on each tick, also when paused. Does nothing for a body without fixtures.
void applyInAndOut(const BehaviorPreferences& preferences, BodyRecord& record, const TickTimes& times);

/// The gravity scale pass: a `Dormant` body that was woken begins to fall.
void applyGravityScale(const BodyRecord& record);

/// The follow pass: `Kinematic` and `AEmatic` bodies are moved by their layers until the last keyframe. After it, a
/// kinematic body becomes dynamic and flies off with its last speed. A body without a layer keeps what it has.
/// @param index  of the record in `Scene::bodies`
/// @param frame  of this tick
void followLayer(const Scene& scene, std::int32_t index, int frame, LayerMotion& layers);

/// The dormant pass, to be made after each step of the world: a sleeper wakes at the first touch of a body that does
/// not sleep itself, or, where it is static meanwhile, of any body, and where it overlaps a `Kinematic` one.
void wakeDormant(Scene& scene, BodyRecord& record);

} // namespace jostle
