#pragma once

#include <string>

#include "standalone/suites/host_state.h"

/// The expressions of a leaf; a separated position has those of its single dimensions.
namespace jostle::standalone {

[[nodiscard]] bool hasEnabledExpression(const Layer& layer, const TreeNode& leaf);

/// @return false, with nothing done, if one is to be enabled where there is none
bool enableExpression(LayerEntry& entry, TreeNode& leaf, bool enabled);

/// The text as the document has it, the first there is; empty without one.
[[nodiscard]] std::string expressionText(const LayerEntry& entry, const TreeNode& leaf);

/// Takes the expression away, enabled or not.
void clearExpression(LayerEntry& entry, TreeNode& leaf);

} // namespace jostle::standalone
