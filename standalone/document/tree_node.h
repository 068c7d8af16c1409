#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>

#include "standalone/document/lean_vector.h"
#include "standalone/document/path.h"
#include "standalone/document/rare.h"
#include "standalone/document/stream.h"

namespace jostle::standalone {

struct Layer;

/// Places in the tree of a layer's streams. Several nodes of one kind occur where a list holds them.
enum class NodeKind : std::uint8_t {
    Root,
    VectorsRoot,
    MaskParade,
    TransformGroup,

    Anchor,
    Position,
    PositionX,
    PositionY,
    PositionZ,
    Scale,
    Rotation,
    Opacity,

    Mask,
    MaskShape,
    MaskFeather,
    MaskOpacity,
    MaskOffset,

    Group,
    GroupContents,
    GroupTransform,
    GroupAnchor,
    GroupPosition,
    GroupScale,
    GroupSkew,
    GroupSkewAxis,
    GroupRotation,
    GroupOpacity,

    Rectangle,
    RectangleSize,
    RectanglePosition,
    RectangleRoundness,
    Ellipse,
    EllipseSize,
    EllipsePosition,
    Star,
    StarType,
    StarPoints,
    StarPosition,
    StarRotation,
    StarInnerRadius,
    StarOuterRadius,
    StarInnerRoundness,
    StarOuterRoundness,
    Path,
    PathShape,
    Fill,
    FillColor,
    FillOpacity,
    Stroke,
    StrokeColor,
    StrokeOpacity,
    StrokeWidth,

    GradientFill,
    GradientStroke,
    Trim,
    Repeater,
    MergePaths,
    RoundCorners,
    OffsetPaths,
    PuckerBloat,
    ZigZag,
    Twist,
    OtherElement,
};
inline constexpr std::size_t nodeKindCount = static_cast<std::size_t>(NodeKind::OtherElement) + 1;

/// Most groups within each other: what is nested deeper is neither read nor pasted. A document's text has room for
/// them.
constexpr int deepestGroup = 90;

/// What a leaf holds; groups hold nothing.
enum class ValueForm : std::uint8_t { None, One, Two, TwoSpatial, Three, ThreeSpatial, Color, Path };

/// How a node holds its children: not at all, as a fixed set with names, or as a list.
enum class Grouping : std::uint8_t { Leaf, Named, Indexed };

/// The fixed facts of a kind.
struct NodeFacts {
    NodeKind kind;
    NodeKind parent;         ///< its own kind where any group may hold it
    const char* matchName;   ///< as the host spells it
    const char* displayName; ///< of a node without a name of its own
    Grouping grouping;
    ValueForm form;
    const char* member;  ///< of a leaf, its name in the object of the node above; of an element its "ty"; or empty
    double defaultValue; ///< of a leaf's components
};
extern const std::array<NodeFacts, nodeKindCount> nodeFacts; ///< by kind
[[nodiscard]] inline const NodeFacts& factsOf(NodeKind kind) {
    return nodeFacts[static_cast<std::size_t>(kind)];
}

struct TreeNode;

/// The children of a node, in order.
///
/// Those that a named group has from its beginning to its end lie side by side in memory, next to it, and last as long
/// as it does. Those of a list, which come and go, are owned by it.
class NodeChildren {
public:
    using List = LeanVector<std::shared_ptr<TreeNode>>;

    /// Goes through pointers to the children.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = TreeNode*;
        using difference_type = std::ptrdiff_t;
        using pointer = const value_type*;
        using reference = value_type;

        Iterator(const NodeChildren& children, std::size_t place) : children_(&children), place_(place) {}
        TreeNode* operator*() const { return (*children_)[place_]; }
        Iterator& operator++() {
            ++place_;
            return *this;
        }
        bool operator==(const Iterator& other) const { return place_ == other.place_; }

    private:
        const NodeChildren* children_;
        std::size_t place_;
    };

    [[nodiscard]] std::size_t size() const { return fixedCount_ + list_.size(); }
    [[nodiscard]] bool empty() const { return size() == 0; }
    [[nodiscard]] TreeNode* operator[](std::size_t place) const;
    [[nodiscard]] Iterator begin() const { return {*this, 0}; }
    [[nodiscard]] Iterator end() const { return {*this, size()}; }

    /// Of an indexed group, to be changed; empty in others.
    [[nodiscard]] List& list() { return list_; }
    /// Gives a named group its children.
    void fix(TreeNode* first, std::size_t count) {
        fixed_ = first;
        fixedCount_ = count;
    }

private:
    TreeNode* fixed_ = nullptr;
    std::size_t fixedCount_ = 0;
    List list_;
};

/// One node of the tree. Nodes keep their addresses for as long as anything holds them, or the group that they are
/// fixed children of.
///
/// A leaf has its numbers in `stream`, or its outline in `path`. Elements are the children of VectorsRoot and
/// GroupContents; a Group's children are its GroupContents and its GroupTransform.
struct TreeNode {
    NodeKind kind = NodeKind::Root;
    bool rotoBezier = false;         ///< of a mask; memory only
    bool listChanged = false;        ///< of a list: children differ from those of the source text
    bool hasSeparatedSource = false; ///< the source has one property for each dimension, merged in `stream`
    SourceSpan source;               ///< the object (of a leaf: the property) in the source text; empty if new
    TreeNode* parent = nullptr;
    NodeChildren children;
    Stream* stream = nullptr;         ///< of leaves with numbers: `own`, or one of the layer's transform
    std::unique_ptr<Stream> own;      ///< null for leaves of the layer's transform
    std::unique_ptr<PathStream> path; ///< of MaskShape and PathShape
    Rare<std::string> name;           ///< UTF-8; empty if the file has none
    Rare<std::string> matchName;      ///< of OtherElement alone: the element's own, at most 40 bytes
};

inline TreeNode* NodeChildren::operator[](std::size_t place) const {
    return fixed_ != nullptr ? fixed_ + place : list_[place].get();
}

[[nodiscard]] inline const NodeFacts& factsOf(const TreeNode& node) {
    return factsOf(node.kind);
}

/// The child of that kind; null if there is none.
[[nodiscard]] TreeNode* childOf(const TreeNode& node, NodeKind kind);

/// Appends a node of a kind to a list, with the streams that its facts ask for, at their defaults, and of named groups
/// all the leaves below it.
/// @return the node
TreeNode& addNode(TreeNode& list, NodeKind kind);

/// Deep copy of a node with its source spans, so that what it has unchanged is copied as it stands in the text.
/// @param parent  of the copy; null for none
[[nodiscard]] std::shared_ptr<TreeNode> copied(const TreeNode& node, TreeNode* parent);

/// The tree of a layer without what its lists hold: root, contents of shape layers, masks of layers that can have any,
/// and transform, whose leaves refer to `layer.transform`.
[[nodiscard]] std::shared_ptr<TreeNode> bareTree(Layer& layer);

/// Points the leaves of a transform at the streams of its layer. Those of single dimensions have none until the
/// dimensions are separated: to be called again then.
/// @param root  of the layer's tree
void bindTransform(const TreeNode& root, Layer& layer);

/// A leaf of a layer's transform.
/// @param root  of the layer's tree
[[nodiscard]] TreeNode& transformLeaf(const TreeNode& root, NodeKind kind);

/// Deep copy of a layer's tree for a copy of that layer: leaves of the transform refer to `layer.transform`.
[[nodiscard]] std::shared_ptr<TreeNode> treeCopiedFor(Layer& layer, const TreeNode& root);

} // namespace jostle::standalone
