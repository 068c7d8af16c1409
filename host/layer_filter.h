#pragma once

#include "host/import_report.h"
#include "host/layer.h"

namespace jostle {

/// Whether a layer takes part in the simulation: it is seen, flat, and no camera, light, null, guide or adjustment
/// layer. The order of the tests decides which reason is told when several hold.
///
/// @param type  the layer's
/// @return `Body`, or why not
[[nodiscard]] LayerOutcome visibilityOf(HostChain& chain, const Layer& layer, AEGP_ObjectType type);

/// Whether a layer becomes a body: as `visibilityOf`, and it has something to show.
[[nodiscard]] LayerOutcome outcomeOf(HostChain& chain, const Layer& layer, AEGP_ObjectType type);

} // namespace jostle
