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

inline TreeNode& addMask(Layer& layer, const char* name, double size) {
    if (!layer.tree)
        layer.tree = bareTree(layer);
    TreeNode* masks = childOf(*layer.tree, NodeKind::MaskParade);
    TreeNode& mask = addNode(masks == nullptr ? addNode(*layer.tree, NodeKind::MaskParade) : *masks, NodeKind::Mask);
    mask.name = name;
    childOf(mask, NodeKind::MaskShape)->path->value = square(size);
    childOf(mask, NodeKind::MaskOpacity)->stream->value[0] = size;
    return mask;
}

/// A group of a rectangle with a fill.
inline TreeNode& addGroup(TreeNode& list, const char* name) {
    TreeNode& group = addNode(list, NodeKind::Group);
    group.name = name;
    TreeNode* contents = childOf(group, NodeKind::GroupContents);
    if (contents == nullptr)
        contents = &addNode(group, NodeKind::GroupContents);
    TreeNode& rectangle = addNode(*contents, NodeKind::Rectangle);
    childOf(rectangle, NodeKind::RectanglePosition)->stream->value = {3, 4, 0};
    addNode(*contents, NodeKind::Fill);
    return group;
}

/// The small document with two masks on the child, "one" of 10 and "two" of 20 pixels, and two groups and a path in the
/// shape layer.
inline std::unique_ptr<Composition> richDocument() {
    auto document = smallDocument();
    addMask(*document->layers[child], "one", 10);
    addMask(*document->layers[child], "two", 20);
    Layer& shape = *document->layers[separated];
    shape.name = "shape";
    shape.tree = bareTree(shape);
    TreeNode& contents = addNode(*shape.tree, NodeKind::VectorsRoot);
    addGroup(contents, "first");
    addGroup(contents, "second");
    childOf(addNode(contents, NodeKind::Path), NodeKind::PathShape)->path->value = square(5);
    document->details = std::make_shared<FakeDetails>();
    return document;
}

inline void describe(const Stream* stream, std::string& text) {
    if (stream == nullptr)
        return;
    for (const double number : stream->value)
        text += ' ' + std::to_string(number);
    for (const double number : stream->keys.values)
        text += " key " + std::to_string(number);
    text += stream->changed ? " changed" : "";
    text += stream->expressionEnabled ? " expression" : "";
}

inline void describe(const TreeNode& node, std::string& text) {
    text += std::to_string(static_cast<int>(node.kind)) + ' ' + node.name + (node.listChanged ? " list changed" : "") +
            (node.rotoBezier ? " roto" : "");
    describe(node.stream, text);
    if (node.path) {
        for (const PathVertex& v : node.path->value.vertices)
            text += " (" + std::to_string(v.x) + ' ' + std::to_string(v.y) + ')';
        text += node.path->changed ? " changed" : "";
    }
    text += '\n';
    for (const auto& below : node.children) {
        EXPECT_EQ(below->parent, &node);
        describe(*below, text);
    }
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
            describe(*layer->tree, text);
    }
    return text;
}

/// A session over the rich document, with the calls that take a plug-in to a stream.
class RichSession : public Session {
public:
    explicit RichSession(std::unique_ptr<Composition> document = richDocument()) : Session(std::move(document)) {}

    const AEGP_DynamicStreamSuite5& tree() { return table<AEGP_DynamicStreamSuite5>(); }
    const AEGP_StreamSuite9& streams() { return table<AEGP_StreamSuite9>(); }
    const AEGP_LayerSuite13& layers() { return table<AEGP_LayerSuite13>(); }
    const AEGP_LayerMaskSuite6& masks() { return table<AEGP_LayerMaskSuite6>(); }

    AEGP_StreamRefH root(AEGP_LayerH of) {
        AEGP_StreamRefH handle = nullptr;
        EXPECT_EQ(tree().AEGP_GetNewStreamRefForLayer(id(), of, &handle), A_Err_NONE);
        return handle;
    }

    /// Disposes of the group. A step that starts with a digit is an index.
    AEGP_StreamRefH below(AEGP_StreamRefH group, std::initializer_list<const char*> path) {
        for (const char* step : path) {
            AEGP_StreamRefH next = nullptr;
            const bool isIndex = *step >= '0' && *step <= '9';
            EXPECT_EQ(isIndex ? tree().AEGP_GetNewStreamRefByIndex(id(), group, *step - '0', &next)
                              : tree().AEGP_GetNewStreamRefByMatchname(id(), group, step, &next),
                      A_Err_NONE)
                << step;
            dispose(group);
            group = next;
        }
        return group;
    }

    AEGP_MaskRefH mask(AEGP_LayerH of, A_long index) {
        AEGP_MaskRefH handle = nullptr;
        EXPECT_EQ(masks().AEGP_GetLayerMaskByIndex(of, index, &handle), A_Err_NONE);
        return handle;
    }

    AEGP_StreamRefH maskStream(AEGP_MaskRefH of, AEGP_MaskStream which) {
        AEGP_StreamRefH handle = nullptr;
        EXPECT_EQ(streams().AEGP_GetNewMaskStream(id(), of, which, &handle), A_Err_NONE);
        return handle;
    }

    /// Sets a stream to what another has at frame 0. Disposes of both.
    void copyValue(AEGP_StreamRefH from, AEGP_StreamRefH to) {
        AEGP_StreamValue2 value = open(from);
        EXPECT_EQ(streams().AEGP_SetStreamValue(id(), to, &value), A_Err_NONE);
        close(value);
        dispose(from);
        dispose(to);
    }

    std::u16string nameOf(AEGP_StreamRefH stream) {
        AEGP_MemHandle name = nullptr;
        EXPECT_EQ(streams().AEGP_GetStreamName(id(), stream, 0, &name), A_Err_NONE);
        return takeText(name);
    }

    /// Selects a stream, which is disposed of.
    void select(AEGP_StreamRefH stream) {
        const auto& collections = table<AEGP_CollectionSuite2>();
        AEGP_Collection2H selection = nullptr;
        AEGP_CollectionItemV2 item{};
        item.type = AEGP_CollectionItemType_STREAMREF;
        item.stream_refH = stream;
        EXPECT_EQ(collections.AEGP_NewCollection(id(), &selection), A_Err_NONE);
        EXPECT_EQ(collections.AEGP_CollectionPushBack(selection, &item), A_Err_NONE);
        EXPECT_EQ(table<AEGP_CompSuite15>().AEGP_SetSelection(comp(), selection), A_Err_NONE);
        EXPECT_EQ(collections.AEGP_DisposeCollection(selection), A_Err_NONE);
    }

    A_Err command(AEGP_Command number) { return table<AEGP_CommandSuite1>().AEGP_DoCommand(number); }
    [[nodiscard]] std::string document() { return described(host.outcome()); }

    /// That everything came back and nothing was misused.
    void expectClean() {
        const HandOuts out = host.balance();
        EXPECT_EQ(out.streams + out.values + out.masks + out.maskOutlines + out.textOutlines + out.memory +
                      out.collections + out.keyBatches + out.undoGroups,
                  0)
            << out.text();
        for (const Misuse misuse : host.misuses())
            ADD_FAILURE() << textOf(misuse);
    }
};

} // namespace jostle::standalone::test
