#pragma once

#include "simulation/scene.h"

#include <box2d/b2_body.h>
#include <box2d/b2_world.h>

#include <memory>

namespace jostle {

/// A new world without bodies: nothing sleeps, warm starting and continuous physics are on. Its gravity counts only
/// until the first tick.
[[nodiscard]] std::unique_ptr<b2World> createWorld();

/// Makes the bodies and joints of a scene in an empty world, and stores them in their records.
///
/// The scene's tolerance is put in force first, for all worlds of the process: shapes take their skin from it when
/// they are made, and the solver reads it at each step. Bodies are made in the order of their records, after the
/// ground body, if there is one; so the world's body list holds them in reverse, with the ground body last.
///
/// The user data of a body and of its fixtures points at the record's, and says which record it is; the records must
/// keep their order while the world lives. Pieces that are too small, flat or not finite are skipped in silence, which
/// can leave a body without a fixture; other values that the library could not take are brought within its limits.
void buildWorld(Scene& scene, b2World& world);

/// Metres per second.
[[nodiscard]] b2Vec2 initialVelocity(const BodyRecord& record);

} // namespace jostle
