#pragma once

#include <string>

#include "tests/standalone/suites/small_document.h"

namespace jostle::standalone::test {

/// Tells the text of an expression by where it stands, and makes one glyph of every text layer.
class FakeDetails : public LayerDetails {
public:
    [[nodiscard]] std::shared_ptr<TreeNode> readTree(Layer& layer) const override { return bareTree(layer); }
    [[nodiscard]] TextOutlines textOutlines(const Layer&, double frame) const override {
        TextOutlines text;
        PathValue triangle{{{13, 5, -1, 0, 1, 2}, {10, 9}, {10, 5}}, true};
        text.outlines = {triangle, {{{frame, 0}}, true}};
        text.notes = {"Some Font was replaced"};
        return text;
    }
    [[nodiscard]] std::string expressionAt(SourceSpan property) const override {
        return "expression at " + std::to_string(property.begin);
    }
};

inline PathValue square(double size) {
    return {{{0, 0}, {size, 0}, {size, size}, {0, size}}, true};
}

/// The small document with two masks on the child, "one" of 10 and "two" of 20 pixels, and in the shape layer two
/// groups of a rectangle with a fill, and a path.
inline std::unique_ptr<Composition> richDocument() {
    auto document = smallDocument();
    Layer& solid = *document->layers[child];
    solid.tree = bareTree(solid);
    TreeNode& masks = addNode(*solid.tree, NodeKind::MaskParade);
    for (const auto& [name, size] : {std::pair("one", 10.0), std::pair("two", 20.0)}) {
        TreeNode& mask = addNode(masks, NodeKind::Mask);
        mask.name = name;
        childOf(mask, NodeKind::MaskShape)->path->value = square(size);
        childOf(mask, NodeKind::MaskOpacity)->stream->value[0] = size;
    }
    Layer& shape = *document->layers[separated];
    shape.name = "shape";
    shape.tree = bareTree(shape);
    TreeNode& contents = addNode(*shape.tree, NodeKind::VectorsRoot);
    for (const char* name : {"first", "second"}) {
        TreeNode& group = addNode(contents, NodeKind::Group);
        group.name = name;
        TreeNode& elements = *childOf(group, NodeKind::GroupContents);
        childOf(addNode(elements, NodeKind::Rectangle), NodeKind::RectanglePosition)->stream->value = {3, 4, 0};
        addNode(elements, NodeKind::Fill);
    }
    childOf(addNode(contents, NodeKind::Path), NodeKind::PathShape)->path->value = square(5);
    document->details = std::make_shared<FakeDetails>();
    return document;
}

inline std::string described(const Stream& stream) {
    std::string text;
    for (const double number : stream.value)
        text += ' ' + std::to_string(number);
    for (const double number : stream.keys.values)
        text += " key " + std::to_string(number);
    return text + (stream.changed ? " changed" : "") + (stream.expressionEnabled ? " expression" : "");
}

inline std::string described(const TreeNode& node) {
    std::string text = std::to_string(static_cast<int>(node.kind)) + ' ' + node.name +
                       (node.listChanged ? " list changed" : "") + (node.rotoBezier ? " roto" : "");
    if (node.stream)
        text += described(*node.stream);
    if (node.path) {
        for (const PathVertex& v : node.path->value.vertices)
            text += " (" + std::to_string(v.x) + ' ' + std::to_string(v.y) + ')';
        text += node.path->changed ? " changed" : "";
    }
    text += '\n';
    for (const auto& below : node.children) {
        EXPECT_EQ(below->parent, &node);
        text += described(*below);
    }
    return text;
}

/// All that suites can change of a composition, to be compared.
inline std::string described(const Composition& composition) {
    std::string text = std::to_string(composition.inFrame) + ' ' + std::to_string(composition.outFrame) +
                       (composition.changed ? " changed\n" : "\n");
    for (const auto& layer : composition.layers) {
        text += layer->name + ' ' + std::to_string(layer->id) + ' ' + (layer->parent ? layer->parent->name : "-") +
                (layer->hidden ? " hidden" : "") + (layer->changed ? " changed" : "") +
                (layer->transform.separated ? " separated\n" : "\n");
        if (layer->tree)
            text += described(*layer->tree);
    }
    return text;
}

} // namespace jostle::standalone::test
