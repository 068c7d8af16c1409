#include "standalone/suites/journal.h"

#include <utility>

#include "standalone/suites/host_state.h"

namespace jostle::standalone {

bool Journal::begin(std::string name) {
    if (open_)
        return false;
    open_ = true;
    touched_.clear();
    groups_.emplace_back().name = std::move(name);
    return true;
}

bool Journal::end() {
    return std::exchange(open_, false);
}

bool Journal::isFirstTouch(const void* thing) {
    ++changes_;
    return open_ && touched_.insert(thing).second;
}

void Journal::touchStream(LayerEntry& entry, Stream& stream) {
    if (isFirstTouch(&stream))
        groups_.back().streams.push_back({&entry, &stream, stream});
}

void Journal::touchPath(LayerEntry& entry, PathStream& path) {
    if (isFirstTouch(&path))
        groups_.back().paths.push_back({&entry, &path, path});
}

void Journal::touchNode(LayerEntry& entry, TreeNode& node) {
    if (isFirstTouch(&node))
        groups_.back().nodes.push_back({&entry, &node, node.children.list(), node.rotoBezier, node.listChanged});
}

void Journal::touchLayer(LayerEntry& entry) {
    if (!isFirstTouch(&entry))
        return;
    const Layer& layer = *entry.layer;
    groups_.back().layers.push_back({&entry, layer.name, layer.parent, layer.parentId, layer.hidden, layer.autoOrient,
                                     layer.motionBlur, layer.transform.separated, layer.changed});
}

void Journal::touchComposition(CompEntry& entry) {
    if (!isFirstTouch(&entry))
        return;
    const Composition& composition = *entry.composition;
    groups_.back().compositions.push_back(
        {&entry, composition.inFrame, composition.outFrame, composition.changed, entry.layers});
}

void Journal::noteDuplicate(AEGP_CompH duplicate) {
    if (open_)
        groups_.back().duplicates.push_back(duplicate);
}

void Journal::restore(CompositionImage& image) {
    if (image.entry->composition == nullptr)
        return;
    Composition& composition = *image.entry->composition;
    composition.inFrame = image.inFrame;
    composition.outFrame = image.outFrame;
    composition.changed = image.changed;
    if (image.entry->layers != image.layers)
        state().arrange(*image.entry, std::move(image.layers));
}

void Journal::restore(NodeImage& image) {
    if (image.entry->layer == nullptr)
        return;
    TreeNode& node = *image.node;
    NodeChildren::List& children = node.children.list();
    for (auto& child : children) {
        child->parent = nullptr;
        image.entry->removedNodes.push_back(std::move(child));
    }
    children = std::move(image.children);
    for (const auto& child : children)
        child->parent = &node;
    node.rotoBezier = image.rotoBezier;
    node.listChanged = image.listChanged;
}

void Journal::restore(const LayerImage& image) {
    Layer* layer = image.entry->layer;
    if (layer == nullptr)
        return;
    layer->name = image.name;
    layer->parent = image.parent;
    // Changes that were not recorded may have taken the parent away, or hung it on this layer.
    if (state().layerHandles.count(image.parent) == 0)
        layer->parent = nullptr;
    for (const Layer* above = layer->parent; above != nullptr; above = above->parent) {
        if (above == layer) {
            layer->parent = nullptr;
            break;
        }
    }
    layer->parentId = image.parentId;
    layer->hidden = image.hidden;
    layer->autoOrient = image.autoOrient;
    layer->motionBlur = image.motionBlur;
    layer->transform.separated = image.separated;
    layer->changed = image.changed;
}

bool Journal::undo(std::vector<AEGP_CompH>& dropped) {
    if (open_ || groups_.empty())
        return false;
    ++changes_;
    Group group = std::move(groups_.back());
    groups_.pop_back();
    // The layers first: what follows is for those that are there again.
    for (CompositionImage& image : group.compositions)
        restore(image);
    for (const LayerImage& image : group.layers) {
        if (image.entry->layer != nullptr)
            image.entry->layer->parent = nullptr; // so that no two of them hang on each other on the way
    }
    for (const LayerImage& image : group.layers)
        restore(image);
    for (NodeImage& image : group.nodes)
        restore(image);
    for (StreamImage& image : group.streams) {
        if (image.entry->layer != nullptr)
            *image.stream = std::move(image.before);
    }
    for (PathImage& image : group.paths) {
        if (image.entry->layer != nullptr)
            *image.path = std::move(image.before);
    }
    dropped = std::move(group.duplicates);
    return true;
}

} // namespace jostle::standalone
