#pragma once

#include "standalone/suites/host_state.h"

namespace jostle::standalone {

/// Gives each dimension of a layer's position a stream of its own, or joins them again. Values at keys stay; curved
/// paths become straight when they are separated, and easing becomes linear when dimensions are joined.
void setDimensionsSeparated(LayerEntry& entry, bool separated);

} // namespace jostle::standalone
