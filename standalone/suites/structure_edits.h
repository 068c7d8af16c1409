#pragma once

#include <memory>
#include <optional>
#include <string>

#include "standalone/suites/host_state.h"

/// Changes to lists: of layers, of masks, of elements. Each goes through the journal.
namespace jostle::standalone {

/// Takes a node out of the list that holds it. References to it and below are refused from then on.
void removeNode(LayerEntry& entry, TreeNode& node);

/// Adds a node at the end of a list.
void appendNode(LayerEntry& entry, TreeNode& list, std::shared_ptr<TreeNode> node);

/// Adds a mask without an outline after the layer's others, named "Mask 1" and so on.
/// @return null for a layer that has no masks: a camera or a light
TreeNode* addMask(LayerEntry& entry);

/// Adds a null at the top, in the middle of the composition and as long as it unless told otherwise.
/// @param name            UTF-8; empty for "Null 1" and so on
/// @param durationFrames  from frame 0
AEGP_LayerH createNull(CompEntry& comp, std::string name, std::optional<double> durationFrames);

/// Adds a shape layer without contents at the top, in the middle of the composition and as long as it: "Shape Layer 1"
/// and so on.
AEGP_LayerH createShapeLayer(CompEntry& comp);

/// Adds a copy right above a layer.
AEGP_LayerH duplicateLayer(LayerEntry& entry);

/// Takes a layer out of its composition. Layers that hang on it stay where they are at time 0, without a parent.
void deleteLayer(LayerEntry& entry);

/// @param place  of the layer afterwards, below the number of layers
void moveLayer(LayerEntry& entry, std::size_t place);

/// Puts copies of what is selected among elements and masks into the clipboard.
/// @return false, with the clipboard as it was, if that is nothing
bool copySelection(const CompEntry& comp);

/// Adds copies of what is in the clipboard: elements to the selected shape layer, group or contents, masks to the
/// selected layer or masks. With several of them selected, to each.
/// @return false, with nothing done, if nothing can be pasted there
bool pasteAtSelection(CompEntry& comp);

} // namespace jostle::standalone
