#include "standalone/lottie/tree_writer.h"

#include <algorithm>

#include "standalone/lottie/layer_details_reader.h"
#include "standalone/lottie/property_text.h"

namespace jostle::standalone {

namespace {

/// Whether a list's entries are not those of the text, so that it has to be put together anew.
bool isRebuilt(const TreeNode& list) {
    return list.listChanged || std::any_of(list.children.begin(), list.children.end(),
                                           [](const auto& child) { return child->source.empty(); });
}

bool isTouched(const TreeNode& node) {
    if (node.listChanged || (node.own && node.own->changed) || (node.path && node.path->changed))
        return true;
    return std::any_of(node.children.begin(), node.children.end(), [](const auto& child) { return isTouched(*child); });
}

std::string_view closedName(NodeKind kind) {
    return kind == NodeKind::MaskShape || kind == NodeKind::Mask ? "cl" : "closed";
}

/// Whether a leaf says something that its absence would not.
bool isGiven(const TreeNode& leaf) {
    const Components none{};
    return leaf.own && (leaf.own->changed || !leaf.own->keys.empty() || leaf.own->value != none);
}

} // namespace

void TreeWriter::write(const Layer& layer, ObjectEdit& layerEdit, TextEdits& edits) {
    if (!layer.tree)
        return;
    if (const TreeNode* shapes = childOf(*layer.tree, NodeKind::VectorsRoot)) {
        if (isRebuilt(*shapes)) {
            const JsonValue array = layerEdit.member("shapes");
            const auto entries = entriesOf(*shapes, styleWithin(array, layerEdit.style()));
            layerEdit.set("shapes", listText(array, layerEdit.style(), entries));
        } else {
            for (const auto& element : shapes->children)
                writeNode(*element, edits);
        }
    }
    if (const TreeNode* parade = childOf(*layer.tree, NodeKind::MaskParade))
        writeMasks(*parade, layerEdit, edits);
}

void TreeWriter::add(const Layer& layer, ObjectText& text) {
    const TreeNode* shapes = layer.tree ? childOf(*layer.tree, NodeKind::VectorsRoot) : nullptr;
    const TreeNode* parade = layer.tree ? childOf(*layer.tree, NodeKind::MaskParade) : nullptr;
    if (parade && !parade->children.empty()) {
        text.add("hasMask", "true");
        text.add("masksProperties", listText({}, text.style(), entriesOf(*parade, styleWithin({}, text.style()))));
    }
    if (shapes)
        text.add("shapes", listText({}, text.style(), entriesOf(*shapes, styleWithin({}, text.style()))));
    else if (layer.kind == LayerKind::Shape)
        text.add("shapes", "[]");
}

void TreeWriter::writeMasks(const TreeNode& parade, ObjectEdit& layerEdit, TextEdits& edits) {
    if (!isRebuilt(parade)) {
        for (const auto& mask : parade.children)
            writeNode(*mask, edits);
        return;
    }
    if (parade.children.empty()) {
        layerEdit.remove("masksProperties");
        layerEdit.remove("hasMask");
        return;
    }
    const JsonValue array = layerEdit.member("masksProperties");
    const auto entries = entriesOf(parade, styleWithin(array, layerEdit.style()));
    layerEdit.set("hasMask", "true");
    layerEdit.set("masksProperties", listText(array, layerEdit.style(), entries));
}

void TreeWriter::writeNode(const TreeNode& node, TextEdits& edits) {
    const bool named = node.kind == NodeKind::Mask; // the only names that change
    if (!named && !isTouched(node))
        return;
    const JsonValue object = properties_.source().tree.valueAt(node.source);
    if (!object.isObject())
        return;
    ObjectEdit edit(object, properties_.style());
    if (node.kind == NodeKind::Group)
        writeGroup(node, edit, edits);
    else
        writeLeaves(node, edit, edits);
    if (named && edit.member("nm").string() != *node.name)
        edit.setString("nm", *node.name);
    edit.commit(edits);
}

const Stream& TreeWriter::asInFile(const TreeNode& leaf) {
    if (leaf.kind != NodeKind::FillColor && leaf.kind != NodeKind::StrokeColor)
        return *leaf.own;
    Stream& stream = converted_.emplace_back(*leaf.own);
    const double factor = properties_.rules().coloursTo255 ? 255 : 1;
    for (double& number : stream.value)
        number *= factor;
    for (double& number : stream.keys.values)
        number *= factor;
    return stream;
}

void TreeWriter::writeLeaves(const TreeNode& node, ObjectEdit& edit, TextEdits& edits) {
    for (const auto& leaf : node.children) {
        const char* name = factsOf(*leaf).member;
        if (leaf->path) {
            properties_.write(edit, name, *leaf->path, closedName(leaf->kind), edits);
        } else if (leaf->own && leaf->own->changed) {
            const FieldForm form = fieldFormOf(leaf->kind);
            const Stream& stream = asInFile(*leaf);
            if (form == FieldForm::Plain)
                edit.set(name, valueText(stream, form, edit.style()));
            else if (leaf->hasSeparatedSource)
                edit.set(name, propertyText(stream, form, edit.style()));
            else
                properties_.write(edit, name, stream, form, edits);
        }
    }
}

void TreeWriter::writeGroup(const TreeNode& group, ObjectEdit& edit, TextEdits& edits) {
    const TreeNode* contents = childOf(group, NodeKind::GroupContents);
    const TreeNode* transform = childOf(group, NodeKind::GroupTransform);
    const JsonValue array = edit.member("it");
    const bool hasTransform = transform && !transform->source.empty();
    const bool addsTransform = transform && !hasTransform && isTouched(*transform);
    if (contents && !isRebuilt(*contents)) {
        for (const auto& element : contents->children)
            writeNode(*element, edits);
        if (hasTransform)
            writeNode(*transform, edits);
        if (!addsTransform)
            return;
        JsonValue last;
        if (array.isArray())
            forEachChild(array, [&](const JsonValue& entry) { last = entry; });
        if (last) {
            edits.replace({last.span().end, last.span().end},
                          layoutOf(array, edit.style()).between +
                              newNode(*transform, styleWithin(array, edit.style())));
            return;
        }
    }
    std::vector<std::string> entries;
    const TextStyle style = styleWithin(array, edit.style());
    if (contents)
        entries = entriesOf(*contents, style);
    if (hasTransform)
        entries.push_back(nodeText(*transform, style));
    else if (addsTransform)
        entries.push_back(newNode(*transform, style));
    edit.set("it", listText(array, edit.style(), entries));
}

TextStyle TreeWriter::styleWithin(const JsonValue& list, const TextStyle& owner) const {
    return entryStyle(list, owner, properties_.style());
}

std::vector<std::string> TreeWriter::entriesOf(const TreeNode& list, const TextStyle& style) {
    std::vector<std::string> entries;
    for (const auto& child : list.children)
        entries.push_back(nodeText(*child, style));
    return entries;
}

std::string TreeWriter::nodeText(const TreeNode& node, const TextStyle& style) {
    if (node.source.empty())
        return newNode(node, style);
    TextEdits own;
    writeNode(node, own);
    return own.applied(properties_.source().text, node.source);
}

std::string TreeWriter::newNode(const TreeNode& node, const TextStyle& style) {
    ObjectText text(style);
    if (node.kind == NodeKind::Mask) {
        text.add("inv", "false");
        text.add("mode", "\"a\"");
    } else {
        text.addString("ty", factsOf(node).member);
    }
    addLeaves(node, text);
    text.addString("nm", node.name->empty() ? factsOf(node).displayName : *node.name);
    return text.text();
}

void TreeWriter::addLeaves(const TreeNode& node, ObjectText& text) {
    for (const auto& leaf : node.children) {
        const char* name = factsOf(*leaf).member;
        if (leaf->path) {
            const PathStream& path = *leaf->path;
            text.add(name, pathPropertyText(path, properties_.rules(), text.style()));
            if (properties_.rules().closedOutside)
                text.add(closedName(leaf->kind),
                         (path.values.empty() ? path.value : path.values.front()).closed ? "true" : "false");
        } else if (leaf->own && (leaf->kind != NodeKind::MaskFeather || isGiven(*leaf))) {
            const FieldForm form = fieldFormOf(leaf->kind);
            const Stream& stream = asInFile(*leaf);
            text.add(name, form == FieldForm::Plain ? valueText(stream, form, text.style())
                                                    : propertyText(stream, form, text.style()));
        }
    }
}

} // namespace jostle::standalone
