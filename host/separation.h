#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "host/chain.h"
#include "host/messages.h"

namespace jostle {

/// The layers of the active composition that would fall as one piece though they have parts: those with two masks or
/// more, and shape layers with two groups or more at the top of their contents.
///
/// Only layers that become bodies, as far as their switches tell. A shape layer that qualifies for both reasons is
/// there twice, one after the other.
/// @return layer indices from the top; none if the host refuses an answer
[[nodiscard]] std::vector<int> findSeparableLayers(const HostContext& context);

/// How far a separation is, told before each part.
struct SeparationProgress {
    int layer = 0; ///< of the layers to be separated, from 1
    int part = 0;  ///< of this layer's masks or elements, from 1
    int parts = 0;
    bool isMask = false;
};

/// A shape layer whose groups were separated. They are drawn without the masks that the hidden source has.
struct UnmaskedParts {
    int layerIndex = 0; ///< before the separation
    std::string layerName;
    int masks = 0;
};

struct SeparationReport {
    int layersSeparated = 0; ///< without a refusal; one of paths alone gives no layer, and stays as it is
    int layersMade = 0;
    int layersFailed = 0;
    std::vector<UnmaskedParts> unmasked; ///< from the top
    A_Err error = A_Err_NONE;            ///< the host's first refusal
};

/// Splits layers of the active composition: each mask or each group of a shape layer becomes a layer of its own, above
/// its source, which is hidden and kept.
///
/// A layer with masks is duplicated for each of them, with all that it has; a shape layer's groups are copied to new
/// layers, with the transform that the source has at time 0, through the host's clipboard. Shapes outside of groups
/// stay behind. All of it is one undo group, "Jostle - Shapes Separation". A layer that fails is told to `messages`;
/// what was done stays and the others go on.
///
/// @param layerIndices  in ascending order; a repeated one counts once
/// @param messages      null if nobody is to be told
/// @param progress      may be empty
SeparationReport separateLayers(const HostContext& context, std::span<const int> layerIndices, MessageSink* messages,
                                const std::function<void(const SeparationProgress&)>& progress);

} // namespace jostle
