#pragma once

#include <span>

#include "persistence/attribute.h"
#include "simulation/scene.h"

namespace jostle {

/// The settings of a body, in the order in which a file has them; before them stands the layer's identifier.
[[nodiscard]] std::span<const Attribute<BodyRecord>> bodyAttributes();

/// Names that bodies' settings had in earlier files. Nothing writes them.
[[nodiscard]] std::span<const Attribute<BodyRecord>> formerBodyAttributes();

/// The settings of a joint of some type, in the order in which a file has them; before them stand the type and the two
/// bodies.
[[nodiscard]] std::span<const Attribute<JointRecord>> jointAttributes(JointType type);

/// The settings of the section "preview".
[[nodiscard]] std::span<const Attribute<PreviewProperties>> previewAttributes();

/// The settings of the section "solver".
[[nodiscard]] std::span<const Attribute<GlobalProperties>> solverAttributes();

/// The settings of the section "gravity".
[[nodiscard]] std::span<const Attribute<GlobalProperties>> gravityAttributes();

} // namespace jostle
