#pragma once

#include "simulation/scene.h"
#include "simulation/tick_times.h"

#include <cstdint>
#include <span>
#include <vector>

namespace jostle {

/// Gathers the records that act as magnets on a tick: those with a magnetism type that are neither `Dead` nor out of
/// time.
/// @param magnets  receives their indices in `Scene::bodies`, rising; what it held is dropped
void findMagnets(const Scene& scene, const TickTimes& times, std::vector<std::int32_t>& magnets);

/// The magnet pass for one body: the force of all magnets in reach, applied at its centre until the next step has been
/// made. A sleeper in reach of a magnet wakes.
/// @param index    of the receiving record; it takes nothing if it is `Dead` or does not accept magnetism
/// @param magnets  indices, from `findMagnets`
void applyMagnets(Scene& scene, std::int32_t index, std::span<const std::int32_t> magnets);

} // namespace jostle
