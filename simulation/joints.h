#pragma once

#include "simulation/scene.h"

#include <box2d/b2_world.h>

namespace jostle {

/// Makes the joints of a scene whose bodies are in the world, and stores them in their records; also refreshes
/// `connectedJoints` of the bodies and what the preview draws of pivots.
///
/// A `Spring`, and a joint that does not name two bodies, gets none. Values that the library could not take are brought
/// within its limits; limits given the wrong way round are exchanged.
void createJoints(Scene& scene, b2World& world);

/// Before each step: gives every `Distance` joint with a frequency the stiffness that makes it oscillate at that
/// frequency with the mass that its ends have now. That mass changes as bodies turn about their anchors or change type.
/// @param stepTime  seconds, of the step to come
void tuneFrequencies(const Scene& scene, float stepTime);

/// The spring pass, after the steps of a playing tick: the forces stay on the bodies until the next tick's first step.
/// Springs between bodies that wait to be woken pull nothing.
void applySprings(const Scene& scene);

} // namespace jostle
