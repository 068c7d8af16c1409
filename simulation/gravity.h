#pragma once

#include "simulation/layer_motion.h"
#include "simulation/scene.h"

namespace jostle {

/// Gravity from the global magnitude and direction, in metres per second squared, worked out in floats.
[[nodiscard]] b2Vec2 panelGravity(const GlobalProperties& globals);

/// The gravity of a tick: from the layer if so set, else the panel's.
/// @param simTime  seconds at which the layer is read
[[nodiscard]] b2Vec2 currentGravity(const GlobalProperties& globals, LayerMotion& layers, double simTime);

} // namespace jostle
