#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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
[[nodiscard]] const NodeFacts& factsOf(NodeKind kind);

/// One node of the tree. Nodes keep their addresses for as long as anything holds them.
///
/// The children that a named group always has lie beside it in memory and last as long as it does: the pointers to
/// them own nothing. Those of a list, which come and go, are owned by it.
///
/// A leaf has its numbers in `stream`, or its outline in `path`. Elements are the children of VectorsRoot and
/// GroupContents; a Group's children are its GroupContents and its GroupTransform.
struct TreeNode {
    NodeKind kind = NodeKind::Root;
    Rare<std::string> name; ///< UTF-8; empty if the file has none
    TreeNode* parent = nullptr;
    std::vector<std::shared_ptr<TreeNode>> children;
    Stream* stream = nullptr;         ///< of leaves with numbers: `own`, or one of the layer's transform
    Stream* own = nullptr;            ///< beside the node in memory; null for leaves of the layer's transform
    std::shared_ptr<PathStream> path; ///< of MaskShape and PathShape
    Rare<std::string> matchName;      ///< of OtherElement alone: the element's own, at most 40 bytes
    SourceSpan source;                ///< the object (of a leaf: the property) in the source text; empty if new
    bool rotoBezier = false;          ///< of a mask; memory only
    bool listChanged = false;         ///< of a list: children differ from those of the source text
    bool hasSeparatedSource = false;  ///< the source has one property for each dimension, merged in `stream`
};

[[nodiscard]] inline const NodeFacts& factsOf(const TreeNode& node) {
    return factsOf(node.kind);
}

/// The child of that kind; null if there is none.
[[nodiscard]] TreeNode* childOf(const TreeNode& node, NodeKind kind);

/// Appends a child of a kind, with the streams that its facts ask for, at their defaults, and of named groups all
/// the leaves below it.
/// @return the child
TreeNode& addNode(TreeNode& parent, NodeKind kind);

/// Deep copy of a node with its source spans, so that what it has unchanged is copied as it stands in the text.
/// @param parent  of the copy; null for none
[[nodiscard]] std::shared_ptr<TreeNode> copied(const TreeNode& node, TreeNode* parent);

/// The tree of a layer without masks or shapes: root and transform, whose leaves refer to `layer.transform`.
[[nodiscard]] std::shared_ptr<TreeNode> bareTree(Layer& layer);

/// Deep copy of a layer's tree for a copy of that layer: leaves of the transform refer to `layer.transform`.
[[nodiscard]] std::shared_ptr<TreeNode> treeCopiedFor(Layer& layer, const TreeNode& root);

} // namespace jostle::standalone
