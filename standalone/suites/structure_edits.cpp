#include "standalone/suites/structure_edits.h"

#include <algorithm>
#include <utility>

#include "standalone/suites/reparent.h"
#include "standalone/suites/stream_nodes.h"

namespace jostle::standalone {

namespace {

constexpr int nullSize = 100; // pixels: what a host shows of a null

/// The prefix with the least number from 1 on that is not taken.
template<class IsTaken>
std::string numberedName(const char* prefix, const IsTaken& isTaken) {
    for (int number = 1;; ++number) {
        std::string name = std::string(prefix) + ' ' + std::to_string(number);
        if (!isTaken(name))
            return name;
    }
}

std::string layerName(const CompEntry& comp, const char* prefix) {
    const auto& layers = comp.composition->layers;
    return numberedName(prefix, [&](const std::string& name) {
        return std::any_of(layers.begin(), layers.end(), [&](const auto& layer) { return layer->name == name; });
    });
}

Stream streamOf(int components, Components value) {
    Stream stream;
    stream.components = components;
    stream.value = value;
    return stream;
}

std::unique_ptr<Layer> newLayer(const Composition& composition, LayerKind kind, std::string name) {
    auto layer = std::make_unique<Layer>();
    layer->kind = kind;
    layer->name = std::move(name);
    layer->outFrame = composition.durationFrames;
    Transform& transform = layer->transform;
    transform.anchor = streamOf(3, {0, 0, 0});
    transform.position = streamOf(3, {composition.item->width / 2.0, composition.item->height / 2.0, 0});
    transform.scale = streamOf(3, {100, 100, 100});
    transform.opacity = streamOf(1, {kind == LayerKind::Null ? 0.0 : 100.0, 0, 0}); // nulls have opacity 0
    return layer;
}

std::vector<AEGP_LayerH> without(const CompEntry& comp, const LayerEntry& entry) {
    std::vector<AEGP_LayerH> order = comp.layers;
    order.erase(order.begin() + entry.index);
    return order;
}

/// Whether lists of a kind hold nodes of a kind.
bool canHold(NodeKind list, NodeKind node) {
    if (list == NodeKind::MaskParade)
        return node == NodeKind::Mask;
    return (list == NodeKind::VectorsRoot || list == NodeKind::GroupContents) && node != NodeKind::Mask;
}

/// Groups around the contents of a list, its own among them.
int groupsAround(const TreeNode& list) {
    int groups = 0;
    for (const TreeNode* node = &list; node != nullptr; node = node->parent)
        groups += node->kind == NodeKind::Group ? 1 : 0;
    return groups;
}

/// Groups within each other in a node, itself among them.
int groupsWithin(const TreeNode& node) {
    int deepest = 0;
    for (const TreeNode* child : node.children)
        deepest = std::max(deepest, groupsWithin(*child));
    return deepest + (node.kind == NodeKind::Group ? 1 : 0);
}

/// The list that takes a node when a place is selected; null if none does.
TreeNode* pasteTarget(const SelectedPlace& place, NodeKind node) {
    const LayerEntry& entry = *state().layerOf(place.layer);
    TreeNode* target = place.node == nullptr ? &state().treeOf(entry) : place.node;
    if (target->kind == NodeKind::Root)
        target = childOf(*target, node == NodeKind::Mask ? NodeKind::MaskParade : NodeKind::VectorsRoot);
    else if (target->kind == NodeKind::Group)
        target = childOf(*target, NodeKind::GroupContents);
    return target != nullptr && canHold(target->kind, node) ? target : nullptr;
}

} // namespace

void removeNode(LayerEntry& entry, TreeNode& node) {
    TreeNode& list = *node.parent;
    state().journal.touchNode(entry, list);
    NodeChildren::List& children = list.children.list();
    const auto place = children.begin() + static_cast<std::ptrdiff_t>(placeInParent(node));
    entry.removedNodes.push_back(std::move(*place));
    children.erase(place);
    list.listChanged = true;
    node.parent = nullptr;
}

void appendNode(LayerEntry& entry, TreeNode& list, std::shared_ptr<TreeNode> node) {
    state().journal.touchNode(entry, list);
    node->parent = &list;
    list.children.list().push_back(std::move(node));
    list.listChanged = true;
}

TreeNode* addMask(LayerEntry& entry) {
    TreeNode* parade = childOf(state().treeOf(entry), NodeKind::MaskParade);
    if (parade == nullptr)
        return nullptr;
    state().journal.touchNode(entry, *parade);
    std::string name = numberedName("Mask", [&](const std::string& taken) {
        return std::any_of(parade->children.begin(), parade->children.end(),
                           [&](const TreeNode* mask) { return *mask->name == taken; });
    });
    TreeNode& mask = addNode(*parade, NodeKind::Mask);
    mask.name.own() = std::move(name);
    childOf(mask, NodeKind::MaskShape)->path->value.closed = true;
    parade->listChanged = true;
    return &mask;
}

AEGP_LayerH createNull(CompEntry& comp, std::string name, std::optional<double> durationFrames) {
    if (name.empty())
        name = layerName(comp, "Null");
    auto layer = newLayer(*comp.composition, LayerKind::Null, name);
    layer->item = std::make_shared<const Item>(Item{Item::Kind::Footage, false, name, nullSize, nullSize, {}});
    if (durationFrames)
        layer->outFrame = *durationFrames;
    return state().insertLayer(comp, std::move(layer), 0);
}

AEGP_LayerH createShapeLayer(CompEntry& comp) {
    return state().insertLayer(comp, newLayer(*comp.composition, LayerKind::Shape, layerName(comp, "Shape Layer")), 0);
}

AEGP_LayerH duplicateLayer(LayerEntry& entry) {
    return state().insertLayer(*entry.comp, copied(*entry.layer), static_cast<std::size_t>(entry.index));
}

void deleteLayer(LayerEntry& entry) {
    CompEntry& comp = *entry.comp;
    state().journal.touchComposition(comp);
    for (const AEGP_LayerH handle : comp.layers) {
        LayerEntry& other = *state().layerOf(handle);
        if (other.layer->parent == entry.layer)
            setParent(other, nullptr);
    }
    comp.composition->changed = true;
    state().arrange(comp, without(comp, entry));
}

void moveLayer(LayerEntry& entry, std::size_t place) {
    CompEntry& comp = *entry.comp;
    if (place == static_cast<std::size_t>(entry.index))
        return;
    state().journal.touchComposition(comp);
    comp.composition->changed = true;
    std::vector<AEGP_LayerH> order = without(comp, entry);
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(place),
                 comp.layers[static_cast<std::size_t>(entry.index)]);
    state().arrange(comp, std::move(order));
}

bool copySelection(const CompEntry& comp) {
    Clipboard copies;
    for (const SelectedPlace& place : state().selectionOf(comp)) {
        if (place.node != nullptr && place.node->parent != nullptr &&
            factsOf(*place.node->parent).grouping == Grouping::Indexed)
            copies.push_back(copied(*place.node, nullptr));
    }
    if (copies.empty())
        return false;
    state().clipboard = std::move(copies);
    return true;
}

bool pasteAtSelection(CompEntry& comp) {
    bool pasted = false;
    for (const SelectedPlace& place : state().selectionOf(comp)) {
        for (const auto& node : state().clipboard) {
            TreeNode* list = pasteTarget(place, node->kind);
            if (list == nullptr || groupsAround(*list) + groupsWithin(*node) > deepestGroup)
                continue;
            appendNode(*state().layerOf(place.layer), *list, copied(*node, list));
            pasted = true;
        }
    }
    return pasted;
}

} // namespace jostle::standalone
