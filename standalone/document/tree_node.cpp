#include "standalone/document/tree_node.h"

#include <algorithm>
#include <array>

#include "standalone/document/composition.h"

namespace jostle::standalone {

namespace {

using K = NodeKind;
using F = ValueForm;

constexpr auto leaf = Grouping::Leaf;
constexpr auto named = Grouping::Named;
constexpr auto indexed = Grouping::Indexed;

constexpr const char* innerRoundness = "ADBE Vector Star Inner Roundess"; // the host's spelling, as the outer one
constexpr const char* outerRoundness = "ADBE Vector Star Outer Roundess";

constexpr std::array<NodeFacts, nodeKindCount> facts{{
    {K::Root, K::Root, "", "", named, F::None, "", 0},
    {K::VectorsRoot, K::Root, "ADBE Root Vectors Group", "Contents", indexed, F::None, "shapes", 0},
    {K::MaskParade, K::Root, "ADBE Mask Parade", "Masks", indexed, F::None, "masksProperties", 0},
    {K::TransformGroup, K::Root, "ADBE Transform Group", "Transform", named, F::None, "ks", 0},

    {K::Anchor, K::TransformGroup, "ADBE Anchor Point", "Anchor Point", leaf, F::ThreeSpatial, "a", 0},
    {K::Position, K::TransformGroup, "ADBE Position", "Position", leaf, F::ThreeSpatial, "p", 0},
    {K::PositionX, K::TransformGroup, "ADBE Position_0", "X Position", leaf, F::One, "x", 0},
    {K::PositionY, K::TransformGroup, "ADBE Position_1", "Y Position", leaf, F::One, "y", 0},
    {K::PositionZ, K::TransformGroup, "ADBE Position_2", "Z Position", leaf, F::One, "z", 0},
    {K::Scale, K::TransformGroup, "ADBE Scale", "Scale", leaf, F::Three, "s", 100},
    {K::Rotation, K::TransformGroup, "ADBE Rotate Z", "Rotation", leaf, F::One, "r", 0},
    {K::Opacity, K::TransformGroup, "ADBE Opacity", "Opacity", leaf, F::One, "o", 100},

    {K::Mask, K::MaskParade, "ADBE Mask Atom", "Mask", named, F::None, "", 0},
    {K::MaskShape, K::Mask, "ADBE Mask Shape", "Mask Path", leaf, F::Path, "pt", 0},
    {K::MaskFeather, K::Mask, "ADBE Mask Feather", "Mask Feather", leaf, F::Two, "f", 0},
    {K::MaskOpacity, K::Mask, "ADBE Mask Opacity", "Mask Opacity", leaf, F::One, "o", 100},
    {K::MaskOffset, K::Mask, "ADBE Mask Offset", "Mask Expansion", leaf, F::One, "x", 0},

    {K::Group, K::Group, "ADBE Vector Group", "Group", named, F::None, "gr", 0},
    {K::GroupContents, K::Group, "ADBE Vectors Group", "Contents", indexed, F::None, "it", 0},
    {K::GroupTransform, K::Group, "ADBE Vector Transform Group", "Transform", named, F::None, "tr", 0},
    {K::GroupAnchor, K::GroupTransform, "ADBE Vector Anchor", "Anchor Point", leaf, F::TwoSpatial, "a", 0},
    {K::GroupPosition, K::GroupTransform, "ADBE Vector Position", "Position", leaf, F::TwoSpatial, "p", 0},
    {K::GroupScale, K::GroupTransform, "ADBE Vector Scale", "Scale", leaf, F::Two, "s", 100},
    {K::GroupSkew, K::GroupTransform, "ADBE Vector Skew", "Skew", leaf, F::One, "sk", 0},
    {K::GroupSkewAxis, K::GroupTransform, "ADBE Vector Skew Axis", "Skew Axis", leaf, F::One, "sa", 0},
    {K::GroupRotation, K::GroupTransform, "ADBE Vector Rotation", "Rotation", leaf, F::One, "r", 0},
    {K::GroupOpacity, K::GroupTransform, "ADBE Vector Group Opacity", "Opacity", leaf, F::One, "o", 100},

    {K::Rectangle, K::Rectangle, "ADBE Vector Shape - Rect", "Rectangle Path", named, F::None, "rc", 0},
    {K::RectangleSize, K::Rectangle, "ADBE Vector Rect Size", "Size", leaf, F::Two, "s", 0},
    {K::RectanglePosition, K::Rectangle, "ADBE Vector Rect Position", "Position", leaf, F::TwoSpatial, "p", 0},
    {K::RectangleRoundness, K::Rectangle, "ADBE Vector Rect Roundness", "Roundness", leaf, F::One, "r", 0},
    {K::Ellipse, K::Ellipse, "ADBE Vector Shape - Ellipse", "Ellipse Path", named, F::None, "el", 0},
    {K::EllipseSize, K::Ellipse, "ADBE Vector Ellipse Size", "Size", leaf, F::Two, "s", 0},
    {K::EllipsePosition, K::Ellipse, "ADBE Vector Ellipse Position", "Position", leaf, F::TwoSpatial, "p", 0},
    {K::Star, K::Star, "ADBE Vector Shape - Star", "Polystar Path", named, F::None, "sr", 0},
    {K::StarType, K::Star, "ADBE Vector Star Type", "Type", leaf, F::One, "sy", 1},
    {K::StarPoints, K::Star, "ADBE Vector Star Points", "Points", leaf, F::One, "pt", 0},
    {K::StarPosition, K::Star, "ADBE Vector Star Position", "Position", leaf, F::TwoSpatial, "p", 0},
    {K::StarRotation, K::Star, "ADBE Vector Star Rotation", "Rotation", leaf, F::One, "r", 0},
    {K::StarInnerRadius, K::Star, "ADBE Vector Star Inner Radius", "Inner Radius", leaf, F::One, "ir", 0},
    {K::StarOuterRadius, K::Star, "ADBE Vector Star Outer Radius", "Outer Radius", leaf, F::One, "or", 0},
    {K::StarInnerRoundness, K::Star, innerRoundness, "Inner Roundness", leaf, F::One, "is", 0},
    {K::StarOuterRoundness, K::Star, outerRoundness, "Outer Roundness", leaf, F::One, "os", 0},
    {K::Path, K::Path, "ADBE Vector Shape - Group", "Path", named, F::None, "sh", 0},
    {K::PathShape, K::Path, "ADBE Vector Shape", "Path", leaf, F::Path, "ks", 0},
    {K::Fill, K::Fill, "ADBE Vector Graphic - Fill", "Fill", named, F::None, "fl", 0},
    {K::FillColor, K::Fill, "ADBE Vector Fill Color", "Color", leaf, F::Color, "c", 1},
    {K::FillOpacity, K::Fill, "ADBE Vector Fill Opacity", "Opacity", leaf, F::One, "o", 100},
    {K::Stroke, K::Stroke, "ADBE Vector Graphic - Stroke", "Stroke", named, F::None, "st", 0},
    {K::StrokeColor, K::Stroke, "ADBE Vector Stroke Color", "Color", leaf, F::Color, "c", 1},
    {K::StrokeOpacity, K::Stroke, "ADBE Vector Stroke Opacity", "Opacity", leaf, F::One, "o", 100},
    {K::StrokeWidth, K::Stroke, "ADBE Vector Stroke Width", "Stroke Width", leaf, F::One, "w", 0},

    {K::GradientFill, K::GradientFill, "ADBE Vector Graphic - G-Fill", "Gradient Fill", named, F::None, "gf", 0},
    {K::GradientStroke, K::GradientStroke, "ADBE Vector Graphic - G-Stroke", "Gradient Stroke", named, F::None, "gs",
     0},
    {K::Trim, K::Trim, "ADBE Vector Filter - Trim", "Trim Paths", named, F::None, "tm", 0},
    {K::Repeater, K::Repeater, "ADBE Vector Filter - Repeater", "Repeater", named, F::None, "rp", 0},
    {K::MergePaths, K::MergePaths, "ADBE Vector Filter - Merge", "Merge Paths", named, F::None, "mm", 0},
    {K::RoundCorners, K::RoundCorners, "ADBE Vector Filter - RC", "Round Corners", named, F::None, "rd", 0},
    {K::OffsetPaths, K::OffsetPaths, "ADBE Vector Filter - Offset", "Offset Paths", named, F::None, "op", 0},
    {K::PuckerBloat, K::PuckerBloat, "ADBE Vector Filter - PB", "Pucker & Bloat", named, F::None, "pb", 0},
    {K::ZigZag, K::ZigZag, "ADBE Vector Filter - Zigzag", "Zig Zag", named, F::None, "zz", 0},
    {K::Twist, K::Twist, "ADBE Vector Filter - Twist", "Twist", named, F::None, "tw", 0},
    {K::OtherElement, K::OtherElement, "", "", leaf, F::None, "", 0},
}};

constexpr bool tableIsInOrder() {
    for (std::size_t i = 0; i < facts.size(); ++i) {
        if (facts[i].kind != static_cast<NodeKind>(i))
            return false;
    }
    return true;
}
static_assert(tableIsInOrder());

int componentsOf(ValueForm form) {
    switch (form) {
    case F::Two:
    case F::TwoSpatial:
        return 2;
    case F::Three:
    case F::ThreeSpatial:
    case F::Color:
        return 3;
    default:
        return 1;
    }
}

Stream* transformStream(Transform& transform, NodeKind kind) {
    switch (kind) {
    case K::Anchor:
        return &transform.anchor;
    case K::Position:
        return &transform.position;
    case K::PositionX:
        return &transform.dimensions.own().x;
    case K::PositionY:
        return &transform.dimensions.own().y;
    case K::PositionZ:
        return &transform.dimensions.own().z;
    case K::Scale:
        return &transform.scale;
    case K::Rotation:
        return &transform.rotation;
    case K::Opacity:
        return &transform.opacity;
    default:
        return nullptr;
    }
}

/// Whether nodes of a kind have one child of another from their beginning to their end.
constexpr bool isFixedChild(const NodeFacts& child, const NodeFacts& parent) {
    return child.parent == parent.kind && child.kind != parent.kind && parent.grouping == named &&
           parent.kind != K::Root;
}

struct FixedNodes {
    std::uint8_t children = 0; ///< fixed ones
    std::uint8_t total = 1;    ///< nodes in all, with itself
    std::uint8_t streams = 0;  ///< of the nodes in all
};

constexpr std::array<FixedNodes, nodeKindCount> countFixedNodes() {
    std::array<FixedNodes, nodeKindCount> all{};
    // A kind stands behind the one that holds it.
    for (std::size_t i = nodeKindCount; i-- > 0;) {
        all[i].streams = facts[i].form != F::None && facts[i].form != F::Path ? 1 : 0;
        for (const NodeFacts& below : facts) {
            if (isFixedChild(below, facts[i])) {
                const FixedNodes& within = all[static_cast<std::size_t>(below.kind)];
                ++all[i].children;
                all[i].total = static_cast<std::uint8_t>(all[i].total + within.total);
                all[i].streams = static_cast<std::uint8_t>(all[i].streams + within.streams);
            }
        }
    }
    return all;
}
constexpr std::array<FixedNodes, nodeKindCount> fixedNodes = countFixedNodes();

/// The places of a node and of all that it always has, side by side in memory.
class NodeBlock {
public:
    NodeBlock(NodeKind kind, bool hasOwnStreams) : places_(std::make_shared<Places>()) {
        const FixedNodes& count = fixedNodes[static_cast<std::size_t>(kind)];
        places_->nodes = std::vector<TreeNode>(count.total);
        if (hasOwnStreams)
            places_->streams = std::vector<Stream>(count.streams);
        nextNode_ = places_->nodes.data();
        nextStream_ = places_->streams.data();
    }

