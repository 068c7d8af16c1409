#include "standalone/suites/stream_nodes.h"

#include <array>

namespace jostle::standalone {

namespace {

using Node = StreamNode;

constexpr auto leaf = AEGP_StreamGroupingType_LEAF;
constexpr auto named = AEGP_StreamGroupingType_NAMED_GROUP;
constexpr auto indexed = AEGP_StreamGroupingType_INDEXED_GROUP;

// In the order of StreamNode.
constexpr std::array<StreamNodeFacts, streamNodeCount> facts{{
    {Node::Root, "", "", 0, named, AEGP_StreamType_NO_DATA, 0},
    {Node::Root, "ADBE Mask Parade", "Masks", 1, indexed, AEGP_StreamType_NO_DATA, 0},
    {Node::Root, "ADBE Transform Group", "Transform", 1, named, AEGP_StreamType_NO_DATA, 0},
    {Node::TransformGroup, "ADBE Anchor Point", "Anchor Point", 2, leaf, AEGP_StreamType_ThreeD_SPATIAL, 3},
    {Node::TransformGroup, "ADBE Position", "Position", 2, leaf, AEGP_StreamType_ThreeD_SPATIAL, 3},
    {Node::TransformGroup, "ADBE Position_0", "X Position", 2, leaf, AEGP_StreamType_OneD, 1},
    {Node::TransformGroup, "ADBE Position_1", "Y Position", 2, leaf, AEGP_StreamType_OneD, 1},
    {Node::TransformGroup, "ADBE Position_2", "Z Position", 2, leaf, AEGP_StreamType_OneD, 1},
    {Node::TransformGroup, "ADBE Scale", "Scale", 2, leaf, AEGP_StreamType_ThreeD, 3},
    {Node::TransformGroup, "ADBE Rotate Z", "Rotation", 2, leaf, AEGP_StreamType_OneD, 1},
}};

constexpr std::array rootChildren{Node::MaskParade, Node::TransformGroup};
constexpr std::array transformChildren{Node::Anchor, Node::Position, Node::Scale, Node::Rotation};

bool isFollower(Node node) {
    return node == Node::PositionX || node == Node::PositionY || node == Node::PositionZ;
}

} // namespace

const StreamNodeFacts& factsOf(StreamNode node) {
    return facts[static_cast<std::size_t>(node)];
}

A_long childCount(const Layer& layer, StreamNode group) {
    switch (group) {
    case Node::Root:
        return static_cast<A_long>(rootChildren.size());
    case Node::TransformGroup:
        return static_cast<A_long>(transformChildren.size());
    case Node::MaskParade:
        return layer.maskCount;
    default:
        return 0;
    }
}

std::optional<StreamNode> childAt(StreamNode group, A_long index) {
    const auto place = static_cast<std::size_t>(index);
    if (group == Node::Root && place < rootChildren.size())
        return rootChildren[place];
    if (group == Node::TransformGroup && place < transformChildren.size())
        return transformChildren[place];
    return std::nullopt;
}

std::optional<StreamNode> childNamed(const Layer& layer, StreamNode group, std::string_view matchName) {
    for (std::size_t i = 1; i < facts.size(); ++i) {
        const auto node = static_cast<Node>(i);
        if (facts[i].parent == group && matchName == facts[i].matchName &&
            (layer.transform.separated || !isFollower(node)))
            return node;
    }
    return std::nullopt;
}

Stream* streamAt(Layer& layer, StreamNode node) {
    Transform& transform = layer.transform;
    switch (node) {
    case Node::Anchor:
        return &transform.anchor;
    case Node::Position:
        return &transform.position;
    case Node::PositionX:
        return &transform.positionX;
    case Node::PositionY:
        return &transform.positionY;
    case Node::PositionZ:
        return &transform.positionZ;
    case Node::Scale:
        return &transform.scale;
    case Node::Rotation:
        return &transform.rotation;
    default:
        return nullptr;
    }
}

const char* rootMatchName(const Layer& layer) {
    switch (layer.kind) {
    case LayerKind::Shape:
        return "ADBE Vector Layer";
    case LayerKind::Text:
        return "ADBE Text Layer";
    case LayerKind::Camera:
        return "ADBE Camera Layer";
    case LayerKind::Light:
        return "ADBE Light Layer";
    default:
        return "ADBE AV Layer";
    }
}

} // namespace jostle::standalone
