#include "standalone/document/tree_node.h"

#include <algorithm>
#include <array>
#include <utility>

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

} // namespace

constexpr std::array<NodeFacts, nodeKindCount> nodeFacts{{
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

namespace {

constexpr bool tableIsInOrder() {
    for (std::size_t i = 0; i < nodeFacts.size(); ++i) {
        if (nodeFacts[i].kind != static_cast<NodeKind>(i))
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
    const bool isDimension = kind == K::PositionX || kind == K::PositionY || kind == K::PositionZ;
    if (isDimension && !transform.separated)
        return nullptr; // nearly no layer needs them
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
};

constexpr std::array<FixedNodes, nodeKindCount> countFixedNodes() {
    std::array<FixedNodes, nodeKindCount> all{};
    // A kind stands behind the one that holds it.
    for (std::size_t i = nodeKindCount; i-- > 0;) {
        for (const NodeFacts& below : nodeFacts) {
            if (isFixedChild(below, nodeFacts[i])) {
                ++all[i].children;
                all[i].total =
                    static_cast<std::uint8_t>(all[i].total + all[static_cast<std::size_t>(below.kind)].total);
            }
        }
    }
    return all;
}
constexpr std::array<FixedNodes, nodeKindCount> fixedNodes = countFixedNodes();

const FixedNodes& fixedNodesOf(NodeKind kind) {
    return fixedNodes[static_cast<std::size_t>(kind)];
}

/// The places of a node and of all that it always has, side by side in memory.
class NodeBlock {
public:
    // Nodes say themselves how they begin.
    explicit NodeBlock(std::size_t count)
        : nodes_(std::make_shared_for_overwrite<TreeNode[]>(count)), next_(nodes_.get()) {}

    TreeNode* take(std::size_t count) { return std::exchange(next_, next_ + count); }
    /// The first node, which holds all others.
    [[nodiscard]] std::shared_ptr<TreeNode> first() const { return {nodes_, nodes_.get()}; }

private:
    std::shared_ptr<TreeNode[]> nodes_;
    TreeNode* next_;
};

/// Makes a node with the stream that its facts ask for, and all that it always has.
void fill(TreeNode& node, NodeBlock& block, NodeKind kind, TreeNode* parent) {
    const NodeFacts& fact = factsOf(kind);
    node.kind = kind;
    node.parent = parent;
    if (fact.form == F::Path) {
        node.path = std::make_unique<PathStream>();
    } else if (fact.form != F::None && fact.parent != K::TransformGroup) {
        node.own = std::make_unique<Stream>();
        node.stream = node.own.get();
        node.stream->components = componentsOf(fact.form);
        std::fill_n(node.stream->value.begin(), node.stream->components, fact.defaultValue);
    }
    const std::size_t count = fixedNodesOf(kind).children;
    if (count == 0)
        return;
    TreeNode* below = block.take(count);
    node.children.fix(below, count);
    for (const NodeFacts* childFact = &fact + 1; below != node.children[0] + count; ++childFact) {
        if (isFixedChild(*childFact, fact))
            fill(*below++, block, childFact->kind, &node);
    }
}

std::shared_ptr<TreeNode> newNode(NodeKind kind, TreeNode* parent) {
    NodeBlock block(fixedNodesOf(kind).total);
    fill(*block.take(1), block, kind, parent);
    return block.first();
}

/// Gives a new node of the same kind what another one has, and copies of all that its lists hold.
void copyInto(TreeNode& copy, const TreeNode& node) {
    copy.name = node.name;
    if (node.own)
        *copy.own = *node.own;
    if (node.path)
        *copy.path = *node.path;
    copy.matchName = node.matchName;
    copy.source = node.source;
    copy.rotoBezier = node.rotoBezier;
    copy.listChanged = node.listChanged;
    copy.hasSeparatedSource = node.hasSeparatedSource;
    if (factsOf(node).grouping != indexed) {
        for (std::size_t place = 0; place < node.children.size(); ++place)
            copyInto(*copy.children[place], *node.children[place]);
        return;
    }
    copy.children.list().reserve(node.children.size());
    for (const TreeNode* child : node.children)
        copy.children.list().push_back(copied(*child, &copy));
}

bool canHaveMasks(const Layer& layer) {
    return (layer.kind != LayerKind::Camera && layer.kind != LayerKind::Light) || !layer.masksSource.empty();
}

} // namespace

TreeNode* childOf(const TreeNode& node, NodeKind kind) {
    for (TreeNode* child : node.children) {
        if (child->kind == kind)
            return child;
    }
    return nullptr;
}

TreeNode& addNode(TreeNode& list, NodeKind kind) {
    return *list.children.list().emplace_back(newNode(kind, &list));
}

std::shared_ptr<TreeNode> copied(const TreeNode& node, TreeNode* parent) {
    std::shared_ptr<TreeNode> copy = newNode(node.kind, parent);
    copyInto(*copy, node);
    return copy;
}

std::shared_ptr<TreeNode> bareTree(Layer& layer) {
    std::array<NodeKind, 3> kinds;
    std::size_t count = 0;
    if (layer.kind == LayerKind::Shape)
        kinds[count++] = K::VectorsRoot;
    if (canHaveMasks(layer))
        kinds[count++] = K::MaskParade;
    kinds[count++] = K::TransformGroup;
    NodeBlock block(count + fixedNodesOf(K::TransformGroup).total);
    TreeNode& root = *block.take(1);
    TreeNode* const groups = block.take(count);
    root.children.fix(groups, count);
    for (std::size_t i = 0; i < count; ++i)
        fill(groups[i], block, kinds[i], &root);
    TreeNode& transform = groups[count - 1];
    bindTransform(root, layer);
    transform.source = layer.transform.source;
    for (TreeNode* child : transform.children)
        child->source = child->stream != nullptr ? child->stream->source : SourceSpan{};
    return block.first();
}

void bindTransform(const TreeNode& root, Layer& layer) {
    for (TreeNode* child : childOf(root, K::TransformGroup)->children) {
        if (Stream* stream = transformStream(layer.transform, child->kind))
            child->stream = stream;
    }
}

TreeNode& transformLeaf(const TreeNode& root, NodeKind kind) {
    // In the order of the kinds.
    const auto place = static_cast<std::size_t>(kind) - static_cast<std::size_t>(K::Anchor);
    return *childOf(root, K::TransformGroup)->children[place];
}

std::shared_ptr<TreeNode> treeCopiedFor(Layer& layer, const TreeNode& root) {
    std::shared_ptr<TreeNode> copy = bareTree(layer);
    for (const TreeNode* group : root.children) {
        if (group->kind != K::TransformGroup)
            copyInto(*childOf(*copy, group->kind), *group);
    }
    return copy;
}

} // namespace jostle::standalone