    TreeNode& takeNode() { return *nextNode_++; }
    Stream& takeStream() { return *nextStream_++; }
    /// The first node, which holds all others.
    [[nodiscard]] std::shared_ptr<TreeNode> node() const { return {places_, places_->nodes.data()}; }

private:
    struct Places {
        std::vector<TreeNode> nodes;
        std::vector<Stream> streams;
    };
    std::shared_ptr<Places> places_;
    TreeNode* nextNode_ = nullptr;
    Stream* nextStream_ = nullptr;
};

/// A child that lies beside its parent.
std::shared_ptr<TreeNode> fixedChild(TreeNode& node) {
    return {std::shared_ptr<TreeNode>(), &node};
}

/// Makes a node with the streams that its facts ask for, and all that it always has.
TreeNode& fill(NodeBlock& block, NodeKind kind, TreeNode* parent, bool hasOwnStreams) {
    const NodeFacts& fact = factsOf(kind);
    TreeNode& node = block.takeNode();
    node.kind = kind;
    node.parent = parent;
    if (fact.form == F::Path) {
        node.path = std::make_shared<PathStream>();
    } else if (fact.form != F::None && hasOwnStreams) {
        node.stream = node.own = &block.takeStream();
        node.stream->components = componentsOf(fact.form);
        std::fill_n(node.stream->value.begin(), node.stream->components, fact.defaultValue);
    }
    const std::size_t count = fixedNodes[static_cast<std::size_t>(kind)].children;
    node.children.reserve(count);
    for (const NodeFacts* below = &fact + 1; node.children.size() < count; ++below) {
        if (isFixedChild(*below, fact))
            node.children.push_back(fixedChild(fill(block, below->kind, &node, hasOwnStreams)));
    }
    return node;
}

std::shared_ptr<TreeNode> newNode(NodeKind kind, TreeNode* parent, bool hasOwnStreams) {
    NodeBlock block(kind, hasOwnStreams);
    fill(block, kind, parent, hasOwnStreams);
    return block.node();
}

TreeNode& copyInto(NodeBlock& block, const TreeNode& node, TreeNode* parent) {
    TreeNode& copy = block.takeNode();
    copy.kind = node.kind;
    copy.name = node.name;
    copy.parent = parent;
    copy.stream = node.stream;
    if (node.own) {
        copy.stream = copy.own = &block.takeStream();
        *copy.own = *node.own;
    }
    if (node.path)
        copy.path = std::make_shared<PathStream>(*node.path);
    copy.matchName = node.matchName;
    copy.source = node.source;
    copy.rotoBezier = node.rotoBezier;
    copy.listChanged = node.listChanged;
    copy.hasSeparatedSource = node.hasSeparatedSource;
    copy.children.reserve(node.children.size());
    const bool areFixed = fixedNodes[static_cast<std::size_t>(node.kind)].children > 0;
    for (const auto& child : node.children)
        copy.children.push_back(areFixed ? fixedChild(copyInto(block, *child, &copy)) : copied(*child, &copy));
    return copy;
}

/// Points the leaves of a transform at the streams of a layer.
void bindTransform(TreeNode& root, Layer& layer) {
    if (const TreeNode* group = childOf(root, K::TransformGroup)) {
        for (const auto& child : group->children)
            child->stream = transformStream(layer.transform, child->kind);
    }
}

} // namespace

const NodeFacts& factsOf(NodeKind kind) {
    return facts[static_cast<std::size_t>(kind)];
}

TreeNode* childOf(const TreeNode& node, NodeKind kind) {
    const auto found = std::find_if(node.children.begin(), node.children.end(),
                                    [&](const auto& child) { return child->kind == kind; });
    return found == node.children.end() ? nullptr : found->get();
}

TreeNode& addNode(TreeNode& parent, NodeKind kind) {
    return *parent.children.emplace_back(newNode(kind, &parent, true));
}

std::shared_ptr<TreeNode> copied(const TreeNode& node, TreeNode* parent) {
    NodeBlock block(node.kind, node.kind != K::TransformGroup);
    copyInto(block, node, parent);
    return block.node();
}

std::shared_ptr<TreeNode> bareTree(Layer& layer) {
    auto root = newNode(K::Root, nullptr, false);
    root->children.push_back(newNode(K::TransformGroup, root.get(), false));
    bindTransform(*root, layer);
    return root;
}

std::shared_ptr<TreeNode> treeCopiedFor(Layer& layer, const TreeNode& root) {
    auto copy = copied(root, nullptr);
    bindTransform(*copy, layer);
    return copy;
}

} // namespace jostle::standalone
