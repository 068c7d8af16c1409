#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/suites.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

/// Places in the tree of a layer's streams.
enum class StreamNode : std::uint8_t {
    Root,
    MaskParade,
    TransformGroup,
    Anchor,
    Position,
    PositionX,
    PositionY,
    PositionZ,
    Scale,
    Rotation,
};
inline constexpr std::size_t streamNodeCount = 10;

/// The fixed facts of one place in the tree.
struct StreamNodeFacts {
    StreamNode parent;
    const char* matchName;
    const char* name;
    A_long depth;
    AEGP_StreamGroupingType grouping;
    AEGP_StreamType type;
    int components; ///< of values as the suites carry them: 0 for groups, 1 or 3
};
[[nodiscard]] const StreamNodeFacts& factsOf(StreamNode node);

[[nodiscard]] inline bool isLeaf(StreamNode node) {
    return factsOf(node).grouping == AEGP_StreamGroupingType_LEAF;
}

/// Number of children; masks for the mask parade.
[[nodiscard]] A_long childCount(const Layer& layer, StreamNode group);

/// Child of a named group; none outside 0 to `childCount` - 1, or for the mask parade.
[[nodiscard]] std::optional<StreamNode> childAt(StreamNode group, A_long index);

/// Child of a named group, the followers of a separated position included.
[[nodiscard]] std::optional<StreamNode> childNamed(const Layer& layer, StreamNode group, std::string_view matchName);

/// The layer's stream; null for groups.
[[nodiscard]] Stream* streamAt(Layer& layer, StreamNode node);

/// Match name of the root, by the kind of layer.
[[nodiscard]] const char* rootMatchName(const Layer& layer);

/// Whether the node is a position whose dimensions are separated: its keys are its followers'.
[[nodiscard]] inline bool isSeparatedLeader(const Layer& layer, StreamNode node) {
    return node == StreamNode::Position && layer.transform.separated;
}

} // namespace jostle::standalone
