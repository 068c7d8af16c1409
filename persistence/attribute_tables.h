#pragma once

#include <span>

#include "persistence/attribute.h"
#include "simulation/scene.h"

namespace jostle {

/// The settings of a body, in the order in which they are kept.
[[nodiscard]] std::span<const Attribute<BodyRecord>> bodyAttributes();

/// The settings of the section "solver".
[[nodiscard]] std::span<const Attribute<GlobalProperties>> solverAttributes();

/// The settings of the section "gravity".
[[nodiscard]] std::span<const Attribute<GlobalProperties>> gravityAttributes();

} // namespace jostle
