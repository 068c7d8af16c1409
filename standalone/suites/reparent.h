#pragma once

#include "standalone/suites/host_state.h"

namespace jostle::standalone {

/// Gives a layer another parent, or none, and keeps it where it stands at time 0.
///
/// The change of space is folded into those of position, rotation and scale that have no keys; a lean that they
/// cannot express is lost, and keyframed streams stay as they are.
/// @param parent  null for none
/// @return false, with nothing done, if the parent is of another composition or hangs on the layer itself
bool setParent(LayerEntry& entry, const LayerEntry* parent);

} // namespace jostle::standalone
