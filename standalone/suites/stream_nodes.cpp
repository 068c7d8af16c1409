#include "standalone/suites/stream_nodes.h"

#include <algorithm>

namespace jostle::standalone {

namespace {

using Kind = NodeKind;

bool isFollower(const TreeNode& node) {
    return node.kind == Kind::PositionX || node.kind == Kind::PositionY || node.kind == Kind::PositionZ;
}

const char* rootMatchName(LayerKind kind) {
    switch (kind) {
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

} // namespace

AEGP_StreamGroupingType groupingOf(const TreeNode& node) {
    switch (factsOf(node).grouping) {
    case Grouping::Named:
        return AEGP_StreamGroupingType_NAMED_GROUP;
    case Grouping::Indexed:
        return AEGP_StreamGroupingType_INDEXED_GROUP;
    default:
        return AEGP_StreamGroupingType_LEAF;
    }
}

AEGP_StreamType typeOf(const TreeNode& node) {
    switch (factsOf(node).form) {
    case ValueForm::One:
        return AEGP_StreamType_OneD;
    case ValueForm::Two:
        return AEGP_StreamType_TwoD;
    case ValueForm::TwoSpatial:
        return AEGP_StreamType_TwoD_SPATIAL;
    case ValueForm::Three:
        return AEGP_StreamType_ThreeD;
    case ValueForm::ThreeSpatial:
        return AEGP_StreamType_ThreeD_SPATIAL;
    case ValueForm::Color:
        return AEGP_StreamType_COLOR;
    case ValueForm::Path:
        return AEGP_StreamType_MASK;
    default:
        return AEGP_StreamType_NO_DATA;
    }
}

A_long depthOf(const TreeNode& node) {
    A_long depth = 0;
    for (const TreeNode* above = node.parent; above != nullptr; above = above->parent)
        ++depth;
    return depth;
}

A_long childCount(const TreeNode& group) {
    const auto& children = group.children;
    const auto followers =
        group.kind != Kind::TransformGroup
            ? 0
            : std::count_if(children.begin(), children.end(), [](const TreeNode* child) { return isFollower(*child); });
    return static_cast<A_long>(static_cast<std::ptrdiff_t>(children.size()) - followers);
}

TreeNode* childAt(const TreeNode& group, A_long index) {
    if (index < 0)
        return nullptr;
    if (group.kind != Kind::TransformGroup) {
        const auto place = static_cast<std::size_t>(index);
        return place < group.children.size() ? group.children[place] : nullptr;
    }
    for (TreeNode* child : group.children) {
        if (!isFollower(*child) && index-- == 0)
            return child;
    }
    return nullptr;
}

TreeNode* childNamed(const Layer& layer, const TreeNode& group, std::string_view matchName) {
    for (TreeNode* child : group.children) {
        if (matchName == matchNameOf(layer, *child) && (layer.transform.separated || !isFollower(*child)))
            return child;
    }
    return nullptr;
}

std::size_t placeInParent(const TreeNode& node) {
    const NodeChildren& siblings = node.parent->children;
    std::size_t place = 0;
    while (place < siblings.size() && siblings[place] != &node)
        ++place;
    return place;
}

std::string_view matchNameOf(const Layer& layer, const TreeNode& node) {
    if (node.kind == Kind::Root)
        return rootMatchName(layer.kind);
    return node.kind == Kind::OtherElement ? std::string_view(*node.matchName) : factsOf(node).matchName;
}

std::string displayNameOf(const Layer& layer, const TreeNode& node) {
    if (node.kind == Kind::Root)
        return layer.name;
    if (!node.name->empty())
        return *node.name;
    std::string name = factsOf(node).displayName;
    if (!name.empty() && node.parent != nullptr && factsOf(*node.parent).grouping == Grouping::Indexed)
        name += ' ' + std::to_string(placeInParent(node) + 1);
    return name;
}

} // namespace jostle::standalone
