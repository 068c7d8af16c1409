#pragma once

#include <string>
#include <string_view>

#include "host/suites.h"
#include "standalone/document/composition.h"

/// A layer's tree of streams as the suites show it.
namespace jostle::standalone {

[[nodiscard]] inline bool isLeaf(const TreeNode& node) {
    return factsOf(node).grouping == Grouping::Leaf;
}
[[nodiscard]] AEGP_StreamGroupingType groupingOf(const TreeNode& node);
[[nodiscard]] AEGP_StreamType typeOf(const TreeNode& node);

/// Steps from the root.
[[nodiscard]] A_long depthOf(const TreeNode& node);

/// Number of children. The single dimensions of a position are not among them.
[[nodiscard]] A_long childCount(const TreeNode& group);

/// Child of a group; null outside 0 to `childCount` - 1.
[[nodiscard]] TreeNode* childAt(const TreeNode& group, A_long index);

/// Child of a named group, the single dimensions of a separated position included; null if there is none.
[[nodiscard]] TreeNode* childNamed(const Layer& layer, const TreeNode& group, std::string_view matchName);

/// Place of a node among its parent's children; not for the root.
[[nodiscard]] std::size_t placeInParent(const TreeNode& node);

[[nodiscard]] std::string_view matchNameOf(const Layer& layer, const TreeNode& node);

/// UTF-8. Nodes of lists that have no name are counted, as in "Mask 2".
[[nodiscard]] std::string displayNameOf(const Layer& layer, const TreeNode& node);

/// Whether the node is a position whose dimensions are separated: its keys are its followers'.
[[nodiscard]] inline bool isSeparatedLeader(const Layer& layer, const TreeNode& node) {
    return node.kind == NodeKind::Position && layer.transform.separated;
}

} // namespace jostle::standalone
